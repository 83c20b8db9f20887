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

namespace {
class ProblemPort final : public PortIo {
  public:
    std::uint8_t read(std::uint16_t) override { return 0; }
    void write(std::uint16_t, std::uint8_t) override {}
    std::uint16_t lptBase(int) override { return 0; }
    std::string problem() const override { return why; }
    std::string why;
};
}  // namespace

TEST(MainWindowModel, APortProblemIsToldOnceForAModuleOnThePort) {
    Station st;
    ProblemPort port;
    port.why = "LPT 1: /dev/parport0 does not exist";
    st.platform.port = &port;
    std::string told;
    BuildIOList(st.profile, kDaqQrt105);
    // What the module reads on such a port follows the reason.
    EXPECT_EQ(PortProblemToTell(st, told),
              "LPT 1: /dev/parport0 does not exist The QRT105 will read 4095 on every analog "
              "input and 7 on its digital inputs.");
    EXPECT_EQ(PortProblemToTell(st, told), "");
    port.why = "LPT 2: permission denied";
    BuildIOList(st.profile, kDaqFieldRecorder);
    EXPECT_EQ(PortProblemToTell(st, told),
              "LPT 2: permission denied The FIELD RECORDER will read -1 on its analog input.");
}

TEST(MainWindowModel, TheTestModuleNeedsNoPort) {
    Station st;
    ProblemPort port;
    port.why = "no port";
    st.platform.port = &port;
    std::string told;
    EXPECT_EQ(PortProblemToTell(st, told), "");
    EXPECT_EQ(told, "");
}

TEST(MainWindowModel, AWorkingPortHasNothingToTell) {
    Station st;
    std::string told;
    BuildIOList(st.profile, kDaqQrtu);
    EXPECT_EQ(PortProblemToTell(st, told), "");
}

TEST(MainWindowModel, TitleNamesTheProgramAndTheSetupFile) {
    Station st;
    EXPECT_EQ(MainWindowTitle(st), "KOVA");
    st.setupFileName = "/home/op/plant/Default.Suf";
    EXPECT_EQ(MainWindowTitle(st), "KOVA - Default.Suf");
    st.setupFileName = "C:\\KOVA\\BOILER.SUF";
    EXPECT_EQ(MainWindowTitle(st), "KOVA - BOILER.SUF");
}

TEST(MainWindowModel, TitleEndsWithTheWorkingFolder) {
    Station st;
    st.setupFileName = "/kova-test/plant/BOILER.SUF";
    st.workingFolder = "/kova-test/station/";
    EXPECT_EQ(MainWindowTitle(st), "KOVA - BOILER.SUF - /kova-test/station");
}

}  // namespace kova
