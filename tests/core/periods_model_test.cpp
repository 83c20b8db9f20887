#include "core/periods_model.h"

#include <gtest/gtest.h>

#include "core/fault.h"
#include "support/test_support.h"

namespace kova {

namespace {
struct Rig {
    Station st;
    test::ScriptedPrompter prompt;
    Rig() { st.platform.prompter = &prompt; }
};
}  // namespace

TEST(PeriodsModel, OpensWithTheStoredPeriods) {
    Rig r;
    r.st.periods = {250, kUnitMs, 5, kUnitSeconds, -1};
    const PeriodsForm f = OpenPeriodsForm(r.st);
    EXPECT_EQ(f.TxtIOPeriod, "250");
    EXPECT_FALSE(f.OptIOSecs);
    EXPECT_EQ(f.TxtLogPeriod, "5");
    EXPECT_TRUE(f.OptLogSecs);
    EXPECT_TRUE(f.OptLogTrend);
}

TEST(PeriodsModel, FortyNineMillisecondsIsRefusedAndTheBoxReset) {
    Rig r;
    PeriodsForm f{"49", false, "1", true, false};
    EXPECT_FALSE(ExitPeriodsForm(r.st, f));
    ASSERT_EQ(r.prompt.messages.size(), 1u);
    EXPECT_EQ(r.prompt.messages[0],
              (test::Shown{"Time Between I/O Readings Cannot Be Less than 50mSecs", "Error"}));
    EXPECT_EQ(f.TxtIOPeriod, "50");
    EXPECT_EQ(r.st.periods.IOPeriod, 49);           // stored before the check, deliberately kept
    EXPECT_EQ(r.st.periods.IOUnits, kUnitSeconds);  // units not reached
}

TEST(PeriodsModel, LoggingBelowFiftyMillisecondsIsRefused) {
    Rig r;
    PeriodsForm f{"50", false, "10", false, false};
    EXPECT_FALSE(ExitPeriodsForm(r.st, f));
    EXPECT_EQ(r.prompt.messages.at(0).text,
              "Time Between Logging Readings Cannot Be Less than 50mSecs");
    EXPECT_EQ(r.prompt.messages.at(0).title, "Error");
    EXPECT_EQ(f.TxtLogPeriod, "50");
    EXPECT_EQ(r.st.periods.IOUnits, kUnitMs);
    EXPECT_EQ(r.st.periods.LogPeriod, 10);
}

TEST(PeriodsModel, IOPeriodLongerThanLoggingIsRefused) {
    Rig r;
    PeriodsForm f{"2", true, "1000", false, false};
    EXPECT_FALSE(ExitPeriodsForm(r.st, f));
    EXPECT_EQ(r.prompt.messages.at(0),
              (test::Shown{"Period for I/O Readings must be less than or equal to Logging Period",
                           "ERROR"}));
    EXPECT_EQ(r.st.periods.IOPeriod, 2);  // periods and units stay as stored
    EXPECT_EQ(r.st.periods.IOUnits, kUnitSeconds);
    EXPECT_EQ(r.st.periods.LogPeriod, 1000);
    EXPECT_EQ(r.st.periods.LogUnits, kUnitMs);
}

TEST(PeriodsModel, EqualPeriodsAreAccepted) {
    Rig r;
    PeriodsForm f{"500", false, "500", false, true};
    EXPECT_TRUE(ExitPeriodsForm(r.st, f));
    EXPECT_TRUE(r.prompt.messages.empty());
    EXPECT_EQ(r.st.periods, (Periods{500, kUnitMs, 500, kUnitMs, -1}));
}

TEST(PeriodsModel, ZeroSecondsHasNoLowerBound) {
    Rig r;
    PeriodsForm f{"0", true, "1", true, false};
    EXPECT_TRUE(ExitPeriodsForm(r.st, f));
    EXPECT_EQ(r.st.periods.IOPeriod, 0);
    EXPECT_EQ(r.st.periods.TrendAtLogPeriod, 0);
}

TEST(PeriodsModel, NonNumericTextFailsTheConversionAndStoresNothing) {
    Rig r;
    PeriodsForm f{"abc", false, "1", true, false};
    EXPECT_THROW(ExitPeriodsForm(r.st, f), Fault);  // reaches the general error report
    EXPECT_EQ(r.st.periods.IOPeriod, 1);
    PeriodsForm big{"99999", true, "1", true, false};
    EXPECT_THROW(ExitPeriodsForm(r.st, big), Fault);  // the 16-bit conversion overflows
}

TEST(PeriodsModel, ARefusalNamesThePeriodAtFault) {
    Rig r;
    PeriodsForm f = OpenPeriodsForm(r.st);
    f.OptIOSecs = false;
    f.TxtIOPeriod = "49";
    EXPECT_FALSE(ExitPeriodsForm(r.st, f));
    EXPECT_EQ(f.FailedBox, "TxtIOPeriod");
    f.TxtIOPeriod = "100";
    f.OptLogSecs = false;
    f.TxtLogPeriod = "10";
    EXPECT_FALSE(ExitPeriodsForm(r.st, f));
    EXPECT_EQ(f.FailedBox, "TxtLogPeriod");
    f.OptIOSecs = true;
    f.TxtIOPeriod = "2";
    f.TxtLogPeriod = "1000";
    EXPECT_FALSE(ExitPeriodsForm(r.st, f));  // 2 s of I/O against 1 s of logging
    EXPECT_EQ(f.FailedBox, "TxtIOPeriod");
    f.TxtIOPeriod = "1";
    EXPECT_TRUE(ExitPeriodsForm(r.st, f));
    EXPECT_EQ(f.FailedBox, "");
}

}  // namespace kova
