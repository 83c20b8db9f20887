#include "logging/log_switch.h"

#include <gtest/gtest.h>

#include "log_rig.h"
#include "logging/log_conditions.h"
#include "logging/log_writer.h"

namespace kova {

TEST(CmdLog, WithoutAFileNameShowsTheMessageAndLeavesLoggingOff) {
    test::LogRig r;
    EXPECT_FALSE(ToggleLogging(r.st));
    ASSERT_EQ(r.messages().size(), 1u);
    EXPECT_EQ(r.messages()[0], (test::Shown{"Error No Log File Name Has Been Entered", "KOVA"}));
    EXPECT_FALSE(r.st.switches.LoggingEnabled.isOn());
    EXPECT_FALSE(LogFileIsOpen(r.st));
}

TEST(CmdLog, SwitchesOnWithOneAndOffWithZero) {
    test::LogRig r;
    r.st.logging.LogFileName = r.path("L.CSV");
    EXPECT_TRUE(ToggleLogging(r.st));
    EXPECT_EQ(r.st.switches.LoggingEnabled, Variant::integer(1));
    EXPECT_TRUE(LogFileIsOpen(r.st));
    EXPECT_FALSE(ToggleLogging(r.st));
    EXPECT_EQ(r.st.switches.LoggingEnabled, Variant::integer(0));
    EXPECT_FALSE(LogFileIsOpen(r.st));
    EXPECT_TRUE(r.messages().empty());
}

TEST(CmdLog, StartingSetsTheLoggingClockAndWaitsForTheFirstCheck) {
    test::LogRig r;
    r.st.logging.LogFileName = r.path("L.CSV");
    r.st.logRun.SampleNumber = 17;
    r.st.logRun.LogState = 1;
    r.clock.set(test::At(2026, 11, 15, 14, 7, 9, 999));
    ASSERT_TRUE(ToggleLogging(r.st));
    EXPECT_EQ(r.st.logRun.LogHour, 14);
    EXPECT_EQ(r.st.logRun.LogMinute, 7);
    EXPECT_EQ(r.st.logRun.LogSecond, 9);
    EXPECT_EQ(r.st.logRun.LogMillisecond, 0);
    EXPECT_EQ(r.st.logRun.LogDate, dateSerial(2026, 11, 15));
    EXPECT_EQ(r.st.logRun.SampleNumber, 0);
    EXPECT_EQ(r.st.logRun.LogState, 0);
    EXPECT_FALSE(LoggingActive(r.st));
}

TEST(CmdLog, LoggingOnWithAnEmptyNameCanStillBeSwitchedOff) {
    test::LogRig r;
    r.st.switches.LoggingEnabled = Variant::boolean(true);
    EXPECT_FALSE(ToggleLogging(r.st));
    EXPECT_FALSE(r.st.switches.LoggingEnabled.isOn());
    EXPECT_TRUE(r.messages().empty());
}

}  // namespace kova
