#pragma once
// The windows that show live values refresh from their own timers, in the gaps between the
// scan's ticks: a refresh whose timer fires just before a tick is due waits until that tick
// has run, so it never makes the tick late. On a busy machine a refresh of a millisecond or
// two can take many times that, and a tick queued behind it would be that much late.
#include <QObject>
#include <QPointer>
#include <functional>
#include <vector>

class QTimer;

namespace kova::forms {

class ScanGap {
  public:
    // How near the next tick a refresh must not start, in milliseconds.
    static constexpr int kRoomMs = 15;

    static ScanGap& instance();

    // The scan's timer (nullptr when there is none: every refresh runs at once).
    void setScanTimer(QTimer* timer);
    // Runs the refresh now, or, when the scan's next tick is due within kRoomMs, just after
    // that tick. A window that closes meanwhile (context gone) is not refreshed; a second
    // refresh of the same window before the tick replaces the first.
    void run(QObject* context, std::function<void()> refresh);
    // The end of a tick: the refreshes that waited for it run as soon as it has returned.
    void tickDone();

    QTimer* scanTimer() const { return timer_; }
    int waiting() const { return static_cast<int>(waiting_.size()); }

  private:
    struct Waiting {
        QPointer<QObject> context;
        std::function<void()> refresh;
    };
    QPointer<QTimer> timer_;
    std::vector<Waiting> waiting_;
};

}  // namespace kova::forms
