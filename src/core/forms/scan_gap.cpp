#include "core/forms/scan_gap.h"

#include <QTimer>
#include <algorithm>

namespace kova::forms {

ScanGap& ScanGap::instance() {
    static ScanGap gap;
    return gap;
}

void ScanGap::setScanTimer(QTimer* timer) {
    timer_ = timer;
    if (!timer) waiting_.clear();
}

void ScanGap::run(QObject* context, std::function<void()> refresh) {
    const int left = timer_ && timer_->isActive() ? timer_->remainingTime() : -1;
    if (left < 0 || left >= kRoomMs) {
        refresh();
        return;
    }
    const auto same = std::find_if(waiting_.begin(), waiting_.end(),
                                   [&](const Waiting& w) { return w.context == context; });
    if (same != waiting_.end())
        same->refresh = std::move(refresh);
    else
        waiting_.push_back({context, std::move(refresh)});
}

void ScanGap::tickDone() {
    std::vector<Waiting> due;
    due.swap(waiting_);
    for (Waiting& w : due) {
        if (!w.context) continue;
        // After the tick has returned, not inside it.
        QTimer::singleShot(0, w.context.data(), std::move(w.refresh));
    }
}

}  // namespace kova::forms
