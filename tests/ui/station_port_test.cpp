#include "app/station_port.h"

#include <gtest/gtest.h>

#include "platform/port_backends.h"
#include "platform/simulated_bus.h"

namespace kova::app {

namespace {
// Opens a simulated bus per LPT number and remembers what it opened.
struct Opener {
    std::vector<int> opened;
    std::string why;
    StationPort::Opener fn() {
        return [this](int lpt, std::string& problem) -> std::unique_ptr<PortIo> {
            opened.push_back(lpt);
            problem = why;
            auto bus = std::make_unique<SimulatedBus>();
            bus->poke(0x378, static_cast<std::uint8_t>(lpt));  // tells the buses apart
            return bus;
        };
    }
};
}  // namespace

TEST(StationPort, NothingIsOpenedBeforeTheFirstAccess) {
    int lpt = 1;
    Opener o;
    StationPort port([&] { return lpt; }, o.fn());
    EXPECT_FALSE(port.opened());
    EXPECT_TRUE(o.opened.empty());
    EXPECT_EQ(port.problem(), "");
}

TEST(StationPort, TheLptInUseIsOpenedOnceAndAgainWhenItChanges) {
    int lpt = 1;
    Opener o;
    StationPort port([&] { return lpt; }, o.fn());
    EXPECT_EQ(port.read(0x378), 1);
    port.write(0x37A, 0x0A);
    EXPECT_EQ(port.read(0x37A), 0x0A);
    EXPECT_EQ(o.opened, std::vector<int>{1});
    lpt = 2;
    EXPECT_EQ(port.read(0x378), 2);
    EXPECT_EQ(o.opened, (std::vector<int>{1, 2}));
}

TEST(StationPort, ABackEndThatCannotReachThePortSaysWhy) {
    int lpt = 1;
    Opener o;
    o.why = "LPT 1: no parallel port on this machine";
    StationPort port([&] { return lpt; }, o.fn());
    port.lptBase(1);
    EXPECT_EQ(port.problem(), "LPT 1: no parallel port on this machine");
}

TEST(StationPort, AnOpenerThatGivesNothingLeavesAPortThatReadsAsAFloatingBus) {
    StationPort port([] { return 1; }, [](int, std::string&) { return std::unique_ptr<PortIo>(); });
    EXPECT_EQ(port.read(0x379), 0xFF);
    EXPECT_EQ(port.lptBase(1), 0);
}

TEST(StationPort, TheRealChooserOnAMachineWithoutAPortReadsAFloatingBusAndExplains) {
    // The build machines have no parallel port; on one that has, the port is simply found.
    StationPort port([] { return 1; });
    port.read(0x379);
    EXPECT_TRUE(port.opened());
    if (!port.problem().empty()) {
        EXPECT_EQ(port.read(0x378), 0xFF);
        EXPECT_NE(port.problem().find("LPT"), std::string::npos) << port.problem();
    }
}

}  // namespace kova::app
