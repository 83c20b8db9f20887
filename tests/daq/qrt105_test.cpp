#include "daq/qrt105.h"

#include <gtest/gtest.h>

#include <random>

#include "core/fault.h"
#include "daq/sim/qrt105_simulator.h"
#include "port_rig.h"

namespace kova {

using test::Accesses;
using test::BitsAtRisingEdges;
using test::BitsToNumber;
using test::PortRig;
using test::Trace;
using test::WritesTo;

namespace {

// The command byte a conversion put on the converter's data line (data bit 1, clocked by
// data bit 0), decoded from the trace.
int SentCommand(const PortRig& r) {
    const auto bits = BitsAtRisingEdges(WritesTo(r.rec.log(), PortRig::kData), 0, 1);
    return BitsToNumber(bits, 0, 8);
}

int Convert(PortRig& r, std::int16_t channel) {
    std::int16_t c = channel;
    return Qrt105ReadAnalogInput(r.port, 1, c);
}

// Each command bit: the data line set with the clock low, a bit time, the clock high, a
// bit time.
Trace CommandBits(Trace t, int command) {
    for (int mask = 128; mask >= 1; mask /= 2) {
        if ((command & mask) != 0)
            t.wd(2).d().wd(3).d();
        else
            t.wd(0).d().wd(1).d();
    }
    return t;
}

}  // namespace

TEST(Qrt105Trace, Channel1ConversionIsTheDocumentedRegisterSequence) {
    PortRig r;
    r.status(0x00);
    EXPECT_EQ(Convert(r, 1), 0);
    Trace t;
    t.wd(0).d().wc(0x08).wd(0).wc(0x0A);
    t = CommandBits(t, 0x8E);
    t.wd(0);
    for (int i = 0; i < 20; ++i) t.d();  // the conversion: twenty bit times
    for (int i = 0; i < 12; ++i) t.wd(1).d().wd(0).d().rs(0x00);
    t.wc(0x08);
    EXPECT_EQ(r.rec.log(), t.items);
    EXPECT_EQ(r.regs.ControlShadow, 0x08);
}

TEST(Qrt105Trace, CommandBytesOfChannels1And2And8) {
    const std::pair<std::int16_t, int> cases[] = {{1, 0x8E}, {2, 0xCE}, {8, 0xFE}};
    for (const auto& [channel, command] : cases) {
        PortRig r;
        Convert(r, channel);
        EXPECT_EQ(SentCommand(r), command) << "channel " << channel;
    }
}

TEST(Qrt105Trace, SingleEndedSelectsFollowTheConverterOrder) {
    // Channels 1..8 select 0, 4, 1, 5, 2, 6, 3, 7.
    const int selects[] = {0, 4, 1, 5, 2, 6, 3, 7};
    for (std::int16_t ch = 1; ch <= 8; ++ch) {
        PortRig r;
        Convert(r, ch);
        EXPECT_EQ(SentCommand(r), selects[ch - 1] * 16 + 4 + 0x8A) << ch;
    }
}

TEST(Qrt105Trace, DifferentialModeSendsTheChannelAsTheSelect) {
    PortRig r;
    std::int16_t c = 6;
    Qrt105Convert(r.port, 0, c);
    EXPECT_EQ(SentCommand(r), 5 * 16 + 0x8A);
    EXPECT_EQ(r.regs.PortError, 0);
}

TEST(Qrt105Trace, ConverterSelectIsHeldForTheWholeTransfer) {
    PortRig r;
    Convert(r, 3);
    EXPECT_EQ(WritesTo(r.rec.log(), PortRig::kControl),
              (std::vector<std::uint8_t>{0x08, 0x0A, 0x08}));
    // Every data write and status read lies between the select and the deselect.
    const auto log = Accesses(r.rec.log());
    std::size_t selectAt = 0, deselectAt = 0;
    for (std::size_t i = 0; i < log.size(); ++i) {
        if (log[i].port != PortRig::kControl) continue;
        if (log[i].value == 0x0A) selectAt = i;
        if (log[i].value == 0x08 && i > 0) deselectAt = i;
    }
    EXPECT_EQ(selectAt, 3u);
    EXPECT_EQ(deselectAt, log.size() - 1);
}

TEST(Qrt105Trace, AConversionCosts46WritesAnd12ReadsAnd61BitTimes) {
    for (std::int16_t ch = 1; ch <= 8; ++ch) {
        PortRig r;
        Convert(r, ch);
        EXPECT_EQ(r.rec.writes(), 46u);
        EXPECT_EQ(r.rec.reads(), 12u);
        EXPECT_EQ(r.rec.waits(), 61u);
    }
}

TEST(Qrt105Trace, TheConversionWaitIsTwentyBitTimesAfterTheCommand) {
    PortRig r;
    std::int16_t c = 1;
    Qrt105ReadAnalogInput(r.port, 1, c);
    const auto& log = r.rec.log();
    // The write of 0 that ends the command is the 21st register write (1 + 2 + 2 x 8).
    std::size_t at = 0, writes = 0;
    while (writes < 21) writes += log[at++].kind == PortAccess::Write ? 1 : 0;
    EXPECT_EQ(log[at - 1], (PortAccess{PortAccess::Write, PortRig::kData, 0}));
    std::size_t waits = 0;
    while (log[at].kind == PortAccess::Wait) {
        EXPECT_EQ(log[at].count, test::kRigDelay);
        ++waits, ++at;
    }
    EXPECT_EQ(waits, 20u);
    EXPECT_EQ(log[at], (PortAccess{PortAccess::Write, PortRig::kData, 1}));  // first data clock
}

TEST(Qrt105Trace, AFastPcsDelayCountConvertsWithoutAFault) {
    // A current PC measures a delay count of about 2300 to 2600: twenty times that passes
    // the busy-wait's limit, twenty single bit times do not.
    for (std::int32_t delay : {1639, 2292, 2571, 32765}) {
        PortRig r;
        r.regs.DelayCount = delay;
        r.status(0x08);
        std::int16_t c = 3;
        EXPECT_EQ(Qrt105ReadAnalogInput(r.port, 1, c), 4095) << delay;
        EXPECT_EQ(r.rec.waits(), 61u);
    }
}

TEST(Qrt105Trace, StatusBit3AlwaysSetReads4095OnEveryChannel) {
    for (std::int16_t ch = 1; ch <= 8; ++ch) {
        PortRig r;
        r.status(0x08);
        EXPECT_EQ(Convert(r, ch), 4095) << ch;
    }
}

TEST(Qrt105Trace, BitsAreReadMostSignificantFirst) {
    PortRig r;
    // 1010 0000 0001 on status bit 3, other status bits noise.
    test::ScriptedStatus status({0x08 | 0x30, 0x80, 0x0F, 0x70, 0, 0, 0, 0, 0, 0, 0, 0x08});
    r.bus.attach(status);
    EXPECT_EQ(Convert(r, 1), 0xA01);
}

TEST(Qrt105Conversion, ChannelsAbove4InSingleEndedModeSetPortErrorButStillConvert) {
    for (std::int16_t ch = 1; ch <= 8; ++ch) {
        PortRig r;
        r.status(0x08);
        r.regs.PortError = ch <= 4 ? 1 : 0;  // the conversion clears it first
        EXPECT_EQ(Convert(r, ch), 4095);
        EXPECT_EQ(r.regs.PortError, ch <= 4 ? 0 : 1) << ch;
    }
}

TEST(Qrt105Conversion, ModeChecks) {
    PortRig r;
    std::int16_t c = 8;
    Qrt105Convert(r.port, 0, c);
    EXPECT_EQ(r.regs.PortError, 0);
    c = 9;
    Qrt105Convert(r.port, 0, c);
    EXPECT_EQ(r.regs.PortError, 1);
    c = 0;
    Qrt105Convert(r.port, 1, c);
    EXPECT_EQ(r.regs.PortError, 0);
    c = 1;
    Qrt105Convert(r.port, 2, c);
    EXPECT_EQ(r.regs.PortError, 1);  // no such mode
}

TEST(Qrt105Conversion, TheCallersChannelIsCountedDown) {
    PortRig r;
    std::int16_t c = 5;
    Qrt105ReadAnalogInput(r.port, 1, c);
    EXPECT_EQ(c, 4);
}

TEST(Qrt105Conversion, PairReadingConvertsTheTwoNeighboursAndLeavesTheChannel) {
    PortRig r;
    std::int16_t n = 2;
    Qrt105ReadAnalogInput(r.port, 0, n);
    EXPECT_EQ(n, 2);
    EXPECT_EQ(r.rec.writes(), 92u);
    const auto bits = BitsAtRisingEdges(WritesTo(r.rec.log(), PortRig::kData), 0, 1);
    ASSERT_EQ(bits.size(), 40u);
    EXPECT_EQ(BitsToNumber(bits, 0, 8), 0x9E);   // channel 3
    EXPECT_EQ(BitsToNumber(bits, 20, 8), 0xDE);  // channel 4
}

TEST(Qrt105DigitalInputs, Status0x78GivesFifteen) {
    PortRig r;
    r.status(0x78);
    EXPECT_EQ(Qrt105ReadDigitalInputs(r.port, 0), 15);
}

TEST(Qrt105DigitalInputs, EachStatusBitGivesItsInput) {
    const std::pair<std::uint8_t, int> cases[] = {
        {0x80, 0}, {0x90, 1}, {0xA0, 2}, {0xC0, 4}, {0x00, 8}, {0x0F | 0x80, 0}, {0x08 | 0xF0, 7}};
    for (const auto& [status, word] : cases) {
        PortRig r;
        r.status(status);
        EXPECT_EQ(Qrt105ReadDigitalInputs(r.port, 0), word) << int(status);
    }
}

TEST(Qrt105DigitalInputs, WritesTheOutputWordThenStrobesThenReads) {
    PortRig r;
    r.status(0x80);
    Qrt105ReadDigitalInputs(r.port, 0x0C);
    EXPECT_EQ(r.rec.log(), Trace().wd(0x0C).wc(0x0A).wc(0x0B).rs(0x80).items);
    EXPECT_EQ(r.regs.ControlShadow, 0x0B);
}

TEST(Qrt105DigitalOutputs, WritesTheWordAndStrobes) {
    PortRig r;
    r.regs.PortError = 1;
    Qrt105WriteDigitalOutputs(r.port, 9);
    EXPECT_EQ(r.rec.log(), Trace().wd(9).wc(0x0A).wc(0x0B).items);
    EXPECT_EQ(r.regs.DataShadow, 9);
    EXPECT_EQ(r.regs.PortError, 0);
}

TEST(Qrt105DigitalOutputs, SixteenSetsPortErrorAndChangesNothing) {
    PortRig r;
    r.regs.DataShadow = 5;
    Qrt105WriteDigitalOutputs(r.port, 16);
    EXPECT_EQ(r.regs.PortError, 1);
    EXPECT_TRUE(r.rec.log().empty());
    EXPECT_EQ(r.regs.DataShadow, 5);
    Qrt105WriteDigitalOutputs(r.port, -1);
    EXPECT_EQ(r.regs.PortError, 1);
    EXPECT_TRUE(r.rec.log().empty());
}

TEST(Qrt105DigitalOutputs, SixteenLeavesTheLatchedOutputsOnTheModule) {
    PortRig r;
    Qrt105Simulator sim;
    sim.attach(r.bus, 0x378);
    Qrt105WriteDigitalOutputs(r.port, 6);
    Qrt105WriteDigitalOutputs(r.port, 16);
    EXPECT_EQ(sim.latchedDigitalOutputs(), 6);
}

// --- against the simulator ---

TEST(Qrt105WithSimulator, RandomChannelsAndInputsReadBack) {
    PortRig r;
    Qrt105Simulator sim;
    sim.attach(r.bus, 0x378);
    std::mt19937 rng(105);
    std::uniform_int_distribution<int> counts(0, 4095), channel(1, 8);
    for (int round = 0; round < 400; ++round) {
        int inputs[9];
        for (int n = 1; n <= 8; ++n) sim.setAnalogInput(n, inputs[n] = counts(rng));
        const std::int16_t ch = static_cast<std::int16_t>(channel(rng));
        std::int16_t c = ch;
        EXPECT_EQ(Qrt105ReadAnalogInput(r.port, 1, c), inputs[ch]) << "channel " << ch;
        EXPECT_EQ(c, ch - 1);
        EXPECT_EQ(r.regs.PortError, ch > 4 ? 1 : 0);
    }
}

TEST(Qrt105WithSimulator, ExtremeCountsReadBack) {
    PortRig r;
    Qrt105Simulator sim;
    sim.attach(r.bus, 0x378);
    for (int v : {0, 1, 2048, 4094, 4095}) {
        for (std::int16_t ch = 1; ch <= 8; ++ch) {
            sim.setAnalogInput(ch, v);
            EXPECT_EQ(Convert(r, ch), v);
        }
    }
}

TEST(Qrt105WithSimulator, PairReadingIsTheSignedDifference) {
    PortRig r;
    Qrt105Simulator sim;
    sim.attach(r.bus, 0x378);
    std::mt19937 rng(7);
    std::uniform_int_distribution<int> counts(0, 4095), pair(1, 4);
    for (int round = 0; round < 100; ++round) {
        int inputs[9];
        for (int n = 1; n <= 8; ++n) sim.setAnalogInput(n, inputs[n] = counts(rng));
        std::int16_t n = static_cast<std::int16_t>(pair(rng));
        const int expected = inputs[2 * n - 1] - inputs[2 * n];
        EXPECT_EQ(Qrt105ReadAnalogInput(r.port, 0, n), expected);
    }
}

TEST(Qrt105WithSimulator, DigitalInputsAndOutputsMixedWithConversions) {
    PortRig r;
    Qrt105Simulator sim;
    sim.attach(r.bus, 0x378);
    std::mt19937 rng(1);
    std::uniform_int_distribution<int> nibble(0, 15), counts(0, 4095), channel(1, 8), op(0, 2);
    int outputs = 0;
    for (int round = 0; round < 300; ++round) {
        switch (op(rng)) {
            case 0: {
                const int di = nibble(rng);
                sim.setDigitalInputs(static_cast<std::uint16_t>(di));
                EXPECT_EQ(Qrt105ReadDigitalInputs(r.port, static_cast<std::uint16_t>(outputs)), di);
                break;
            }
            case 1:
                outputs = nibble(rng);
                Qrt105WriteDigitalOutputs(r.port, outputs);
                EXPECT_EQ(r.regs.PortError, 0);
                break;
            default: {
                const std::int16_t ch = static_cast<std::int16_t>(channel(rng));
                const int v = counts(rng);
                sim.setAnalogInput(ch, v);
                EXPECT_EQ(Convert(r, ch), v);
            }
        }
        EXPECT_EQ(sim.latchedDigitalOutputs(), outputs);
    }
}

TEST(Qrt105WithSimulator, ReadingInputsRelatchesTheSystemsOutputWord) {
    PortRig r;
    Qrt105Simulator sim;
    sim.attach(r.bus, 0x378);
    Qrt105WriteDigitalOutputs(r.port, 3);
    Qrt105ReadDigitalInputs(r.port, 12);  // a word set but not yet sent goes out with the strobe
    EXPECT_EQ(sim.latchedDigitalOutputs(), 12);
}

// --- the simulator on its own ---

TEST(Qrt105Simulator, ConverterIgnoresClocksWhileNotSelected) {
    SimulatedBus bus;
    Qrt105Simulator sim;
    sim.attach(bus, 0x378);
    sim.setAnalogInput(1, 4095);
    bus.write(0x37A, 0x00);  // not selected
    for (int i = 0; i < 8; ++i) {
        bus.write(0x378, 2);
        bus.write(0x378, 3);
    }
    EXPECT_TRUE(sim.converter().commands().empty());
    EXPECT_EQ(sim.peekStatus() & 0x08, 0);
}

TEST(Qrt105Simulator, DigitalInputsAreSampledOnTheStrobe) {
    SimulatedBus bus;
    Qrt105Simulator sim;
    sim.attach(bus, 0x378);
    sim.setDigitalInputs(0x0F);
    EXPECT_EQ(sim.peekStatus() & 0xF0, 0x80);  // nothing sampled yet; BUSY pin low reads 1
    bus.write(0x37A, 0x01);
    EXPECT_EQ(sim.peekStatus() & 0xF0, 0x70);  // DI-4 high on BUSY reads 0
    sim.setDigitalInputs(0);
    EXPECT_EQ(sim.peekStatus() & 0xF0, 0x70);
    EXPECT_EQ(sim.strobes(), 1);
}

}  // namespace kova
