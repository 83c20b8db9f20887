#pragma once
// Logging settings (stored in the setup file) and logging run state.
#include <cstdint>
#include <string>

#include "core/variant.h"
#include "logging/log_file.h"

namespace kova {

struct LogSettings {
    std::string LogFileName;
    std::string LogDirectory;  // up to and including the last "\" (or "/") of the chosen path
    std::int16_t DailyFiles = 0;
    std::int16_t OverwriteFile = 0;
    Variant LogTimeColumn = Variant::integer(0);
    Variant LogDateColumn = Variant::integer(0);
    std::int16_t DateFormatUS = 0;
    // Start/stop conditions.
    std::int16_t LogMode = 0;  // 0 samples, 1 tag value, 2 clock times
    Variant StopSampleCount = Variant::integer(0);
    Variant StartHour = Variant::integer(0);
    Variant StartMinute = Variant::integer(0);
    Variant StartTimeSecs = Variant::longInt(0);
    Variant StopHour = Variant::integer(0);
    Variant StopMinute = Variant::integer(0);
    std::int32_t StopTimeSecs = 0;
    std::int16_t ConditionTag = 0;
    Variant StartValue = Variant::real(0);
    std::int16_t StartAbove = 0;
    float StopValue = 0;
    std::int16_t StopAbove = 0;
};

// How logging last ended without the user switching it off, for the status bar.
struct LogStop {
    enum class Why { None, Finished, Failed };
    Why why = Why::None;
    std::string file;          // the log file it was writing
    std::int32_t records = 0;  // Finished: the records written
    std::string reason;        // Failed: what went wrong ("cannot be written: Disk full")
};

// The logging clock and what logging keeps while it runs (not saved).
struct LogRunState {
    std::int16_t LogHour = 0, LogMinute = 0, LogSecond = 0, LogMillisecond = 0;
    long LogDate = 0;   // date serial (days since 30 December 1899)
    long FileDate = 0;  // date of the daily file now open
    std::int32_t SampleNumber = 0;
    std::int16_t LogState = 0;  // 1 while records are written, 0 while waiting to start
    LogFile File;               // the one log channel, open between start and stop of logging
    LogStop LastStop;           // cleared whenever the user switches logging on or off
    std::string RecordLine;     // kept between records so that writing one needs no heap
    // Set when the log file vanished from its path (renamed or deleted) and was started
    // again; the front end tells the user once (LogRestartToTell).
    std::string Restarted;
};

}  // namespace kova
