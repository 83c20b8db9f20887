#include "core/pc_speed.h"

#include <cstdio>

#include "core/numeric.h"

namespace kova {

void RunEmptyLoop(long long rounds) {
    volatile long long i = 0;
    while (i < rounds) i = i + 1;
}

long long DelayFormula(double pcSpeed) {
    if (!(pcSpeed > 500000)) return 1 * 3;
    const double rounded = roundHalfEven(pcSpeed * 0.000002 + 1);
    // Far beyond any PC: keep the product inside 64 bits.
    if (rounded > 1e15) return static_cast<long long>(1e15) * 3;
    return static_cast<long long>(rounded) * 3;
}

std::int32_t DelayFromSpeed(double pcSpeed) {
    const long long delay = DelayFormula(pcSpeed);
    return delay > kLargestDelay ? kLargestDelay : narrow32(delay);
}

namespace {
// Seconds since midnight in single precision, as the measurement reads them.
float secondsNow(const Clock& clock) {
    return static_cast<float>(clock.now().secondsOfDay());
}

double elapsed(float t0, float t1) {
    double d = static_cast<double>(t1) - t0;
    if (d < 0) d += 86400.0;  // the measurement ran across midnight
    return d;
}
}  // namespace

PcSpeedResult MeasurePcSpeed(const Clock& clock, const LoopRunner& loop) {
    long long n = 1000;
    double took = 0;
    do {
        n *= 10;
        const float t0 = secondsNow(clock);
        loop(n);
        took = elapsed(t0, secondsNow(clock));
    } while (took < 0.1 && n < 100000000000LL);
    if (took <= 0) took = 0.1;
    // About two seconds of rounds; a fast PC may need more than 32 bits to count them.
    const auto rounds = static_cast<long long>(roundHalfEven(static_cast<double>(n) * 2 / took));
    const float t0 = secondsNow(clock);
    loop(rounds);
    double t = elapsed(t0, secondsNow(clock));
    if (t <= 0) t = took * static_cast<double>(rounds) / static_cast<double>(n);
    PcSpeedResult r;
    r.PcSpeed = static_cast<double>(rounds) / t;
    r.Delay = DelayFromSpeed(r.PcSpeed);
    r.Capped = DelayFormula(r.PcSpeed) > kLargestDelay;
    return r;
}

std::string SpeedText(const PcSpeedResult& r) {
    char buf[96];
    std::snprintf(buf, sizeof buf, "PC SPEED=%.2f  Delay=%d%s", r.PcSpeed,
                  static_cast<int>(r.Delay), r.Capped ? " (capped)" : "");
    return buf;
}

std::string CapNote(const PcSpeedResult& r) {
    if (!r.Capped) return {};
    return "This PC counts faster than the busy-wait's counter allows: Delay is capped at " +
           std::to_string(kLargestDelay) + " instead of " +
           std::to_string(DelayFormula(r.PcSpeed)) + ".";
}

}  // namespace kova
