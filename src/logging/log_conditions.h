#pragma once
// When records are written: the start/stop conditions checked once per logging period.
#include "core/station.h"

namespace kova {

// Mode 0 (number of samples), 1 (a tag's value, with memory) or 2 (clock window). Keeps
// LogState; mode 0 switches logging off and closes the file after StopSampleCount records.
// In modes 1 and 2 the logging clock restarts from the present time when the state changes
// from waiting (0) to logging (1), and only then.
void CheckLogConditions(Station& st);

// Logging as the readings screens and trends show it: switched on and writing records.
bool LoggingActive(const Station& st);

}  // namespace kova
