#pragma once
// The small seams on Qt: the status line, the scan timer and the beep.
#include <QLabel>
#include <QPointer>
#include <QTimer>

#include "platform/beeper.h"
#include "platform/scan_timer.h"
#include "platform/status_sink.h"

namespace kova::app {

// The main window's status line, the first field of its status bar: alarms and errors.
class LabelStatusSink final : public StatusSink {
  public:
    explicit LabelStatusSink(QLabel* panel) : panel_(panel) {}
    void setStatusText(const std::string& text) override {
        if (panel_) panel_->setText(QString::fromStdString(text));
    }

  private:
    QPointer<QLabel> panel_;
};

// The scan's periodic timer. An interval below 1 ms (a period of 0 read from a file)
// runs at 1 ms rather than on every idle moment.
class QtScanTimer final : public ScanTimer {
  public:
    explicit QtScanTimer(QTimer* timer) : timer_(timer) {}
    void setInterval(int milliseconds) override {
        if (timer_) timer_->setInterval(milliseconds < 1 ? 1 : milliseconds);
    }

  private:
    QPointer<QTimer> timer_;
};

class QtBeeper final : public Beeper {
  public:
    void beep() override;
};

}  // namespace kova::app
