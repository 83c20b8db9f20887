#include "service_notify.h"

#include <cstdint>

#ifdef KOVA_WITH_SYSTEMD
#include <systemd/sd-daemon.h>
#endif

namespace kova::cli {

namespace {
void notify([[maybe_unused]] const char* state) {
#ifdef KOVA_WITH_SYSTEMD
    // Without NOTIFY_SOCKET this does nothing; a failed send is not the scan's business.
    sd_notify(0, state);
#endif
}
}  // namespace

ServiceNotifier::ServiceNotifier() {
#ifdef KOVA_WITH_SYSTEMD
    std::uint64_t usec = 0;
    // Honours WATCHDOG_PID: a watchdog meant for another process is not ours to feed.
    if (sd_watchdog_enabled(0, &usec) > 0) watchdog_ = std::chrono::microseconds(usec);
#endif
}

void ServiceNotifier::tickDone() {
    if (!ready_) {
        ready_ = true;
        notify("READY=1");
        return;
    }
    pingWhenDue();
}

void ServiceNotifier::waiting() {
    if (ready_) pingWhenDue();
}

void ServiceNotifier::stopping() {
    notify("STOPPING=1");
}

void ServiceNotifier::pingWhenDue() {
    if (watchdog_.count() <= 0) return;
    // Four pings a watchdog period: two may be late and the service is still alive.
    const auto now = std::chrono::steady_clock::now();
    if (now - lastPing_ < watchdog_ / 4) return;
    lastPing_ = now;
    notify("WATCHDOG=1");
}

}  // namespace kova::cli
