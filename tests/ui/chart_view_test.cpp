#include "displays/forms/chart_view.h"

#include <gtest/gtest.h>

#include <QCategoryAxis>
#include <QLineSeries>
#include <QValueAxis>
#include <vector>

namespace kova {

TEST(ChartView, CurvesAreEquallySpacedPointsAtTheirIncrement) {
    ChartView v;
    const std::vector<float> y = {1, 2, 3, 4};
    v.addCurve("Curve1", y, 0.5);
    ASSERT_EQ(v.curveCount(), 1);
    QLineSeries* s = v.series(0);
    ASSERT_EQ(s->count(), 4);
    EXPECT_EQ(s->at(3), QPointF(1.5, 4));
    EXPECT_EQ(s->name(), "Curve1");
    EXPECT_DOUBLE_EQ(v.xAxis()->max(), 1.5);
}

TEST(ChartView, ReplacingKeepsTheSeriesAndChangesItsPoints) {
    ChartView v;
    v.addCurve("Curve1", std::vector<float>{1, 2}, 1);
    QLineSeries* before = v.series(0);
    v.replaceCurve(0, std::vector<float>{7, 8, 9}, 2);
    EXPECT_EQ(v.series(0), before);
    EXPECT_EQ(v.series(0)->count(), 3);
    EXPECT_EQ(v.series(0)->at(2), QPointF(4, 9));
    v.replaceCurve(3, std::vector<float>{1}, 1);  // no such curve: ignored
    EXPECT_EQ(v.curveCount(), 1);
}

TEST(ChartView, AutoscaleCoversEveryCurveAndFixedLimitsAreTakenAsGiven) {
    ChartView v;
    v.addCurve("Curve1", std::vector<float>{-5.3f, 0}, 1);
    v.addCurve("Curve2", std::vector<float>{5.7f, 1}, 1);
    v.autoScaleY();
    EXPECT_LE(v.yAxis()->min(), -5.3);
    EXPECT_GE(v.yAxis()->max(), 5.7);
    EXPECT_GT(v.yAxis()->min(), -6.0);  // no "nice numbers" widening to -10..10
    v.setYLimits(0, 4000);
    EXPECT_DOUBLE_EQ(v.yAxis()->min(), 0);
    EXPECT_DOUBLE_EQ(v.yAxis()->max(), 4000);
}

TEST(ChartView, FlatCurvesStillGetAYRange) {
    ChartView v;
    v.addCurve("Curve1", std::vector<float>(200, 0.0f), 1);
    v.autoScaleY();
    EXPECT_LT(v.yAxis()->min(), 0);
    EXPECT_GT(v.yAxis()->max(), 0);
}

TEST(ChartView, XLabelsKeepRepeatsAndEmptyTextsAndCanBeRemoved) {
    ChartView v;
    v.addCurve("Curve1", std::vector<float>(200, 1.0f), 1);
    for (int i = 0; i < 8; ++i) v.addXLabel(i * 25, i < 4 ? "10:00:00" : "");
    EXPECT_EQ(v.xLabelCount(), 8);
    EXPECT_EQ(v.xLabelAxis()->count(), 8);
    EXPECT_TRUE(v.xLabelAxis()->isVisible());
    for (int i = 7; i >= 0; --i) v.removeXLabel(i);
    v.removeXLabel(0);  // a missing label is no fault
    EXPECT_EQ(v.xLabelCount(), 0);
    EXPECT_EQ(v.xLabelAxis()->count(), 0);
}

TEST(ChartView, LegendShowsTheTextItIsGiven) {
    ChartView v;
    v.addCurve("Curve1", std::vector<float>{1}, 1);
    v.setCurveLegend(0, "Tank level");
    EXPECT_EQ(v.series(0)->name(), "Tank level");
}

}  // namespace kova
