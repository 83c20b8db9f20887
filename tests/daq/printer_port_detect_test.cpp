#include "daq/printer_port_detect.h"

#include <gtest/gtest.h>

#include "daq/sim/port_chip.h"
#include "platform/port_backends.h"
#include "platform/recording_port_io.h"
#include "platform/simulated_bus.h"
#include "support/test_support.h"

namespace kova {

namespace {
using PA = PortAccess;

struct ChipRig {
    SimulatedBus bus;
    PortChip chip;
    RecordingPortIo rec{bus};
    ChipRig(PortChipKind kind, std::uint16_t base = 0x378) : chip(base, kind) { bus.attach(chip); }
};

struct StationRig {
    Station st;
    SimulatedBus bus;
    RecordingPortIo rec{bus};
    test::ScriptedPrompter prompt;
    StationRig() {
        st.platform.port = &rec;
        st.platform.prompter = &prompt;
    }
};

// A broken port whose data lines follow the latch only while they are switched to input,
// so that it fails every test.
class BackwardsPort final : public BusDevice {
  public:
    explicit BackwardsPort(std::uint16_t base) : base_(base) {}
    bool claims(std::uint16_t p) const override {
        return (p >= base_ && p <= base_ + 7u) || (p >= base_ + 0x400u && p <= base_ + 0x402u);
    }
    std::uint8_t read(std::uint16_t p) override {
        if (p == base_) return (control_ & 0x20) ? data_ : static_cast<std::uint8_t>(~data_);
        if (p == base_ + 2) return control_;
        return 0xFF;
    }
    void write(std::uint16_t p, std::uint8_t v) override {
        if (p == base_) data_ = v;
        if (p == base_ + 2) control_ = v;
    }

