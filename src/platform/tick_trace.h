#pragma once
// A record of the scan's ticks for whoever wants to see how steady the scan is: one line per
// tick with the time it began and how long it ran, written as the program goes
// ("kova --tick-trace FILE"). Times come from a steady clock, so a change of the machine's
// clock does not show as a late or early tick.
#include <cstdio>
#include <string>

#include "platform/steady_clock.h"

namespace kova {

class TickTrace {
  public:
    explicit TickTrace(SteadyClock& clock = TheSteadyClock()) : clock_(clock) {}
    ~TickTrace() { close(); }
    TickTrace(const TickTrace&) = delete;
    TickTrace& operator=(const TickTrace&) = delete;

    // Starts a trace in the file (replacing what it held) with a heading line that says what
    // the columns are. "" when it is open, otherwise why not.
    std::string open(const std::string& path);
    void close();
    bool isOpen() const { return file_ != nullptr; }

    // Around one tick. Each end writes a line: the start in seconds since the trace began
    // (microseconds) and the duration in milliseconds (microseconds). A line is flushed as
    // it is written, so a trace of a program that was killed is whole up to its last tick.
    void tickStarted();
    void tickEnded();

    // The heading line every trace begins with.
    static const char* heading();

  private:
    SteadyClock& clock_;
    std::FILE* file_ = nullptr;
    SteadyClock::time_point began_{};
    SteadyClock::time_point tickStart_{};
    bool inTick_ = false;
};

}  // namespace kova
