// The hub between the scan and the links: the newest snapshot, handed over without
// keeping either side waiting.
#include "links/snapshot_hub.h"

#include <gtest/gtest.h>

#include <thread>

namespace kova::links {

namespace {
std::shared_ptr<const StationSnapshot> snapshot(std::uint64_t sequence) {
    auto s = std::make_shared<StationSnapshot>();
    s->sequence = sequence;
    return s;
}
}  // namespace

TEST(SnapshotHub, HoldsNothingBeforeTheFirstTick) {
    SnapshotHub hub;
    EXPECT_EQ(hub.latest(), nullptr);
}

TEST(SnapshotHub, AReaderKeepsTheSnapshotItTookWhileNewerOnesArrive) {
    SnapshotHub hub;
    hub.publish(snapshot(1));
    const auto held = hub.latest();
    hub.publish(snapshot(2));
    EXPECT_EQ(held->sequence, 1u);
    EXPECT_EQ(hub.latest()->sequence, 2u);
}

TEST(SnapshotHub, AWaitingReaderWakesForANewerSnapshot) {
    SnapshotHub hub;
    hub.publish(snapshot(1));
    std::thread scan([&] { hub.publish(snapshot(2)); });
    const auto got = hub.waitNewer(1, std::chrono::seconds(30));
    scan.join();
    ASSERT_NE(got, nullptr);
    EXPECT_EQ(got->sequence, 2u);
}

TEST(SnapshotHub, AWaitWithNothingNewEndsAtItsTimeoutWithTheSnapshotItHad) {
    SnapshotHub hub;
    hub.publish(snapshot(4));
    const auto got = hub.waitNewer(4, std::chrono::milliseconds(20));
    ASSERT_NE(got, nullptr);
    EXPECT_EQ(got->sequence, 4u);
}

TEST(SnapshotHub, ClosingWakesWaitingReaders) {
    SnapshotHub hub;
    std::thread stopper([&] { hub.close(); });
    const auto got = hub.waitNewer(0, std::chrono::seconds(30));
    stopper.join();
    EXPECT_EQ(got, nullptr);
    EXPECT_TRUE(hub.closed());
}

}  // namespace kova::links
