#include "displays/trend_view.h"

#include <gtest/gtest.h>

#include "core/configuration.h"
#include "core/trend_sampling.h"
#include "support/fake_chart_plot.h"
#include "support/test_support.h"

namespace kova {

namespace {
struct Rig {
    Station st;
    test::ScriptedPrompter prompt;
    test::FakeChartPlot plot;
    Rig() {
        st.platform.prompter = &prompt;
        st.tags[1].TagName = "LEVEL";
        st.tags[1].Label = "Tank Level";
        st.tags[2].TagName = "TEMP";
        st.tags[2].Label = "Oven Temperature";
        st.tags[3].TagName = "FLOW";
        st.tags[3].Label = "Flow Rate";
        ResetTrendSamples(st.trends);
    }
    void pens(int trend, std::int16_t a, std::int16_t b, std::int16_t c, std::int16_t d) {
        st.trends.TrendTable(trend, 1) = a;
        st.trends.TrendTable(trend, 2) = b;
        st.trends.TrendTable(trend, 3) = c;
        st.trends.TrendTable(trend, 4) = d;
    }
    // One trend sample with tag i at value base + i.
    void sample(float base) {
        for (int i = 1; i <= 32; ++i) st.tags[i].Value = base + static_cast<float>(i);
        st.tags[33].Value = 45000;  // TS moves, but a pen on it samples 0
        SampleTrends(st);
    }
    // What the chart draws of a pen.
    const std::vector<float>& curve(int index) const { return plot.curves.at(index).y; }
};

bool allZero(const std::vector<float>& v) {
    for (float x : v)
        if (x != 0.0f) return false;
    return true;
}
}  // namespace

TEST(ViewTrend, OpeningDrawsFourNamedCurvesOnAnAxisOfTwoHundredPoints) {
    Rig r;
    r.pens(1, 1, 2, 3, 0);
    r.sample(0);
    const ViewTrendForm f = OpenViewTrend(r.st, r.plot);
    ASSERT_EQ(r.plot.curveCount(), 4);
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(r.plot.curves[i].name, "Curve" + std::to_string(i + 1));
        EXPECT_EQ(f.Points[i].size(), 200u);
        EXPECT_EQ(r.plot.curves[i].replaced, 0);
    }
    EXPECT_DOUBLE_EQ(*r.plot.xSpan, 199 * f.SamplePeriod);
    // One sample taken: the three pens with a tag draw it, the pen without draws nothing.
    EXPECT_EQ(r.curve(0), (std::vector<float>{1}));
    EXPECT_EQ(r.curve(2), (std::vector<float>{3}));
    EXPECT_TRUE(r.curve(3).empty());
    EXPECT_EQ(f.Drawn, (std::array<int, 4>{1, 1, 1, 0}));
    EXPECT_EQ(f.N, 200);
    EXPECT_EQ(f.TrendPage, 1);
    EXPECT_TRUE(f.ChkAuto);
    EXPECT_EQ(f.TxtLowY, "0");
    EXPECT_EQ(f.TxtUpperY, "4000");
    EXPECT_TRUE(r.plot.autoY);
}

TEST(ViewTrend, OpeningShowsTrendOneAndSetsTheSharedCurrentTrend) {
    Rig r;
    r.st.trends.CurrentTrend = 4;
    r.pens(1, 2, 0, 1, 0);
    const ViewTrendForm f = OpenViewTrend(r.st, r.plot);
    EXPECT_EQ(r.st.trends.CurrentTrend, 1);
    EXPECT_EQ(f.Lbl5, "1");
    EXPECT_EQ(f.Lbl1, (std::array<std::string, 4>{"Oven Temperature", " ", "Tank Level", " "}));
}

TEST(ViewTrend, TheLegendShowsThePensLabels) {
    Rig r;
    r.pens(1, 3, 0, 0, 1);
    OpenViewTrend(r.st, r.plot);
    EXPECT_EQ(r.plot.curves[0].legend, "Flow Rate");
    EXPECT_EQ(r.plot.curves[1].legend, " ");
    EXPECT_EQ(r.plot.curves[3].legend, "Tank Level");
}

