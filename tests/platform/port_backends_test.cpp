#include "platform/port_backends.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "daq/sim/port_chip.h"
#include "fake_port_system.h"
#include "platform/direct_port_io.h"
#include "platform/ppdev_port_io.h"
#include "platform/windows_port_io.h"
#include "support/test_support.h"

namespace kova {

namespace {
using test::FakePortSystem;
}

TEST(PortBackends, PrefersPpdev) {
    auto sys = std::make_shared<FakePortSystem>();
    sys->addPort(1, 0x378);
    std::string problem = "old";
    auto port = OpenPortBackend(1, problem, sys, PortPaths{});
    EXPECT_EQ(problem, "");
    EXPECT_NE(dynamic_cast<PpdevPortIo*>(port.get()), nullptr);
    EXPECT_EQ(port->lptBase(1), 0x378);
}

TEST(PortBackends, FallsBackToDirectAccessWhenPpdevIsRefused) {
    auto sys = std::make_shared<FakePortSystem>();
    sys->addPort(1, 0x378);
    sys->nodes["/dev/parport0"].openErrno = EACCES;
    std::string problem;
    auto port = OpenPortBackend(1, problem, sys, PortPaths{});
    EXPECT_EQ(problem, "");
    EXPECT_NE(dynamic_cast<DirectPortIo*>(port.get()), nullptr);
}

TEST(PortBackends, WhenNothingWorksThePortReadsAsAFloatingBusAndSaysWhy) {
    auto sys = std::make_shared<FakePortSystem>();
    sys->iopermErrno = ENOSYS;
    std::string problem;
    auto port = OpenPortBackend(1, problem, sys, PortPaths{});
    ASSERT_NE(port, nullptr);
    const std::string expected =
        "Printer port LPT 1 cannot be reached, the modules will read every line high, as with "
        "nothing connected. /dev/parport0: no such "
        "port (no parallel port driver loaded or no printer port). Direct port access at "
        "0x378-0x37F: not available: this kernel is built without I/O port access.";
    EXPECT_EQ(problem, expected);
    EXPECT_EQ(port->problem(), expected);
    port->write(0x378, 0x55);
    EXPECT_EQ(port->read(0x378), 0xFF);
    EXPECT_EQ(port->read(0x379), 0xFF);
    EXPECT_EQ(port->read(0x37A), 0xFF);
    EXPECT_EQ(port->lptBase(1), 0);
}

TEST(PortBackends, PermissionProblemsOfBothAreShown) {
    auto sys = std::make_shared<FakePortSystem>();
    sys->addPort(2, 0x278);
    sys->nodes["/dev/parport1"].openErrno = EACCES;
    sys->iopermErrno = EPERM;
    std::string problem;
    OpenPortBackend(2, problem, sys, PortPaths{});
    EXPECT_NE(problem.find("/dev/parport1: permission denied: add your user to group lp (sudo "
                           "adduser $USER lp, then log in again)"),
              std::string::npos);
    EXPECT_NE(problem.find("needs root (CAP_SYS_RAWIO)"), std::string::npos);
}

TEST(PortBackends, AnLptNumberOutsideOneToThreeIsRefusedClearly) {
    auto sys = std::make_shared<FakePortSystem>();
    std::string problem;
    auto port = OpenPortBackend(7, problem, sys, PortPaths{});
    EXPECT_EQ(problem, "Printer port LPT 7 does not exist: choose LPT 1, 2 or 3");
    EXPECT_TRUE(sys->calls.empty());
    EXPECT_EQ(port->read(0x378), 0xFF);
}

// The real calls of this machine, pointed at an empty folder: no device, no kernel table.
TEST(PortBackends, RealSystemWithoutAnyPortNeverCrashes) {
    test::TempFolder tmp;
    const PortPaths paths{(tmp.path() / "dev").string(), (tmp.path() / "proc").string()};
    std::string problem;
    auto port = OpenPortBackend(1, problem, MakeRealPortSystem(), paths);
    ASSERT_NE(port, nullptr);
    if (problem.empty()) GTEST_SKIP() << "direct port access works on this machine";
    EXPECT_EQ(problem.rfind("Printer port LPT 1 cannot be reached, the modules will read every "
                            "line high, as with nothing connected. " +
                                paths.dev + "/parport0: no such port",
                            0),
              0u);
    EXPECT_NE(problem.find("Direct port access at 0x378-0x37F: "), std::string::npos);
    EXPECT_EQ(port->read(0x379), 0xFF);
}

// A regular file where the device should be: it opens, but the ppdev requests are refused.
TEST(PortBackends, RealSystemWithAFileInsteadOfADeviceSaysItIsNotAPort) {
    test::TempFolder tmp;
    std::filesystem::create_directories(tmp.path() / "dev");
    test::WriteFileBytes(tmp.path() / "dev/parport0", "");
    const PortPaths paths{(tmp.path() / "dev").string(), (tmp.path() / "proc").string()};
    PpdevPortIo port(MakeRealPortSystem(), paths, 1);
    EXPECT_EQ(port.problem(),
              paths.dev + "/parport0: not a parallel port device (PPEXCL/PPCLAIM refused)");
}

// This machine: no /dev/parport*, and ioperm fails. The default chooser must say so.
TEST(PortBackends, ThisMachineGetsAClearMessage) {
    if (std::filesystem::exists("/dev/parport0")) GTEST_SKIP() << "this machine has a printer port";
    std::string problem;
    auto port = OpenPortBackend(1, problem);
    ASSERT_NE(port, nullptr);
    if (problem.empty()) GTEST_SKIP() << "direct port access works on this machine";
    EXPECT_NE(problem.find("/dev/parport0: no such port"), std::string::npos);
    EXPECT_EQ(port->problem(), problem);
    EXPECT_EQ(port->read(0x378), 0xFF);
}

TEST(PortBackends, WindowsDllIsOnlyForWindowsBuilds) {
    std::string problem;
#ifndef _WIN32
    EXPECT_EQ(OpenWindowsPortDll(problem), nullptr);
    EXPECT_EQ(problem, "The Windows port DLL exists only in Windows builds");
#else
    auto port = OpenWindowsPortDll(problem);
    EXPECT_TRUE(port != nullptr || !problem.empty());
#endif
}

}  // namespace kova
