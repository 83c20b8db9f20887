#include "logging/start_log_model.h"

#include <gtest/gtest.h>

#include <functional>

#include "log_rig.h"
#include "logging/log_writer.h"

namespace kova {

using test::Shown;

namespace {
const char* kRange = "Sample Number must be between 0 and 32000\nEnter 0 for continuous sampling";
const char* kStartTime = "Start Time must be in 24 Hour Time in the format HH:MM";
const char* kStopTime = "Stop Time must be in 24 Hour Time in the format HH:MM";

struct StartLog : test::LogRig {
    StartLogForm form;
    StartLog() {
        tag(1, "TANK", "Tank Level", true);
        tag(2, "PUMP", "Pump", false);
        form.OptLogMode = 0;
        form.TxtSampleNo = "0";
    }
    bool exit() { return ExitStartLogForm(st, form); }
    Shown only() const {
        EXPECT_EQ(messages().size(), 1u);
        return messages().empty() ? Shown{} : messages().back();
    }
};
}  // namespace

// Sample count

TEST(StartLogSamples, ZeroIsAcceptedAndMeansContinuous) {
    StartLog s;
    EXPECT_TRUE(s.exit());
    EXPECT_TRUE(s.messages().empty());
    EXPECT_EQ(s.st.logging.StopSampleCount.asNumber(), 0);
    EXPECT_EQ(s.st.logging.LogMode, 0);
}

TEST(StartLogSamples, ThirtyTwoThousandIsAccepted) {
    StartLog s;
    s.form.TxtSampleNo = "32000";
    EXPECT_TRUE(s.exit());
    EXPECT_EQ(s.st.logging.StopSampleCount.asNumber(), 32000);
}

TEST(StartLogSamples, MinusOneIsRefusedWithTheTwoLineMessage) {
    StartLog s;
    s.form.TxtSampleNo = "-1";
    EXPECT_FALSE(s.exit());
    EXPECT_EQ(s.only(), (Shown{kRange, "ERROR"}));
    EXPECT_EQ(s.st.logging.StopSampleCount.asNumber(), -1);  // stored before the check
}

TEST(StartLogSamples, ThirtyTwoThousandAndOneIsRefused) {
    StartLog s;
    s.form.TxtSampleNo = "32001";
    EXPECT_FALSE(s.exit());
    EXPECT_EQ(s.only(), (Shown{kRange, "ERROR"}));
}

TEST(StartLogSamples, TextThatIsNoNumberIsRefused) {
    StartLog s;
    s.form.TxtSampleNo = "ten";
    EXPECT_FALSE(s.exit());
    EXPECT_EQ(s.only(), (Shown{kRange, "ERROR"}));
}

TEST(StartLogSamples, EmptyInSampleModeAsksForTheNumber) {
    StartLog s;
    s.form.TxtSampleNo = "";
    EXPECT_FALSE(s.exit());
    EXPECT_EQ(s.only(), (Shown{"Enter Number of Samples", "ERROR"}));
}

TEST(StartLogSamples, EmptyInOtherModesIsLeftAsItWas) {
    StartLog s;
    s.st.logging.StopSampleCount = Variant::integer(25);
    s.form.TxtSampleNo = "";
    s.form.OptLogMode = 2;
    EXPECT_TRUE(s.exit());
    EXPECT_EQ(s.st.logging.StopSampleCount, Variant::integer(25));
    EXPECT_EQ(s.st.logging.LogMode, 2);
}

// Tag condition

TEST(StartLogTag, EmptyNameInTagModeNeedsAnEntry) {
    StartLog s;
    s.form.OptLogMode = 1;
    EXPECT_FALSE(s.exit());
    EXPECT_EQ(s.only(), (Shown{"Tag Name must have an Entry", "KOVA"}));
}

TEST(StartLogTag, UnknownNameIsNotFound) {
    StartLog s;
    s.form.OptLogMode = 1;
    s.form.CboTag = "VALVE";
    s.form.TxtStartValue = "1";
    s.form.TxtStopValue = "2";
    EXPECT_FALSE(s.exit());
    EXPECT_EQ(s.only(), (Shown{"Tag Name Could not be found", "Error"}));
}

TEST(StartLogTag, SystemVariableIsNotAConditionTag) {
    StartLog s;
    s.form.OptLogMode = 1;
    s.form.CboTag = "TS";
    EXPECT_FALSE(s.exit());
    EXPECT_EQ(s.only(), (Shown{"Tag Name Could not be found", "Error"}));
}

TEST(StartLogTag, StartingValueMustBeANumber) {
    StartLog s;
    s.form.OptLogMode = 1;
    s.form.CboTag = "TANK";
    s.form.TxtStartValue = "low";
    s.form.TxtStopValue = "50";
    EXPECT_FALSE(s.exit());
    EXPECT_EQ(s.only(), (Shown{"Starting Value Must Be a Number", "Error"}));
}

TEST(StartLogTag, StoppingValueMustBeANumber) {
    StartLog s;
    s.form.OptLogMode = 1;
    s.form.CboTag = "TANK";
    s.form.TxtStartValue = "10";
    s.form.TxtStopValue = "";
    EXPECT_FALSE(s.exit());
    EXPECT_EQ(s.only(), (Shown{"Stopping Value Must Be a Value", "Error"}));
    s.prompt.inner.messages.clear();
    s.form.TxtStopValue = "1E+40";  // beyond a single-precision value
    EXPECT_FALSE(s.exit());
    EXPECT_EQ(s.only(), (Shown{"Stopping Value Must Be a Value", "Error"}));
}

TEST(StartLogTag, APassingConditionIsStored) {
    StartLog s;
    s.form.OptLogMode = 1;
    s.form.CboTag = "pump";  // taken in upper case
    s.form.TxtStartValue = "9.5";
    s.form.OptStartAbove = false;
    s.form.TxtStopValue = " 50.25 ";
    s.form.OptStopAbove = true;
    s.form.TxtSampleNo = "";
    EXPECT_TRUE(s.exit());
    EXPECT_TRUE(s.messages().empty());
    const LogSettings& l = s.st.logging;
    EXPECT_EQ(l.LogMode, 1);
    EXPECT_EQ(l.ConditionTag, 2);
    EXPECT_EQ(l.StartValue.asNumber(), 9.5);
    EXPECT_EQ(l.StartAbove, 0);
    EXPECT_EQ(l.StopValue, 50.25f);
    EXPECT_EQ(l.StopAbove, -1);
}

TEST(StartLogTag, ANameInAnotherModeIsCheckedToo) {
    StartLog s;
    s.form.OptLogMode = 0;
    s.form.CboTag = "NOSUCH";
    EXPECT_FALSE(s.exit());
    EXPECT_EQ(s.only(), (Shown{"Tag Name Could not be found", "Error"}));
}

TEST(StartLogTag, SampleCountFailureComesFirst) {
    StartLog s;
    s.form.OptLogMode = 1;
    s.form.TxtSampleNo = "40000";
    EXPECT_FALSE(s.exit());
    EXPECT_EQ(s.only(), (Shown{kRange, "ERROR"}));
    EXPECT_EQ(s.st.logging.LogMode, 1);  // step 1 already stored
}

// Clock times

TEST(StartLogTimes, RefusedStartTimes) {
    for (const char* bad :
         {"24:00", "7:60", "0730", ":30", "7:", "ab:cd", "-1:00", "7.5:00", "7:30:00"}) {
        StartLog s;
        s.form.TxtStartTime = bad;
        EXPECT_FALSE(s.exit()) << bad;
        EXPECT_EQ(s.only(), (Shown{kStartTime, "ERROR"})) << bad;
    }
}

TEST(StartLogTimes, RefusedStopTimes) {
    for (const char* bad : {"24:00", "7:60", "0730"}) {
        StartLog s;
        s.form.TxtStartTime = "6:00";
        s.form.TxtStopTime = bad;
        EXPECT_FALSE(s.exit()) << bad;
        EXPECT_EQ(s.only(), (Shown{kStopTime, "ERROR"})) << bad;
        EXPECT_EQ(s.st.logging.StartTimeSecs.asNumber(), 6 * 3600);  // kept, not rolled back
    }
}

TEST(StartLogTimes, MidnightAndOneMinuteToAreAccepted) {
    StartLog s;
    s.form.OptLogMode = 2;
    s.form.TxtStartTime = "0:00";
    s.form.TxtStopTime = "23:59";
    EXPECT_TRUE(s.exit());
    EXPECT_TRUE(s.messages().empty());
    const LogSettings& l = s.st.logging;
    EXPECT_EQ(l.StartHour.asNumber(), 0);
    EXPECT_EQ(l.StartMinute.asNumber(), 0);
    EXPECT_EQ(l.StartTimeSecs.asNumber(), 0);
    EXPECT_EQ(l.StopHour.asNumber(), 23);
    EXPECT_EQ(l.StopMinute.asNumber(), 59);
    EXPECT_EQ(l.StopTimeSecs, 23 * 3600 + 59 * 60);
}

TEST(StartLogTimes, TwoDigitHoursAndMinutes) {
    StartLog s;
    s.form.TxtStartTime = "22:00";
    s.form.TxtStopTime = "06:05";
    EXPECT_TRUE(s.exit());
    EXPECT_EQ(s.st.logging.StartTimeSecs.asNumber(), 22 * 3600);
    EXPECT_EQ(s.st.logging.StopTimeSecs, 6 * 3600 + 5 * 60);
}

TEST(StartLogTimes, EmptyBoxesKeepTheStoredTimes) {
    StartLog s;
    s.st.logging.StopTimeSecs = 1234;
    s.form.TxtStartTime = "";
    s.form.TxtStopTime = "";
    EXPECT_TRUE(s.exit());
    EXPECT_EQ(s.st.logging.StopTimeSecs, 1234);
}

// The logging box

TEST(StartLogSwitch, NoFileNameClearsTheBoxAndLeavesLoggingOff) {
    StartLog s;
    s.form.ChkLogging = true;
    EXPECT_TRUE(s.exit());
    EXPECT_EQ(s.only(), (Shown{"Error No Log File Name Has Been Entered", "KOVA"}));
    EXPECT_FALSE(s.form.ChkLogging);
    EXPECT_FALSE(s.st.switches.LoggingEnabled.isOn());
    EXPECT_FALSE(LogFileIsOpen(s.st));
}

TEST(StartLogSwitch, TickedBoxStartsLogging) {
    StartLog s;
    s.st.logging.LogFileName = s.path("S.CSV");
    s.st.logging.OverwriteFile = 1;
    s.form.ChkLogging = true;
    EXPECT_TRUE(s.exit());
    EXPECT_TRUE(s.st.switches.LoggingEnabled.isOn());
    EXPECT_TRUE(LogFileIsOpen(s.st));
    EXPECT_EQ(test::ReadFileBytes(s.folder / "S.CSV"), "LOG PERIOD,Tank Level\r\n");
}

TEST(StartLogSwitch, ClearedBoxStopsLogging) {
    StartLog s;
    s.st.logging.LogFileName = s.path("S.CSV");
    s.form.ChkLogging = true;
    ASSERT_TRUE(s.exit());
    s.form.ChkLogging = false;
    EXPECT_TRUE(s.exit());
    EXPECT_FALSE(s.st.switches.LoggingEnabled.isOn());
    EXPECT_FALSE(LogFileIsOpen(s.st));
}

TEST(StartLogSwitch, FailedCheckLeavesLoggingAsItWas) {
    StartLog s;
    s.st.logging.LogFileName = s.path("S.CSV");
    s.form.ChkLogging = true;
    s.form.TxtStopTime = "25:00";
    EXPECT_FALSE(s.exit());
    EXPECT_FALSE(s.st.switches.LoggingEnabled.isOn());
}

// Opening

TEST(StartLogForm, OpensWithTheStoredConditions) {
    StartLog s;
    LogSettings& l = s.st.logging;
    l.LogMode = 1;
    l.StopSampleCount = Variant::integer(120);
    l.ConditionTag = 2;
    l.StartValue = Variant::real(9.5);
    l.StartAbove = -1;
    l.StopValue = 50.25f;
    l.StopAbove = 0;
    l.StartHour = Variant::integer(7), l.StartMinute = Variant::integer(5);
    l.StopHour = Variant::integer(22), l.StopMinute = Variant::integer(30);
    s.st.switches.LoggingEnabled = Variant::integer(1);
    const StartLogForm f = OpenStartLogForm(s.st);
    EXPECT_EQ(f.OptLogMode, 1);
    EXPECT_EQ(f.TxtSampleNo, "120");
    EXPECT_EQ(f.CboTag, "PUMP");
    EXPECT_EQ(f.TxtStartValue, "9.5");
    EXPECT_TRUE(f.OptStartAbove);
    EXPECT_EQ(f.TxtStopValue, "50.25");
    EXPECT_FALSE(f.OptStopAbove);
    EXPECT_EQ(f.TxtStartTime, "7:05");
    EXPECT_EQ(f.TxtStopTime, "22:30");
    EXPECT_TRUE(f.ChkLogging);
    EXPECT_EQ(ConditionTagChoices(s.st), (std::vector<std::string>{"TANK", "PUMP"}));
}

TEST(StartLogForm, OpenedFormExitsUnchanged) {
    StartLog s;
    s.st.logging.StopTimeSecs = 6 * 3600;
    s.st.logging.StopHour = Variant::integer(6);
    StartLogForm f = OpenStartLogForm(s.st);
    EXPECT_TRUE(ExitStartLogForm(s.st, f));
    EXPECT_TRUE(s.messages().empty());
    EXPECT_EQ(s.st.logging.StopTimeSecs, 6 * 3600);
}

TEST(StartLogFollow, ARefusalNamesTheBoxAtFault) {
    const std::pair<std::function<void(StartLog&)>, const char*> cases[] = {
        {[](StartLog& s) { s.form.TxtSampleNo = "-1"; }, "TxtSampleNo"},
        {[](StartLog& s) { s.form.CboTag = "NOPE"; }, "CboTag"},
        {[](StartLog& s) {
             s.form.CboTag = "TANK";
             s.form.TxtStartValue = "x";
         },
         "TxtStartValue"},
        {[](StartLog& s) {
             s.form.CboTag = "TANK";
             s.form.TxtStartValue = "1";
             s.form.TxtStopValue = "y";
         },
         "TxtStopValue"},
        {[](StartLog& s) { s.form.TxtStartTime = "24:00"; }, "TxtStartTime"},
        {[](StartLog& s) { s.form.TxtStopTime = "7:60"; }, "TxtStopTime"},
    };
    for (const auto& [type, box] : cases) {
        StartLog s;
        type(s);
        EXPECT_FALSE(s.exit()) << box;
        EXPECT_EQ(s.form.FailedBox, box);
    }
    StartLog s;
    EXPECT_TRUE(s.exit());
    EXPECT_EQ(s.form.FailedBox, "");
}

TEST(StartLogFollow, AConditionTagBoxNotTypedInFollowsARename) {
    StartLog s;
    s.st.logging.ConditionTag = 1;
    StartLogForm shown = OpenStartLogForm(s.st);
    StartLogForm typed = shown;
    typed.TxtStartValue = "5";
    s.st.tags[1].TagName = "VESSEL";
    StartLogTablesChanged(s.st, typed, shown, TableChange::Tags);
    EXPECT_EQ(typed.CboTag, "VESSEL");
    EXPECT_EQ(typed.TxtStartValue, "5");
    typed.CboTag = "PU";  // typing
    s.st.tags[1].TagName = "TANK";
    StartLogTablesChanged(s.st, typed, shown, TableChange::Tags);
    EXPECT_EQ(typed.CboTag, "PU");
    StartLogTablesChanged(s.st, typed, shown, TableChange::Configuration);
    EXPECT_EQ(typed.CboTag, "TANK");
    EXPECT_EQ(typed.TxtStartValue, shown.TxtStartValue);
}

}  // namespace kova
