#pragma once
// The scan cycle: one tick of the main window's periodic timer.
#include <cstdint>

#include "core/station.h"

namespace kova {

// Runs one tick against the station: mirror nothing (the window reads the switches),
// keep the timer interval in step with the I/O period, scan when due (inputs, min/max,
// trend samples, system variables, logging period), then control statements on every
// tick and alarms when the clock reading changed. Time comes only from the clock seam,
// the interval goes only to the timer seam. Faults propagate to the caller's error report.
void Tick(Station& st);

// The shortest millisecond period the periods window accepts. A setup file may carry a
// shorter one (0 or below included); the scan then runs at this period rather than spin.
inline constexpr int kShortestScanMs = 50;
// The timer interval, and the time each scan adds towards the logging period, of a
// millisecond I/O period: IOPeriod, or kShortestScanMs when IOPeriod is below it.
int ScanPeriodMs(const Periods& p);

// The digital input states 1..count (at most 16) from a digital input word: bit n-1 is
// input n, so input 16 is the word's sign bit.
void StoreDigitalInputs(ScanState& scan, std::uint16_t word, int count);

}  // namespace kova
