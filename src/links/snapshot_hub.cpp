#include "links/snapshot_hub.h"

namespace kova::links {

void SnapshotHub::publish(std::shared_ptr<const StationSnapshot> snapshot) {
    {
        std::lock_guard lock(mutex_);
        latest_.swap(snapshot);
    }
    changed_.notify_all();
    // The snapshot replaced is released here, outside the lock (when no reader holds it).
}

std::shared_ptr<const StationSnapshot> SnapshotHub::latest() const {
    std::lock_guard lock(mutex_);
    return latest_;
}

std::shared_ptr<const StationSnapshot> SnapshotHub::waitNewer(
    std::uint64_t seen, std::chrono::milliseconds timeout) const {
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, timeout,
                      [&] { return closed_ || (latest_ && latest_->sequence > seen); });
    return latest_;
}

void SnapshotHub::close() {
    {
        std::lock_guard lock(mutex_);
        closed_ = true;
    }
    changed_.notify_all();
}

bool SnapshotHub::closed() const {
    std::lock_guard lock(mutex_);
    return closed_;
}

}  // namespace kova::links
