#pragma once
// The alarm set-up window (FrmAlmSetUp): one of the twenty alarms at a time, its tag,
// limits and messages, and the "Enable Alarms" switch.
#include <QWidget>

#include "alarms/alarm_setup.h"
#include "core/error_report.h"
#include "core/station.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace kova {

class AlarmSetupWindow : public QWidget {
    Q_OBJECT
  public:
    AlarmSetupWindow(Station& st, ErrorReport& report, QWidget* parent = nullptr);

    void nextClicked();
    void prevClicked();
    void deleteClicked();
    void exitClicked();

  signals:
    // E&xit stored the switch in AlarmsEnabled.
    void alarmsStored();

  private:
    void display();
    void read();

    Station& st_;
    ErrorReport& report_;
    AlarmSetupForm form_;
    QLabel* lblAlmNo_;
    QComboBox* cboTag_;
    QLineEdit* txtHiVal_;
    QLineEdit* txtHiMsg_;
    QLineEdit* txtLoVal_;
    QLineEdit* txtLoMsg_;
    QLineEdit* txtNormMsg_;
    QCheckBox* chkEnableAlm_;
    QPushButton* cmdPrev_;
    QPushButton* cmdNext_;
    QPushButton* cmdDelete_;
    QPushButton* cmdExit_;
};

}  // namespace kova
