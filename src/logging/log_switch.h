#pragma once
// Switching logging on and off: the main window's "Log Data" button (CmdLog) and the
// logging box of the start/stop window.
#include "core/station.h"

namespace kova {

// CmdLog. Off -> on: needs a log file name ("Error No Log File Name Has Been Entered",
// titled with the application's title, leaves logging off); opens the file (header as the
// mode asks) and sets LoggingEnabled to 1. On -> off: closes the file, LoggingEnabled 0.
// Returns whether logging is on afterwards. A file that cannot be opened faults (File)
// with logging left off.
bool ToggleLogging(Station& st);

// Makes logging follow a switch without any message: opens the file when it goes on,
// closes it when it goes off, does nothing when it already is as asked. The caller has
// checked that a file name is set.
void SetLoggingSwitch(Station& st, bool on);

}  // namespace kova
