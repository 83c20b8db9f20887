#pragma once
// The start-up measurement of how fast this PC runs an empty counted loop, and the
// busy-wait count the drivers derive their bit timing from.
#include <cstdint>
#include <functional>
#include <string>

#include "platform/clock.h"

namespace kova {

// Runs an empty counted loop of the given number of rounds. The real one spins; tests
// advance a simulated clock instead.
using LoopRunner = std::function<void(long long rounds)>;
void RunEmptyLoop(long long rounds);

struct PcSpeedResult {
    double PcSpeed = 0;      // rounds per second
    std::int32_t Delay = 0;  // busy-wait count of one bit time
};

// The Delay for a measured speed: rounded(PcSpeed x 0.000002 + 1) x 3 above 500000 rounds
// per second, else 3 (the factor 3 applies in both cases).
std::int32_t DelayFromSpeed(double pcSpeed);

// Grows the loop tenfold from 10000 rounds until it takes at least 0.1 s, then times a
// loop expected to take about two seconds. Time is read through the clock only.
PcSpeedResult MeasurePcSpeed(const Clock& clock, const LoopRunner& loop = RunEmptyLoop);

// "PC SPEED=" + speed with two decimals + "  Delay=" + delay, as the splash shows it.
std::string SpeedText(const PcSpeedResult& r);

}  // namespace kova
