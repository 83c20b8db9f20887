#pragma once
// What kova-cli run adds around the scan for real modules: stopping on SIGINT/SIGTERM
// within a moment whatever the run is doing, the PC-speed measurement the program's
// start-up makes, and telling the user once about the port and a silent module.
#include <atomic>
#include <chrono>
#include <functional>
#include <string>

#include "core/station.h"

namespace kova::cli {

// From now on SIGINT and SIGTERM set stop; the run checks it between its steps.
void InstallStopSignals(std::atomic<bool>& stop);

// Sleeps until `until`, looking at stop (and calling eachLook, when given) every 50 ms.
// False when stopped first.
bool SleepUntilOrStop(std::chrono::steady_clock::time_point until, const std::atomic<bool>& stop,
                      const std::function<void()>& eachLook = {});

// For every module type but TEST: measures the PC's speed as the program's start-up does,
// gives the drivers the delay count and prints the figure ("PC SPEED=...  Delay=..."; a
// capped count is explained on stderr). The empty loop runs in slices that look at stop,
// so a stop ends the measurement at once (the count is then left as it was).
void MeasureSpeedForRun(Station& st, const std::atomic<bool>& stop);

// Prints on stderr, once each, that the port cannot be reached (with what the selected
// module reads on it), that the module stopped answering, and that the log file vanished
// from its path and was started again.
class RunTeller {
  public:
    void tell(Station& st);

  private:
    std::string portTold_;
};

}  // namespace kova::cli
