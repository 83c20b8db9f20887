#include "logging/log_status.h"

namespace kova {

namespace {
std::string records(long long n) {
    return std::to_string(n) + (n == 1 ? " record" : " records");
}

// The file being written: the open one (in daily mode today's), else the one logging will
// open at its next record.
std::string fileBeingWritten(const Station& st) {
    return st.logRun.File.isOpen() ? st.logRun.File.path() : st.logging.LogFileName;
}

std::string whileOn(const Station& st) {
    const LogRunState& r = st.logRun;
    const std::string file = fileBeingWritten(st);
    const std::string head =
        file.empty() ? std::string("Logging on: ") : "Logging to " + file + ": ";
    // Counting samples has no start condition: it writes from the first logging period on.
    const bool waiting = r.LogState == 0 && st.logging.LogMode != 0;
    if (!waiting) return head + records(r.SampleNumber);
    std::string text = head + "waiting for start condition";
    if (r.SampleNumber > 0) text += " (" + records(r.SampleNumber) + " so far)";
    return text;
}
}  // namespace

std::string LoggingStatusText(const Station& st) {
    if (st.switches.LoggingEnabled.isOn()) return whileOn(st);
    const LogStop& stop = st.logRun.LastStop;
    switch (stop.why) {
        case LogStop::Why::Finished:
            return "Logging finished: " + records(stop.records) + " written to " + stop.file;
        case LogStop::Why::Failed:
            return "Logging stopped: " +
                   (stop.file.empty() ? std::string("the log file") : stop.file) + " " +
                   stop.reason;
        case LogStop::Why::None:
            break;
    }
    return "Logging off";
}

}  // namespace kova
