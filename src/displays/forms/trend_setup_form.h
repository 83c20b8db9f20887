#pragma once
// The "SetUp Trends" window (SetTrend): the four pens of one trend at a time.
#include <QWidget>
#include <array>

#include "core/error_report.h"
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

    Station& st_;
    ErrorReport& report_;
    SetTrendForm form_;
    QLabel* lblTrendNo_;
    std::array<QComboBox*, 4> cboTagNo_{};
};

}  // namespace kova
