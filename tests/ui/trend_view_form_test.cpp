#include "displays/forms/trend_view_form.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QCheckBox>
#include <QCoreApplication>
#include <QLabel>
#include <QLegend>
#include <QLegendMarker>
#include <QLineEdit>
#include <QLineSeries>
#include <QPushButton>
#include <QTest>
#include <QValueAxis>
#include <set>
#include <sstream>

#include "core/trend_sampling.h"
#include "displays/forms/chart_view.h"
#include "support/test_support.h"
#include "ui/ui_support.h"

namespace kova {

namespace {
struct Rig {
    Station st;
    test::ScriptedPrompter prompt;
    test::RecordingStatus status;
    std::ostringstream errors;
    ErrorReport report{st.platform, errors};
    std::unique_ptr<ViewTrendWindow> w;
    Rig() {
        st.platform.prompter = &prompt;
        st.platform.status = &status;
        st.tags[1].Label = "Tank Level";
        st.tags[2].Label = "Oven Temperature";
        st.trends.TrendTable(1, 1) = 1;
        st.trends.TrendTable(1, 2) = 2;
        st.trends.TrendTable(2, 4) = 2;
        st.periods = {500, kUnitMs, 5, kUnitSeconds, 0};
        ResetTrendSamples(st.trends);
    }
    void open() {
        w = std::make_unique<ViewTrendWindow>(st, report);
        w->show();
    }
    // A saw-tooth on tag 1 (0, 10, .. 90, 0, ..) and a constant 50 on tag 2.
    void sample(int count) {
        for (int i = 0; i < count; ++i) {
            st.tags[1].Value = static_cast<float>((i % 10) * 10);
            st.tags[2].Value = 50;
            SampleTrends(st);
        }
    }
    QLabel* label(const char* name) { return test::child<QLabel>(w.get(), name); }
    QLineEdit* box(const char* name) { return test::child<QLineEdit>(w.get(), name); }
    QCheckBox* tick(const char* name) { return test::child<QCheckBox>(w.get(), name); }
    void click(const char* name) { test::child<QPushButton>(w.get(), name)->click(); }
    ChartView* chart() { return test::child<ChartView>(w.get(), "DynaPlot1"); }
};

QString accessibleName(QWidget* w) {
    QAccessibleInterface* a = QAccessible::queryAccessibleInterface(w);
    return a ? a->text(QAccessible::Name) : QString();
}
}  // namespace

TEST(ViewTrendWindow, CaptionControlsAndTheirStartingValues) {
    Rig r;
    r.open();
    EXPECT_EQ(r.w->windowTitle(), "View Trends");
    EXPECT_EQ(r.w->objectName(), "ViewTrend");
    EXPECT_EQ(r.box("TxtLowY")->text(), "0");
    EXPECT_EQ(r.box("TxtUpperY")->text(), "4000");
    EXPECT_EQ(r.tick("ChkAuto")->text(), "Autoscale");
    EXPECT_TRUE(r.tick("ChkAuto")->isChecked());
    EXPECT_EQ(r.tick("OptLog")->text(), "Logging Data");
    EXPECT_FALSE(r.tick("OptLog")->isChecked());
    EXPECT_EQ(test::child<QPushButton>(r.w.get(), "ComPrev")->text(), "&Prev");
    EXPECT_EQ(test::child<QPushButton>(r.w.get(), "ComNext")->text(), "&Next");
    EXPECT_EQ(test::child<QPushButton>(r.w.get(), "ComExit")->text(), "E&xit");
    EXPECT_EQ(r.label("Lbl5")->text(), "1");
    EXPECT_EQ(r.label("Lbl4")->text(), "Sample Period 500mS");
    EXPECT_EQ(r.label("Lbl10")->text(), "Tank Level");
    EXPECT_EQ(r.label("Lbl11")->text(), "Oven Temperature");
    EXPECT_EQ(r.label("Lbl12")->text(), " ");
    EXPECT_EQ(r.w->timer()->interval(), 2000);
    EXPECT_TRUE(r.w->timer()->isActive());
    EXPECT_EQ(r.w->timer()->objectName(), "Timer1");
}

TEST(ViewTrendWindow, EveryBoxCarriesItsLabelAsItsAccessibleName) {
    Rig r;
    r.open();
    EXPECT_EQ(accessibleName(r.box("TxtLowY")), "Lower Y");
    EXPECT_EQ(accessibleName(r.box("TxtUpperY")), "Upper Y");
    EXPECT_EQ(accessibleName(r.tick("ChkAuto")), "Autoscale");
    EXPECT_EQ(accessibleName(r.tick("OptLog")), "Logging Data");
    EXPECT_EQ(accessibleName(r.label("Lbl5")), "TREND");
    EXPECT_EQ(accessibleName(r.label("LblRate")), "Rate");
    EXPECT_EQ(accessibleName(r.label("Lbl10")), "Pen 1");
}

TEST(ViewTrendWindow, TheChartDrawsTheSamplesTakenOfPensWithATagAndNamesThemInTheLegend) {
    Rig r;
    r.sample(30);
    r.open();
    ChartView* c = r.chart();
    ASSERT_EQ(c->curveCount(), 4);
    // Thirty samples taken: no line falls to 0 beyond them, and no flat line at 0 stands for
    // the pens without a tag.
    EXPECT_EQ(c->series(0)->count(), 30);
    EXPECT_EQ(c->series(1)->count(), 30);
    EXPECT_EQ(c->series(2)->count(), 0);
    EXPECT_EQ(c->series(3)->count(), 0);
    EXPECT_EQ(c->series(0)->name(), "Tank Level");
    EXPECT_EQ(c->series(1)->name(), "Oven Temperature");
    // Pens without a tag have no legend entry.
    QCoreApplication::processEvents();  // the legend lays its markers out
    const auto markers = c->chart()->legend()->markers();
    int shown = 0;
    for (QLegendMarker* m : markers)
        if (m->isVisible()) ++shown;
    EXPECT_EQ(shown, 2);
    // Point 0 is the newest sample, half a second apart.
    EXPECT_EQ(c->series(0)->at(0), QPointF(0, 90));
    EXPECT_EQ(c->series(0)->at(1), QPointF(0.5, 80));
    EXPECT_EQ(c->series(1)->at(29), QPointF(14.5, 50));
    // The axis spans the 200 points a full ring holds.
    EXPECT_DOUBLE_EQ(c->xAxis()->max(), 99.5);
    // The pens have four different colours.
    std::set<QRgb> colours;
    for (int i = 0; i < 4; ++i) colours.insert(c->series(i)->pen().color().rgb());
    EXPECT_EQ(colours.size(), 4u);
    EXPECT_EQ(r.label("Lbl10")->palette().color(QPalette::WindowText), c->series(0)->pen().color());
}

TEST(ViewTrendWindow, AutoscaleFitsTheDataDrawn) {
    Rig r;
    r.sample(30);
    r.open();
    QValueAxis* y = r.chart()->yAxis();
    EXPECT_LE(y->min(), 0);
    EXPECT_GE(y->max(), 90);
    EXPECT_LT(y->max(), 200);
}

TEST(ViewTrendWindow, EachTickReplacesThePointsWithoutRebuildingTheChart) {
    Rig r;
    r.open();
    QLineSeries* before = r.chart()->series(0);
    r.sample(1);  // tag 1 = 0
    r.sample(2);  // 0 then 10: the newest is 10
    r.w->tick();
    EXPECT_EQ(r.chart()->series(0), before);
    EXPECT_EQ(r.chart()->curveCount(), 4);
    EXPECT_EQ(r.chart()->series(0)->at(0).y(), 10);
    EXPECT_EQ(r.chart()->series(0)->at(1).y(), 0);
}

TEST(ViewTrendWindow, UntickingAutoscaleAppliesTheLimitsAtOnce) {
    Rig r;
    r.sample(20);
    r.open();
    r.box("TxtLowY")->setText("-10");
    r.box("TxtUpperY")->setText("120");
    r.tick("ChkAuto")->setChecked(false);
    EXPECT_DOUBLE_EQ(r.chart()->yAxis()->min(), -10);
    EXPECT_DOUBLE_EQ(r.chart()->yAxis()->max(), 120);
    // A new limit followed by Return applies too.
    r.box("TxtUpperY")->setText("500");
    QTest::keyClick(r.box("TxtUpperY"), Qt::Key_Return);
    EXPECT_DOUBLE_EQ(r.chart()->yAxis()->max(), 500);
}

TEST(ViewTrendWindow, ALimitThatIsNoNumberLeavesTheRangeAsItWas) {
    Rig r;
    r.sample(20);
    r.open();
    const double min = r.chart()->yAxis()->min();
    const double max = r.chart()->yAxis()->max();
    r.box("TxtLowY")->setText("abc");
    r.tick("ChkAuto")->setChecked(false);
    r.sample(5);
    r.w->tick();
    EXPECT_DOUBLE_EQ(r.chart()->yAxis()->min(), min);
    EXPECT_DOUBLE_EQ(r.chart()->yAxis()->max(), max);
    EXPECT_TRUE(r.prompt.messages.empty());
    r.box("TxtLowY")->setText("10");
    r.box("TxtUpperY")->setText("5");
    r.w->tick();
    // Taken as given: the axis stands upside down with 10 at the bottom and 5 at the top.
    EXPECT_TRUE(r.chart()->yAxis()->isReverse());
    EXPECT_DOUBLE_EQ(r.chart()->yAxis()->min(), 5);
    EXPECT_DOUBLE_EQ(r.chart()->yAxis()->max(), 10);
}

TEST(ViewTrendWindow, LoggingDataFollowsTheLoggingStateOnEachTickAndIgnoresClicks) {
    Rig r;
    r.open();
    r.st.switches.LoggingEnabled = Variant::integer(1);
    r.st.logRun.LogState = 1;
    r.w->tick();
    EXPECT_TRUE(r.tick("OptLog")->isChecked());
    QTest::mouseClick(r.tick("OptLog"), Qt::LeftButton);
    EXPECT_TRUE(r.tick("OptLog")->isChecked());
    r.st.logRun.LogState = 0;
    r.w->tick();
    EXPECT_FALSE(r.tick("OptLog")->isChecked());
}

TEST(ViewTrendWindow, NextAndPrevShowTheOtherTrends) {
    Rig r;
    r.open();
    r.click("ComNext");
    EXPECT_EQ(r.label("Lbl5")->text(), "2");
    EXPECT_EQ(r.label("Lbl10")->text(), " ");
    EXPECT_EQ(r.label("Lbl13")->text(), "Oven Temperature");
    EXPECT_EQ(r.chart()->series(3)->name(), "Oven Temperature");
    r.click("ComPrev");
    r.click("ComPrev");
    EXPECT_EQ(r.label("Lbl5")->text(), "10");
    EXPECT_EQ(r.st.trends.CurrentTrend, 10);
}

TEST(ViewTrendWindow, WorksFromTheKeyboardAlone) {
    Rig r;
    r.sample(10);
    r.open();
    r.w->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(r.w.get()));
    r.box("TxtLowY")->setFocus();
    ASSERT_TRUE(QTest::qWaitFor([&] { return r.box("TxtLowY")->hasFocus(); }));
    r.box("TxtLowY")->selectAll();
    QTest::keyClicks(r.box("TxtLowY"), "-5");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_TRUE(r.box("TxtUpperY")->hasFocus());
    r.box("TxtUpperY")->selectAll();
    QTest::keyClicks(r.box("TxtUpperY"), "95");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_TRUE(r.tick("ChkAuto")->hasFocus());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    EXPECT_FALSE(r.tick("ChkAuto")->isChecked());
    EXPECT_DOUBLE_EQ(r.chart()->yAxis()->min(), -5);
    EXPECT_DOUBLE_EQ(r.chart()->yAxis()->max(), 95);
    // A button's mnemonic clicks it after a short press animation.
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_N, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([&] { return r.label("Lbl5")->text() == "2"; }, 2000));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_P, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([&] { return r.label("Lbl5")->text() == "1"; }, 2000));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_X, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !r.w->isVisible(); }, 2000));
}

TEST(ViewTrendWindow, TheChartKeepsARoomySizeAtTheWindowsSmallestSize) {
    Rig r;
    r.sample(20);
    r.open();
    r.w->resize(r.w->minimumSize());
    QTest::qWait(20);
    EXPECT_EQ(r.w->size(), r.w->minimumSize());
    EXPECT_GE(r.chart()->width(), 400);
    EXPECT_GE(r.chart()->height(), 220);
    // Every control keeps at least its own smallest size: nothing is clipped.
    for (QWidget* c : r.w->findChildren<QWidget*>()) {
        if (c->isVisible() && c->parentWidget() == r.w.get()) {
            EXPECT_GE(c->width(), c->minimumSizeHint().width()) << c->objectName().toStdString();
        }
    }
}

}  // namespace kova
