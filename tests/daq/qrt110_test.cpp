#include "daq/qrt110.h"

#include <gtest/gtest.h>

#include <random>

#include "daq/qrt105.h"
#include "daq/sim/qrt110_simulator.h"
#include "port_rig.h"

namespace kova {

using test::BitsAtRisingEdges;
using test::BitString;
using test::PortRig;
using test::Trace;
using test::WritesTo;

namespace {

// A full clock pulse, every write followed by one bit time.
Trace SentBit(Trace t, bool one) {
    return one ? t.wd(2).d().wd(3).d().wd(2).d() : t.wd(0).d().wd(1).d().wd(0).d();
}

}  // namespace

TEST(Qrt110Trace, Ao1Of0x800AndAo2Of0ShiftTwelveZerosThenOneAndElevenZeros) {
    PortRig r;
    Qrt110WriteAnalogOutputs(r.port, 0x800, 0);
    // The data line at each rising clock edge while the frame (control bit 0) is 1.
    std::vector<int> bits;
    std::uint8_t data = 0, control = 0x0A;
    for (const PortAccess& a : r.rec.log()) {
        if (a.port == PortRig::kControl) control = a.value;
        if (a.port != PortRig::kData) continue;
        if ((data & 1) == 0 && (a.value & 1) == 1 && (control & 1) == 1)
            bits.push_back((a.value >> 1) & 1);
        data = a.value;
    }
    EXPECT_EQ(bits, BitString("000000000000100000000000"));
}

TEST(Qrt110Trace, AnUpdateIsTheDocumentedSequenceOf76Writes) {
    PortRig r;
    Qrt110WriteAnalogOutputs(r.port, 0x001, 0x801);
    Trace t;
    t.wd(0).d().wc(0x0B).d();
    // AO-2 = 0x801 first
    for (int mask = 0x800; mask >= 1; mask /= 2) t = SentBit(t, (0x801 & mask) != 0);
    // AO-1 = 0x001: eleven full pulses, then the last bit leaves the clock high
    for (int mask = 0x800; mask >= 2; mask /= 2) t = SentBit(t, false);
    t.wd(2).d().wd(3).d();
    t.wc(0x0A).d().wd(2).d().wc(0x0B).d();
    EXPECT_EQ(r.rec.log(), t.items);
    EXPECT_EQ(r.rec.writes(), 76u);
    EXPECT_EQ(r.rec.waits(), 76u);  // every write is followed by one bit time
    EXPECT_EQ(r.rec.reads(), 0u);
    EXPECT_EQ(r.regs.DataShadow, 2);
    EXPECT_EQ(r.regs.ControlShadow, 0x0B);
}

TEST(Qrt110Trace, LastClockFallsWhileTheFrameIsLow) {
    for (int ao1 : {0, 1, 0xFFE, 0xFFF}) {
        PortRig r;
        Qrt110WriteAnalogOutputs(r.port, static_cast<std::int16_t>(ao1), 0);
        const auto log = test::Accesses(r.rec.log());
        ASSERT_GE(log.size(), 3u);
        const PortAccess& frameLow = log[log.size() - 3];
        const PortAccess& clockFall = log[log.size() - 2];
        EXPECT_EQ(frameLow, (PortAccess{PortAccess::Write, PortRig::kControl, 0x0A}));
        EXPECT_EQ(clockFall.port, PortRig::kData);
        EXPECT_EQ(clockFall.value, (ao1 & 1) != 0 ? 2 : 0);
        EXPECT_EQ(log[log.size() - 4].value, (ao1 & 1) != 0 ? 3 : 1);  // the clock was high
    }
}

TEST(Qrt110Trace, BitsAbove11AreNotSent) {
    PortRig a, b;
    Qrt110WriteAnalogOutputs(a.port, 0x1ABC, 0x7123);
    Qrt110WriteAnalogOutputs(b.port, 0x0ABC, 0x0123);
    EXPECT_EQ(a.rec.log(), b.rec.log());
}

TEST(Qrt110Trace, AnalogInputsAreTheQrt105Conversion) {
    for (std::int16_t single : {0, 1}) {
        for (std::int16_t ch = 1; ch <= 4; ++ch) {
            PortRig a, b;
            a.status(0x08);
            b.status(0x08);
            std::int16_t ca = ch, cb = ch;
            EXPECT_EQ(Qrt110ReadAnalogInput(a.port, single, ca),
                      Qrt105ReadAnalogInput(b.port, single, cb));
            EXPECT_EQ(a.rec.log(), b.rec.log());
            EXPECT_EQ(ca, cb);
        }
    }
}

TEST(Qrt110WithSimulator, RandomOutputPairsAreLoaded) {
    PortRig r;
    Qrt110Simulator sim;
    sim.attach(r.bus, 0x378);
    std::mt19937 rng(110);
    std::uniform_int_distribution<int> counts(0, 4095);
    for (int round = 0; round < 300; ++round) {
        const int x = counts(rng), y = counts(rng);
        Qrt110WriteAnalogOutputs(r.port, static_cast<std::int16_t>(x),
                                 static_cast<std::int16_t>(y));
        ASSERT_EQ(sim.latchedAnalogOutput(1), x);
        ASSERT_EQ(sim.latchedAnalogOutput(2), y);
    }
    EXPECT_EQ(sim.loads(), 300);
}

TEST(Qrt110WithSimulator, ConversionsAndOutputUpdatesInterleaved) {
    PortRig r;
    Qrt110Simulator sim;
    sim.attach(r.bus, 0x378);
    std::mt19937 rng(11);
    std::uniform_int_distribution<int> counts(0, 4095), channel(1, 8), op(0, 1);
    int x = 0, y = 0;
    for (int round = 0; round < 300; ++round) {
        if (op(rng) == 0) {
            x = counts(rng);
            y = counts(rng);
            Qrt110WriteAnalogOutputs(r.port, static_cast<std::int16_t>(x),
                                     static_cast<std::int16_t>(y));
        } else {
            const std::int16_t ch = static_cast<std::int16_t>(channel(rng));
            const int v = counts(rng);
            sim.setAnalogInput(ch, v);
            std::int16_t c = ch;
            ASSERT_EQ(Qrt110ReadAnalogInput(r.port, 1, c), v);
        }
        // Conversions clock the shared lines but never load the outputs.
        ASSERT_EQ(sim.latchedAnalogOutput(1), x);
        ASSERT_EQ(sim.latchedAnalogOutput(2), y);
    }
}

TEST(Qrt110Simulator, LoadsOnlyWhenTheFrameFalls) {
    SimulatedBus bus;
    Qrt110Simulator sim;
    sim.attach(bus, 0x378);
    bus.write(0x37A, 0x01);
    for (int i = 0; i < 24; ++i) {
        bus.write(0x378, 2);
        bus.write(0x378, 3);
    }
    EXPECT_EQ(sim.latchedAnalogOutput(1), 0);  // shifted, not loaded
    bus.write(0x37A, 0x00);
    EXPECT_EQ(sim.latchedAnalogOutput(1), 0xFFF);
    EXPECT_EQ(sim.latchedAnalogOutput(2), 0xFFF);
    // Clock edges with the frame low shift nothing.
    bus.write(0x378, 0);
    bus.write(0x378, 1);
    bus.write(0x37A, 0x01);
    bus.write(0x37A, 0x00);
    EXPECT_EQ(sim.latchedAnalogOutput(1), 0xFFF);
}

}  // namespace kova
