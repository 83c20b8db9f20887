#pragma once
// What logging is doing right now, in one line for the main window's status bar, so that a
// logger left running for days shows at a glance that records are still being written.
#include <string>

#include "core/station.h"

namespace kova {

// "Logging to FILE: N records" while records are written; "... waiting for start condition"
// while a tag-value or clock-time condition holds logging back; "Logging finished: N records
// written to FILE" after a sample count ran out; "Logging stopped: FILE cannot be written:
// REASON" after the file failed; otherwise "Logging off".
std::string LoggingStatusText(const Station& st);

}  // namespace kova
