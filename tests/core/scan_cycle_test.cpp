#include "core/scan_cycle.h"

#include <gtest/gtest.h>

#include "core/fault.h"
#include "core/trend_sampling.h"
#include "support/test_support.h"
#include "tags/tag_table.h"

namespace kova {

namespace {

// A station on the TEST module with a simulated clock that each tick advances by the
// interval the scan last set.
struct Rig {
    Station st;
    SimulatedClock clock{LocalDateTime{2026, 11, 15, 10, 0, 0, 0}};  // a Sunday
    test::RecordingTimer timer;
    test::RecordingStatus status;
    int ticks = 0;

    Rig() {
        st.platform.clock = &clock;
        st.platform.timer = &timer;
        st.platform.status = &status;
        st.switches.PollEnabled = true;
    }
    void tick() {
        if (ticks++ > 0) clock.advance(timer.intervals.empty() ? 1000 : timer.intervals.back());
        Tick(st);
    }
    void ticksN(int n) {
        for (int i = 0; i < n; ++i) tick();
    }
    Tag& analogInput(int n, int channel, float slope = 1, float offset = 0) {
        Tag& t = st.tags[n];
        t.TagName = "AI" + std::to_string(channel);
        t.IOName = "AI-" + std::to_string(channel);
        t.Kind = kAnalog;
        t.Direction = kInput;
        t.Address = 1;
        t.IONumber = static_cast<std::int16_t>(channel);
        t.Slope = slope;
        t.Offset = offset;
        return t;
    }
    Tag& digitalInput(int n, int channel) {
        Tag& t = st.tags[n];
        t.TagName = "DI" + std::to_string(channel);
        t.Kind = kDigital;
        t.Direction = kInput;
        t.Address = 1;
        t.IONumber = static_cast<std::int16_t>(channel);
        return t;
    }
    // A variable counted up by one control line on every pass.
    void countTicksWithControl() {
        Tag& v = st.tags[20];
        v.TagName = "V";
        v.Kind = kAnalog;
        v.Direction = kVariable;
        RebuildTagNameIndex(st.tags, st.nameIndex);
        ControlLine& l = st.control.Lines[1];
        l.IfText = "";
        l.IfCode = ",";
        l.ThenText = "@V = @V + 1";
        l.ThenCode = "@V,@V,1,+,!";
        st.control.ControlCount = 1;
        st.switches.ControlsEnabled = 1;
    }
};

}  // namespace

TEST(ScanCycle, FiveSecondPeriodScansEveryFifthTickWhileControlAndAlarmsRunEveryTick) {
    Rig r;
    r.st.periods.IOUnits = kUnitSeconds;
    r.st.periods.IOPeriod = 5;
    r.analogInput(1, 1);
    r.countTicksWithControl();
    r.st.switches.AlarmsEnabled = 1;
    r.ticksN(10);
    EXPECT_EQ(r.timer.intervals, std::vector<int>{1000});
    EXPECT_EQ(r.st.daq.Test.Ramp, 4);       // two scans read AI-1 once each
    EXPECT_EQ(r.st.tags[1].Value, 202.0f);  // the second scan: 1 x 200 + 2
    EXPECT_EQ(r.st.tags[20].Value, 10.0f);  // control ran on every tick
    EXPECT_EQ(r.status.texts.size(), 10u);  // the alarm check ran on every tick
}

TEST(ScanCycle, ZeroSecondPeriodScansOnEveryTick) {
    Rig r;
    r.st.periods.IOUnits = kUnitSeconds;
    r.st.periods.IOPeriod = 0;
    r.analogInput(1, 1);
    r.ticksN(3);
    EXPECT_EQ(r.st.daq.Test.Ramp, 6);
}

TEST(ScanCycle, NoNewSecondNoSecondsScan) {
    Rig r;
    r.st.periods.IOUnits = kUnitSeconds;
    r.st.periods.IOPeriod = 1;
    r.analogInput(1, 1);
    Tick(r.st);
    Tick(r.st);  // same clock reading: not a new second
    EXPECT_EQ(r.st.daq.Test.Ramp, 2);
}

TEST(ScanCycle, MillisecondPeriodChangeResetsTheIntervalAndTheRateMeasurement) {
    Rig r;
    r.st.periods.IOUnits = kUnitMs;
    r.st.periods.IOPeriod = 100;
    r.ticksN(5);
    EXPECT_EQ(r.timer.intervals, std::vector<int>{100});
    EXPECT_EQ(r.st.scan.ScanCount, 5);
    r.st.periods.IOPeriod = 200;
    r.tick();
    EXPECT_EQ(r.timer.intervals, (std::vector<int>{100, 200}));
    EXPECT_EQ(r.st.scan.ScanCount, 1);      // restarted, then this scan counted
    EXPECT_EQ(r.st.scan.RateStart, 36000);  // 36000.5 rounds half to even
}

TEST(ScanCycle, ScanTimeIsWholeSecondsOver200Scans) {
    Rig r;
    r.st.periods.IOUnits = kUnitMs;
    r.st.periods.IOPeriod = 100;
    r.st.periods.LogUnits = kUnitMs;
    r.st.periods.LogPeriod = 1000;
    r.ticksN(200);  // 19.9 s of clock between the first and the 200th scan
    EXPECT_DOUBLE_EQ(r.st.scan.ScanTime, 20.0 / 200);
    EXPECT_EQ(r.st.scan.ScanCount, 0);
}

TEST(ScanCycle, TwoHundredthScanAcrossMidnightGivesZeroScanTime) {
    Rig r;
    r.clock.set({2026, 11, 15, 23, 59, 50, 0});
    r.st.periods.IOUnits = kUnitMs;
    r.st.periods.IOPeriod = 100;
    r.st.periods.LogUnits = kUnitMs;
    r.st.periods.LogPeriod = 1000;
    r.st.scan.ScanTime = 5;
    r.ticksN(200);
    EXPECT_EQ(r.clock.now().day, 16);
    EXPECT_DOUBLE_EQ(r.st.scan.ScanTime, 0.0);
}

TEST(ScanCycle, LoggingPeriodCountsWholeScansAndDropsTheExcess) {
    Rig r;
    r.st.periods = {300, kUnitMs, 1000, kUnitMs, 0};
    r.st.logRun.LogHour = 10;
    std::vector<int> recordScans;
    for (int scan = 1; scan <= 12; ++scan) {
        const int before = r.st.logRun.LogSecond * 1000 + r.st.logRun.LogMillisecond;
        r.tick();
        const int after = r.st.logRun.LogSecond * 1000 + r.st.logRun.LogMillisecond;
        if (after != before) {
            recordScans.push_back(scan);
            EXPECT_EQ(after - before, 1200);
        }
    }
    EXPECT_EQ(recordScans, (std::vector<int>{4, 8, 12}));
    EXPECT_EQ(r.st.scan.LogAccumMs, 0);
}

TEST(ScanCycle, DigitalInputSixteenIsTheSignBit) {
    ScanState s;
    StoreDigitalInputs(s, 0x8000, 16);
    EXPECT_EQ(s.DigitalInputs[16], 1);
    for (int i = 1; i <= 15; ++i) EXPECT_EQ(s.DigitalInputs[i], 0);
    StoreDigitalInputs(s, 0x0005, 4);
    EXPECT_EQ(s.DigitalInputs[1], 1);
    EXPECT_EQ(s.DigitalInputs[2], 0);
    EXPECT_EQ(s.DigitalInputs[3], 1);
    EXPECT_EQ(s.DigitalInputs[16], 1);  // beyond the count: left as it was
}

TEST(ScanCycle, DigitalInputTagsFollowTheWalkingBit) {
    Rig r;
    r.digitalInput(1, 1);
    r.digitalInput(2, 2);
    r.st.periods.IOUnits = kUnitSeconds;
    r.tick();  // word 14: DI-1 = 0, DI-2 = 1
    EXPECT_EQ(r.st.tags[1].Value, 0.0f);
    EXPECT_EQ(r.st.tags[2].Value, 1.0f);
    r.tick();  // word 13: DI-1 = 1, DI-2 = 0
    EXPECT_EQ(r.st.tags[1].Value, 1.0f);
    EXPECT_EQ(r.st.tags[2].Value, 0.0f);
}

TEST(ScanCycle, DigitalChannelOutsideSixteenIsARunTimeError) {
    Rig r;
    r.digitalInput(1, 17);
    EXPECT_THROW(Tick(r.st), Fault);
}

TEST(ScanCycle, PollingOffGivesOffsetForAnalogAndZeroForDigital) {
    Rig r;
    r.st.switches.PollEnabled = false;
    r.analogInput(1, 3, 0.5f, 4.0f);
    Tag& d = r.digitalInput(2, 1);
    d.Value = 1;
    r.st.scan.DigitalInputs[1] = 1;
    r.st.profile.DigitalInputs = 4;
    for (int i = 0; i < 3; ++i) {
        r.tick();
        EXPECT_EQ(r.st.tags[1].Value, 4.0f);
        EXPECT_EQ(r.st.tags[2].Value, 0.0f);
    }
}

TEST(ScanCycle, CalibrationCorrectsEveryAnalogInputBeforeScaling) {
    Rig r;
    r.st.calibration = {3950, 3930, 4};
    r.analogInput(1, 8);  // first read: 1600
    r.tick();
    EXPECT_EQ(r.st.tags[1].Value, static_cast<float>(CorrectReading(r.st.calibration, 1600)));
}

TEST(ScanCycle, SystemVariablesFollowTheClock) {
    Rig r;
    r.clock.set({2026, 11, 18, 14, 5, 9, 600});  // a Wednesday
    r.tick();
    EXPECT_EQ(r.st.tags[kTagTS].Value, 50710.0f);  // 50709.6 rounded
    EXPECT_EQ(r.st.tags[kTagHR].Value, 14.0f);
    EXPECT_EQ(r.st.tags[kTagMN].Value, 5.0f);
    EXPECT_EQ(r.st.tags[kTagSC].Value, 9.0f);
    EXPECT_EQ(r.st.tags[kTagDW].Value, 4.0f);
    EXPECT_EQ(r.st.tags[kTagSU].Value, 0.0f);
}

TEST(ScanCycle, DayOfWeekIsSevenOnASaturdayAndOneOnTheSundayAfter) {
    Rig r;
    r.clock.set({2026, 11, 21, 23, 59, 59, 0});  // a Saturday: 7, not 0 as modulo 7 gives
    r.tick();
    EXPECT_EQ(r.st.tags[kTagDW].Value, 7.0f);
    r.clock.set({2026, 11, 22, 0, 0, 0, 0});
    r.tick();
    EXPECT_EQ(r.st.tags[kTagDW].Value, 1.0f);
    r.clock.set({2000, 1, 1, 12, 0, 0, 0});  // a Saturday too, at the turn of a century
    r.tick();
    EXPECT_EQ(r.st.tags[kTagDW].Value, 7.0f);
}

TEST(ScanCycle, AMillisecondPeriodBelowFiftyRunsAtFiftyAndNeverSpins) {
    for (const std::int16_t period : {std::int16_t{0}, std::int16_t{-100}, std::int16_t{10}}) {
        Rig r;
        r.st.periods = {period, kUnitMs, 100, kUnitMs, 0};
        r.ticksN(4);
        EXPECT_EQ(r.timer.intervals, std::vector<int>{kShortestScanMs}) << period;
        // Each scan stands for the 50 ms it really takes: a record's worth every second scan.
        EXPECT_EQ(r.st.scan.LogAccumMs, 0) << period;
        r.tick();
        EXPECT_EQ(r.st.scan.LogAccumMs, 50) << period;
        EXPECT_EQ(r.st.periods.IOPeriod, period);  // the stored value stays as the file has it
    }
}

TEST(ScanCycle, StartUpFlagReadsZeroOnTheFirstControlPassThenOne) {
    Rig r;
    r.countTicksWithControl();
    r.tick();
    EXPECT_EQ(r.st.tags[kTagSU].Value, 0.0f);
    r.tick();
    EXPECT_EQ(r.st.tags[kTagSU].Value, 1.0f);
}

TEST(ScanCycle, TrendSamplesGoToTheNewestRow) {
    Rig r;
    r.analogInput(1, 1);
    r.st.trends.TrendTable(1, 1) = 1;
    r.st.trends.TrendTable(1, 2) = 0;
    r.st.trends.TrendTable(2, 4) = 33;
    r.st.tags[kTagTS].Value = 99;
    r.st.trends.TrendSamples(1, 2) = 7;
    r.st.trends.TrendSamples(1, 8) = 7;
    r.tick();
    EXPECT_EQ(r.st.trends.NewestSample, 1);
    EXPECT_EQ(r.st.trends.OldestSample, 2);
    EXPECT_EQ(r.st.trends.TrendSamples(1, 1), 200.0f);
    EXPECT_EQ(r.st.trends.TrendSamples(1, 2), 0.0f);  // no tag
    EXPECT_EQ(r.st.trends.TrendSamples(1, 8), 0.0f);  // tag 33 samples as 0
}

TEST(ScanCycle, TrendAtLogPeriodSamplesOnlyWhenARecordIsDue) {
    Rig r;
    r.st.periods = {500, kUnitMs, 1000, kUnitMs, -1};
    r.ticksN(3);
    EXPECT_EQ(r.st.trends.NewestSample, 1);  // one log period completed (scan 2)
}

TEST(ScanCycle, TrendRingWrapsAfter200Samples) {
    Rig r;
    for (int i = 0; i < 200; ++i) SampleTrends(r.st);
    EXPECT_EQ(r.st.trends.NewestSample, 200);
    EXPECT_EQ(r.st.trends.OldestSample, 1);
    SampleTrends(r.st);
    EXPECT_EQ(r.st.trends.NewestSample, 1);
    EXPECT_EQ(r.st.trends.OldestSample, 2);
}

TEST(ScanCycle, EachPenCountsTheSamplesOfItsTagUpToTheRingsSize) {
    Rig r;
    r.st.trends.TrendTable(1, 1) = 1;
    r.st.trends.TrendTable(1, 2) = 33;
    for (int i = 0; i < 5; ++i) SampleTrends(r.st);
    EXPECT_EQ(r.st.trends.SamplesTaken[1], 5);
    EXPECT_EQ(r.st.trends.SampledTag[1], 1);
    EXPECT_EQ(r.st.trends.SamplesTaken[2], 5);  // a system variable's zeros are its samples
    EXPECT_EQ(r.st.trends.SamplesTaken[3], 5);  // counted, though a pen with no tag draws none
    EXPECT_EQ(r.st.trends.SampledTag[3], 0);
    for (int i = 0; i < 300; ++i) SampleTrends(r.st);
    EXPECT_EQ(r.st.trends.SamplesTaken[1], 200);
    // A pen given another tag starts again with its next sample.
    r.st.trends.TrendTable(1, 1) = 2;
    SampleTrends(r.st);
    EXPECT_EQ(r.st.trends.SamplesTaken[1], 1);
    EXPECT_EQ(r.st.trends.SampledTag[1], 2);
    EXPECT_EQ(r.st.trends.SamplesTaken[2], 200);
    ResetTrendSamples(r.st.trends);
    EXPECT_EQ(r.st.trends.SamplesTaken[1], 0);
    EXPECT_EQ(r.st.trends.SamplesTaken[2], 0);
}

TEST(ScanCycle, TagFifteenNeverTouchesMinMax) {
    Rig r;
    for (int i = 1; i <= 15; ++i) r.analogInput(i, 1 + (i % 8));
    r.ticksN(3);
    EXPECT_GT(r.st.minMax.TagMaximum[14], 0.0f);
    EXPECT_THROW(r.st.minMax.TagMaximum[15], Fault);  // there is no entry for tag 15
    EXPECT_EQ(r.st.minMax.TagMinimum[1], 0.0f);       // starts at 0: a minimum never rises
}

TEST(ScanCycle, ADayOfTicksRunsInMilliseconds) {
    Rig r;
    r.st.periods.IOUnits = kUnitSeconds;
    r.st.periods.IOPeriod = 60;
    r.analogInput(1, 2);
    r.ticksN(86400);
    EXPECT_EQ(r.clock.now().day, 16);
    EXPECT_EQ(r.st.daq.Test.Ramp, (1440 * 2) % 200);
    EXPECT_EQ(r.st.tags[kTagHR].Value, 9.0f);
}

}  // namespace kova