TEST(ViewTrend, AfterANewSetupEveryPenShowsTwoHundredZerosAndSamplesEnterAtPointZero) {
    Rig r;
    r.pens(1, 1, 2, 3, 0);
    for (int i = 0; i < 50; ++i) r.sample(100);
    ApplyFileNewDefaults(r.st);
    r.pens(1, 1, 2, 3, 0);
    ViewTrendForm f = OpenViewTrend(r.st, r.plot);
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(f.Points[i].size(), 200u);
        EXPECT_TRUE(allZero(f.Points[i])) << "pen " << i + 1;
        // Zeros nobody measured are not drawn: the chart stays empty until a sample comes.
        EXPECT_TRUE(r.curve(i).empty()) << "pen " << i + 1;
    }

    r.sample(10);  // tag 1 = 11, tag 2 = 12
    DrawTrend(r.st, f, r.plot);
    EXPECT_EQ(f.Points[0][0], 11.0f);
    EXPECT_EQ(f.Points[1][0], 12.0f);
    EXPECT_EQ(f.Points[0][1], 0.0f);
    EXPECT_EQ(r.curve(0), (std::vector<float>{11}));
    EXPECT_EQ(r.curve(1), (std::vector<float>{12}));

    r.sample(20);  // the older sample moves one point on
    DrawTrend(r.st, f, r.plot);
    EXPECT_EQ(f.Points[0][0], 21.0f);
    EXPECT_EQ(f.Points[0][1], 11.0f);
    EXPECT_EQ(f.Points[0][2], 0.0f);
    EXPECT_EQ(r.curve(0), (std::vector<float>{21, 11}));
    EXPECT_EQ(r.plot.curves[0].replaced, 2);
}

TEST(ViewTrend, PointZeroIsTheNewestAndTheLastPointTheOldestAcrossTheRingsWrap) {
    Rig r;
    r.pens(1, 1, 0, 0, 0);
    for (int s = 1; s <= 250; ++s) r.sample(static_cast<float>(s * 10));  // tag 1 = s*10 + 1
    ViewTrendForm f = OpenViewTrend(r.st, r.plot);
    EXPECT_EQ(r.st.trends.NewestSample, 50);
    EXPECT_EQ(r.curve(0)[0], 2501.0f);   // sample 250, the newest
    EXPECT_EQ(r.curve(0)[49], 2011.0f);  // sample 201, in ring row 1
    EXPECT_EQ(r.curve(0)[50], 2001.0f);  // sample 200, in ring row 200
    EXPECT_EQ(r.curve(0)[199], 511.0f);  // sample 51, the oldest kept
    EXPECT_EQ(f.TrendPage, 1);
}

TEST(ViewTrend, APageBackNeverGoesBelowOneAndRedraws) {
    Rig r;
    r.pens(1, 1, 0, 0, 0);
    for (int s = 1; s <= 30; ++s) r.sample(static_cast<float>(s * 10));
    ViewTrendForm f = OpenViewTrend(r.st, r.plot);
    const std::vector<float> pageOne = f.Points[0];
    EXPECT_EQ(r.curve(0).size(), 30u);
    f.TrendPage = 3;
    TrendPageBack(r.st, f, r.plot);
    EXPECT_EQ(f.TrendPage, 2);
    // The ring holds one page of 200: an older page starts at the same row, but none of its
    // samples is that old, so nothing is drawn.
    EXPECT_EQ(f.Points[0], pageOne);
    EXPECT_TRUE(r.curve(0).empty());
    TrendPageBack(r.st, f, r.plot);
    TrendPageBack(r.st, f, r.plot);
    EXPECT_EQ(f.TrendPage, 1);
    EXPECT_EQ(r.plot.curves[0].replaced, 3);
}

