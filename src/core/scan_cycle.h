#pragma once
// The scan cycle: one tick of the main window's periodic timer.
#include "core/station.h"

namespace kova {

// Runs one tick against the station: mirror nothing (the window reads the switches),
// keep the timer interval in step with the I/O period, scan when due (inputs, min/max,
// trend samples, system variables, logging period), then control statements on every
// tick and alarms when the clock reading changed. Time comes only from the clock seam,
// the interval goes only to the timer seam. Faults propagate to the caller's error report.
void Tick(Station& st);

}  // namespace kova
