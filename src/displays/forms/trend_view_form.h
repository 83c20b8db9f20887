#pragma once
// The "View Trends" window (ViewTrend): the current trend's four pens on a chart, redrawn
// from the sample ring every two seconds by its own timer.
#include <QTimer>
#include <QWidget>
#include <array>

#include "core/error_report.h"
#include "core/forms/window_calls.h"
#include "core/station.h"
#include "displays/trend_view.h"

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace kova {

class ChartView;

class ViewTrendWindow : public QWidget {
    Q_OBJECT
  public:
    ViewTrendWindow(Station& st, ErrorReport& report, QWidget* parent = nullptr);

    // Timer1: the logging box, the rate and the chart.
    void tick();
    void previousClicked();
    void nextClicked();
    // The Y-limit boxes or the autoscale box changed: the chart follows at once.
    void redraw();

    ChartView* chart() const { return chart_; }
    QTimer* timer() { return &timer1_; }

  private:
    void display();
    void readBoxes();

    Station& st_;
    ErrorReport& report_;
    forms::WindowCalls guard_{st_, report_, this};
    ViewTrendForm form_;
    ChartView* chart_;
    std::array<QLabel*, 4> lbl1_{};
    QLabel* lbl5_;
    QLabel* lbl4_;
    QLabel* lblRate_;
    QLineEdit* txtLowY_;
    QLineEdit* txtUpperY_;
    QCheckBox* chkAuto_;
    QCheckBox* optLog_;
    QTimer timer1_;
    ChangeNotice::Subscription changes_;
};

}  // namespace kova
