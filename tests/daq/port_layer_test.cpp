#include "daq/port_layer.h"

#include <gtest/gtest.h>

#include "core/fault.h"
#include "platform/recording_port_io.h"
#include "platform/simulated_bus.h"

namespace kova {

TEST(DelayLoop, ZeroRunsOneRoundAndNegativeNone) {
    EXPECT_EQ(DelayLoop(0), 1);
    EXPECT_EQ(DelayLoop(-5), 0);
    EXPECT_EQ(DelayLoop(-1), 0);
}

TEST(DelayLoop, RunsCountPlusOneRoundsUpToTheLimit) {
    EXPECT_EQ(DelayLoop(1), 2);
    EXPECT_EQ(DelayLoop(2500), 2501);
    EXPECT_EQ(DelayLoop(32765), 32766);
}

TEST(DelayLoop, CountOf32766OrMoreIsAnOverflow) {
    EXPECT_THROW(DelayLoop(32766), Fault);
    EXPECT_THROW(DelayLoop(100000), Fault);
    try {
        DelayLoop(32766);
    } catch (const Fault& f) {
        EXPECT_EQ(f.kind(), FaultKind::Overflow);
    }
}

TEST(PortBus, AWaitIsOneBitTimeOfTheDelayCount) {
    SimulatedBus bus;
    RecordingPortIo rec(bus);
    PortState regs;
    regs.DelayCount = 2571;  // the largest this kind of PC measures
    PortBus b(regs, rec);
    for (int i = 0; i < 20; ++i) EXPECT_NO_THROW(b.wait());
    ASSERT_EQ(rec.waits(), 20u);
    for (const PortAccess& a : rec.log()) EXPECT_EQ(a, (PortAccess{PortAccess::Wait, 0, 0, 2571}));
    regs.DelayCount = 32766;
    EXPECT_THROW(b.wait(), Fault);  // the loop's 16-bit counter would overflow
}

TEST(SimulatedBus, PlainAddressesLatchWhatWasWritten) {
    SimulatedBus bus;
    EXPECT_EQ(bus.read(0x378), 0);
    bus.write(0x378, 0x55);
    EXPECT_EQ(bus.read(0x378), 0x55);
    EXPECT_EQ(bus.lptBase(1), 0x378);
    EXPECT_EQ(bus.lptBase(2), 0x278);
    EXPECT_EQ(bus.lptBase(3), 0);
}

namespace {
class Echo final : public BusDevice {
  public:
    bool claims(std::uint16_t port) const override { return port == 0x379; }
    std::uint8_t read(std::uint16_t) override { return static_cast<std::uint8_t>(last ^ 0xFF); }
    void write(std::uint16_t, std::uint8_t v) override { last = v; }
    std::uint8_t last = 0;
};
}  // namespace

TEST(RecordingPortIo, LogsEveryAccessInOrder) {
    SimulatedBus bus;
    Echo echo;
    bus.attach(echo);
    RecordingPortIo rec(bus);
    rec.write(0x379, 0x0F);
    EXPECT_EQ(rec.read(0x379), 0xF0);
    rec.write(0x378, 1);
    ASSERT_EQ(rec.log().size(), 3u);
    EXPECT_EQ(rec.log()[0], (PortAccess{PortAccess::Write, 0x379, 0x0F}));
    EXPECT_EQ(rec.log()[1], (PortAccess{PortAccess::Read, 0x379, 0xF0}));
    EXPECT_EQ(rec.reads(), 1u);
    EXPECT_EQ(rec.writes(), 2u);
    EXPECT_EQ(rec.writesTo(0x378), std::vector<std::uint8_t>{1});
}

TEST(RecordingPortIo, RecordsEachWaitWithItsCountWhereItStands) {
    SimulatedBus bus;
    RecordingPortIo rec(bus);
    rec.write(0x378, 1);
    rec.noteWait(40);
    rec.read(0x379);
    rec.noteWait(0);
    ASSERT_EQ(rec.log().size(), 4u);
    EXPECT_EQ(rec.log()[1], (PortAccess{PortAccess::Wait, 0, 0, 40}));
    EXPECT_EQ(rec.log()[3], (PortAccess{PortAccess::Wait, 0, 0, 0}));
    EXPECT_EQ(rec.waits(), 2u);
    EXPECT_EQ(rec.reads(), 1u);
    EXPECT_EQ(rec.writes(), 1u);
}

TEST(NullPortIo, ReadsAsAFloatingBus) {
    NullPortIo port;
    port.write(0x378, 0x55);
    EXPECT_EQ(port.read(0x378), 0xFF);
    EXPECT_EQ(port.read(0x379), 0xFF);
    EXPECT_EQ(port.lptBase(1), 0);
}

}  // namespace kova
