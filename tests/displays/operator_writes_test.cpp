// The operator's writes to outputs and variables, and their way to the module.
#include "displays/operator_writes.h"

#include <gtest/gtest.h>

#include <memory>

#include "core/fault.h"
#include "daq/driver_dispatch.h"
#include "daq/sim/module_simulators.h"
#include "displays/readings_view.h"
#include "platform/simulated_bus.h"
#include "screen_rig.h"

namespace kova {

namespace {
using test::ScreenRig;
}  // namespace

TEST(OperatorWrites, AnAnalogOutputBelowRawMinIsSentAsRawMin) {
    ScreenRig r;
    EXPECT_TRUE(OperatorWriteAnalog(r.st, test::kValve, -3.0f));
    EXPECT_EQ(r.st.tags[test::kValve].Value, -3.0f);
    EXPECT_EQ(r.st.daq.AnalogOutputValues[1], 0);
}

TEST(OperatorWrites, AnAnalogOutputAboveRawMaxIsSentAsRawMax) {
    ScreenRig r;
    EXPECT_TRUE(OperatorWriteAnalog(r.st, test::kValve, 250.0f));
    EXPECT_EQ(r.st.tags[test::kValve].Value, 250.0f);
    EXPECT_EQ(r.st.daq.AnalogOutputValues[1], 4095);
}

TEST(OperatorWrites, RawMinIsAppliedBeforeRawMax) {
    // A range whose bounds cross shows the order: raised to RawMin, then lowered to RawMax.
    Tag t;
    t.Slope = 1;
    t.Offset = 0;
    EXPECT_EQ(OperatorRawValue(t, -50, 100, 10), 10);
    EXPECT_EQ(OperatorRawValue(t, 500, 100, 10), 10);
}

TEST(OperatorWrites, TheRawCountRoundsHalvesToEven) {
    Tag t;
    t.Slope = 1;
    t.Offset = 0;
    EXPECT_EQ(OperatorRawValue(t, 2.5f, 0, 4095), 2);
    EXPECT_EQ(OperatorRawValue(t, 3.5f, 0, 4095), 4);
    EXPECT_EQ(OperatorRawValue(t, 4095.6f, 0, 4095), 4095);
    t.Slope = 0.5f;
    t.Offset = 1;
    EXPECT_EQ(OperatorRawValue(t, 2.25f, 0, 4095), 2);  // (2.25 - 1) / 0.5 = 2.5
}

TEST(OperatorWrites, AZeroSlopeIsADivisionByZeroFault) {
    Tag t;
    t.TagName = "FLAT";
    try {
        OperatorRawValue(t, 1, 0, 4095);
        FAIL() << "no fault";
    } catch (const Fault& f) {
        EXPECT_EQ(f.kind(), FaultKind::DivisionByZero);
    }
}

TEST(OperatorWrites, TheSecondOutputGoesToSlot2) {
    ScreenRig r;
    OperatorWriteAnalog(r.st, test::kValve2, 50);
    EXPECT_EQ(r.st.daq.AnalogOutputValues[2], 2000);
    EXPECT_EQ(r.st.daq.AnalogOutputValues[1], 0);
}

TEST(OperatorWrites, WritingTheSameAnalogValueMarksItPendingAgain) {
    ScreenRig r;
    OperatorWriteAnalog(r.st, test::kValve, 25);
    r.st.daq.Summary.AnalogOutputsPending = 0;
    OperatorWriteAnalog(r.st, test::kValve, 25);
    EXPECT_EQ(r.st.daq.Summary.AnalogOutputsPending, -1);
}

TEST(OperatorWrites, AnAnalogInputIsNotWritten) {
    ScreenRig r;
    r.st.tags[test::kLevel].Value = 3;
    EXPECT_FALSE(OperatorWriteAnalog(r.st, test::kLevel, 9));
    EXPECT_EQ(r.st.tags[test::kLevel].Value, 3.0f);
    EXPECT_EQ(r.st.daq.Summary.AnalogOutputsPending, 0);
}

TEST(OperatorWrites, ClearingADigitalOutputAlsoClearsBits8To15) {
    ScreenRig r;
    r.st.daq.DigitalOutputImage = 0xFF05;
    EXPECT_TRUE(OperatorWriteDigital(r.st, test::kPump, false));  // DO-1
    EXPECT_EQ(r.st.daq.DigitalOutputImage, 0x0004);
    EXPECT_EQ(r.st.tags[test::kPump].Value, 0.0f);
}

TEST(OperatorWrites, SettingADigitalOutputKeepsTheOtherBits) {
    ScreenRig r;
    r.st.daq.DigitalOutputImage = 0xFF00;
    OperatorWriteDigital(r.st, test::kHeater, true);  // DO-3
    EXPECT_EQ(r.st.daq.DigitalOutputImage, 0xFF04);
    EXPECT_EQ(r.st.tags[test::kHeater].Value, 1.0f);
}

TEST(OperatorWrites, EveryDigitalOutputWriteMarksItPendingEvenWithoutAChange) {
    ScreenRig r;
    r.st.daq.DigitalOutputImage = 0x01;
    OperatorWriteDigital(r.st, test::kPump, true);
    EXPECT_EQ(r.st.daq.DigitalOutputImage, 0x01);
    EXPECT_EQ(r.st.daq.Summary.DigitalOutputsPending, -1);
}

TEST(OperatorWrites, ADigitalInputIsLeftAlone) {
    ScreenRig r;
    EXPECT_FALSE(OperatorWriteDigital(r.st, test::kDoor, true));
    EXPECT_EQ(r.st.tags[test::kDoor].Value, 0.0f);
    EXPECT_EQ(r.st.daq.DigitalOutputImage, 0);
}

TEST(OperatorWrites, EmptyLinesWriteNothing) {
    ScreenRig r;
    EXPECT_FALSE(OperatorWriteAnalog(r.st, 0, 5));
    EXPECT_FALSE(OperatorWriteDigital(r.st, 0, true));
}

TEST(OperatorWrites, PendingOutputsAreSentAndCleared) {
    ScreenRig r(kDaqTest);
    r.st.switches.PollEnabled = true;
    r.st.daq.Summary.AnalogOutputsPending = -1;
    r.st.daq.Summary.DigitalOutputsPending = -1;
    SendPendingOutputs(r.st);
    EXPECT_EQ(r.st.daq.Summary.AnalogOutputsPending, 0);
    EXPECT_EQ(r.st.daq.Summary.DigitalOutputsPending, 0);
}

// The TEST module keeps its outputs in the output table: the screen's write is there and
// the next timer tick sends it and clears the flags.
TEST(OperatorWrites, OnTheTestModuleTheWriteReachesTheOutputTableOnTheNextTick) {
    ScreenRig r(kDaqTest);
    r.st.switches.PollEnabled = true;
    ReadingsViewForm f = OpenReadingsView(r.st);
    AnalogValueFocused(r.st, f, 1);
    AnalogValueLeft(r.st, f, 1, "25");
    DigitalBoxChanged(r.st, f, 1, true);
    EXPECT_EQ(r.st.daq.AnalogOutputValues[1], 1000);
    EXPECT_EQ(r.st.daq.DigitalOutputImage, 0x01);
    ReadTimerTick(r.st, f);
    EXPECT_EQ(r.st.daq.Summary.AnalogOutputsPending, 0);
    EXPECT_EQ(r.st.daq.Summary.DigitalOutputsPending, 0);
    EXPECT_EQ(r.st.daq.AnalogOutputValues[1], 1000);
    EXPECT_EQ(f.Digital[1].TxtDig, "ON");
}

namespace {
// A station on a simulated port with the module's simulator plugged in.
struct SimulatedModule {
    SimulatedBus bus;
    std::unique_ptr<ModuleSimulator> sim;
    ScreenRig r;
    explicit SimulatedModule(int type) : r(type) {
        r.st.switches.PollEnabled = true;
        r.st.platform.port = &bus;
        SelectPort(r.st, 1, 0);
        sim = MakeModuleSimulator(type);
        sim->attach(bus, r.st.daq.Port.DataPort);
    }
    ~SimulatedModule() { sim->detach(); }
};
}  // namespace

TEST(OperatorWrites, OnAQrt110TheAnalogOutputIsLatchedOnTheNextTick) {
    SimulatedModule m(kDaqQrt110);
    ReadingsViewForm f = OpenReadingsView(m.r.st);
    AnalogValueFocused(m.r.st, f, 1);
    AnalogValueLeft(m.r.st, f, 1, "25");  // AO-1: 1000 counts
    AnalogValueFocused(m.r.st, f, 4);
    AnalogValueLeft(m.r.st, f, 4, "200");  // AO-2: beyond the range, 4095
    EXPECT_EQ(m.sim->latchedAnalogOutput(1), 0);
    ReadTimerTick(m.r.st, f);
    EXPECT_EQ(m.sim->latchedAnalogOutput(1), 1000);
    EXPECT_EQ(m.sim->latchedAnalogOutput(2), 4095);
    EXPECT_EQ(m.r.st.daq.Summary.AnalogOutputsPending, 0);
}

TEST(OperatorWrites, OnAQrtuTheDigitalAndAnalogOutputsAreLatchedOnTheNextTick) {
    SimulatedModule m(kDaqQrtu);
    ReadingsViewForm f = OpenReadingsView(m.r.st);
    AnalogValueFocused(m.r.st, f, 1);
    AnalogValueLeft(m.r.st, f, 1, "5");     // 200 counts, inside the QRTU's 0..255
    DigitalBoxChanged(m.r.st, f, 1, true);  // PUMP, DO-1
    DigitalBoxChanged(m.r.st, f, 2, true);  // HEATER, DO-3
    EXPECT_EQ(m.sim->latchedDigitalOutputs(), 0);
    ReadTimerTick(m.r.st, f);
    EXPECT_EQ(m.sim->LatchedOutputsLine(), "outputs: DO=0x05 AO-1=200 AO-2=0");
    // Switching the pump off from the screen reaches the module at the following tick.
    DigitalBoxChanged(m.r.st, f, 1, false);
    EXPECT_EQ(m.sim->latchedDigitalOutputs(), 0x05);
    ReadTimerTick(m.r.st, f);
    EXPECT_EQ(m.sim->latchedDigitalOutputs(), 0x04);
}

TEST(OperatorWrites, OnAQrtuAnAnalogOutputBeyond255IsSentAs255) {
    SimulatedModule m(kDaqQrtu);
    ReadingsViewForm f = OpenReadingsView(m.r.st);
    AnalogValueFocused(m.r.st, f, 1);
    AnalogValueLeft(m.r.st, f, 1, "50");  // 2000 counts
    ReadTimerTick(m.r.st, f);
    EXPECT_EQ(m.r.st.daq.AnalogOutputValues[1], 255);
    EXPECT_EQ(m.sim->latchedAnalogOutput(1), 255);
}

}  // namespace kova
