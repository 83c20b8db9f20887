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
    bool Capped = false;     // the formula gave more than kLargestDelay
};

// The busy-wait's 16-bit counter allows counts up to 32765; a PC fast enough for the
// formula to pass that gets this count instead (its bit times then last a little less
// than the formula meant, still far longer than the modules need).
inline constexpr std::int32_t kLargestDelay = 32765;

// The count the formula gives for a measured speed, uncapped: rounded(PcSpeed x 0.000002
// + 1) x 3 above 500000 rounds per second, else 3 (the factor 3 applies in both cases).
long long DelayFormula(double pcSpeed);
// The Delay for a measured speed: DelayFormula, capped at kLargestDelay.
std::int32_t DelayFromSpeed(double pcSpeed);

// Grows the loop tenfold from 10000 rounds until it takes at least 0.1 s, then times a
// loop expected to take about two seconds. Time is read through the clock only.
PcSpeedResult MeasurePcSpeed(const Clock& clock, const LoopRunner& loop = RunEmptyLoop);

// "PC SPEED=" + speed with two decimals + "  Delay=" + delay, as the splash shows it;
// a capped count is followed by " (capped)".
std::string SpeedText(const PcSpeedResult& r);
// Why a capped count was capped, for the splash's tooltip and the command line; "" when
// the count was not capped.
std::string CapNote(const PcSpeedResult& r);

}  // namespace kova
