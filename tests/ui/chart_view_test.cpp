#include "displays/forms/chart_view.h"

#include <gtest/gtest.h>

#include <QCategoryAxis>
#include <QCoreApplication>
#include <QLegend>
#include <QLegendMarker>
#include <QLineSeries>
#include <QValueAxis>
#include <limits>
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

TEST(ChartView, ABlankLegendTextHidesTheCurvesLegendEntryButNotTheCurve) {
    ChartView v;
    v.show();
    v.addCurve("Curve1", std::vector<float>{1}, 1);
    v.addCurve("Curve2", std::vector<float>{2}, 1);
    auto marker = [&](int i) { return v.chart()->legend()->markers(v.series(i)).value(0); };
    v.setCurveLegend(1, " ");
    QCoreApplication::processEvents();  // the legend lays its markers out
    ASSERT_NE(marker(1), nullptr);
    EXPECT_FALSE(marker(1)->isVisible());
    EXPECT_TRUE(marker(0)->isVisible());
    EXPECT_TRUE(v.series(1)->isVisible());
    // New points do not bring the entry back.
    v.replaceCurve(1, std::vector<float>{3, 4}, 1);
    QCoreApplication::processEvents();
    EXPECT_FALSE(marker(1)->isVisible());
    v.setCurveLegend(1, "Pump");
    QCoreApplication::processEvents();
    EXPECT_TRUE(marker(1)->isVisible());
}

TEST(ChartView, ACurveWithNoPointsDrawsNothingAndStaysOutOfTheLegendUntilItHasPoints) {
    ChartView v;
    v.addCurve("Curve1", std::vector<float>{1, 2}, 1);
    v.addCurve("Curve2", std::vector<float>{}, 1);
    v.setCurveLegend(1, "Pump");
    v.show();
    auto marker = [&](int i) { return v.chart()->legend()->markers(v.series(i)).value(0); };
    QCoreApplication::processEvents();
    EXPECT_EQ(v.series(1)->count(), 0);
    EXPECT_TRUE(marker(0)->isVisible());
    EXPECT_FALSE(marker(1)->isVisible());
    v.replaceCurve(1, std::vector<float>{5}, 1);
    QCoreApplication::processEvents();
    EXPECT_TRUE(marker(1)->isVisible());
    v.replaceCurve(1, std::vector<float>{}, 1);
    QCoreApplication::processEvents();
    EXPECT_FALSE(marker(1)->isVisible());
    // Autoscale fits the points there are; the empty curve adds no 0.
    v.replaceCurve(0, std::vector<float>{50, 60}, 1);
    v.autoScaleY();
    EXPECT_GT(v.yAxis()->min(), 0);
}

TEST(ChartView, TheXSpanKeepsTheAxisWideWhateverTheCurvesHold) {
    ChartView v;
    v.addCurve("Curve1", std::vector<float>{1, 2, 3}, 0.5);
    EXPECT_DOUBLE_EQ(v.xAxis()->max(), 1.0);  // without a span the axis follows the curve
    v.setXSpan(99.5);
    EXPECT_DOUBLE_EQ(v.xAxis()->max(), 99.5);
    v.replaceCurve(0, std::vector<float>{4}, 0.5);
    EXPECT_DOUBLE_EQ(v.xAxis()->max(), 99.5);
    EXPECT_DOUBLE_EQ(v.xLabelAxis()->max(), 99.5);
}

TEST(ChartView, AnXLabelLongerThanAnyTimeIsCutShort) {
    ChartView v;
    v.addCurve("Curve1", std::vector<float>(200, 1.0f), 1);
    v.addXLabel(0, "10:15:00.500");
    v.addXLabel(25, std::string(5000, 'x'));
    const QStringList labels = v.xLabelAxis()->categoriesLabels();
    ASSERT_EQ(labels.size(), 2);
    EXPECT_EQ(labels[0], "10:15:00.500");
    EXPECT_EQ(QString(labels[1]).remove(QChar(0x200B)), QString(39, 'x') + QChar(0x2026));
}

TEST(ChartView, LimitsTheWrongWayRoundTurnTheAxisUpsideDown) {
    ChartView v;
    v.addCurve("Curve1", std::vector<float>{1, 7}, 1);
    v.setYLimits(10, 5);
    EXPECT_TRUE(v.yAxis()->isReverse());  // 10 at the bottom, 5 at the top
    EXPECT_DOUBLE_EQ(v.yAxis()->min(), 5);
    EXPECT_DOUBLE_EQ(v.yAxis()->max(), 10);
    v.setYLimits(0, 4000);
    EXPECT_FALSE(v.yAxis()->isReverse());
    v.setYLimits(10, 5);
    v.autoScaleY();
    EXPECT_FALSE(v.yAxis()->isReverse());
}

TEST(ChartView, EqualLimitsGetABandAndLimitsBeyondADoubleAreIgnored) {
    ChartView v;
    v.addCurve("Curve1", std::vector<float>{1, 7}, 1);
    v.setYLimits(3, 3);
    EXPECT_LT(v.yAxis()->min(), 3);
    EXPECT_GT(v.yAxis()->max(), 3);
    v.setYLimits(0, 100);
    v.setYLimits(0, std::numeric_limits<double>::infinity());
    EXPECT_DOUBLE_EQ(v.yAxis()->max(), 100);
}

TEST(ChartView, TicksFallOnRoundValuesWhateverTheRange) {
    ChartView v;
    v.addCurve("Curve1", std::vector<float>(200, 1.0f), 0.5);  // X 0 .. 99.5
    EXPECT_EQ(v.xAxis()->tickType(), QValueAxis::TicksDynamic);
    EXPECT_DOUBLE_EQ(v.xAxis()->tickAnchor(), 0);
    EXPECT_DOUBLE_EQ(v.xAxis()->tickInterval(), 10);
    v.setYLimits(-163.9, 109.4);
    EXPECT_DOUBLE_EQ(v.yAxis()->tickAnchor(), 0);
    EXPECT_DOUBLE_EQ(v.yAxis()->tickInterval(), 50);
    v.setYLimits(-0.15, 3.15);
    EXPECT_DOUBLE_EQ(v.yAxis()->tickInterval(), 0.5);
}

TEST(ChartView, CurvesTakeTheirColoursInTurn) {
    ChartView v;
    for (int i = 0; i < 4; ++i) v.addCurve("Curve", std::vector<float>{1}, 1);
    for (int i = 0; i < 4; ++i) EXPECT_EQ(v.series(i)->pen().color(), ChartView::curveColour(i));
    EXPECT_NE(ChartView::curveColour(0), ChartView::curveColour(1));
}

}  // namespace kova
