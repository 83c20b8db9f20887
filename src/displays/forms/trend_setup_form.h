#pragma once
// The "SetUp Trends" window (SetTrend): the four pens of one trend at a time.
#include <QWidget>
#include <array>

#include "core/error_report.h"
#include "core/forms/window_calls.h"
#include "core/station.h"
#include "displays/trend_setup.h"

class QComboBox;
class QLabel;
class QPushButton;

namespace kova {

class SetTrendWindow : public QWidget {
    Q_OBJECT
  public:
    SetTrendWindow(Station& st, ErrorReport& report, QWidget* parent = nullptr);

    // The buttons: each stores the trend through the model first.
    void previousClicked();
    void nextClicked();
    void exitClicked();

  private:
    void display(const SetTrendForm& f);
    SetTrendForm read() const;
    // Another trend shown: the keyboard to pen 1. A refused one: to the pen at fault.
    void afterMove(bool moved);
    void tablesChanged(TableChange change);

    Station& st_;
    ErrorReport& report_;
    forms::WindowCalls guard_{st_, report_, this};
    SetTrendForm form_;
    QLabel* lblTrendNo_;
    std::array<QComboBox*, 4> cboTagNo_{};
    ChangeNotice::Subscription changes_;
};

}  // namespace kova
