#include "logging/log_status.h"

namespace kova {

namespace {
std::string records(long long n) {
    return std::to_string(n) + (n == 1 ? " record" : " records");
}

// The name after the last folder separator ("\" in a Windows path, "/" here).
std::string shown(const std::string& path, bool fullPath) {
    if (fullPath) return path;
    const std::size_t cut = path.find_last_of("\\/");
    return cut == std::string::npos ? path : path.substr(cut + 1);
}

// The file being written: the open one (in daily mode today's), else the one logging will
// open at its next record.
std::string fileBeingWritten(const Station& st) {
    return st.logRun.File.isOpen() ? st.logRun.File.path() : st.logging.LogFileName;
}

std::string whileOn(const Station& st, bool fullPath) {
    const LogRunState& r = st.logRun;
    const std::string file = shown(fileBeingWritten(st), fullPath);
    std::string text = records(r.SampleNumber);
    if (!file.empty()) text += " to " + file;
    // Counting samples has no start condition: it writes from the first logging period on.
    if (r.LogState == 0 && st.logging.LogMode != 0)
        return "Logging: waiting for start condition, " + text;
    return "Logging: " + text;
}
}  // namespace

std::string LoggingStatusText(const Station& st, bool fullPath) {
    if (st.switches.LoggingEnabled.isOn()) return whileOn(st, fullPath);
    const LogStop& stop = st.logRun.LastStop;
    switch (stop.why) {
        case LogStop::Why::Finished:
            return "Logging finished: " + records(stop.records) + " to " +
                   shown(stop.file, fullPath);
        case LogStop::Why::Failed: {
            const std::string file = shown(stop.file, fullPath);
            return "Logging stopped: " + (file.empty() ? std::string("the log file") : file) + " " +
                   stop.reason;
        }
        case LogStop::Why::None:
            break;
    }
    return "Logging off";
}

}  // namespace kova