  private:
    std::uint16_t base_;
    std::uint8_t data_ = 0, control_ = 0;
};

const std::vector<PA> kTimeoutClear(std::uint16_t status, std::uint8_t before, std::uint8_t after) {
    return {{PA::Read, status, before},
            {PA::Write, status, 1},
            {PA::Write, status, 0},
            {PA::Read, status, after}};
}
}  // namespace

// --- register operations ---------------------------------------------------------------

TEST(PortRegisters, EcpModeNames) {
    EXPECT_EQ(GetEcpModeDescription(0), "SPP");
    EXPECT_EQ(GetEcpModeDescription(1), "PS/2");
    EXPECT_EQ(GetEcpModeDescription(2), "Fast Centronics");
    EXPECT_EQ(GetEcpModeDescription(3), "ECP");
    EXPECT_EQ(GetEcpModeDescription(4), "EPP");
    EXPECT_EQ(GetEcpModeDescription(6), "Test");
    EXPECT_EQ(GetEcpModeDescription(7), "Configuration");
}

TEST(PortRegisters, EcpMode5HasNoName) {
    EXPECT_EQ(GetEcpModeDescription(5), "");
    EXPECT_EQ(GetEcpModeDescription(8), "");
    EXPECT_EQ(GetEcpModeDescription(-1), "");
}

TEST(PortRegisters, BitReadGivesOneBitAsZeroOrOne) {
    EXPECT_EQ(BitRead(0x0A, 1), 1);
    EXPECT_EQ(BitRead(0x0A, 0), 0);
    EXPECT_EQ(BitRead(0x0A, 3), 1);
    EXPECT_EQ(BitRead(0x80, 7), 1);
    EXPECT_EQ(BitRead(0x7F, 7), 0);
}

TEST(PortRegisters, StatusReadUndoesTheBusyInversion) {
    ChipRig r(PortChipKind::Spp);
    r.chip.statusPins = 0x80;  // BUSY high: the register's bit 7 reads 0
    EXPECT_EQ(StatusPortRead(r.rec, 0x378), 0x86);
    r.chip.statusPins = 0x00;
    EXPECT_EQ(StatusPortRead(r.rec, 0x378), 0x06);
    EXPECT_EQ(r.rec.log()[0], (PA{PA::Read, 0x379, 0x06}));
}

TEST(PortRegisters, ControlWriteAndReadUndoTheInversionOfBits013) {
    ChipRig r(PortChipKind::Spp);
    ControlPortWrite(r.rec, 0x378, 0x0F);
    EXPECT_EQ(r.rec.log()[0], (PA{PA::Write, 0x37A, 0x04}));
    EXPECT_EQ(r.chip.controlPins(), 0x0F);  // every output pin high, as written
    EXPECT_EQ(ControlPortRead(r.rec, 0x378), 0x0F);
    ControlPortWrite(r.rec, 0x378, 0x20);
    EXPECT_EQ(r.chip.controlRegister(), 0x2B);
    EXPECT_EQ(ControlPortRead(r.rec, 0x378), 0x20);
}

TEST(PortRegisters, DataIsReadAndWrittenAsIs) {
    ChipRig r(PortChipKind::Spp);
    DataPortWrite(r.rec, 0x378, 0xC3);
    EXPECT_EQ(DataPortRead(r.rec, 0x378), 0xC3);
    EXPECT_EQ(r.rec.log(), (std::vector<PA>{{PA::Write, 0x378, 0xC3}, {PA::Read, 0x378, 0xC3}}));
}

TEST(PortRegisters, EcpModeIsTheTopThreeBitsOfTheEcr) {
    SimulatedBus bus;
    bus.poke(0x77A, 0xE1);
    EXPECT_EQ(ReadEcpMode(bus, 0x378), 7);
    bus.poke(0x77A, 0x75);
    EXPECT_EQ(ReadEcpMode(bus, 0x378), 3);
}

TEST(PortRegisters, SetEcpModeKeepsTheLowFiveBits) {
    SimulatedBus bus;
    RecordingPortIo rec(bus);
    bus.poke(0x77A, 0x75);
    SetEcpMode(rec, 0x378, 1);
    EXPECT_EQ(rec.log(), (std::vector<PA>{{PA::Read, 0x77A, 0x75}, {PA::Write, 0x77A, 0x35}}));
}

TEST(PortRegisters, EppTimeoutIsClearedByWritingOneThenZero) {
    for (auto how :
         {TimeoutClear::ByWritingOne, TimeoutClear::ByWritingZero, TimeoutClear::ByReadingStatus}) {
        ChipRig r(PortChipKind::Epp);
        r.chip.timeoutClear = how;
        r.chip.setTimeout(true);
        EXPECT_EQ(ReadEppTimeoutBit(r.rec, 0x378), 0);
        EXPECT_FALSE(r.chip.timeout());
        EXPECT_EQ(r.rec.log().size(), 4u);
        EXPECT_EQ(r.rec.writesTo(0x379), (std::vector<std::uint8_t>{1, 0}));
    }
}

TEST(PortRegisters, EppTimeoutBitThatStaysSetIsReported) {
    SimulatedBus bus;
    class StuckTimeout final : public BusDevice {
        bool claims(std::uint16_t p) const override { return p == 0x379; }
        std::uint8_t read(std::uint16_t) override { return 0x07; }
        void write(std::uint16_t, std::uint8_t) override {}
    } stuck;
    bus.attach(stuck);
    EXPECT_EQ(ReadEppTimeoutBit(bus, 0x378), 1);
}

// --- TestForEcp --------------------------------------------------------------------------

TEST(TestForEcp, FindsAnEcrAndRestoresIt) {
    ChipRig r(PortChipKind::Ecp);
    r.chip.setEcpMode(3);
    EXPECT_TRUE(TestForEcp(r.rec, 0x378));
    EXPECT_EQ(r.chip.ecpMode(), 3);
    EXPECT_EQ(r.rec.writesTo(0x77A), (std::vector<std::uint8_t>{0x34, 0x61}));
}

TEST(TestForEcp, AnEcrReading0xFFFailsWithoutWritingIt) {
    ChipRig r(PortChipKind::Epp);  // no ECR: the bus floats
    EXPECT_EQ(r.bus.read(0x77A), 0xFF);
    EXPECT_FALSE(TestForEcp(r.rec, 0x378));
    EXPECT_EQ(r.rec.writes(), 0u);
}

TEST(TestForEcp, AFifoNotEmptyFailsWithoutWriting) {
    ChipRig r(PortChipKind::Ecp);
    r.chip.fifoEmpty = false;
    EXPECT_FALSE(TestForEcp(r.rec, 0x378));
    EXPECT_EQ(r.rec.writes(), 0u);
}

TEST(TestForEcp, AControlRegisterMirrorIsNotTakenForAnEcr) {
    ChipRig r(PortChipKind::Spp);
    r.chip.ecrMirrorsControl = true;
    r.chip.write(0x37A, 0x0A);  // as the drivers leave it: the "ECR" reads 0x01, FIFO empty
    EXPECT_EQ(r.bus.read(0x77A), 0x01);
    EXPECT_FALSE(TestForEcp(r.rec, 0x378));
    EXPECT_TRUE(r.rec.writesTo(0x77A).empty());
    EXPECT_EQ(r.rec.writesTo(0x37A), (std::vector<std::uint8_t>{0x04}));
}

TEST(TestForEcp, TheMirrorCheckPassesARealEcr) {
    ChipRig r(PortChipKind::Ecp);
    r.chip.write(0x37A, 0x0A);  // control bit 1 reads 0: the mirror check runs
    EXPECT_TRUE(TestForEcp(r.rec, 0x378));
    EXPECT_EQ(r.rec.writesTo(0x37A), (std::vector<std::uint8_t>{0x04}));
}

TEST(TestForEcp, AnEcrThatDoesNotReadBack0x35IsNotEcp) {
    SimulatedBus bus;  // a plain latch: 0x34 reads back as 0x34
    RecordingPortIo rec(bus);
    bus.poke(0x77A, 0x01);
    bus.poke(0x37A, 0x00);
    EXPECT_FALSE(TestForEcp(rec, 0x378));
    EXPECT_EQ(rec.writesTo(0x77A), (std::vector<std::uint8_t>{0x34, 0x01}));
}

// --- TestForEpp --------------------------------------------------------------------------

TEST(TestForEpp, EppPortPassesWithTheDocumentedSequence) {
    ChipRig r(PortChipKind::Epp);
    EXPECT_TRUE(TestForEpp(r.rec, 0x378));
    std::vector<PA> expected{{PA::Write, 0x37B, 0x55}};
    auto add = [&](const std::vector<PA>& more) {
        expected.insert(expected.end(), more.begin(), more.end());
    };
    add(kTimeoutClear(0x379, 0x86, 0x86));
    add({{PA::Read, 0x37B, 0x55}});
    add(kTimeoutClear(0x379, 0x86, 0x86));
    add({{PA::Write, 0x37B, 0xAA}});
    add(kTimeoutClear(0x379, 0x86, 0x86));
    add({{PA::Read, 0x37B, 0xAA}});
    add(kTimeoutClear(0x379, 0x86, 0x86));
    EXPECT_EQ(r.rec.log(), expected);
}

TEST(TestForEpp, StandardPortIsNotEpp) {
    ChipRig r(PortChipKind::Spp);
    EXPECT_FALSE(TestForEpp(r.rec, 0x378));
    EXPECT_TRUE(r.rec.writesTo(0x37B) == std::vector<std::uint8_t>{0x55});  // stopped after 0x55
}

TEST(TestForEpp, EppCyclesThatTimeOutAreNotEpp) {
    ChipRig r(PortChipKind::Epp);
    r.chip.eppPeripheral = false;
    EXPECT_FALSE(TestForEpp(r.rec, 0x378));
    EXPECT_FALSE(r.chip.timeout());  // cleared again by the test
}

TEST(TestForEpp, EcpPortOnlyInEppMode) {
    ChipRig r(PortChipKind::Ecp);
    EXPECT_FALSE(TestForEpp(r.rec, 0x378));
    r.chip.setEcpMode(4);
    EXPECT_TRUE(TestForEpp(r.rec, 0x378));
}

// --- TestForPS2 and TestForSpp -----------------------------------------------------------

TEST(TestForPS2, BidirectionalPortPassesAndIsLeftInOutputDirection) {
    ChipRig r(PortChipKind::PS2);
    EXPECT_TRUE(TestForPS2(r.rec, 0x378));
    EXPECT_EQ(ControlPortRead(r.rec, 0x378), 0x0F);
    EXPECT_EQ(r.chip.controlRegister(), 0x04);
    EXPECT_FALSE(r.chip.dataLinesAreInputs());
    EXPECT_EQ(r.rec.writesTo(0x37A), (std::vector<std::uint8_t>{0x24, 0x04}));
}

TEST(TestForPS2, StandardPortFailsAndIsLeftAt0x0F) {
    ChipRig r(PortChipKind::Spp);
    r.chip.write(0x37A, 0x0A);
    EXPECT_FALSE(TestForPS2(r.rec, 0x378));
    EXPECT_EQ(ControlPortRead(r.rec, 0x378), 0x0F);
    EXPECT_EQ(r.rec.writesTo(0x378), (std::vector<std::uint8_t>{0x55, 0xAA}));
}

TEST(TestForPS2, ADeviceDriving0x55IsCaughtByTheSecondPattern) {
    ChipRig r(PortChipKind::PS2);
    r.chip.externalData = 0x55;
    EXPECT_TRUE(TestForPS2(r.rec, 0x378));
    EXPECT_EQ(r.rec.writesTo(0x378), (std::vector<std::uint8_t>{0x55, 0xAA}));
}

TEST(TestForSpp, WorkingPortEchoesBothPatterns) {
    ChipRig r(PortChipKind::Spp);
    r.chip.write(0x37A, 0x2B);  // left in input direction by someone: the test sets output
    EXPECT_TRUE(TestForSpp(r.rec, 0x378));
    EXPECT_EQ(r.rec.log().front(), (PA{PA::Write, 0x37A, 0x04}));
}

TEST(TestForSpp, PortThatDoesNotEchoFails) {
    SimulatedBus bus;
    BackwardsPort broken(0x378);
    bus.attach(broken);
    EXPECT_FALSE(TestForSpp(bus, 0x378));
}

// --- TestPort ----------------------------------------------------------------------------

TEST(TestPort, TypesAreListedInTestOrder) {
    struct Case {
        PortChipKind kind;
        int mode;
        const char* type;
        const char* modeText;
    };
    const Case cases[] = {
        {PortChipKind::Spp, 0, "SPP", ""},
        {PortChipKind::PS2, 0, "SPP PS/2", ""},
        {PortChipKind::Epp, 0, "EPP SPP PS/2", ""},
        {PortChipKind::Ecp, 0, "ECP SPP", "SPP"},
        {PortChipKind::Ecp, 1, "ECP SPP PS/2", "PS/2"},
        {PortChipKind::Ecp, 3, "ECP SPP PS/2", "ECP"},
        {PortChipKind::Ecp, 4, "ECP EPP SPP PS/2", "EPP"},
        {PortChipKind::Ecp, 5, "ECP SPP PS/2", ""},
    };
    for (const Case& c : cases) {
        ChipRig r(c.kind);
        r.chip.setEcpMode(c.mode);
        const PortTestResult result = TestPort(r.rec, 0x378);
        EXPECT_EQ(result.TypeText(), c.type) << c.type;
        EXPECT_EQ(result.Mode, c.modeText) << c.type;
        EXPECT_TRUE(result.Found());
    }
}

TEST(TestPort, TestsRunEcpEppSppPS2) {
    ChipRig r(PortChipKind::Epp);
    TestPort(r.rec, 0x378);
    // First access of each test: the ECR, the EPP address register, then the control
    // register written 0x0F (SPP) and 0x2F (PS/2).
    std::vector<std::uint16_t> firsts;
    EXPECT_EQ(r.rec.log().front().port, 0x77A);
    for (const PA& a : r.rec.log())
        if (a.kind == PA::Write && a.port == 0x37A) firsts.push_back(a.value);
    EXPECT_EQ(firsts, (std::vector<std::uint16_t>{0x04, 0x24, 0x04}));
}

TEST(TestPort, APortAt0x3BCIsNeverEpp) {
    ChipRig r(PortChipKind::Epp, 0x3BC);
    const PortTestResult result = TestPort(r.rec, 0x3BC);
    EXPECT_FALSE(result.Epp);
    EXPECT_EQ(result.TypeText(), "SPP PS/2");
    for (const PA& a : r.rec.log()) EXPECT_NE(a.port, 0x3BF);
}

TEST(TestPort, APortFailingEveryTestIsNotFound) {
    SimulatedBus bus;
    BackwardsPort broken(0x378);
    bus.attach(broken);
    const PortTestResult result = TestPort(bus, 0x378);
    EXPECT_FALSE(result.Found());
    EXPECT_EQ(result.TypeText(), "");
}

// --- the window --------------------------------------------------------------------------

TEST(PrinterPortForm, OpensOnTheLptInUseWithEmptyBoxes) {
    Station st;
    st.daq.PrinterPortNumber = 2;
    PrinterPortForm f = OpenPrinterPortForm(st);
    EXPECT_EQ(f.SelectedLpt, 2);
    EXPECT_EQ(f.TxtTypePort, "");
    EXPECT_EQ(f.TxtMode, "");
    EXPECT_EQ(f.TxtAddress, "");
    st.daq.PrinterPortNumber = 9;  // from a damaged setup file
    EXPECT_EQ(OpenPrinterPortForm(st).SelectedLpt, 1);
}

TEST(PrinterPortForm, FindPortOnAnEcpPortSwitchesItToStandardModeAndSelectsIt) {
    StationRig r;
    PortChip chip(0x378, PortChipKind::Ecp);
    chip.setEcpMode(3);
    r.bus.attach(chip);
    PrinterPortForm f = OpenPrinterPortForm(r.st);
    EXPECT_TRUE(FindPort(r.st, f));
    EXPECT_EQ(f.TxtTypePort, "ECP SPP PS/2");
    EXPECT_EQ(f.TxtMode, "SPP");
    EXPECT_EQ(f.TxtAddress, "378");
    EXPECT_EQ(chip.ecpMode(), 0);
    EXPECT_EQ(r.prompt.messages, (std::vector<test::Shown>{{"Printer Port Initialised", "KOVA"}}));
    EXPECT_EQ(r.st.daq.Port.DataPort, 0x378);
    EXPECT_EQ(r.st.daq.Port.ControlShadow, 0x0A);
    EXPECT_EQ(chip.controlRegister(), 0x0A);  // SelectPort wrote the shadow
    EXPECT_EQ(r.st.daq.PrinterPortNumber, 1);
    EXPECT_EQ(r.st.daq.PrinterPortBase, 0x378);
}

TEST(PrinterPortForm, AnEcpPortInAnotherModeKeepsIt) {
    StationRig r;
    PortChip chip(0x378, PortChipKind::Ecp);
    chip.setEcpMode(1);
    r.bus.attach(chip);
    PrinterPortForm f = OpenPrinterPortForm(r.st);
    EXPECT_TRUE(FindPort(r.st, f));
    EXPECT_EQ(f.TxtMode, "PS/2");
    EXPECT_EQ(chip.ecpMode(), 1);
}

TEST(PrinterPortForm, LptWithoutABaseIsNotFound) {
    StationRig r;
    r.st.daq.PrinterPortNumber = 1;
    const PortState before = r.st.daq.Port;
    PrinterPortForm f;
    f.SelectedLpt = 3;
    f.TxtTypePort = "SPP";
    f.TxtAddress = "378";
    EXPECT_FALSE(FindPort(r.st, f));
    EXPECT_EQ(r.prompt.messages, (std::vector<test::Shown>{{"Port LPT 3 Not Found", "KOVA"}}));
    EXPECT_EQ(f.TxtTypePort, "Not Found");
    EXPECT_EQ(f.TxtMode, "");
    EXPECT_EQ(f.TxtAddress, "");
    EXPECT_TRUE(r.rec.log().empty());
    EXPECT_EQ(r.st.daq.Port, before);
    EXPECT_EQ(r.st.daq.PrinterPortNumber, 3);  // the choice is remembered
}

TEST(PrinterPortForm, APortFailingEveryTestIsNotFound) {
    StationRig r;
    BackwardsPort broken(0x278);
    r.bus.attach(broken);
    PrinterPortForm f;
    f.SelectedLpt = 2;
    EXPECT_FALSE(FindPort(r.st, f));
    EXPECT_EQ(r.prompt.messages, (std::vector<test::Shown>{{"Port LPT 2 Not Found", "KOVA"}}));
    EXPECT_EQ(f.TxtTypePort, "Not Found");
    EXPECT_EQ(r.st.daq.Port.DataPort, 0x378);  // not selected
}

TEST(PrinterPortForm, APortAt0x3BCIsSelectedWithItsOwnBase) {
    StationRig r;
    PortChip chip(0x3BC, PortChipKind::Epp);
    r.bus.attach(chip);
    r.bus.setLptBase(3, 0x3BC);
    PrinterPortForm f;
    f.SelectedLpt = 3;
    EXPECT_TRUE(FindPort(r.st, f));
    EXPECT_EQ(f.TxtTypePort, "SPP PS/2");
    EXPECT_EQ(f.TxtAddress, "3BC");
    EXPECT_EQ(r.st.daq.Port.DataPort, 0x3BC);
    EXPECT_EQ(r.st.daq.Port.ControlPort, 0x3BE);
    EXPECT_EQ(r.st.daq.PrinterPortNumber, 3);
    EXPECT_EQ(r.st.daq.PrinterPortBase, 0x3BC);
}

TEST(PrinterPortForm, WithoutAReachablePortEveryLptIsNotFound) {
    StationRig r;
    UnavailablePortIo none("no port");
    r.st.platform.port = &none;
    PrinterPortForm f;
    EXPECT_FALSE(FindPort(r.st, f));
    EXPECT_EQ(r.prompt.messages, (std::vector<test::Shown>{{"Port LPT 1 Not Found", "KOVA"}}));
}

TEST(PrinterPortForm, AddressesAreShownInUpperCaseHexadecimal) {
    EXPECT_EQ(PortAddressText(0x378), "378");
    EXPECT_EQ(PortAddressText(0xD010), "D010");
    EXPECT_EQ(PortAddressText(0xbc), "BC");
}

}  // namespace kova
