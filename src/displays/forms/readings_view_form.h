#pragma once
// The "View Readings" window (ViewRead): one readings screen with live values, refreshed
// by its own one-second ReadTimer, where the operator sets outputs and variables.
#include <QTimer>
#include <QWidget>
#include <array>
#include <string>

#include "core/error_report.h"
#include "core/forms/window_calls.h"
#include "core/station.h"
#include "displays/readings_view.h"

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace kova {

class ReadingsViewWindow : public QWidget {
    Q_OBJECT
  public:
    ReadingsViewWindow(Station& st, ErrorReport& report, QWidget* parent = nullptr);

    void nextClicked();
    void prevClicked();
    void jumpClicked();
    // One ReadTimer tick: logging tick, values, then the pending outputs sent.
    void readTimerTick();
    QTimer* readTimer() { return &readTimer_; }
    const ReadingsViewForm& form() const { return form_; }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

  private:
    void display();
    void showRows();
    void valueFocused(int row);
    void valueLeft(int row);
    void boxClicked(int row, bool ticked);
    int analogRowOf(QObject* watched) const;

    Station& st_;
    ErrorReport& report_;
    forms::WindowCalls guard_{st_, report_, this};
    ReadingsViewForm form_;
    QTimer readTimer_;
    std::string tickFault_;  // the fault the timer already reported, "" when none

    QLineEdit* txtScreen_;
    QCheckBox* vOptLog_;
    std::array<QLineEdit*, kScreenRows> txtLabel_{};
    std::array<QLineEdit*, kScreenRows> txtAn_{};
    std::array<QLineEdit*, kScreenRows> txtUnits_{};
    std::array<QLabel*, kScreenRows> lblDIP_{};
    std::array<QLineEdit*, kScreenRows> txtDig_{};
    std::array<QCheckBox*, kScreenRows> chkDig_{};
    QPushButton* cmdPrev_;
    QPushButton* cmdNext_;
    QPushButton* cmdJump_;
    QPushButton* comExit_;
    ChangeNotice::Subscription changes_;
};

}  // namespace kova
