#include "daq/qrtu.h"

#include <gtest/gtest.h>

#include <chrono>
#include <random>

#include "daq/sim/qrtu_simulator.h"
#include "port_rig.h"

namespace kova {

using test::BitsAtRisingEdges;
using test::BitString;
using test::PortRig;
using test::ScriptedStatus;
using test::Trace;
using test::WritesTo;

namespace {

// The first ten bits on the serial data line (data bit 0), sampled on the rising edges of
// the clock (data bit 1).
std::vector<int> ChannelBits(const PortRig& r) {
    auto bits = BitsAtRisingEdges(WritesTo(r.rec.log(), PortRig::kData), 1, 0);
    bits.resize(10);
    return bits;
}

}  // namespace

TEST(QrtuTrace, ChannelsGoOutAsFourBitsAndSixZeros) {
    const std::pair<std::int16_t, const char*> cases[] = {
        {1, "0000000000"}, {2, "0001000000"}, {8, "0111000000"}, {9, "1000000000"}};
    for (const auto& [channel, bits] : cases) {
        PortRig r;
        r.status(0x40);
        std::int16_t c = channel;
        QrtuReadAnalogInput(r.port, c);
        EXPECT_EQ(ChannelBits(r), BitString(bits)) << "channel " << channel;
        EXPECT_EQ(c, channel - 1);
    }
}

TEST(QrtuTrace, AnAnalogReadIsTheDocumentedSequence) {
    PortRig r;
    r.status(0x50);      // conversion done, data out high
    std::int16_t c = 3;  // 0010 on the line
    EXPECT_EQ(QrtuReadAnalogInput(r.port, c), 1023);
    Trace t;
    t.wc(8);
    for (int bit : BitString("0010000000")) t.d().wd(bit ? 1 : 0).d().wd(bit ? 3 : 2).d();
    t.wd(0).d();
    t.rs(0x50);  // the wait ends at once
    for (int i = 0; i < 10; ++i) t.rs(0x50).wd(2).d().wd(0).d();
    t.wc(0);
    EXPECT_EQ(r.rec.log(), t.items);
    EXPECT_EQ(r.regs.ControlShadow, 0x0A);  // whole values, the shadow is left alone
}

TEST(QrtuTrace, ResultBitsAreWeighted512DownTo1FromStatusBit4) {
    PortRig r;
    // end of conversion, then 10 0000 0011 on status bit 4 with noise elsewhere
    ScriptedStatus status({0x40, 0x10, 0xEF, 0x20, 0x00, 0x80, 0x00, 0x40, 0x00, 0x1F, 0x10});
    r.bus.attach(status);
    std::int16_t c = 1;
    EXPECT_EQ(QrtuReadAnalogInput(r.port, c), 0x203);
}

TEST(QrtuTrace, TheEndOfConversionIsWaitedForUpTo100Ms) {
    // The rig's steady clock moves 1 ms a reading: an answer at the 99th look still counts.
    PortRig r;
    std::vector<std::uint8_t> script(98, 0xBF);  // every bit but end of conversion
    script.push_back(0x40);
    script.push_back(0x00);
    ScriptedStatus status(script);
    r.bus.attach(status);
    std::int16_t c = 1;
    EXPECT_EQ(QrtuReadAnalogInput(r.port, c), 0);
    EXPECT_EQ(status.reads, 98 + 1 + 10);
    EXPECT_EQ(r.regs.NotAnswering, 0);
    EXPECT_EQ(r.regs.PortError, 0);
}

TEST(QrtuTrace, AConverterThatNeverEndsReadsMinusOneAfter100Ms) {
    PortRig r;
    r.status(0xBF);
    r.regs.ControlShadow = 0x0A;
    std::int16_t c = 4;
    EXPECT_EQ(QrtuReadAnalogInput(r.port, c), -1);
    EXPECT_EQ(r.rec.reads(), 100u);  // a look each millisecond until the bound
    EXPECT_EQ(r.clock.readings(), 101);
    EXPECT_EQ(r.regs.PortError, 1);
    EXPECT_EQ(r.regs.NotAnswering, 1);
    EXPECT_EQ(c, 3);
    // The transfer is ended: the converter is deselected and no result bit is clocked.
    const auto& log = r.rec.log();
    EXPECT_EQ(log.back(), (PortAccess{PortAccess::Write, PortRig::kControl, 0}));
    EXPECT_EQ(log[log.size() - 2], (PortAccess{PortAccess::Read, PortRig::kStatus, 0xBF}));
}

TEST(QrtuTrace, ASilentModuleGetsOnlyAShortLookUntilItAnswersAgain) {
    PortRig r;
    r.status(0x00);
    std::int16_t c = 1;
    EXPECT_EQ(QrtuReadAnalogInput(r.port, c), -1);
    EXPECT_EQ(r.rec.reads(), 100u);
    r.rec.clear();
    for (std::int16_t ch = 2; ch <= 8; ++ch) {
        c = ch;
        EXPECT_EQ(QrtuReadAnalogInput(r.port, c), -1);
    }
    EXPECT_EQ(r.rec.reads(), 7u);  // one look of 1 ms each
    r.status(0x50);                // the module is back
    r.rec.clear();
    c = 1;
    EXPECT_EQ(QrtuReadAnalogInput(r.port, c), 1023);
    EXPECT_EQ(r.regs.NotAnswering, 0);
    r.status(0x00);  // and gone again: the full wait once more
    r.rec.clear();
    c = 1;
    EXPECT_EQ(QrtuReadAnalogInput(r.port, c), -1);
    EXPECT_EQ(r.rec.reads(), 100u);
}

TEST(QrtuTrace, TheBoundIsWallClockTime) {
    // The one test that really waits: the machine's steady clock, a converter that never
    // ends, one read.
    SimulatedBus bus;
    bus.poke(PortRig::kStatus, 0x00);
    PortState regs;
    PortBus port(regs, bus);
    std::int16_t c = 1;
    const auto t0 = std::chrono::steady_clock::now();
    EXPECT_EQ(QrtuReadAnalogInput(port, c), -1);
    const auto took = std::chrono::steady_clock::now() - t0;
    EXPECT_GE(took, std::chrono::milliseconds(100));
    EXPECT_LT(took, std::chrono::milliseconds(1000));
}

TEST(QrtuTrace, AFloatingBusReadsAtOnce) {
    // A port with nothing on it reads every status bit high: end of conversion at once.
    PortRig r;
    r.status(0xFF);
    std::int16_t c = 1;
    EXPECT_EQ(QrtuReadAnalogInput(r.port, c), 1023);
    EXPECT_EQ(QrtuReadDigitalInputs(r.port), 0x7FFF);
    EXPECT_EQ(r.regs.NotAnswering, 0);
}

TEST(QrtuTrace, DigitalInputsAreTheDocumentedSequence) {
    PortRig r;
    r.status(0x20);
    EXPECT_EQ(QrtuReadDigitalInputs(r.port), 0x7FFF);  // the 16th bit is dropped
    Trace t;
    t.wd(0).wd(2).wd(0).wd(1).rs(0x20);
    for (int i = 0; i < 7; ++i) t.wd(3).d().wd(1).d().rs(0x20);
    t.wd(3).wd(1).rs(0x20);  // the second byte's load: no waits
    for (int i = 0; i < 7; ++i) t.wd(3).d().wd(1).d().rs(0x20);
    EXPECT_EQ(r.rec.log(), t.items);
}

TEST(QrtuTrace, DigitalInputBitOrder) {
    // Bits out: first byte 128..1, then second byte 128..1 (its 128 dropped).
    std::vector<std::uint8_t> script;
    const char* line = "1000000110000001";  // first 0x81, second 0x81
    for (const char* p = line; *p; ++p) script.push_back(*p == '1' ? 0x20 : 0xDF);
    PortRig r;
    ScriptedStatus status(script);
    r.bus.attach(status);
    EXPECT_EQ(QrtuReadDigitalInputs(r.port), 0x0181);
}

TEST(QrtuTrace, DigitalOutputsLatchWithControlBit0) {
    PortRig r;
    r.regs.PortError = 1;
    QrtuWriteDigitalOutputs(r.port, 0x5A);
    EXPECT_EQ(r.rec.log(), Trace().wc(0).d().wd(0x5A).wc(1).d().wc(0).items);
    EXPECT_EQ(r.regs.ControlShadow, 0);
    EXPECT_EQ(r.regs.DataShadow, 0x5A);
    EXPECT_EQ(r.regs.PortError, 0);
}

TEST(QrtuTrace, AnalogOutput255IsWrittenWithControlBit1) {
    PortRig r;
    QrtuWriteAnalogOutputs(r.port, 255);
    EXPECT_EQ(r.rec.log(), Trace().wc(0).d().wd(255).d().wc(2).d().wc(0).items);
    EXPECT_EQ(r.regs.PortError, 0);
    EXPECT_EQ(r.regs.DataShadow, 255);
}

TEST(QrtuTrace, OutputValuesOutside0To255AreRefusedWithPortError) {
    for (int v : {256, -1, 4095}) {
        PortRig r;
        r.regs.DataShadow = 9;
        QrtuWriteAnalogOutputs(r.port, v);
        EXPECT_EQ(r.regs.PortError, 1);
        r.regs.PortError = 0;
        QrtuWriteDigitalOutputs(r.port, v);
        EXPECT_EQ(r.regs.PortError, 1);
        EXPECT_TRUE(r.rec.log().empty());
        EXPECT_EQ(r.regs.DataShadow, 9);
        EXPECT_EQ(r.regs.ControlShadow, 0x0A);
    }
}

// --- against the simulator ---

TEST(QrtuWithSimulator, AConverterThatAnswersLateIsWaitedFor) {
    PortRig r;
    QrtuSimulator sim;
    sim.attach(r.bus, 0x378);
    sim.setAnalogInput(6, 777);
    sim.setConversionReads(90);  // within the bound: the rig's clock moves 1 ms a look
    std::int16_t c = 6;
    EXPECT_EQ(QrtuReadAnalogInput(r.port, c), 777);
    EXPECT_EQ(sim.statusReads(), 90 + 1 + 10);
    EXPECT_EQ(sim.conversionAddresses().front(), 5);
}

TEST(QrtuWithSimulator, AConversionDoneBitThatNeverComesGivesMinusOneAndTheNextReadsGoOn) {
    PortRig r;
    QrtuSimulator sim;
    sim.attach(r.bus, 0x378);
    sim.setAnalogInput(2, 500);
    sim.setConversionReads(-1);
    std::int16_t c = 2;
    EXPECT_EQ(QrtuReadAnalogInput(r.port, c), -1);
    EXPECT_EQ(r.regs.PortError, 1);
    EXPECT_TRUE(sim.converting());
    // The digital inputs and outputs still work.
    sim.setDigitalInputs(0x1234);
    EXPECT_EQ(QrtuReadDigitalInputs(r.port), 0x1234);
    QrtuWriteDigitalOutputs(r.port, 0x81);
    EXPECT_EQ(sim.latchedDigitalOutputs(), 0x81);
}

TEST(QrtuWithSimulator, RandomChannelsInputsAndSpeeds) {
    PortRig r;
    QrtuSimulator sim;
    sim.attach(r.bus, 0x378);
    std::mt19937 rng(5);
    std::uniform_int_distribution<int> counts(0, 1023), channel(1, 8), speed(0, 60);
    for (int round = 0; round < 300; ++round) {
        int inputs[9];
        for (int n = 1; n <= 8; ++n) sim.setAnalogInput(n, inputs[n] = counts(rng));
        sim.setConversionReads(speed(rng));
        const std::int16_t ch = static_cast<std::int16_t>(channel(rng));
        std::int16_t c = ch;
        ASSERT_EQ(QrtuReadAnalogInput(r.port, c), inputs[ch]) << "channel " << ch;
    }
}

TEST(QrtuWithSimulator, EveryOperationMixed) {
    PortRig r;
    QrtuSimulator sim;
    sim.attach(r.bus, 0x378);
    std::mt19937 rng(55);
    std::uniform_int_distribution<int> counts(0, 1023), channel(1, 8), byte(0, 255),
        word(0, 0x7FFF), op(0, 3);
    int outputs = 0, analogOut = 0;
    for (int round = 0; round < 400; ++round) {
        switch (op(rng)) {
            case 0: {
                const std::int16_t ch = static_cast<std::int16_t>(channel(rng));
                const int v = counts(rng);
                sim.setAnalogInput(ch, v);
                std::int16_t c = ch;
                ASSERT_EQ(QrtuReadAnalogInput(r.port, c), v);
                break;
            }
            case 1: {
                const int w = word(rng);
                sim.setDigitalInputs(static_cast<std::uint16_t>(w));
                ASSERT_EQ(QrtuReadDigitalInputs(r.port), w);
                break;
            }
            case 2:
                outputs = byte(rng);
                QrtuWriteDigitalOutputs(r.port, outputs);
                break;
            default:
                analogOut = byte(rng);
                QrtuWriteAnalogOutputs(r.port, analogOut);
        }
        ASSERT_EQ(sim.latchedDigitalOutputs(), outputs);
        ASSERT_EQ(sim.latchedAnalogOutput(1), analogOut);
    }
}

TEST(QrtuWithSimulator, RefusedOutputsLeaveTheLatches) {
    PortRig r;
    QrtuSimulator sim;
    sim.attach(r.bus, 0x378);
    QrtuWriteAnalogOutputs(r.port, 255);
    QrtuWriteDigitalOutputs(r.port, 17);
    QrtuWriteAnalogOutputs(r.port, 256);
    QrtuWriteDigitalOutputs(r.port, 300);
    EXPECT_EQ(sim.latchedAnalogOutput(1), 255);
    EXPECT_EQ(sim.latchedDigitalOutputs(), 17);
}

TEST(QrtuSimulator, ChannelNineAddressesAnUnwiredInput) {
    PortRig r;
    QrtuSimulator sim;
    sim.attach(r.bus, 0x378);
    for (int n = 1; n <= 8; ++n) sim.setAnalogInput(n, 1000);
    std::int16_t c = 9;
    EXPECT_EQ(QrtuReadAnalogInput(r.port, c), 0);
    EXPECT_EQ(sim.conversionAddresses().front(), 8);
}

TEST(QrtuSimulator, InputRegisterShiftsDi8FirstAndTheSpareBitIsHigh) {
    SimulatedBus bus;
    QrtuSimulator sim;
    sim.attach(bus, 0x378);
    sim.setDigitalInputs(0x0080);  // DI-8 only
    bus.write(0x378, 2);           // load
    EXPECT_EQ(sim.peekStatus() & 0x20, 0x20);
    std::vector<int> out;
    for (int i = 0; i < 15; ++i) {
        bus.write(0x378, 1);
        bus.write(0x378, 3);  // shift
        out.push_back((sim.peekStatus() >> 5) & 1);
    }
    // DI-7..DI-1, the spare input, DI-15..DI-9
    EXPECT_EQ(out, (std::vector<int>{0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0}));
}

}  // namespace kova
