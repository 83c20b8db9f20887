// The station's store and forward: records come out in order with their own times, stay on
// disk until delivered, survive a restart (a torn last record included), and the bounds
// drop the oldest first and say so.
#include "links/outbox/outbox.h"

#include <gtest/gtest.h>

#include <sys/resource.h>

#include <csignal>
#include <fstream>
#include <thread>

#include "support/test_support.h"

namespace kova::links {

namespace {

namespace fs = std::filesystem;

struct OutboxRig {
    fs::path dir;
    OutboxRig() {
        dir = fs::temp_directory_path() /
              ("kova-outbox-" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) +
               "-" + ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::remove_all(dir);
    }
    ~OutboxRig() { fs::remove_all(dir); }
    std::unique_ptr<Outbox> open(OutboxLimits limits = {}) {
        std::string error;
        auto box = Outbox::Open(dir / "outbox", limits, error);
        EXPECT_TRUE(box) << error;
        return box;
    }
};

std::vector<std::uint64_t> Drain(Outbox::Reader& r) {
    std::vector<std::uint64_t> seen;
    while (auto rec = r.next(std::chrono::milliseconds(0))) seen.push_back(rec->sequence);
    return seen;
}

}  // namespace

TEST(Outbox, RecordsComeOutInOrderWithTheirOwnTimesAndBodies) {
    OutboxRig rig;
    auto box = rig.open();
    auto reader = box->reader("mqtt");
    EXPECT_EQ(box->append(1763892000500, "{\"a\":1}"), 1u);
    EXPECT_EQ(box->append(1763892000600, "{\"a\":2}"), 2u);
    auto first = reader->next(std::chrono::milliseconds(100));
    ASSERT_TRUE(first);
    EXPECT_EQ(first->sequence, 1u);
    EXPECT_EQ(first->timeMs, 1763892000500);
    EXPECT_EQ(first->body, "{\"a\":1}");
    auto second = reader->next(std::chrono::milliseconds(100));
    ASSERT_TRUE(second);
    EXPECT_EQ(second->sequence, 2u);
    EXPECT_EQ(second->timeMs, 1763892000600);
    EXPECT_FALSE(reader->next(std::chrono::milliseconds(0)));
}

TEST(Outbox, ARestartSendsOnAfterTheLastDeliveredRecordAndKeepsNumbering) {
    OutboxRig rig;
    {
        auto box = rig.open();
        auto reader = box->reader("mqtt");
        for (int i = 0; i < 5; ++i) box->append(1000 + i, "r" + std::to_string(i + 1));
        ASSERT_EQ(Drain(*reader).size(), 5u);
        reader->delivered(2);
    }
    auto box = rig.open();
    auto reader = box->reader("mqtt");
    auto rec = reader->next(std::chrono::milliseconds(0));
    ASSERT_TRUE(rec);
    EXPECT_EQ(rec->sequence, 3u);
    EXPECT_EQ(rec->timeMs, 1002);
    EXPECT_EQ(rec->body, "r3");
    EXPECT_EQ(Drain(*reader), (std::vector<std::uint64_t>{4, 5}));
    EXPECT_EQ(box->append(2000, "r6"), 6u);
}

TEST(Outbox, NumberingGoesOnAfterEverythingWasDeliveredAndTheFilesWereRemoved) {
    OutboxRig rig;
    {
        auto box = rig.open();
        auto reader = box->reader("mqtt");
        for (int i = 0; i < 3; ++i) box->append(i, "x");
        box->flush();
        reader->delivered(3);
    }
    auto box = rig.open();
    auto reader = box->reader("mqtt");
    EXPECT_FALSE(reader->next(std::chrono::milliseconds(0)));
    EXPECT_EQ(box->append(9, "y"), 4u);
}

TEST(Outbox, ARecordTornByAKilledStationIsCutOffAndTheOthersAreKept) {
    OutboxRig rig;
    {
        auto box = rig.open();
        for (int i = 0; i < 3; ++i) box->append(i, "body" + std::to_string(i));
        box->flush();
    }
    // The station died half-way through writing a fourth record.
    fs::path last;
    for (const auto& e : fs::directory_iterator(rig.dir / "outbox"))
        if (e.path().extension() == ".kq" && fs::file_size(e.path()) > 0) last = e.path();
    ASSERT_FALSE(last.empty());
    {
        std::ofstream out(last, std::ios::binary | std::ios::app);
        out.write("\x40\x00\x00\x00garbage", 11);
    }
    auto box = rig.open();
    const auto notices = box->takeNotices();
    ASSERT_EQ(notices.size(), 1u);
    EXPECT_NE(notices[0].find("cut short"), std::string::npos) << notices[0];
    auto reader = box->reader("mqtt");
    EXPECT_EQ(Drain(*reader), (std::vector<std::uint64_t>{1, 2, 3}));
    EXPECT_EQ(box->append(3, "body3"), 4u);
    box->flush();
    reader.reset();
    box.reset();
    auto again = rig.open();
    auto r2 = again->reader("mqtt");
    EXPECT_EQ(Drain(*r2), (std::vector<std::uint64_t>{1, 2, 3, 4}));
}

TEST(Outbox, WhenFullTheOldestGoFirstAndThatIsSaidOnceThenCountedWhenDrained) {
    OutboxRig rig;
    OutboxLimits limits;
    limits.maxBytes = 10 * (64 + 100);  // ten records of 100 bytes
    auto box = rig.open(limits);
    auto reader = box->reader("mqtt");
    for (int i = 0; i < 25; ++i) box->append(i, std::string(100, 'x'));
    const auto s = box->stats();
    EXPECT_EQ(s.records, 10u);
    EXPECT_EQ(s.dropped, 15u);
    auto notices = box->takeNotices();
    ASSERT_EQ(notices.size(), 1u) << "said once, not once per record";
    EXPECT_NE(notices[0].find("the oldest records are dropped"), std::string::npos) << notices[0];
    const auto seen = Drain(*reader);
    ASSERT_EQ(seen.size(), 10u);
    EXPECT_EQ(seen.front(), 16u);
    EXPECT_EQ(seen.back(), 25u);
    reader->delivered(25);
    notices = box->takeNotices();
    ASSERT_EQ(notices.size(), 1u);
    EXPECT_NE(notices[0].find("15 records (1 to 15) were dropped"), std::string::npos)
        << notices[0];
}

TEST(Outbox, RecordsOlderThanTheAgeBoundAreDropped) {
    OutboxRig rig;
    OutboxLimits limits;
    limits.maxAge = std::chrono::seconds(0);
    auto box = rig.open(limits);
    auto reader = box->reader("mqtt");
    box->append(1, "a");
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
    box->append(2, "b");
    EXPECT_EQ(box->stats().dropped, 1u);
    EXPECT_EQ(Drain(*reader), (std::vector<std::uint64_t>{2}));
}

TEST(Outbox, ARecordStaysUntilEveryReaderDeliveredIt) {
    OutboxRig rig;
    auto box = rig.open();
    auto a = box->reader("mqtt");
    auto b = box->reader("sparkplug");
    EXPECT_FALSE(box->reader("mqtt")) << "one reader per name";
    box->append(1, "x");
    box->append(2, "y");
    box->flush();
    a->delivered(2);
    EXPECT_EQ(box->stats().records, 2u);
    EXPECT_EQ(Drain(*b), (std::vector<std::uint64_t>{1, 2}));
    b->delivered(1);
    EXPECT_EQ(box->stats().records, 1u);
}

TEST(Outbox, RewindHandsOutAgainWhatWasNotDelivered) {
    OutboxRig rig;
    auto box = rig.open();
    auto r = box->reader("mqtt");
    for (int i = 0; i < 4; ++i) box->append(i, "x");
    EXPECT_EQ(Drain(*r).size(), 4u);
    r->delivered(2);
    r->rewind();
    EXPECT_EQ(Drain(*r), (std::vector<std::uint64_t>{3, 4}));
}

TEST(Outbox, AFolderThatCannotBeMadeIsRefusedWithItsName) {
    OutboxRig rig;
    fs::create_directories(rig.dir);
    { std::ofstream(rig.dir / "plainfile") << "x"; }
    std::string error;
    auto box = Outbox::Open(rig.dir / "plainfile" / "outbox", {}, error);
    EXPECT_FALSE(box);
    EXPECT_NE(error.find("plainfile"), std::string::npos) << error;
}

TEST(Outbox, AWaitingReaderWakesWhenARecordIsAppended) {
    OutboxRig rig;
    auto box = rig.open();
    auto r = box->reader("mqtt");
    std::thread scan([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        box->append(7, "late");
    });
    auto rec = r->next(std::chrono::seconds(5));
    scan.join();
    ASSERT_TRUE(rec);
    EXPECT_EQ(rec->body, "late");
}

}  // namespace kova::links

