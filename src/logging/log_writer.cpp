#include "logging/log_writer.h"

#include <cctype>
#include <filesystem>
#include <string>
#include <system_error>
#include <utility>

#include "core/fault.h"
#include "core/numeric.h"
#include "logging/log_conditions.h"
#include "logging/log_format.h"

namespace kova {

namespace {
bool loggingOn(const Station& st) {
    return st.switches.LoggingEnabled.isOn();
}
bool dailyMode(const Station& st) {
    return st.logging.DailyFiles != 0;
}

// Logging cannot go on: close the file, switch logging off, and report.
[[noreturn]] void stopLogging(Station& st, const std::string& file, const char* what,
                              const std::string& reason) {
    st.logRun.File.close();
    st.switches.LoggingEnabled = Variant::integer(0);
    st.logRun.LastStop = {LogStop::Why::Failed, file, st.logRun.SampleNumber,
                          std::string(what) + ": " + reason};
    throw Fault(FaultKind::File,
                "Log file \"" + file + "\" " + what + ": " + reason + " (logging switched off)");
}

void openOrStop(Station& st, bool truncate) {
    const std::string& name = st.logging.LogFileName;
    const std::string reason = st.logRun.File.open(name, truncate);
    if (!reason.empty()) stopLogging(st, name, "cannot be opened", reason);
}

void writeOrStop(Station& st, const std::string& bytes) {
    const std::string reason = st.logRun.File.write(bytes);
    if (reason.empty()) return;
    // Named only on failure: a record written costs no copy of the path.
    const std::string name =
        st.logRun.File.isOpen() ? st.logRun.File.path() : st.logging.LogFileName;
    stopLogging(st, name, "cannot be written", reason);
}

// The file was renamed or deleted under the writer: every record written to it from now on
// would be lost to whoever opens the path. The path is opened again (never truncated: a
// file put there meanwhile is kept), a new file is given its header, and the user is told.
void restartVanishedFile(Station& st) {
    LogFile& file = st.logRun.File;
    if (file.stillAtItsPath()) return;
    const std::string name = file.path();
    file.close();
    const std::string reason = file.open(name, false);
    if (!reason.empty()) stopLogging(st, name, "cannot be opened again", reason);
    const bool fresh = file.isEmpty();
    if (fresh) WriteLogHeader(st);
    st.logRun.Restarted = "Log file \"" + name + "\" was renamed or deleted while logging: " +
                          (fresh ? "it was started again with its header"
                                 : "the file now at its path is appended to") +
                          ", and logging goes on";
}

std::string upper(std::string s) {
    for (char& c : s) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return s;
}

// The daily file's header rule when logging starts: look the file up in its folder; a
// header is due only when the bare name found there does not occur within LogFileName
// (an empty result counts as occurring). The file has just been opened, so it is found
// and starting logging writes no header; new days get theirs from WriteLogRecord.
bool startedDailyFileNeedsHeader(const std::string& logFileName) {
    std::error_code ec;
    const std::filesystem::path p(NativeLogPath(logFileName));
    std::string found;
    if (std::filesystem::is_regular_file(p, ec)) found = p.filename().string();
    if (found.empty()) return false;
    return upper(logFileName).find(upper(found)) == std::string::npos;
}
}  // namespace

bool LogFileIsOpen(const Station& st) {
    return st.logRun.File.isOpen();
}

void StartLogClock(Station& st) {
    const LocalDateTime now = st.platform.clock->now();
    LogRunState& r = st.logRun;
    r.LogDate = now.dateSerial();
    r.LogHour = narrow16(now.hour);
    r.LogMinute = narrow16(now.minute);
    r.LogSecond = narrow16(now.second);
    r.LogMillisecond = 0;
}

void MakeDailyFileName(Station& st) {
    st.logging.LogFileName =
        DailyLogFileName(st.logging.LogDirectory, st.logRun.LogDate, st.logging.DateFormatUS != 0);
}

void WriteLogHeader(Station& st) {
    writeOrStop(st, LogHeaderLine(st));
}

void CloseLogFile(Station& st) {
    st.logRun.File.close();
}

void OpenLogFile(Station& st) {
    LogRunState& r = st.logRun;
    r.File.close();
    r.SampleNumber = 0;
    r.LogState = 0;
    StartLogClock(st);
    if (dailyMode(st)) {
        // The day's file is the one named for the logging clock's date; making it the
        // file date keeps the first record from starting it afresh.
        MakeDailyFileName(st);
        openOrStop(st, false);
        if (startedDailyFileNeedsHeader(st.logging.LogFileName)) WriteLogHeader(st);
        r.FileDate = r.LogDate;
    } else if (st.logging.OverwriteFile != 0) {
        openOrStop(st, true);
        WriteLogHeader(st);
    } else {
        openOrStop(st, false);
    }
}

std::string LogRestartToTell(Station& st) {
    return std::exchange(st.logRun.Restarted, std::string());
}

void AdvanceLogClock(Station& st, std::int32_t ms) {
    LogRunState& r = st.logRun;
    long long seconds = ms / 1000;
    const long long frac = ms % 1000;
    const long long minutes = seconds / 60;
    seconds %= 60;

    const long long t = r.LogMillisecond + frac;
    r.LogMillisecond = narrow16(t % 1000);
    long long second = r.LogSecond + seconds + t / 1000;
    long long minuteCarry = 0;
    if (second >= 60) second -= 60, minuteCarry = 1;
    r.LogSecond = narrow16(second);

    long long minute = r.LogMinute + minutes + minuteCarry;
    long long hourCarry = 0;
    if (minute >= 60) minute -= 60, hourCarry = 1;
    r.LogMinute = narrow16(minute);

    long long hour = r.LogHour + hourCarry;
    if (hour > 23) hour -= 24, r.LogDate += 1;
    r.LogHour = narrow16(hour);
}

void WriteLogRecord(Station& st) {
    if (!loggingOn(st)) return;
    // Logging switched on without its file (a setup file saved with logging on): start it.
    if (!st.logRun.File.isOpen()) OpenLogFile(st);

    CheckLogConditions(st);
    if (!LoggingActive(st)) return;

    LogRunState& r = st.logRun;
    if (dailyMode(st) && r.LogDate != r.FileDate) {
        MakeDailyFileName(st);
        r.File.close();
        openOrStop(st, true);
        WriteLogHeader(st);
        r.FileDate = r.LogDate;
    }
    restartVanishedFile(st);
    r.SampleNumber = narrow32(static_cast<long long>(r.SampleNumber) + 1);
    FormatLogRecordLine(st, r.RecordLine);
    writeOrStop(st, r.RecordLine);
}

}  // namespace kova
