#pragma once
// Where the scan leaves its newest snapshot for the links. Publishing swaps one pointer
// under a mutex that readers hold only to copy that pointer, so a reader can never keep the
// scan waiting; readers that want every new snapshot wait on their own threads.
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>

#include "links/station_snapshot.h"

namespace kova::links {

class SnapshotHub {
  public:
    // The scan's thread, after each tick.
    void publish(std::shared_ptr<const StationSnapshot> snapshot);
    // The newest snapshot, or nullptr before the first.
    std::shared_ptr<const StationSnapshot> latest() const;
    // Waits until a snapshot with a sequence above `seen` is there (returned), or until the
    // timeout or close() (the newest snapshot, possibly the one already seen, or nullptr).
    std::shared_ptr<const StationSnapshot> waitNewer(std::uint64_t seen,
                                                     std::chrono::milliseconds timeout) const;
    // The station is going away: waiting readers return at once, now and from now on.
    void close();
    bool closed() const;

  private:
    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    std::shared_ptr<const StationSnapshot> latest_;
    bool closed_ = false;
};

}  // namespace kova::links
