#pragma once
// The alarm list window (FrmAlarms): the current or the history view in a fixed-pitch font,
// acknowledgement, and the history saved to a text file or printed. The view follows the
// alarm table from the window's own timer while it is open.
#include <QTimer>
#include <QWidget>

#include "alarms/alarm_list.h"
#include "core/error_report.h"
#include "core/forms/window_calls.h"
#include "core/station.h"
#include "platform/printer.h"

class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace kova {

class AlarmListWindow : public QWidget {
    Q_OBJECT
  public:
    // How often the open window looks for changed alarms.
    static constexpr int kRefreshMs = 1000;

    AlarmListWindow(Station& st, ErrorReport& report, Printer& printer, QWidget* parent = nullptr);

    void currentClicked();
    void historyClicked();
    void ackClicked();
    void saveClicked();
    void printClicked();
    // The timer's tick: the shown view and the count again, rewritten only when changed.
    void refresh();

    QTimer* refreshTimer() { return &timer_; }

  private:
    void display();

    Station& st_;
    ErrorReport& report_;
    forms::WindowCalls guard_{st_, report_, this};
    Printer& printer_;
    AlarmListForm form_;
    QTimer timer_;
    QLabel* lblView_;
    QPlainTextEdit* txtAlarms_;
    QLabel* lblUnack_;
    QPushButton* cmdCurrent_;
    QPushButton* cmdHistory_;
    QPushButton* cmdAck_;
    QPushButton* cmdSave_;
    QPushButton* cmdPrint_;
    QPushButton* cmdExit_;
};

}  // namespace kova
