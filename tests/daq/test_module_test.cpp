#include "daq/test_module.h"

#include <gtest/gtest.h>

namespace kova {

TEST(TestModule, AnalogRampClimbsFromChannelTimes200AndFallsBack) {
    TestModuleState s;
    EXPECT_EQ(TestReadAnalogInput(s, 3), 600);  // first read of a run: no offset
    for (int i = 2; i < 100; ++i) TestReadAnalogInput(s, 3);
    EXPECT_EQ(TestReadAnalogInput(s, 3), 798);  // the hundredth read
    EXPECT_EQ(TestReadAnalogInput(s, 3), 600);  // the 101st
}

TEST(TestModule, RampCounterIsSharedByAllChannels) {
    TestModuleState s;
    EXPECT_EQ(TestReadAnalogInput(s, 1), 200);
    EXPECT_EQ(TestReadAnalogInput(s, 2), 402);
    EXPECT_EQ(TestReadAnalogInput(s, 8), 1604);
}

TEST(TestModule, RampOutOfRangeRestartsAtZero) {
    TestModuleState s;
    s.Ramp = -4;
    EXPECT_EQ(TestReadAnalogInput(s, 1), 200);
    s.Ramp = 250;
    EXPECT_EQ(TestReadAnalogInput(s, 1), 200);
}

TEST(TestModule, DigitalWalkingZero) {
    TestModuleState s;
    const std::uint16_t expected[] = {14, 13, 11, 7, 14, 13, 11, 7, 14};
    for (std::uint16_t e : expected) EXPECT_EQ(TestReadDigitalInputs(s), e);
}

}  // namespace kova
