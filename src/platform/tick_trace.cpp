#include "platform/tick_trace.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>

namespace kova {

const char* TickTrace::heading() {
    return "# kova tick trace: start of each scan tick (s since the trace began) and its "
           "duration (ms)\n";
}

std::string TickTrace::open(const std::string& path) {
    close();
    std::FILE* f = std::fopen(path.c_str(), "w");
    if (!f) return std::strerror(errno);
    if (std::fputs(heading(), f) < 0 || std::fflush(f) != 0) {
        const std::string why = std::strerror(errno);
        std::fclose(f);
        return why;
    }
    file_ = f;
    began_ = clock_.now();
    inTick_ = false;
    return "";
}

void TickTrace::close() {
    if (!file_) return;
    std::fclose(file_);
    file_ = nullptr;
}

void TickTrace::tickStarted() {
    if (!file_) return;
    tickStart_ = clock_.now();
    inTick_ = true;
}

void TickTrace::tickEnded() {
    if (!file_ || !inTick_) return;
    inTick_ = false;
    using std::chrono::duration;
    const SteadyClock::time_point end = clock_.now();
    // Bounded so that each number fits its place in the line, however long the run.
    const double start = std::min(duration<double>(tickStart_ - began_).count(), 1e12);
    const double ms = std::min(duration<double, std::milli>(end - tickStart_).count(), 1e12);
    // "." whatever the user's locale, so that any tool reads the numbers.
    char line[64];
    char* at = std::to_chars(line, line + 30, start, std::chars_format::fixed, 6).ptr;
    *at++ = ' ';
    at = std::to_chars(at, line + 62, ms, std::chars_format::fixed, 3).ptr;
    *at++ = '\n';
    // Each line reaches the file when its tick ends (flushed here: not every C library
    // buffers by lines). A trace that cannot be written any more (a full disk) ends; the scan
    // goes on.
    const auto n = static_cast<std::size_t>(at - line);
    if (std::fwrite(line, 1, n, file_) != n || std::fflush(file_) != 0) close();
}

}  // namespace kova
