#pragma once
// The CSV log writer as the scan and the main window use it.
#include <cstdint>

#include "core/station.h"

namespace kova {

// Adds whole milliseconds to the logging clock (each wrap subtracts its modulus once).
void AdvanceLogClock(Station& st, std::int32_t ms);
// Checks the start/stop conditions and writes one record when logging is on and active.
void WriteLogRecord(Station& st);
// Closes the log file if it is open (switching logging off, exit).
void CloseLogFile(Station& st);

}  // namespace kova
