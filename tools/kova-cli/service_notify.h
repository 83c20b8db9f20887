#pragma once
// kova-cli run as a systemd service (Type=notify): READY=1 once the first tick is done,
// WATCHDOG=1 while the scan keeps going, STOPPING=1 when the run ends. The scan's own
// thread makes every call, so a scan that hangs, or only stalls inside a tick, stops the
// pings, and systemd restarts the service after WatchdogSec; no other thread (MQTT, web)
// can keep a stuck scan looking alive.
// Outside a service (no NOTIFY_SOCKET), and in builds without libsystemd (Windows), every
// call does nothing.
#include <chrono>

namespace kova::cli {

class ServiceNotifier {
  public:
    ServiceNotifier();

    // After each tick: READY=1 after the first, then WATCHDOG=1 when one is due.
    void tickDone();
    // While the scan waits for its next tick (a long I/O period): WATCHDOG=1 when due.
    void waiting();
    // The run ends (signal, --ticks reached): STOPPING=1.
    void stopping();

  private:
    void pingWhenDue();

    bool ready_ = false;
    // WATCHDOG_USEC, when the service manager asked for pings; zero otherwise.
    std::chrono::microseconds watchdog_{0};
    std::chrono::steady_clock::time_point lastPing_{};
};

}  // namespace kova::cli
