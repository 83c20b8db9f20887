#include "logging/log_conditions.h"

#include <gtest/gtest.h>

#include "log_rig.h"
#include "logging/log_switch.h"
#include "logging/log_writer.h"

namespace kova {

using test::At;
using test::ReadFileBytes;

namespace {
struct Conditions : test::LogRig {
    Conditions() {
        st.periods = {1, kUnitSeconds, 1, kUnitSeconds, 0};
        st.logging.LogTimeColumn = Variant::integer(1);
        tag(1, "LEVEL", "Level", true, 0.0f);
        st.logging.LogFileName = path("C.CSV");
        st.logging.OverwriteFile = 1;
    }
    void on() { ASSERT_TRUE(ToggleLogging(st)); }
    int records() const {
        const std::string text = ReadFileBytes(folder / "C.CSV");
        int lines = 0;
        for (std::size_t p = 0; (p = text.find("\r\n", p)) != std::string::npos; p += 2) ++lines;
        return lines - 1;  // the header
    }
    // Mode 1, start below 10, stop above 50.
    void tankCondition() {
        st.logging.LogMode = 1;
        st.logging.ConditionTag = 1;
        st.logging.StartValue = Variant::real(10);
        st.logging.StartAbove = 0;
        st.logging.StopValue = 50.0f;
        st.logging.StopAbove = -1;
    }
    std::int16_t stateAt(float value) {
        st.tag(1).Value = value;
        CheckLogConditions(st);
        return st.logRun.LogState;
    }
    void window(int startH, int startM, int stopH, int stopM) {
        st.logging.LogMode = 2;
        st.logging.StartTimeSecs = Variant::longInt(startH * 3600 + startM * 60);
        st.logging.StopTimeSecs = stopH * 3600 + stopM * 60;
    }
    std::int16_t stateAtTime(int h, int m, int s, int ms = 0) {
        clock.set(At(2026, 11, 15, h, m, s, ms));
        CheckLogConditions(st);
        return st.logRun.LogState;
    }
};
}  // namespace

TEST(LoggingActive, NeedsBothTheSwitchAndTheState) {
    Conditions c;
    c.st.logRun.LogState = 1;
    EXPECT_FALSE(LoggingActive(c.st));
    c.st.switches.LoggingEnabled = Variant::integer(1);
    EXPECT_TRUE(LoggingActive(c.st));
    c.st.switches.LoggingEnabled = Variant::boolean(true);  // any non-zero value is on
    EXPECT_TRUE(LoggingActive(c.st));
    c.st.logRun.LogState = 0;
    EXPECT_FALSE(LoggingActive(c.st));
}

// Mode 0

TEST(LogConditionsSamples, ZeroLogsWithoutEnd) {
    Conditions c;
    c.st.logging.StopSampleCount = Variant::integer(0);
    c.on();
    c.scans(1000);
    EXPECT_EQ(c.records(), 1000);
    EXPECT_TRUE(LoggingActive(c.st));
}

TEST(LogConditionsSamples, StopsAfterTheCountClosingTheFile) {
    Conditions c;
    c.st.logging.StopSampleCount = Variant::integer(3);
    c.on();
    c.scans(3);
    EXPECT_EQ(c.records(), 3);
    EXPECT_TRUE(LoggingActive(c.st));
    c.scans(1);
    EXPECT_FALSE(c.st.switches.LoggingEnabled.isOn());
    EXPECT_FALSE(LogFileIsOpen(c.st));
    EXPECT_EQ(c.st.logRun.SampleNumber, 0);
    EXPECT_EQ(c.st.logRun.LogState, 0);
    c.scans(5);
    EXPECT_EQ(c.records(), 3);
}

TEST(LogConditionsSamples, CanBeStartedAgainAfterStopping) {
    Conditions c;
    c.st.logging.StopSampleCount = Variant::integer(2);
    c.st.logging.OverwriteFile = 0;
    c.on();
    c.scans(3);
    c.on();
    c.scans(3);
    EXPECT_EQ(ReadFileBytes(c.folder / "C.CSV"),
              "1,10:15:01.000, 0 \r\n2,10:15:02.000, 0 \r\n"
              "1,10:15:04.000, 0 \r\n2,10:15:05.000, 0 \r\n");
}

// Mode 1

TEST(LogConditionsTagValue, StartBelowTenStopAboveFifty) {
    Conditions c;
    c.tankCondition();
    EXPECT_EQ(c.stateAt(9.9f), 1);
    EXPECT_EQ(c.stateAt(30.0f), 1);
    EXPECT_EQ(c.stateAt(50.1f), 0);
    EXPECT_EQ(c.stateAt(30.0f), 0);
}

TEST(LogConditionsTagValue, EqualityPassesNeitherTest) {
    Conditions c;
    c.tankCondition();
    EXPECT_EQ(c.stateAt(10.0f), 0);
    EXPECT_EQ(c.stateAt(9.99f), 1);
    EXPECT_EQ(c.stateAt(50.0f), 1);
}

TEST(LogConditionsTagValue, StartAboveAndStopBelow) {
    Conditions c;
    c.tankCondition();
    c.st.logging.StartAbove = -1;
    c.st.logging.StartValue = Variant::real(80);
    c.st.logging.StopAbove = 0;
    c.st.logging.StopValue = 20.0f;
    EXPECT_EQ(c.stateAt(79.0f), 0);
    EXPECT_EQ(c.stateAt(80.5f), 1);
    EXPECT_EQ(c.stateAt(20.0f), 1);
    EXPECT_EQ(c.stateAt(19.5f), 0);
    EXPECT_EQ(c.stateAt(50.0f), 0);
}

TEST(LogConditionsTagValue, RecordsOnlyWhileTheConditionHolds) {
    Conditions c;
    c.tankCondition();
    c.st.tag(1).Value = 30;
    c.on();
    c.scans(2);  // 30 while waiting: nothing
    EXPECT_EQ(c.records(), 0);
    EXPECT_FALSE(LoggingActive(c.st));
    c.st.tag(1).Value = 5;
    c.scans(2);
    c.st.tag(1).Value = 60;
    c.scans(2);
    EXPECT_EQ(ReadFileBytes(c.folder / "C.CSV"),
              "LOG PERIOD,TIME,Level\r\n"
              "1,10:15:03.000, 5 \r\n"
              "2,10:15:04.000, 5 \r\n");
}

TEST(LogConditionsTagValue, TheLoggingClockRestartsWhenLoggingBegins) {
    Conditions c;
    c.tankCondition();
    c.st.switches.LoggingEnabled = Variant::integer(1);
    c.st.logRun.LogHour = 1, c.st.logRun.LogMinute = 2, c.st.logRun.LogSecond = 3;
    c.st.logRun.LogMillisecond = 400;
    c.clock.set(At(2026, 11, 16, 8, 30, 15, 250));
    EXPECT_EQ(c.stateAt(30.0f), 0);
    EXPECT_EQ(c.st.logRun.LogHour, 1);  // waiting: the clock is left alone
    EXPECT_EQ(c.stateAt(1.0f), 1);
    EXPECT_EQ(c.st.logRun.LogHour, 8);
    EXPECT_EQ(c.st.logRun.LogMinute, 30);
    EXPECT_EQ(c.st.logRun.LogSecond, 15);
    EXPECT_EQ(c.st.logRun.LogMillisecond, 0);
    EXPECT_EQ(c.st.logRun.LogDate, dateSerial(2026, 11, 16));
    // Logging on: the clock now only advances by the periods.
    AdvanceLogClock(c.st, 2500);
    c.clock.set(At(2026, 11, 16, 9, 0, 0));
    EXPECT_EQ(c.stateAt(30.0f), 1);
    EXPECT_EQ(c.st.logRun.LogMinute, 30);
    EXPECT_EQ(c.st.logRun.LogSecond, 17);
    EXPECT_EQ(c.st.logRun.LogMillisecond, 500);
}

// Mode 2

TEST(LogConditionsClock, WindowOverMidnightIsInclusive) {
    Conditions c;
    c.window(22, 0, 6, 0);
    EXPECT_EQ(c.stateAtTime(21, 59, 59), 0);
    EXPECT_EQ(c.stateAtTime(22, 0, 0), 1);
    EXPECT_EQ(c.stateAtTime(23, 59, 59, 900), 1);
    EXPECT_EQ(c.stateAtTime(0, 0, 0), 1);
    EXPECT_EQ(c.stateAtTime(6, 0, 0), 1);
    EXPECT_EQ(c.stateAtTime(6, 0, 0, 999), 1);  // still second 06:00:00
    EXPECT_EQ(c.stateAtTime(6, 0, 1), 0);
    EXPECT_EQ(c.stateAtTime(12, 0, 0), 0);
}

TEST(LogConditionsClock, WindowWithinTheDayIsInclusive) {
    Conditions c;
    c.window(8, 0, 17, 0);
    EXPECT_EQ(c.stateAtTime(7, 59, 59), 0);
    EXPECT_EQ(c.stateAtTime(8, 0, 0), 1);
    EXPECT_EQ(c.stateAtTime(17, 0, 0), 1);
    EXPECT_EQ(c.stateAtTime(17, 0, 1), 0);
    EXPECT_EQ(c.stateAtTime(23, 0, 0), 0);
}

TEST(LogConditionsClock, EqualStartAndStopLogAllDay) {
    Conditions c;
    c.window(8, 0, 8, 0);
    for (int h = 0; h < 24; ++h) EXPECT_EQ(c.stateAtTime(h, 30, 0), 1) << h;
    EXPECT_EQ(c.stateAtTime(23, 59, 59), 1);
    c.window(0, 0, 0, 0);
    EXPECT_EQ(c.stateAtTime(13, 0, 0), 1);
}

TEST(LogConditionsClock, RecordsFromTwentyTwoThroughMidnightToSix) {
    Conditions c;
    c.st.periods = {1, kUnitSeconds, 30, kUnitSeconds, 0};
    c.st.logging.LogDateColumn = Variant::integer(1);
    c.window(22, 0, 6, 0);
    c.clock.set(At(2026, 11, 15, 21, 59, 0));
    c.on();
    c.scans(9 * 3600);  // until 06:59:00 the next morning
    const std::string text = ReadFileBytes(c.folder / "C.CSV");
    EXPECT_EQ(c.records(), 2 * 60 * 8 + 1);  // 22:00:00 .. 06:00:00 every 30 s
    EXPECT_EQ(text.find("LOG PERIOD,TIME,DATE,Level\r\n30,22:00:00.000,15/11/26, 0 "
                        "\r\n60,22:00:30.000,15/11/26, 0 \r\n"),
              0u);
    EXPECT_NE(text.find(",23:59:30.000,15/11/26, 0 \r\n"), std::string::npos);
    EXPECT_NE(text.find(",00:00:00.000,16/11/26, 0 \r\n"), std::string::npos);
    EXPECT_EQ(text.substr(text.size() - 33), "28830,06:00:00.000,16/11/26, 0 \r\n");  // 961 x 30 s
}

TEST(LogConditionsClock, TheLoggingClockRestartsOnlyWhenTheWindowOpens) {
    Conditions c;
    c.window(8, 0, 17, 0);
    c.st.switches.LoggingEnabled = Variant::integer(1);
    EXPECT_EQ(c.stateAtTime(7, 0, 0), 0);
    EXPECT_EQ(c.st.logRun.LogHour, 0);
    EXPECT_EQ(c.stateAtTime(8, 0, 5, 700), 1);
    EXPECT_EQ(c.st.logRun.LogHour, 8);
    EXPECT_EQ(c.st.logRun.LogSecond, 5);
    EXPECT_EQ(c.st.logRun.LogMillisecond, 0);
    AdvanceLogClock(c.st, 1250);
    EXPECT_EQ(c.stateAtTime(9, 0, 0), 1);
    EXPECT_EQ(c.st.logRun.LogHour, 8);
    EXPECT_EQ(c.st.logRun.LogSecond, 6);
    EXPECT_EQ(c.st.logRun.LogMillisecond, 250);
}

}  // namespace kova
