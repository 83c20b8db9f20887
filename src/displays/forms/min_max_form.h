#pragma once
// The "Maximum And Minimum Readings" window (MinMaxFrm): label, reading, maximum and minimum
// of tags 1..14, refreshed every second from its own timer; the scan keeps the extremes.
#include <QTimer>
#include <QWidget>
#include <array>

#include "core/error_report.h"
#include "core/forms/window_calls.h"
#include "core/station.h"
#include "displays/min_max.h"

class QLabel;
class QPushButton;

namespace kova {

class MinMaxWindow : public QWidget {
    Q_OBJECT
  public:
    MinMaxWindow(Station& st, ErrorReport& report, QWidget* parent = nullptr);

    // Timer1's tick: the fourteen rows from the tag table and the extremes.
    void refresh();
    void resetClicked();

    QTimer* timer1() { return &timer1_; }

  private:
    struct Row {
        QLabel* label;
        QLabel* reading;
        QLabel* maximum;
        QLabel* minimum;
    };

    Station& st_;
    ErrorReport& report_;
    forms::WindowCalls guard_{st_, report_, this};
    QTimer timer1_;
    std::array<Row, kMinMaxTags> rows_{};
    QPushButton* cmdReset_;
    QPushButton* cmdExit_;
    ChangeNotice::Subscription changes_;
};

}  // namespace kova