namespace kova::links {

// A disk that takes no more (here: a file size limit, as a full disk gives EFBIG/ENOSPC)
// is said once; the records stay in memory for the readers and reach the file once it can
// be written again.
TEST(Outbox, ADiskThatCannotBeWrittenIsSaidOnceAndTheRecordsWaitInMemory) {
    OutboxRig rig;
    auto box = rig.open();
    auto reader = box->reader("mqtt");
    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit old{};
    getrlimit(RLIMIT_FSIZE, &old);
    rlimit small = old;
    small.rlim_cur = 200;
    setrlimit(RLIMIT_FSIZE, &small);
    for (int i = 0; i < 10; ++i) box->append(i, std::string(50, 'x'));
    // The writer has tried and failed (it tries at once, then once a second).
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    EXPECT_GT(box->stats().unwritten, 0u);
    setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, oldHandler);
    EXPECT_EQ(Drain(*reader).size(), 10u) << "the readers still get every record";
    // The writer tries again once a second.
    for (int i = 0; i < 300 && box->stats().unwritten > 0; ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_EQ(box->stats().unwritten, 0u);
    const auto notices = box->takeNotices();
    ASSERT_EQ(notices.size(), 2u);
    EXPECT_NE(notices[0].find("cannot write to the outbox file"), std::string::npos) << notices[0];
    EXPECT_NE(notices[0].find("the scan goes on"), std::string::npos) << notices[0];
    EXPECT_NE(notices[1].find("can be written again"), std::string::npos) << notices[1];
    reader.reset();
    box.reset();
    auto again = rig.open();
    auto r2 = again->reader("other");
    EXPECT_EQ(Drain(*r2).size(), 10u) << "all of them reached the file";
}

}  // namespace kova::links
