#include "daq/driver_dispatch.h"

#include <gtest/gtest.h>

#include "platform/recording_port_io.h"
#include "platform/simulated_bus.h"
#include "tags/tag_table.h"

namespace kova {

namespace {
struct Rig {
    Station st;
    SimulatedBus bus;
    RecordingPortIo rec{bus};
    Rig() { st.platform.port = &rec; }
};
}  // namespace

TEST(DriverDispatch, WithIODisabledEveryTypeReadsZeroAndTouchesNoPort) {
    Rig r;
    r.st.switches.PollEnabled = false;
    for (int type = 0; type < kDaqTypeCount; ++type) {
        BuildIOList(r.st.profile, type);
        for (std::int16_t ch = 1; ch <= 8; ++ch) {
            std::int16_t c = ch;
            EXPECT_EQ(ReadAnalogInput(r.st, 1, c), 0) << type;
        }
        EXPECT_EQ(ReadDigitalInputs(r.st), 0) << type;
        WriteAnalogOutputs(r.st);
        WriteDigitalOutputs(r.st, 5);
    }
    EXPECT_TRUE(r.rec.log().empty());
    EXPECT_EQ(r.st.daq.Test, TestModuleState{});  // the simulated module was not advanced
}

TEST(DriverDispatch, TestModuleAnswersWhenPolling) {
    Rig r;
    r.st.switches.PollEnabled = true;
    std::int16_t c = 2;
    EXPECT_EQ(ReadAnalogInput(r.st, 1, c), 400);
    EXPECT_EQ(ReadDigitalInputs(r.st), 14);
    EXPECT_TRUE(r.rec.log().empty());  // TEST never touches a port
}

TEST(DriverDispatch, ModulesWithoutDigitalInputsGiveOne) {
    Rig r;
    r.st.switches.PollEnabled = true;
    BuildIOList(r.st.profile, kDaqQrt110);
    EXPECT_EQ(ReadDigitalInputs(r.st), 1);
    BuildIOList(r.st.profile, kDaqFieldRecorder);
    EXPECT_EQ(ReadDigitalInputs(r.st), 1);
}

TEST(SelectPort, LptNumbersGiveTheStandardBases) {
    Rig r;
    SelectPort(r.st, 2, 0);
    EXPECT_EQ(r.st.daq.Port.DataPort, 0x278);
    EXPECT_EQ(r.st.daq.Port.StatusPort, 0x279);
    EXPECT_EQ(r.st.daq.Port.ControlPort, 0x27A);
    EXPECT_EQ(r.st.daq.Port.ControlShadow, 0x0A);
    EXPECT_EQ(r.st.daq.Port.PortError, 0);
    ASSERT_EQ(r.rec.log().size(), 1u);
    EXPECT_EQ(r.rec.log()[0], (PortAccess{PortAccess::Write, 0x27A, 0x0A}));
}

TEST(SelectPort, Lpt3WithBaseZeroKeepsTheOldBase) {
    Rig r;
    SelectPort(r.st, 1, 0);
    r.rec.clear();
    SelectPort(r.st, 3, 0);
    EXPECT_EQ(r.st.daq.Port.PortError, 1);
    EXPECT_EQ(r.st.daq.Port.DataPort, 0x378);
    EXPECT_TRUE(r.rec.log().empty());
}

TEST(SelectPort, ExplicitBaseIgnoresTheLptNumber) {
    Rig r;
    r.st.daq.Port.DataShadow = 9;
    SelectPort(r.st, 1, 0x3BC);
    EXPECT_EQ(r.st.daq.Port.DataPort, 0x3BC);
    EXPECT_EQ(r.st.daq.Port.StatusPort, 0x3BD);
    EXPECT_EQ(r.st.daq.Port.ControlPort, 0x3BE);
    EXPECT_EQ(r.st.daq.Port.DataShadow, 0);
    EXPECT_EQ(r.st.daq.Port.PortError, 0);
}

namespace {
void setTag(Station& st, int n, const std::string& ioName) {
    Tag& t = st.tags[n];
    t.TagName = "T" + std::to_string(n);
    BindIOName(t, ioName);
    t.Address = 1;
}
}  // namespace

TEST(ModuleSummary, DigitalBoundsWithoutAnalogInputsEachOverwrite) {
    Station st;
    setTag(st, 1, "DI-2");
    setTag(st, 2, "DI-5");
    RebuildModuleSummary(st);
    EXPECT_EQ(st.daq.Summary.InUse, -1);
    EXPECT_EQ(st.daq.Summary.LowestDigitalInput, 5);
    EXPECT_EQ(st.daq.Summary.HighestDigitalInput, 5);
    EXPECT_EQ(st.daq.Summary.LowestAnalogInput, 30000);
    EXPECT_EQ(st.daq.Summary.HighestAnalogInput, -1);
}

TEST(ModuleSummary, DigitalBoundsAreComparedWithTheAnalogBounds) {
    Station st;
    setTag(st, 1, "AI-3");
    setTag(st, 2, "DI-2");
    setTag(st, 3, "DI-5");
    RebuildModuleSummary(st);
    EXPECT_EQ(st.daq.Summary.LowestAnalogInput, 3);
    EXPECT_EQ(st.daq.Summary.HighestAnalogInput, 3);
    EXPECT_EQ(st.daq.Summary.LowestDigitalInput, 2);
    EXPECT_EQ(st.daq.Summary.HighestDigitalInput, 5);
}

TEST(ModuleSummary, OutputsAndVariablesDoNotMarkItInUse) {
    Station st;
    setTag(st, 1, "AO-1");
    setTag(st, 2, "Analog Variable");
    RebuildModuleSummary(st);
    EXPECT_EQ(st.daq.Summary.InUse, 0);
}

}  // namespace kova
