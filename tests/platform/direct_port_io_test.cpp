#include "platform/direct_port_io.h"

#include <gtest/gtest.h>

#include "core/station.h"
#include "daq/printer_port_detect.h"
#include "daq/sim/port_chip.h"
#include "fake_port_system.h"
#include "support/test_support.h"

namespace kova {

namespace {
using test::FakePortSystem;

// Addresses with nothing on them: every read gives 0xFF, writes vanish.
class FloatingLines final : public BusDevice {
  public:
    FloatingLines(std::uint16_t from, std::uint16_t to) : from_(from), to_(to) {}
    bool claims(std::uint16_t port) const override { return port >= from_ && port <= to_; }
    std::uint8_t read(std::uint16_t) override { return 0xFF; }
    void write(std::uint16_t, std::uint8_t) override {}

  private:
    std::uint16_t from_, to_;
};
}  // namespace

TEST(DirectIo, AsksForTheLowRegistersAndTheEcrOfTheChosenPort) {
    auto sys = std::make_shared<FakePortSystem>();
    DirectPortIo port(sys, PortPaths{}, 1);
    EXPECT_TRUE(port.ok());
    EXPECT_EQ(sys->calls, (std::vector<std::string>{"ioperm 0x378 8", "ioperm 0x778 3"}));
}

TEST(DirectIo, ReachesEveryRegisterRaw) {
    auto sys = std::make_shared<FakePortSystem>();
    PortChip chip{0x378, PortChipKind::Ecp};
    sys->bus.attach(chip);
    DirectPortIo port(sys, PortPaths{}, 1);
    port.write(0x37A, 0x0A);
    EXPECT_EQ(chip.controlRegister(), 0x0A);
    chip.setEcpMode(3);
    EXPECT_EQ(port.read(0x77A), 0x61);  // mode 3, FIFO empty
    port.write(0x378, 0x5A);
    EXPECT_EQ(port.read(0x378), 0x5A);
    EXPECT_TRUE(port.unreachable().empty());
}

TEST(DirectIo, BaseFromTheKernelTableElseTheConventionalOne) {
    auto sys = std::make_shared<FakePortSystem>();
    sys->addPort(2, 0xD010);
    DirectPortIo port(sys, PortPaths{}, 2);
    EXPECT_EQ(sys->calls.front(), "ioperm 0xD010 8");
    EXPECT_EQ(port.lptBase(2), 0xD010);
    EXPECT_EQ(port.lptBase(1), 0x378);
    EXPECT_EQ(port.lptBase(3), 0x3BC);
    EXPECT_EQ(port.lptBase(4), 0);
}

TEST(DirectIo, WithoutTheKernelTableAFloatingBusIsNoPort) {
    auto sys = std::make_shared<FakePortSystem>();
    FloatingLines nothing(0x378, 0x37F);
    sys->bus.attach(nothing);
    DirectPortIo port(sys, PortPaths{}, 1);
    EXPECT_FALSE(port.ok());
    EXPECT_EQ(port.problem(),
              "LPT 1: no printer port answers at 0x378 (its data register does not read back "
              "what is written)");
    EXPECT_EQ(port.lptBase(1), 0);
}

TEST(DirectIo, FindPortOnAPcWithoutAPrinterPortSaysNotFound) {
    // Every register reads 0xFF: the PS/2 test alone would take that for a port.
    auto sys = std::make_shared<FakePortSystem>();
    FloatingLines nothing(0x378, 0x77A);
    sys->bus.attach(nothing);
    DirectPortIo port(sys, PortPaths{}, 1);
    EXPECT_TRUE(TestForPS2(port, 0x378));
    Station st;
    test::ScriptedPrompter prompt;
    st.platform.port = &port;
    st.platform.prompter = &prompt;
    PrinterPortForm f;
    EXPECT_FALSE(FindPort(st, f));
    EXPECT_EQ(f.TxtTypePort, "Not Found");
    EXPECT_EQ(prompt.messages, (std::vector<test::Shown>{{"Port LPT 1 Not Found", "KOVA"}}));
}

TEST(DirectIo, APortThatReadsBackIsOfferedAndKeepsItsDataByte) {
    auto sys = std::make_shared<FakePortSystem>();
    PortChip chip{0x378, PortChipKind::Spp};
    sys->bus.attach(chip);
    sys->bus.write(0x378, 0x3C);  // what the outputs held
    DirectPortIo port(sys, PortPaths{}, 1);
    EXPECT_TRUE(port.ok());
    EXPECT_EQ(port.lptBase(1), 0x378);
    EXPECT_EQ(sys->bus.read(0x378), 0x3C);
}

TEST(DirectIo, AnotherLptIsProbedOnceWhenAsked) {
    auto sys = std::make_shared<FakePortSystem>();
    FloatingLines nothing(0x278, 0x27F);
    sys->bus.attach(nothing);
    DirectPortIo port(sys, PortPaths{}, 1);
    EXPECT_EQ(port.lptBase(2), 0);
    const auto calls = sys->calls.size();
    EXPECT_EQ(port.lptBase(2), 0);
    EXPECT_EQ(sys->calls.size(), calls);
}

TEST(DirectIo, KernelWithoutIoPortAccessSaysSo) {
    auto sys = std::make_shared<FakePortSystem>();
    sys->iopermErrno = ENOSYS;
    DirectPortIo port(sys, PortPaths{}, 1);
    EXPECT_FALSE(port.ok());
    EXPECT_EQ(port.problem(),
              "Direct port access at 0x378-0x37F: not available: this kernel is built without I/O "
              "port access");
    EXPECT_EQ(port.read(0x378), 0xFF);  // refused addresses read as an empty bus
}

TEST(DirectIo, WithoutRootSaysWhatIsNeeded) {
    auto sys = std::make_shared<FakePortSystem>();
    sys->iopermErrno = EPERM;
    DirectPortIo port(sys, PortPaths{}, 2);
    EXPECT_EQ(port.problem(),
              "Direct port access at 0x278-0x27F: not permitted: it needs root (CAP_SYS_RAWIO) "
              "and is blocked while the kernel is locked down (Secure Boot)");
}

TEST(DirectIo, ErrnoTexts) {
    EXPECT_EQ(IopermProblemText(0x3BC, 8, EOPNOTSUPP),
              "Direct port access at 0x3BC-0x3C3: not available: only x86 PCs have I/O ports");
    EXPECT_EQ(IopermProblemText(0x378, 1, EINVAL),
              "Direct port access at 0x378-0x378: refused: address out of range");
    EXPECT_EQ(IopermProblemText(0x378, 1, EACCES), IopermProblemText(0x378, 1, EPERM));
}

TEST(DirectIo, OtherAddressesAreAskedForOnceAndListedWhenRefused) {
    auto sys = std::make_shared<FakePortSystem>();
    DirectPortIo port(sys, PortPaths{}, 1);
    sys->iopermErrno = EPERM;
    sys->calls.clear();
    EXPECT_EQ(port.read(0x278), 0xFF);
    port.write(0x278, 1);
    EXPECT_EQ(sys->calls, (std::vector<std::string>{"ioperm 0x278 1"}));
    EXPECT_EQ(port.unreachable(), (std::vector<std::uint16_t>{0x278}));
    EXPECT_TRUE(port.ok());  // the chosen port still works
}

TEST(DirectIo, APortNearTheTopOfTheAddressSpaceDoesNotWrap) {
    auto sys = std::make_shared<FakePortSystem>();
    sys->files["/proc/sys/dev/parport/parport0/base-addr"] = "65532\t0\n";
    DirectPortIo port(sys, PortPaths{}, 1);
    EXPECT_EQ(sys->calls, (std::vector<std::string>{"ioperm 0xFFFC 4"}));
    EXPECT_EQ(port.read(0xFFFF), 0);
}

}  // namespace kova