TEST(ViewTrend, AShorterPageStartsThatManySamplesBackFromTheNewest) {
    Rig r;
    r.pens(1, 1, 0, 0, 0);
    for (int s = 1; s <= 10; ++s) r.sample(static_cast<float>(s * 10));
    ViewTrendForm f = OpenViewTrend(r.st, r.plot);
    f.N = 4;
    DrawTrend(r.st, f, r.plot);
    EXPECT_EQ(r.curve(0), (std::vector<float>{101, 91, 81, 71}));
    f.TrendPage = 2;
    DrawTrend(r.st, f, r.plot);
    EXPECT_EQ(r.curve(0), (std::vector<float>{61, 51, 41, 31}));
}

TEST(ViewTrend, APenOnTSPlotsAFlatZero) {
    Rig r;
    r.pens(1, 33, 1, 0, 0);
    for (int s = 1; s <= 5; ++s) r.sample(static_cast<float>(s));
    const ViewTrendForm f = OpenViewTrend(r.st, r.plot);
    EXPECT_EQ(r.curve(0), std::vector<float>(5, 0.0f));
    EXPECT_FALSE(allZero(r.curve(1)));
    EXPECT_EQ(f.Lbl1[0], "Time In Secs");
}

TEST(ViewTrend, APenOutsideTheTagTableHoldsZerosDrawsNothingAndHasABlankLabel) {
    Rig r;
    r.pens(1, 1, 0, 0, 0);
    for (int s = 1; s <= 5; ++s) r.sample(static_cast<float>(s));
    r.pens(1, 43, -2, 1, 0);  // a damaged table: the samples of those columns are not zero
    const ViewTrendForm f = OpenViewTrend(r.st, r.plot);
    EXPECT_TRUE(allZero(f.Points[0]));
    EXPECT_TRUE(allZero(f.Points[1]));
    EXPECT_TRUE(r.curve(0).empty());
    EXPECT_TRUE(r.curve(1).empty());
    EXPECT_EQ(f.Lbl1[0], " ");
    EXPECT_EQ(f.Lbl1[1], " ");
    EXPECT_EQ(f.Lbl1[2], "Tank Level");
}

TEST(ViewTrend, APenGivenAnotherTagDrawsOnlyTheSamplesOfItsNewTag) {
    Rig r;
    r.pens(1, 1, 0, 0, 0);
    for (int s = 1; s <= 10; ++s) r.sample(static_cast<float>(s * 10));
    ViewTrendForm f = OpenViewTrend(r.st, r.plot);
    EXPECT_EQ(r.curve(0).size(), 10u);
    // The set-up window moves pen 1 to tag 2: the ten samples of tag 1 are not tag 2's past.
    r.pens(1, 2, 0, 0, 0);
    DrawTrend(r.st, f, r.plot);
    EXPECT_TRUE(r.curve(0).empty());
    EXPECT_EQ(f.Lbl1[0], "Oven Temperature");
    r.sample(500);  // tag 2 = 502
    DrawTrend(r.st, f, r.plot);
    EXPECT_EQ(r.curve(0), (std::vector<float>{502}));
}

TEST(ViewTrend, AFullRingDrawsAllTwoHundredPoints) {
    Rig r;
    r.pens(2, 0, 3, 0, 0);
    for (int s = 1; s <= 450; ++s) r.sample(static_cast<float>(s));
    ViewTrendForm f = OpenViewTrend(r.st, r.plot);
    ViewTrendNext(r.st, f, r.plot);
    EXPECT_TRUE(r.curve(0).empty());
    ASSERT_EQ(r.curve(1).size(), 200u);
    EXPECT_EQ(r.curve(1), f.Points[1]);
}

TEST(ViewTrend, AnIOPeriodOf500MillisecondsGivesItsLabelAndHalfASecondApart) {
    Rig r;
    r.st.periods = {500, kUnitMs, 5, kUnitSeconds, 0};
    const ViewTrendForm f = OpenViewTrend(r.st, r.plot);
    EXPECT_EQ(f.Lbl4, "Sample Period 500mS");
    EXPECT_DOUBLE_EQ(f.SamplePeriod, 0.5);
    for (const auto& c : r.plot.curves) EXPECT_DOUBLE_EQ(c.xIncrement, 0.5);
}

