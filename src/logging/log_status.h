#pragma once
// What logging is doing right now, in one line for the main window's status bar, so that a
// logger left running for days shows at a glance that records are still being written.
#include <string>

#include "core/station.h"

namespace kova {

// "Logging: N records to FILE" while records are written; "Logging: waiting for start
// condition, N records to FILE" while a tag-value or clock-time condition holds logging
// back; "Logging finished: N records to FILE" after a sample count ran out; "Logging
// stopped: FILE cannot be written: REASON" after the file failed; otherwise "Logging off".
// The count comes first so that a narrow status bar cuts the file name, not the count.
// FILE is the bare file name, or the whole path when fullPath is set.
std::string LoggingStatusText(const Station& st, bool fullPath = false);

}  // namespace kova
