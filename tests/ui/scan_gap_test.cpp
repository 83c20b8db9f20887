#include "core/forms/scan_gap.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QTimer>
#include <memory>
#include <sstream>

#include "app/main_window.h"
#include "support/test_support.h"

namespace kova::forms {

namespace {
// The scan timer for one test, forgotten again at its end.
struct ScanTimerRig {
    QTimer scan;
    explicit ScanTimerRig(int intervalMs) {
        scan.setInterval(intervalMs);
        scan.start();
        ScanGap::instance().setScanTimer(&scan);
    }
    ~ScanTimerRig() { ScanGap::instance().setScanTimer(nullptr); }
};
}  // namespace

TEST(ScanGap, WithNoScanOrATickFarOffARefreshRunsAtOnce) {
    QObject window;
    int runs = 0;
    ScanGap::instance().run(&window, [&] { ++runs; });
    EXPECT_EQ(runs, 1);
    ScanTimerRig rig(1000);  // the next tick is about a second away
    ScanGap::instance().run(&window, [&] { ++runs; });
    EXPECT_EQ(runs, 2);
    EXPECT_EQ(ScanGap::instance().waiting(), 0);
}

TEST(ScanGap, ARefreshDueJustBeforeATickRunsOnceTheTickHasReturned) {
    ScanTimerRig rig(ScanGap::kRoomMs - 5);  // the next tick is always near
    QObject window;
    auto gone = std::make_unique<QObject>();
    int runs = 0;
    int second = 0;
    int closed = 0;
    ScanGap::instance().run(&window, [&] { ++runs; });
    ScanGap::instance().run(&window, [&] { ++second; });  // the same window again: replaces
    ScanGap::instance().run(gone.get(), [&] { ++closed; });
    EXPECT_EQ(runs + second + closed, 0);
    EXPECT_EQ(ScanGap::instance().waiting(), 2);
    gone.reset();  // a window closed before the tick
    ScanGap::instance().tickDone();
    EXPECT_EQ(second, 0);  // not inside the tick
    QCoreApplication::processEvents();
    EXPECT_EQ(runs, 0);
    EXPECT_EQ(second, 1);
    EXPECT_EQ(closed, 0);
    EXPECT_EQ(ScanGap::instance().waiting(), 0);
}

TEST(ScanGap, TheMainWindowsTickReleasesTheRefreshesThatWaited) {
    test::TempFolder folder;
    Station st;
    st.workingFolder = folder.path();
    test::ScriptedPrompter prompt;
    std::ostringstream errors;
    app::MainWindow w(st, &prompt, &errors);
    ASSERT_EQ(ScanGap::instance().scanTimer(), w.scanTimer());
    w.scanTimer()->start(ScanGap::kRoomMs - 5);
    QObject window;
    int runs = 0;
    ScanGap::instance().run(&window, [&] { ++runs; });
    EXPECT_EQ(runs, 0);
    w.scanTimer()->stop();
    w.tick();
    QCoreApplication::processEvents();
    EXPECT_EQ(runs, 1);
}

}  // namespace kova::forms
