#include "daq/field_recorder.h"

#include <gtest/gtest.h>

#include <random>

#include "daq/sim/field_recorder_simulator.h"
#include "port_rig.h"

namespace kova {

using test::PortRig;
using test::ScriptedStatus;
using test::Trace;

TEST(FieldRecorderTrace, StatusBit3StuckAtOneReadsMinusOneAfter30Polls) {
    PortRig r;
    r.status(0x08);
    EXPECT_EQ(FieldRecorderReadAnalogInput(r.port), -1);
    Trace t;
    t.wc(4).d().wc(2).wc(3).wc(6);
    for (int i = 0; i < 30; ++i) t.rs(0x08).d();
    t.wc(3);
    EXPECT_EQ(r.rec.log(), t.items);
    EXPECT_EQ(r.regs.ControlShadow, 0x0A);  // whole values, the shadow is left alone
    EXPECT_EQ(r.regs.PortError, 1);
    EXPECT_EQ(r.regs.NotAnswering, 1);
}

TEST(FieldRecorderTrace, ReadyAtOnceReadsTwoNibbles) {
    PortRig r;
    ScriptedStatus status({0x00, 0x30, 0xC0});
    r.bus.attach(status);
    // ((0xC0 AND 0xF0) OR (0x30 AND 0xF0) / 16) XOR 0x88
    EXPECT_EQ(FieldRecorderReadAnalogInput(r.port), 0x4B);
    EXPECT_EQ(
        r.rec.log(),
        Trace().wc(4).d().wc(2).wc(3).wc(6).rs(0x00).d().wc(2).rs(0x30).wc(3).rs(0xC0).wc(3).items);
    EXPECT_EQ(r.regs.ControlShadow, 0x0A);
    EXPECT_TRUE(test::WritesTo(r.rec.log(), PortRig::kData).empty());
}

TEST(FieldRecorderTrace, AReadingThatComesClearsNotAnswering) {
    PortRig r;
    r.status(0x08);
    EXPECT_EQ(FieldRecorderReadAnalogInput(r.port), -1);
    EXPECT_EQ(r.regs.NotAnswering, 1);
    r.status(0x00);
    EXPECT_EQ(FieldRecorderReadAnalogInput(r.port), 0x88);
    EXPECT_EQ(r.regs.NotAnswering, 0);
}

TEST(FieldRecorderTrace, AFloatingBusReadsMinusOne) {
    // Nothing on the port: every status bit high, so the module is never ready.
    PortRig r;
    r.status(0xFF);
    EXPECT_EQ(FieldRecorderReadAnalogInput(r.port), -1);
    EXPECT_EQ(r.rec.reads(), 30u);
}

TEST(FieldRecorderTrace, TheTopBitOfEachNibbleIsInvertedBack) {
    const struct {
        std::uint8_t s1, s2;
        int value;
    } cases[] = {{0x80, 0x80, 0x00},
                 {0x00, 0x00, 0x88},
                 {0x70, 0x70, 0xFF},
                 {0xF0, 0xF0, 0x77},
                 {0x8F, 0x0F, 0x80}};
    for (const auto& c : cases) {
        PortRig r;
        ScriptedStatus status({0x00, c.s1, c.s2});
        r.bus.attach(status);
        EXPECT_EQ(FieldRecorderReadAnalogInput(r.port), c.value);
    }
}

TEST(FieldRecorderTrace, ReadyOnTheThirtiethPollStillReads) {
    PortRig r;
    std::vector<std::uint8_t> script(29, 0x08);
    script.push_back(0xF0);
    script.push_back(0x80);  // s1
    script.push_back(0x80);  // s2
    ScriptedStatus status(script);
    r.bus.attach(status);
    EXPECT_EQ(FieldRecorderReadAnalogInput(r.port), 0);
    EXPECT_EQ(status.reads, 32);
}

TEST(FieldRecorderTrace, PollingStopsAsSoonAsTheModuleIsReady) {
    PortRig r;
    ScriptedStatus status({0x08, 0x08, 0x00, 0x80, 0x80});
    r.bus.attach(status);
    EXPECT_EQ(FieldRecorderReadAnalogInput(r.port), 0);
    EXPECT_EQ(status.reads, 5);
}

TEST(FieldRecorderWithSimulator, RandomValuesAndSpeeds) {
    PortRig r;
    FieldRecorderSimulator sim;
    sim.attach(r.bus, 0x378);
    std::mt19937 rng(4);
    std::uniform_int_distribution<int> value(0, 255), busy(0, 40);
    for (int round = 0; round < 300; ++round) {
        const int v = value(rng), b = busy(rng);
        sim.setAnalogInput(v);
        sim.setBusyReads(b);
        // Busy for b reads, ready at read b + 1: within 30 polls only when b <= 29.
        ASSERT_EQ(FieldRecorderReadAnalogInput(r.port), b <= 29 ? v : -1) << "busy " << b;
    }
}

TEST(FieldRecorderWithSimulator, AModuleThatNeverFinishesReadsMinusOne) {
    PortRig r;
    FieldRecorderSimulator sim;
    sim.attach(r.bus, 0x378);
    sim.setAnalogInput(200);
    sim.setBusyReads(-1);
    EXPECT_EQ(FieldRecorderReadAnalogInput(r.port), -1);
    EXPECT_EQ(sim.statusReads(), 30);
    EXPECT_EQ(r.rec.log().back(), (PortAccess{PortAccess::Write, PortRig::kControl, 3}));
}

TEST(FieldRecorderSimulator, NibblesShowOnlyWhileEnabled) {
    SimulatedBus bus;
    FieldRecorderSimulator sim;
    sim.attach(bus, 0x378);
    sim.setAnalogInput(0xC5);
    bus.write(0x37A, 4);  // start
    bus.read(0x379);      // done at the first read
    bus.write(0x37A, 0);
    EXPECT_EQ(sim.peekStatus(), 0x80);  // outputs disabled: pins low, BUSY inverted
    bus.write(0x37A, 2);
    EXPECT_EQ(sim.peekStatus(), 0x50 ^ 0x80);  // low nibble 5
    bus.write(0x37A, 3);
    EXPECT_EQ(sim.peekStatus(), 0xC0 ^ 0x80);  // high nibble C
    EXPECT_EQ(sim.conversionsStarted(), 1);
}

}  // namespace kova