TEST(ViewTrend, APeriodInSecondsReadsSecWithoutABlank) {
    Rig r;
    r.st.periods = {5, kUnitSeconds, 10, kUnitSeconds, 0};
    const ViewTrendForm f = OpenViewTrend(r.st, r.plot);
    EXPECT_EQ(f.Lbl4, "Sample Period 5Sec");
    EXPECT_DOUBLE_EQ(f.SamplePeriod, 5.0);
}

TEST(ViewTrend, TrendsAtTheLogPeriodShowTheLoggingPeriod) {
    Rig r;
    r.st.periods = {200, kUnitMs, 2, kUnitSeconds, -1};
    ViewTrendForm f = OpenViewTrend(r.st, r.plot);
    EXPECT_EQ(f.Lbl4, "Sample Period 2Sec");
    EXPECT_DOUBLE_EQ(r.plot.curves[0].xIncrement, 2.0);
    // A change in the periods window shows at the next redraw.
    r.st.periods = {200, kUnitMs, 750, kUnitMs, -1};
    DrawTrend(r.st, f, r.plot);
    EXPECT_EQ(f.Lbl4, "Sample Period 750mS");
    EXPECT_DOUBLE_EQ(r.plot.curves[3].xIncrement, 0.75);
}

TEST(ViewTrend, AnyUnitOtherThanSecondsIsMilliseconds) {
    Rig r;
    r.st.periods = {300, 7, 1, kUnitSeconds, 0};
    const ViewTrendForm f = OpenViewTrend(r.st, r.plot);
    EXPECT_EQ(f.Lbl4, "Sample Period 300mS");
    EXPECT_DOUBLE_EQ(f.SamplePeriod, 0.3);
}

TEST(ViewTrend, AutoscaleAsksTheChartToFitEveryRedraw) {
    Rig r;
    ViewTrendForm f = OpenViewTrend(r.st, r.plot);
    EXPECT_EQ(r.plot.autoScaleCalls, 1);
    ViewTrendTick(r.st, f, r.plot);
    EXPECT_EQ(r.plot.autoScaleCalls, 2);
    EXPECT_FALSE(r.plot.yLimits.has_value());
}

TEST(ViewTrend, FixedLimitsAreSetWhenBothBoxesHoldNumbersEvenTheWrongWayRound) {
    Rig r;
    ViewTrendForm f = OpenViewTrend(r.st, r.plot);
    f.ChkAuto = false;
    DrawTrend(r.st, f, r.plot);
    EXPECT_EQ(r.plot.yLimits, std::make_pair(0.0, 4000.0));
    f.TxtLowY = "10";
    f.TxtUpperY = "5";
    DrawTrend(r.st, f, r.plot);
    EXPECT_EQ(r.plot.yLimits, std::make_pair(10.0, 5.0));
    f.TxtLowY = " -2.5 ";
    f.TxtUpperY = "1E3";
    DrawTrend(r.st, f, r.plot);
    EXPECT_EQ(r.plot.yLimits, std::make_pair(-2.5, 1000.0));
    EXPECT_EQ(r.plot.autoScaleCalls, 1);
}

TEST(ViewTrend, ANonNumberInEitherLimitBoxLeavesTheYRangeAsItWas) {
    Rig r;
    ViewTrendForm f = OpenViewTrend(r.st, r.plot);
    f.ChkAuto = false;
    f.TxtLowY = "-100";
    f.TxtUpperY = "100";
    DrawTrend(r.st, f, r.plot);
    for (auto [low, high] : {std::pair<const char*, const char*>{"abc", "100"},
                             {"-100", ""},
                             {"10x", "100"},
                             {"", ""}}) {
        f.TxtLowY = low;
        f.TxtUpperY = high;
        DrawTrend(r.st, f, r.plot);
        EXPECT_EQ(r.plot.yLimits, std::make_pair(-100.0, 100.0)) << low << " / " << high;
    }
    EXPECT_EQ(r.plot.autoScaleCalls, 1);
    EXPECT_FALSE(r.plot.autoY);
}

