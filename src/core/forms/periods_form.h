#pragma once
// The "I/O And Logging Periods" window (Periods).
#include <QWidget>

#include "core/error_report.h"
#include "core/forms/window_calls.h"
#include "core/periods_model.h"
#include "core/station.h"

class QLineEdit;
class QRadioButton;
class QPushButton;

namespace kova {

class PeriodsWindow : public QWidget {
    Q_OBJECT
  public:
    PeriodsWindow(Station& st, ErrorReport& report, QWidget* parent = nullptr);

    // E&xit: the model checks and stores; the window closes when it accepts.
    void exitClicked();

  private:
    void display(const PeriodsForm& f);
    PeriodsForm read() const;

    Station& st_;
    ErrorReport& report_;
    forms::WindowCalls guard_{st_, report_, this};
    QLineEdit* txtIOPeriod_;
    QRadioButton* optIOmSecs_;
    QRadioButton* optIOSecs_;
    QLineEdit* txtLogPeriod_;
    QRadioButton* optLogmSecs_;
    QRadioButton* optLogSecs_;
    QRadioButton* optLogTrend_;
    QRadioButton* optIOTrend_;
    QPushButton* cmdExit_;
    ChangeNotice::Subscription changes_;
};

}  // namespace kova
