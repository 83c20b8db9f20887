#pragma once
#include <cstdint>

namespace kova {

inline constexpr std::int16_t kUnitMs = 1;
inline constexpr std::int16_t kUnitSeconds = 1000;

// The I/O and logging periods (unit 1 = milliseconds, 1000 = seconds).
struct Periods {
    std::int16_t IOPeriod = 1;
    std::int16_t IOUnits = kUnitSeconds;
    std::int16_t LogPeriod = 1;
    std::int16_t LogUnits = kUnitSeconds;
    std::int16_t TrendAtLogPeriod = 0;  // boolean, true = -1
    bool operator==(const Periods&) const = default;
};

}  // namespace kova
