#include "core/main_window_model.h"

#include <gtest/gtest.h>

#include "support/test_support.h"

namespace kova {

namespace {
struct Rig {
    Station st;
    test::ScriptedPrompter prompt;
    Rig() { st.platform.prompter = &prompt; }
};
}  // namespace

TEST(MainWindowModel, BoxesStartUncheckedWithEverySwitchOff) {
    Station st;
    SwitchIndicators boxes{true, true, true, true};
    MirrorSwitches(st.switches, boxes);
    EXPECT_EQ(boxes, (SwitchIndicators{false, false, false, false}));
}

TEST(MainWindowModel, BoxesFollowTheSwitches) {
    Station st;
    st.switches.PollEnabled = true;
    st.switches.LoggingEnabled = Variant::integer(1);
    st.switches.AlarmsEnabled = 1;
    st.switches.ControlsEnabled = 1;
    SwitchIndicators boxes;
    MirrorSwitches(st.switches, boxes);
    EXPECT_EQ(boxes, (SwitchIndicators{true, true, true, true}));
}

TEST(MainWindowModel, AnyNonZeroLoggingValueChecksTheLogBox) {
    Station st;
    st.switches.LoggingEnabled = Variant::boolean(true);  // -1 from an older file
    SwitchIndicators boxes;
    MirrorSwitches(st.switches, boxes);
    EXPECT_TRUE(boxes.OptLog);
}

TEST(MainWindowModel, AlarmAndControlValuesOtherThanZeroOrOneLeaveTheirBoxes) {
    Station st;
    st.switches.AlarmsEnabled = 2;
    st.switches.ControlsEnabled = -1;
    SwitchIndicators checked{false, false, true, true};
    MirrorSwitches(st.switches, checked);
    EXPECT_TRUE(checked.OptAlarm);
    EXPECT_TRUE(checked.OptControl);
    SwitchIndicators unchecked;
    MirrorSwitches(st.switches, unchecked);
    EXPECT_FALSE(unchecked.OptAlarm);
    EXPECT_FALSE(unchecked.OptControl);
}

TEST(MainWindowModel, PollButtonFlipsPolling) {
    Station st;
    TogglePoll(st);
    EXPECT_TRUE(st.switches.PollEnabled);
    TogglePoll(st);
    EXPECT_FALSE(st.switches.PollEnabled);
}

TEST(MainWindowModel, AlarmsButtonGoesFromZeroToOneAndAnythingElseToZero) {
    Station st;
    ToggleAlarms(st);
    EXPECT_EQ(st.switches.AlarmsEnabled, 1);
    ToggleAlarms(st);
    EXPECT_EQ(st.switches.AlarmsEnabled, 0);
    st.switches.AlarmsEnabled = 7;
    ToggleAlarms(st);
    EXPECT_EQ(st.switches.AlarmsEnabled, 0);
}

TEST(MainWindowModel, ControlButtonGoesFromZeroToOneAndAnythingElseToZero) {
    Station st;
    ToggleControls(st);
    EXPECT_EQ(st.switches.ControlsEnabled, 1);
    ToggleControls(st);
    EXPECT_EQ(st.switches.ControlsEnabled, 0);
    st.switches.ControlsEnabled = -1;
    ToggleControls(st);
    EXPECT_EQ(st.switches.ControlsEnabled, 0);
}

TEST(MainWindowModel, CalibrationOpensForAModuleWithAnalogInputs) {
    Rig r;
    BuildIOList(r.st.profile, kDaqQrt105);
    EXPECT_TRUE(CalibrationMayOpen(r.st));
    EXPECT_TRUE(r.prompt.messages.empty());
}

TEST(MainWindowModel, CalibrationOpensForTheTestModuleWhichHasEightAnalogInputs) {
    Rig r;
    BuildIOList(r.st.profile, kDaqTest);
    EXPECT_TRUE(CalibrationMayOpen(r.st));
}

TEST(MainWindowModel, CalibrationOfAModuleWithoutAnalogInputsIsRefused) {
    Rig r;
    BuildIOList(r.st.profile, kDaqQrt115);
    EXPECT_FALSE(CalibrationMayOpen(r.st));
    ASSERT_EQ(r.prompt.messages.size(), 1u);
    EXPECT_EQ(r.prompt.messages[0],
              (test::Shown{"The QRT115 Module Has No Analog Inputs", "ERROR"}));
}

TEST(MainWindowModel, TitleNamesTheProgramAndTheSetupFile) {
    Station st;
    EXPECT_EQ(MainWindowTitle(st), "KOVA");
    st.setupFileName = "/home/op/plant/Default.Suf";
    EXPECT_EQ(MainWindowTitle(st), "KOVA - Default.Suf");
    st.setupFileName = "C:\\KOVA\\BOILER.SUF";
    EXPECT_EQ(MainWindowTitle(st), "KOVA - BOILER.SUF");
}

}  // namespace kova