TEST(ViewTrend, UntickingAutoscaleWithABadLimitLeavesTheAutomaticRange) {
    Rig r;
    ViewTrendForm f = OpenViewTrend(r.st, r.plot);
    f.ChkAuto = false;
    f.TxtLowY = "abc";
    DrawTrend(r.st, f, r.plot);
    EXPECT_EQ(r.plot.autoScaleCalls, 1);  // no new fit
    EXPECT_FALSE(r.plot.yLimits.has_value());
}

TEST(ViewTrend, LoggingDataIsTickedOnlyWhileLoggingIsOnAndWriting) {
    Rig r;
    ViewTrendForm f = OpenViewTrend(r.st, r.plot);
    EXPECT_FALSE(f.OptLog);
    r.st.switches.LoggingEnabled = Variant::integer(1);
    r.st.logRun.LogState = 0;  // waiting for its start condition
    ViewTrendTick(r.st, f, r.plot);
    EXPECT_FALSE(f.OptLog);
    r.st.logRun.LogState = 1;
    ViewTrendTick(r.st, f, r.plot);
    EXPECT_TRUE(f.OptLog);
    r.st.switches.LoggingEnabled = Variant::integer(0);
    ViewTrendTick(r.st, f, r.plot);
    EXPECT_FALSE(f.OptLog);
    r.st.switches.LoggingEnabled = Variant::boolean(true);
    r.st.logRun.LogState = 1;
    EXPECT_TRUE(OpenViewTrend(r.st, r.plot).OptLog);
}

TEST(ViewTrend, TheRateShowsTheMeasuredSecondsPerScan) {
    Rig r;
    ViewTrendForm f = OpenViewTrend(r.st, r.plot);
    EXPECT_EQ(f.LblRate, "0");
    r.st.scan.ScanTime = 0.5;
    ViewTrendTick(r.st, f, r.plot);
    EXPECT_EQ(f.LblRate, "0.5");
}

TEST(ViewTrend, NextAndPrevMoveThroughTheTrendsWithWrapAround) {
    Rig r;
    r.pens(2, 3, 0, 0, 0);
    r.pens(10, 0, 2, 0, 0);
    for (int s = 1; s <= 3; ++s) r.sample(static_cast<float>(s));
    ViewTrendForm f = OpenViewTrend(r.st, r.plot);
    ViewTrendNext(r.st, f, r.plot);
    EXPECT_EQ(r.st.trends.CurrentTrend, 2);
    EXPECT_EQ(f.Lbl5, "2");
    EXPECT_EQ(f.Lbl1[0], "Flow Rate");
    EXPECT_EQ(r.curve(0)[0], 6.0f);  // tag 3 of the newest sample
    EXPECT_EQ(r.plot.curves[0].legend, "Flow Rate");
    ViewTrendPrevious(r.st, f, r.plot);
    ViewTrendPrevious(r.st, f, r.plot);
    EXPECT_EQ(r.st.trends.CurrentTrend, 10);
    EXPECT_EQ(f.Lbl5, "10");
    EXPECT_EQ(f.Lbl1, (std::array<std::string, 4>{" ", "Oven Temperature", " ", " "}));
    EXPECT_EQ(r.curve(1)[0], 5.0f);
    ViewTrendNext(r.st, f, r.plot);
    EXPECT_EQ(r.st.trends.CurrentTrend, 1);
    EXPECT_EQ(r.plot.curveCount(), 4);  // replaced, never added again
}

TEST(ViewTrend, ARedrawFollowsTheTrendTheSetUpWindowMovedTo) {
    Rig r;
    r.pens(3, 1, 0, 0, 0);
    ViewTrendForm f = OpenViewTrend(r.st, r.plot);
    r.st.trends.CurrentTrend = 3;
    ViewTrendTick(r.st, f, r.plot);
    EXPECT_EQ(f.Lbl5, "3");
    EXPECT_EQ(f.Lbl1[0], "Tank Level");
}

}  // namespace kova
