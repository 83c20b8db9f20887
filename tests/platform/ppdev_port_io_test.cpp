#include "platform/ppdev_port_io.h"

#include <gtest/gtest.h>

#include "daq/sim/port_chip.h"
#include "fake_port_system.h"

namespace kova {

namespace {
using test::FakePortSystem;

struct PpdevRig {
    std::shared_ptr<FakePortSystem> sys = std::make_shared<FakePortSystem>();
    PortChip chip{0x378, PortChipKind::PS2};
    PpdevRig() {
        sys->addPort(1, 0x378);
        sys->bus.attach(chip);
    }
    std::unique_ptr<PpdevPortIo> open(int lpt = 1) {
        return std::make_unique<PpdevPortIo>(sys, PortPaths{}, lpt);
    }
};
}  // namespace

TEST(Ppdev, ClaimsTheDeviceExclusivelyBeforeAnyRegisterAccess) {
    PpdevRig r;
    auto port = r.open();
    EXPECT_TRUE(port->ok());
    EXPECT_EQ(port->problem(), "");
    EXPECT_EQ(r.sys->calls,
              (std::vector<std::string>{"open /dev/parport0", "PPEXCL 3", "PPCLAIM 3"}));
}

TEST(Ppdev, ReleasesAndClosesTheDeviceWhenDone) {
    PpdevRig r;
    r.open().reset();
    ASSERT_GE(r.sys->calls.size(), 2u);
    EXPECT_EQ(r.sys->calls[r.sys->calls.size() - 2], "PPRELEASE 3");
    EXPECT_EQ(r.sys->calls.back(), "close 3");
    EXPECT_TRUE(r.sys->openFds.empty());
}

TEST(Ppdev, BaseComesFromTheKernelTable) {
    PpdevRig r;
    r.sys->addPort(2, 0xD010);
    auto port = r.open();
    EXPECT_EQ(port->lptBase(1), 0x378);
    EXPECT_EQ(port->lptBase(2), 0xD010);
    EXPECT_EQ(port->lptBase(3), 0);  // no parport2
    EXPECT_EQ(port->lptBase(0), 0);
}

TEST(Ppdev, DataRegisterMapsToPPRDATAAndPPWDATA) {
    PpdevRig r;
    auto port = r.open();
    r.sys->calls.clear();
    port->write(0x378, 0xA5);
    EXPECT_EQ(r.chip.dataLatch(), 0xA5);
    EXPECT_EQ(port->read(0x378), 0xA5);
    EXPECT_EQ(r.sys->calls, (std::vector<std::string>{"PPWDATA 3 0xA5", "PPRDATA 3"}));
}

TEST(Ppdev, StatusIsReadRawWithBusyStillInverted) {
    PpdevRig r;
    auto port = r.open();
    r.chip.statusPins = 0x80;  // BUSY high reads as bit 7 = 0
    EXPECT_EQ(port->read(0x379) & 0x80, 0);
    r.chip.statusPins = 0x08;  // ERROR high reads as is, BUSY low as bit 7 = 1
    EXPECT_EQ(port->read(0x379) & 0xF8, 0x88);
    EXPECT_EQ(r.sys->calls.back(), "PPRSTATUS 3");
}

TEST(Ppdev, ControlIsWrittenRawThroughPPWCONTROL) {
    PpdevRig r;
    auto port = r.open();
    r.sys->calls.clear();
    port->write(0x37A, 0x0A);
    EXPECT_EQ(r.chip.controlRegister(), 0x0A);
    EXPECT_EQ(r.chip.controlPins(), 0x01);  // the hardware inverts bits 0, 1 and 3
    EXPECT_EQ(port->read(0x37A), 0x0A);
    EXPECT_EQ(r.sys->calls, (std::vector<std::string>{"PPWCONTROL 3 0xA", "PPRCONTROL 3"}));
}

TEST(Ppdev, DirectionBitGoesThroughPPDATADIRAndReadsBack) {
    PpdevRig r;
    auto port = r.open();
    r.sys->calls.clear();
    port->write(0x37A, 0x24);
    EXPECT_TRUE(r.chip.dataLinesAreInputs());
    EXPECT_EQ(port->read(0x37A), 0x24);
    port->write(0x37A, 0x25);  // direction unchanged: no PPDATADIR
    port->write(0x37A, 0x04);
    EXPECT_FALSE(r.chip.dataLinesAreInputs());
    EXPECT_EQ(r.sys->calls, (std::vector<std::string>{"PPWCONTROL 3 0x4", "PPDATADIR 3 0x1",
                                                      "PPRCONTROL 3", "PPWCONTROL 3 0x5",
                                                      "PPWCONTROL 3 0x4", "PPDATADIR 3 0x0"}));
}

TEST(Ppdev, EppRegistersAndEcrAreReportedUnreachable) {
    PpdevRig r;
    auto port = r.open();
    r.sys->calls.clear();
    EXPECT_EQ(port->read(0x37B), 0xFF);
    port->write(0x37B, 0x55);
    EXPECT_EQ(port->read(0x77A), 0xFF);
    port->write(0x379, 1);  // the status register cannot be written through ppdev
    EXPECT_TRUE(r.sys->calls.empty());
    EXPECT_EQ(port->unreachable(), (std::vector<std::uint16_t>{0x37B, 0x77A, 0x379}));
    EXPECT_EQ(port->unreachableText(),
              "Not reachable through ppdev (only data, status and control are): 0x37B, 0x77A, "
              "0x379");
    EXPECT_TRUE(port->ok());  // the port itself still works
}

TEST(Ppdev, AnAddressOfNoPortIsUnreachable) {
    PpdevRig r;
    auto port = r.open();
    EXPECT_EQ(port->read(0x278), 0xFF);
    EXPECT_EQ(port->unreachable(), (std::vector<std::uint16_t>{0x278}));
}

TEST(Ppdev, OtherPortsAreClaimedWhenFirstAddressed) {
    PpdevRig r;
    r.sys->addPort(2, 0x278);
    PortChip second{0x278, PortChipKind::Spp};
    r.sys->bus.attach(second);
    auto port = r.open(1);
    r.sys->calls.clear();
    port->write(0x278, 0x3C);
    EXPECT_EQ(second.dataLatch(), 0x3C);
    EXPECT_EQ(r.sys->calls, (std::vector<std::string>{"open /dev/parport1", "PPEXCL 4", "PPCLAIM 4",
                                                      "PPWDATA 4 0x3C"}));
}

TEST(Ppdev, MissingDeviceSaysNoSuchPort) {
    auto sys = std::make_shared<test::FakePortSystem>();
    PpdevPortIo port(sys, PortPaths{}, 1);
    EXPECT_FALSE(port.ok());
    EXPECT_EQ(port.problem(),
              "/dev/parport0: no such port (no parallel port driver loaded or no printer port)");
    EXPECT_EQ(port.lptBase(1), 0);
    EXPECT_EQ(port.read(0x378), 0xFF);  // nothing claims it: no crash
}

TEST(Ppdev, PermissionDeniedSaysWhichGroupToJoin) {
    PpdevRig r;
    r.sys->nodes["/dev/parport0"].openErrno = EACCES;
    auto port = r.open();
    EXPECT_EQ(port->problem(),
              "/dev/parport0: permission denied: add your user to group lp (sudo adduser $USER "
              "lp, then log in again)");
}

TEST(Ppdev, PortHeldByAnotherDriverSaysSoAndClosesTheDevice) {
    PpdevRig r;
    r.sys->nodes["/dev/parport0"].requestErrno[PpRequest::Claim] = EBUSY;
    auto port = r.open();
    EXPECT_EQ(port->problem(),
              "/dev/parport0: the port is in use by another program or driver (PPEXCL/PPCLAIM)");
    EXPECT_TRUE(r.sys->openFds.empty());
    EXPECT_EQ(port->read(0x378), 0xFF);
}

TEST(Ppdev, AFileThatIsNotAPortSaysSo) {
    PpdevRig r;
    r.sys->nodes["/dev/parport0"].requestErrno[PpRequest::Exclusive] = ENOTTY;
    EXPECT_EQ(r.open()->problem(),
              "/dev/parport0: not a parallel port device (PPEXCL/PPCLAIM refused)");
}

TEST(Ppdev, ErrnoTexts) {
    const std::string p = "/dev/parport1";
    EXPECT_EQ(PpdevProblemText(p, "open", ENOENT),
              p + ": no such port (no parallel port driver loaded or no printer port)");
    EXPECT_EQ(PpdevProblemText(p, "open", ENODEV), PpdevProblemText(p, "open", ENOENT));
    EXPECT_EQ(PpdevProblemText(p, "open", EPERM),
              p + ": permission denied: add your user to group lp (sudo adduser $USER lp, then "
                  "log in again)");
    EXPECT_EQ(PpdevProblemText(p, "open", ENOSYS),
              p + ": this system has no parallel port support");
    EXPECT_EQ(PpdevProblemText(p, "PPCLAIM", EIO).rfind(p + ": PPCLAIM failed: ", 0), 0u);
}

TEST(Ppdev, KernelTableMissingButDeviceOpensUsesTheConventionalBase) {
    auto sys = std::make_shared<test::FakePortSystem>();
    sys->nodes["/dev/parport1"].base = 0x278;
    PpdevPortIo port(sys, PortPaths{}, 2);
    EXPECT_TRUE(port.ok());
    EXPECT_EQ(port.lptBase(2), 0x278);
}

TEST(Ppdev, NoLpt4) {
    PpdevRig r;
    PpdevPortIo port(r.sys, PortPaths{}, 4);
    EXPECT_EQ(port.problem(), "LPT 4: no such printer port");
}

TEST(Ppdev, AFailedRegisterRequestIsReportedNotFatal) {
    PpdevRig r;
    r.sys->nodes["/dev/parport0"].requestErrno[PpRequest::ReadStatus] = EIO;
    auto port = r.open();
    EXPECT_EQ(port->read(0x379), 0xFF);
    EXPECT_EQ(port->problem().rfind("/dev/parport0: register access failed: ", 0), 0u);
}

}  // namespace kova
