#include "core/forms/thread_work.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QTest>
#include <QTimer>
#include <atomic>
#include <memory>
#include <thread>

namespace kova::forms {
namespace {

// Waits (the event loop running) until the condition holds, at most two seconds.
bool settles(const std::function<bool()>& done) {
    QElapsedTimer t;
    t.start();
    while (!done() && t.elapsed() < 2000) QTest::qWait(2);
    return done();
}

TEST(ThreadWork, WorkRunsAwayFromTheWindowsThreadAndItsEndingOnIt) {
    QObject owner;
    ThreadWork work(&owner);
    std::thread::id workedOn, endedOn;
    bool ended = false;
    work.run([&] { workedOn = std::this_thread::get_id(); },
             [&] {
                 endedOn = std::this_thread::get_id();
                 ended = true;
             });
    ASSERT_TRUE(settles([&] { return ended; }));
    EXPECT_NE(workedOn, std::this_thread::get_id());
    EXPECT_EQ(endedOn, std::this_thread::get_id());
}

TEST(ThreadWork, TheEventLoopGoesOnWhileWorkHangs) {
    QObject owner;
    ThreadWork work(&owner);
    std::atomic<bool> letGo{false};
    bool ended = false;
    work.run(
        [&] {
            while (!letGo) std::this_thread::sleep_for(std::chrono::milliseconds(1));
        },
        [&] { ended = true; });
    int ticks = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] { ++ticks; });
    timer.start(10);
    EXPECT_TRUE(settles([&] { return ticks >= 5; }));  // the scan's timer keeps ticking
    EXPECT_FALSE(ended);
    letGo = true;
    EXPECT_TRUE(settles([&] { return ended; }));
}

TEST(ThreadWork, TheEndingPassesThroughTheFinisher) {
    QObject owner;
    int finished = 0;
    ThreadWork work(&owner, [&](const std::function<void()>& done) {
        ++finished;
        done();
    });
    bool ended = false;
    work.run([] {}, [&] { ended = true; });
    ASSERT_TRUE(settles([&] { return ended; }));
    EXPECT_EQ(finished, 1);
}

TEST(ThreadWork, WhenTheOwnerHasGoneTheEndingIsDropped) {
    auto owner = std::make_unique<QObject>();
    auto work = std::make_unique<ThreadWork>(owner.get());
    std::atomic<bool> letGo{false};
    std::atomic<bool> worked{false};
    bool ended = false;
    work->run(
        [&] {
            while (!letGo) std::this_thread::sleep_for(std::chrono::milliseconds(1));
            worked = true;
        },
        [&] { ended = true; });
    work.reset();
    owner.reset();
    letGo = true;
    ASSERT_TRUE(settles([&] { return worked.load(); }));
    QTest::qWait(50);
    EXPECT_FALSE(ended);
}

}  // namespace
}  // namespace kova::forms
