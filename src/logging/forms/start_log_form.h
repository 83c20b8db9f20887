#pragma once
// The "Logging Start/Stop" window (StartLog): when records are written, and the box that
// switches logging on.
#include <QWidget>

#include "core/error_report.h"
#include "core/forms/window_calls.h"
#include "core/station.h"
#include "logging/start_log_model.h"

class QButtonGroup;
class QCheckBox;
class QComboBox;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace kova {

class StartLogWindow : public QWidget {
    Q_OBJECT
  public:
    StartLogWindow(Station& st, ErrorReport& report, QWidget* parent = nullptr);

    // Exit: the checks in their order; the window closes when they pass.
    void exitClicked();

  signals:
    // Exit may have switched logging on or off: whatever shows the switch shows it again.
    void loggingSwitched();

  private:
    void display(const StartLogForm& f);
    StartLogForm read() const;
    void tablesChanged(TableChange change);

    Station& st_;
    ErrorReport& report_;
    forms::WindowCalls guard_{st_, report_, this};
    StartLogForm opened_;
    QButtonGroup* optLogMode_;
    QLineEdit* txtSampleNo_;
    QComboBox* cboTag_;
    QLineEdit* txtStartValue_;
    QRadioButton* optStartAbove_;
    QRadioButton* optStartBelow_;
    QLineEdit* txtStopValue_;
    QRadioButton* optStopAbove_;
    QRadioButton* optStopBelow_;
    QLineEdit* txtStartTime_;
    QLineEdit* txtStopTime_;
    QCheckBox* chkLogging_;
    QPushButton* exit_;
    ChangeNotice::Subscription changes_;
};

}  // namespace kova
