#pragma once
// The byte layout of the CSV log: header line, record line, time and date fields, the
// daily file name. Text is UTF-8 in memory and Windows-1252 in the file; lines end CR LF.
#include <cstdint>
#include <string>

#include "core/station.h"

namespace kova {

inline constexpr const char* kLogLineEnd = "\r\n";

// The folder part of a chosen path, up to and including its last separator ("\" or "/"),
// or "" when it has none.
std::string LogDirectoryOf(const std::string& path);
// "DA" + DDMMYY (or MMDDYY) + ".CSV" in the folder.
std::string DailyLogFileName(const std::string& directory, long dateSerial, bool dateFormatUS);
// "dd/mm/yy" or "mm/dd/yy".
std::string LogDateText(long dateSerial, bool dateFormatUS);
// "hh:mm:ss.000": each field as the clock holds it, two digits at least (minutes of 60 or
// more after a long period stay as they are).
std::string LogTimeText(std::int16_t hour, std::int16_t minute, std::int16_t second,
                        std::int16_t millisecond);
// A UTF-8 text as Windows-1252 bytes; a character without a Windows-1252 byte becomes "?".
std::string LogFileText(const std::string& utf8);

// The header line with its line end, as written to the file.
std::string LogHeaderLine(const Station& st);
// The record line for the current SampleNumber and logging clock, as written to the file.
std::string LogRecordLine(const Station& st);
// The same into a buffer the caller keeps: once the buffer has grown to a record's length,
// formatting a record takes nothing from the heap.
void FormatLogRecordLine(const Station& st, std::string& line);

}  // namespace kova
