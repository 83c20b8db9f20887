#pragma once
// The splash window (MonitorIntro): measures how fast this PC runs an empty loop, shows
// the speed and the busy-wait count derived from it, pauses, then hands over to the main
// window.
#include <QWidget>
#include <functional>
#include <string>

#include "core/pc_speed.h"

class QLineEdit;
class QPlainTextEdit;
class QTimer;

namespace kova::app {

inline constexpr const char* kFindingSpeedText = "WAIT - Finding PC's Speed";

class SplashWindow : public QWidget {
    Q_OBJECT
  public:
    using Measure = std::function<PcSpeedResult()>;
    using Pause = std::function<void(std::int32_t delay)>;

    // measure: the speed measurement; pause: the wait after the speed is shown.
    SplashWindow(Measure measure, Pause pause, QWidget* parent = nullptr);

    // Shows the window centred and arms the one-shot timer.
    void start();
    // What Timer1 does when it fires (public for tests).
    void timerFired();

    QLineEdit* speedBox() const { return txtSpeed_; }
    QTimer* timer() const { return timer1_; }
    // The fault that stopped the measurement or the pause, "" when none.
    const std::string& fault() const { return fault_; }

  signals:
    void finished(kova::PcSpeedResult result);

  private:
    Measure measure_;
    Pause pause_;
    QLineEdit* txtSpeed_;
    QPlainTextEdit* address_;
    QTimer* timer1_;
    std::string fault_;
};

}  // namespace kova::app
