#include "daq/qrt115.h"

#include <gtest/gtest.h>

#include <random>

#include "daq/sim/qrt115_simulator.h"
#include "port_rig.h"

namespace kova {

using test::PortRig;
using test::Trace;
using test::WritesTo;

namespace {

// Address bytes found in a control-register trace: the clock line is high while control
// bit 0 is 0, the data line follows control bit 1; a start is the data line falling while
// the clock is high, and the eight bits sampled on the next eight rising clock edges are
// the address.
std::vector<int> AddressBytes(const std::vector<std::uint8_t>& controlWrites,
                              std::uint8_t initial) {
    std::vector<int> out;
    bool scl = (initial & 1) == 0, sda = (initial & 2) != 0;
    int bits = -1, value = 0;
    for (std::uint8_t v : controlWrites) {
        const bool nscl = (v & 1) == 0, nsda = (v & 2) != 0;
        if (scl && nscl && sda && !nsda) {
            bits = 0;
            value = 0;
        } else if (!scl && nscl && bits >= 0) {
            value = value * 2 + (nsda ? 1 : 0);
            if (++bits == 8) {
                out.push_back(value);
                bits = -1;
            }
        }
        scl = nscl;
        sda = nsda;
    }
    return out;
}

// The register sequence of one read, step by step, with the status answering `status`;
// each wait is one bit time, where it stands.
Trace ExpectedRead(std::uint8_t status) {
    Trace t;
    std::uint8_t shadow = 0x0A;
    auto set = [&](int bit) { t.wc(shadow = static_cast<std::uint8_t>(shadow | (1 << bit))); };
    auto clr = [&](int bit) { t.wc(shadow = static_cast<std::uint8_t>(shadow & ~(1 << bit))); };
    auto wait = [&] { t.d(); };
    // start
    set(1);
    clr(0);
    wait();
    clr(1);
    wait();
    set(0);
    wait();
    // address byte
    for (int mask = 128; mask >= 1; mask /= 2) {
        if ((0x71 & mask) != 0)
            set(1);
        else
            clr(1);
        clr(0);
        wait();
        set(0);
        wait();
    }
    set(1);
    clr(0);
    wait();
    t.rs(status);
    set(0);
    wait();
    // data byte
    for (int i = 0; i < 8; ++i) {
        clr(0);
        wait();
        t.rs(status);
        set(0);
        wait();
    }
    set(1);  // the last byte: no acknowledge
    clr(0);
    wait();
    set(0);
    set(1);
    wait();
    // stop
    clr(1);
    clr(0);
    wait();
    set(1);
    return t;
}

}  // namespace

TEST(Qrt115Trace, AReadIsTheDocumentedSequence) {
    PortRig r;
    r.status(0x40);
    EXPECT_EQ(Qrt115ReadDigitalInputs(r.port), 255);
    EXPECT_EQ(r.rec.log(), ExpectedRead(0x40).items);
    EXPECT_EQ(r.rec.writes(), 54u);
    EXPECT_EQ(r.rec.reads(), 9u);
    EXPECT_EQ(r.rec.waits(), 40u);          // start 3, address 16 + 2, data 16 + 2, stop 1
    EXPECT_EQ(r.regs.ControlShadow, 0x0A);  // both lines high again
}

TEST(Qrt115Trace, StatusBit6AlwaysSetReads255) {
    PortRig r;
    r.status(0x40);
    EXPECT_EQ(Qrt115ReadDigitalInputs(r.port), 255);
    r.status(0xFF);
    EXPECT_EQ(Qrt115ReadDigitalInputs(r.port), 255);
    r.status(0xBF);
    EXPECT_EQ(Qrt115ReadDigitalInputs(r.port), 0);
}

TEST(Qrt115Trace, DataBitsAreSampledFromStatusBit6MostSignificantFirst) {
    PortRig r;
    // acknowledge, then 1 0 1 1 0 0 1 0 with the other status bits as noise
    test::ScriptedStatus status({0x00, 0x40, 0xBF, 0x7F, 0x40, 0x00, 0x3F, 0xC0, 0x80});
    r.bus.attach(status);
    EXPECT_EQ(Qrt115ReadDigitalInputs(r.port), 0xB2);
    EXPECT_EQ(status.reads, 9);
}

TEST(Qrt115Trace, TheAddressByteIs0x71OnEveryRead) {
    PortRig r;
    r.status(0x00);
    for (int i = 0; i < 5; ++i) Qrt115ReadDigitalInputs(r.port);
    EXPECT_EQ(AddressBytes(WritesTo(r.rec.log(), PortRig::kControl), 0x0A),
              (std::vector<int>{0x71, 0x71, 0x71, 0x71, 0x71}));
}

TEST(Qrt115Trace, ReadsTouchNeitherTheDataRegisterNorPortError) {
    PortRig r;
    r.regs.PortError = 1;
    r.regs.DataShadow = 0x33;
    Qrt115ReadDigitalInputs(r.port);
    EXPECT_TRUE(WritesTo(r.rec.log(), PortRig::kData).empty());
    EXPECT_EQ(r.regs.PortError, 1);
    EXPECT_EQ(r.regs.DataShadow, 0x33);
}

TEST(Qrt115DigitalOutputs, TheWordGoesStraightToTheDataRegister) {
    PortRig r;
    Qrt115WriteDigitalOutputs(r.port, 0xA5);
    EXPECT_EQ(r.rec.log(), Trace().wd(0xA5).items);
    EXPECT_EQ(r.regs.DataShadow, 0xA5);
    Qrt115WriteDigitalOutputs(r.port, 0);
    Qrt115WriteDigitalOutputs(r.port, 255);
    EXPECT_EQ(WritesTo(r.rec.log(), PortRig::kData), (std::vector<std::uint8_t>{0xA5, 0, 255}));
}

TEST(Qrt115DigitalOutputs, Word256ChangesNothingAndLeavesPortError) {
    for (std::int16_t before : {0, 1}) {
        PortRig r;
        r.regs.PortError = before;
        r.regs.DataShadow = 7;
        Qrt115WriteDigitalOutputs(r.port, 256);
        Qrt115WriteDigitalOutputs(r.port, -1);
        EXPECT_TRUE(r.rec.log().empty());
        EXPECT_EQ(r.regs.PortError, before);
        EXPECT_EQ(r.regs.DataShadow, 7);
    }
}

TEST(Qrt115WithSimulator, RandomInputsAndOutputs) {
    PortRig r;
    Qrt115Simulator sim;
    sim.attach(r.bus, 0x378);
    std::mt19937 rng(115);
    std::uniform_int_distribution<int> byte(0, 255), op(0, 1);
    int outputs = 0;
    for (int round = 0; round < 300; ++round) {
        if (op(rng) == 0) {
            const int in = byte(rng);
            sim.setDigitalInputs(static_cast<std::uint16_t>(in));
            ASSERT_EQ(Qrt115ReadDigitalInputs(r.port), in);
        } else {
            outputs = byte(rng);
            Qrt115WriteDigitalOutputs(r.port, outputs);
        }
        ASSERT_EQ(sim.latchedDigitalOutputs(), outputs);
    }
    for (std::uint8_t a : sim.addresses()) EXPECT_EQ(a, 0x71);
    EXPECT_EQ(sim.starts(), static_cast<int>(sim.addresses().size()));
    EXPECT_EQ(sim.starts(), sim.bytesSent());
}

TEST(Qrt115WithSimulator, TheModuleAcknowledgesItsAddress) {
    PortRig r;
    Qrt115Simulator sim;
    sim.attach(r.bus, 0x378);
    sim.setDigitalInputs(0x3C);
    r.rec.clear();
    Qrt115ReadDigitalInputs(r.port);
    // The first status read is the acknowledge: the chip holds the data line low.
    std::vector<std::uint8_t> statusReads;
    for (const PortAccess& a : r.rec.log())
        if (a.kind == PortAccess::Read) statusReads.push_back(a.value);
    ASSERT_EQ(statusReads.size(), 9u);
    EXPECT_EQ(statusReads[0] & 0x40, 0);
    EXPECT_EQ(sim.bytesSent(), 1);
}

TEST(Qrt115Simulator, AnotherAddressGetsNoAnswer) {
    PortRig r;
    Qrt115Simulator sim;
    sim.attach(r.bus, 0x378);
    sim.setDigitalInputs(0x00);
    Qrt115SendStart(r.port, 0x73);
    EXPECT_EQ(Qrt115ReceiveByte(r.port, 1), 0xFF);  // nobody pulls the line low
    Qrt115SendStop(r.port);
    EXPECT_EQ(sim.addresses(), (std::vector<std::uint8_t>{0x73}));
    EXPECT_EQ(sim.bytesSent(), 0);
}

TEST(Qrt115Simulator, WrittenBytesAreAcknowledgedButChangeNoInput) {
    PortRig r;
    Qrt115Simulator sim;
    sim.attach(r.bus, 0x378);
    sim.setDigitalInputs(0x81);
    Qrt115SendStart(r.port, 0x70);
    EXPECT_EQ(Qrt115SendByte(r.port, 0x5A), 0);  // acknowledged: line pulled low
    Qrt115SendStop(r.port);
    EXPECT_EQ(sim.bytesWritten(), (std::vector<std::uint8_t>{0x5A}));
    EXPECT_EQ(Qrt115ReadDigitalInputs(r.port), 0x81);
}

TEST(Qrt115Simulator, AcknowledgedReadsGetFurtherBytesTakenAtTheAcknowledge) {
    PortRig r;
    Qrt115Simulator sim;
    sim.attach(r.bus, 0x378);
    sim.setDigitalInputs(0x96);
    Qrt115SendStart(r.port, 0x71);
    EXPECT_EQ(Qrt115ReceiveByte(r.port, 0), 0x96);  // acknowledged: the chip goes on
    sim.setDigitalInputs(0x69);                     // too late for the byte under way
    EXPECT_EQ(Qrt115ReceiveByte(r.port, 1), 0x96);
    Qrt115SendStop(r.port);
    EXPECT_EQ(sim.bytesSent(), 2);
    EXPECT_EQ(Qrt115ReadDigitalInputs(r.port), 0x69);
}

}  // namespace kova
