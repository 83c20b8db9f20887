#include "core/pc_speed.h"

#include <gtest/gtest.h>

namespace kova {

TEST(PcSpeed, DelayIsRoundedSpeedTermTimesThree) {
    EXPECT_EQ(DelayFromSpeed(10000000), 63);  // rounded(20 + 1) x 3
    EXPECT_EQ(DelayFromSpeed(500000), 3);
    EXPECT_EQ(DelayFromSpeed(1), 3);
    EXPECT_EQ(DelayFromSpeed(500001), 6);    // rounded(2.000002) x 3
    EXPECT_EQ(DelayFromSpeed(2000000), 15);  // rounded(4 + 1) x 3
}

// A PC that runs `speed` empty rounds per second, timed by a simulated clock.
struct SimulatedPc {
    SimulatedClock clock{LocalDateTime{2026, 11, 15, 10, 0, 0, 0}};
    double speed;
    double carryMs = 0;
    void run(long long rounds) {
        carryMs += rounds / speed * 1000.0;
        const auto whole = static_cast<long long>(carryMs);
        carryMs -= static_cast<double>(whole);
        clock.advance(whole);
    }
};

TEST(PcSpeed, MeasuresThroughTheClockSeam) {
    SimulatedPc pc{.speed = 10000000};
    const PcSpeedResult r = MeasurePcSpeed(pc.clock, [&](long long n) { pc.run(n); });
    EXPECT_NEAR(r.PcSpeed, 10000000, 20000);
    EXPECT_EQ(r.Delay, 63);
    EXPECT_EQ(SpeedText({10000000, 63}), "PC SPEED=10000000.00  Delay=63");
}

TEST(PcSpeed, SlowPcGetsTheMinimumDelay) {
    SimulatedPc pc{.speed = 400000};
    const PcSpeedResult r = MeasurePcSpeed(pc.clock, [&](long long n) { pc.run(n); });
    EXPECT_NEAR(r.PcSpeed, 400000, 2000);
    EXPECT_EQ(r.Delay, 3);
}

}  // namespace kova

namespace kova {
TEST(PcSpeed, AFastPcNeedsMoreThan32BitsOfRoundsAndStillMeasures) {
    SimulatedPc pc{.speed = 2.0e9};
    const PcSpeedResult r = MeasurePcSpeed(pc.clock, [&](long long n) { pc.run(n); });
    EXPECT_NEAR(r.PcSpeed, 2.0e9, 2.0e7);
    EXPECT_EQ(r.Delay, 12003);  // rounded(4000 + 1) x 3
}
}  // namespace kova

namespace kova {
TEST(PcSpeed, TheLargestDelayStaysBelowTheBusyWaitsLimit) {
    // rounded(PcSpeed x 0.000002 + 1) x 3 reaches 32766 from about 5.46e9 rounds a second.
    EXPECT_EQ(DelayFormula(5.4e9), 32403);
    EXPECT_EQ(DelayFromSpeed(5.4e9), 32403);
    EXPECT_EQ(DelayFormula(5.5e9), 33003);
    EXPECT_EQ(DelayFromSpeed(5.5e9), kLargestDelay);
    EXPECT_EQ(DelayFromSpeed(1e30), kLargestDelay);  // no overflow on the way
    EXPECT_LT(kLargestDelay, 32766);
}

TEST(PcSpeed, ACappedDelayIsSaidOnTheSplash) {
    SimulatedPc pc{.speed = 8.0e9};
    const PcSpeedResult r = MeasurePcSpeed(pc.clock, [&](long long n) { pc.run(n); });
    EXPECT_EQ(r.Delay, kLargestDelay);
    EXPECT_TRUE(r.Capped);
    EXPECT_EQ(SpeedText({8.0e9, kLargestDelay, true}),
              "PC SPEED=8000000000.00  Delay=32765 (capped)");
    EXPECT_EQ(CapNote(r).rfind("This PC counts faster than the busy-wait's counter allows: Delay "
                               "is capped at 32765 instead of ",
                               0),
              0u);
}

TEST(PcSpeed, AnUncappedDelayHasNoNote) {
    SimulatedPc pc{.speed = 1.2e9};  // the speed of a current PC
    const PcSpeedResult r = MeasurePcSpeed(pc.clock, [&](long long n) { pc.run(n); });
    EXPECT_FALSE(r.Capped);
    EXPECT_NEAR(r.Delay, 7203, 3);  // rounded(2400 + 1) x 3, within the measurement
    EXPECT_EQ(CapNote(r), "");
    EXPECT_EQ(SpeedText(r).find("capped"), std::string::npos);
}
}  // namespace kova
