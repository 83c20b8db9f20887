#pragma once
#include <cstdint>

#include "core/one_based.h"

namespace kova {

// What the scan keeps between ticks.
struct ScanState {
    std::int32_t NumDigitalInputs = 0;
    Table<std::int16_t, 16> DigitalInputs;
    double ScanCount = 0;
    double ScanTime = 0;  // seconds per scan over the last 200 scans
    std::int16_t SecondTicks = 0;
    double LastTickTime = -1;  // no tick yet
    // The handler's own persistent locals.
    std::int16_t LastUnits = 0;
    std::int16_t LastPeriod = 0;
    std::int32_t RateStart = 0;
    std::int32_t LogAccumMs = 0;
    bool DoScan = false;
};

}  // namespace kova
