#pragma once
// The alarm set-up window (FrmAlmSetUp): one of the twenty alarms at a time, its tag,
// limits and messages, and the "Enable Alarms" switch.
#include <QWidget>

#include "alarms/alarm_setup.h"
#include "core/error_report.h"
#include "core/forms/window_calls.h"
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
    // Another alarm shown: the keyboard to its tag box. A refused one: to the box at fault.
    void afterMove(bool moved);
    void tablesChanged(TableChange change);
    std::vector<std::string> tagEntries() const;

    Station& st_;
    ErrorReport& report_;
    forms::WindowCalls guard_{st_, report_, this};
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
    ChangeNotice::Subscription changes_;
};

}  // namespace kova
