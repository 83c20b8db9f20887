#include "app/splash_window.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include "core/fault.h"
#include "platform/clock.h"
#include "ui/ui_support.h"

namespace kova::app {

TEST(SplashWindow, ShowsWaitWhileTheOneShotTimerIsArmed) {
    SplashWindow w([] { return PcSpeedResult{}; }, [](std::int32_t) {});
    EXPECT_EQ(w.objectName(), "MonitorIntro");
    EXPECT_EQ(w.speedBox()->objectName(), "TxtSpeed");
    EXPECT_EQ(w.speedBox()->text(), "WAIT - Finding PC's Speed");
    EXPECT_TRUE(w.speedBox()->isReadOnly());
    EXPECT_TRUE(w.timer()->isSingleShot());
    w.start();
    EXPECT_TRUE(w.isVisible());
    EXPECT_TRUE(w.timer()->isActive());
    EXPECT_NE(w.findChild<QWidget*>("TxtAddress"), nullptr);
}

TEST(SplashWindow, MeasuresUnderTheHourglassShowsTheSpeedPausesAndHandsOver) {
    bool hourglass = false;
    std::int32_t pausedWith = -1;
    QString shownDuringPause;
    SplashWindow* self = nullptr;
    SplashWindow w(
        [&] {
            hourglass = QApplication::overrideCursor() &&
                        QApplication::overrideCursor()->shape() == Qt::WaitCursor;
            return PcSpeedResult{10000000.0, DelayFromSpeed(10000000.0)};
        },
        [&](std::int32_t delay) {
            pausedWith = delay;
            shownDuringPause = self->speedBox()->text();
        });
    self = &w;
    QSignalSpy done(&w, &SplashWindow::finished);
    w.timerFired();
    EXPECT_TRUE(hourglass);
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);  // restored afterwards
    EXPECT_EQ(shownDuringPause, "PC SPEED=10000000.00  Delay=63");
    EXPECT_EQ(pausedWith, 63);
    ASSERT_EQ(done.count(), 1);
    EXPECT_EQ(done.at(0).at(0).value<PcSpeedResult>().Delay, 63);
    EXPECT_FALSE(w.timer()->isActive());
    EXPECT_TRUE(w.fault().empty());
}

TEST(SplashWindow, ACappedDelaySaysSo) {
    SplashWindow w([] { return PcSpeedResult{8.0e9, kLargestDelay, true}; }, [](std::int32_t) {});
    w.timerFired();
    EXPECT_EQ(w.speedBox()->text(), "PC SPEED=8000000000.00  Delay=32765 (capped)");
    EXPECT_TRUE(w.speedBox()->toolTip().startsWith(
        "This PC counts faster than the busy-wait's counter allows: Delay is capped at 32765"));
    EXPECT_EQ(w.speedBox()->accessibleDescription(), w.speedBox()->toolTip());
}

TEST(SplashWindow, TheTimerFiresOnceByItself) {
    int measured = 0;
    SplashWindow w(
        [&] {
            ++measured;
            return PcSpeedResult{400000.0, 3};
        },
        [](std::int32_t) {});
    QSignalSpy done(&w, &SplashWindow::finished);
    w.start();
    EXPECT_TRUE(done.wait(3000));
    QTest::qWait(150);
    EXPECT_EQ(measured, 1);
    EXPECT_EQ(w.speedBox()->text(), "PC SPEED=400000.00  Delay=3");
}

TEST(SplashWindow, AMeasurementFaultIsKeptForTheReportAndTheSlowestCountUsed) {
    SplashWindow w([]() -> PcSpeedResult { throwOverflow("32-bit integer"); }, [](std::int32_t) {});
    QSignalSpy done(&w, &SplashWindow::finished);
    w.timerFired();
    ASSERT_EQ(done.count(), 1);
    EXPECT_EQ(done.at(0).at(0).value<PcSpeedResult>().Delay, 3);
    EXPECT_EQ(w.fault(), "Overflow: 32-bit integer");
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

}  // namespace kova::app
