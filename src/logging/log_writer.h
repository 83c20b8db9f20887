#pragma once
// The CSV log writer as the scan and the main window use it.
//
// The log file is held open between start and stop of logging. A file that cannot be
// opened or written switches logging off (file closed, LoggingEnabled 0) and then throws
// Fault(FaultKind::File) naming the file and the reason, for the general error report.
#include <cstdint>

#include "core/station.h"

namespace kova {

// Opens the log file when logging is switched on and starts the logging clock.
// Daily mode: the clock's date picks the day's file ("DA" + date + ".CSV" in LogDirectory),
// which is appended to without a header, and becomes the file date, so the next record
// goes to the same file. Otherwise the file is truncated and given a header
// (OverwriteFile) or appended to. SampleNumber and LogState start again from 0.
void OpenLogFile(Station& st);
// Sets the logging clock from the clock seam: today, the present hour, minute and second,
// millisecond 0.
void StartLogClock(Station& st);
// Adds whole milliseconds to the logging clock (each wrap subtracts its modulus once).
void AdvanceLogClock(Station& st, std::int32_t ms);
// Checks the start/stop conditions and writes one record when logging is on and active.
// A log file renamed or deleted while logging is noticed at the next record: the path is
// opened again (appending), given the header when it is new, and the record goes there;
// LogRestartToTell then has the news.
void WriteLogRecord(Station& st);
// What the user must hear once about the log file having been started again, "" when
// nothing happened since the last call.
std::string LogRestartToTell(Station& st);
// Closes the log file if it is open (switching logging off, exit).
void CloseLogFile(Station& st);
// LogFileName = LogDirectory & "DA" & LogDate as DDMMYY (MMDDYY when DateFormatUS) & ".CSV".
void MakeDailyFileName(Station& st);
// Writes the header line to the open log file.
void WriteLogHeader(Station& st);
// True while a log file is open.
bool LogFileIsOpen(const Station& st);

}  // namespace kova
