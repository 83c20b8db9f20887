#pragma once
// The "Set Up Screens" window (SetRead): a screen's title and jump target, ten analog and
// ten digital rows of tag drop-downs with their descriptions, and the analog tag picker
// opened from an analog row.
#include <QPointer>
#include <QWidget>
#include <array>
#include <string>

#include "core/error_report.h"
#include "core/forms/window_calls.h"
#include "core/station.h"
#include "displays/readings_setup.h"
#include "tags/forms/analog_tag_form.h"

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QToolButton;

namespace kova {

class ReadingsSetupWindow : public QWidget {
    Q_OBJECT
  public:
    ReadingsSetupWindow(Station& st, ErrorReport& report, QWidget* parent = nullptr);

    void nextClicked();
    void prevClicked();
    void exitClicked();
    // Opens "Choose Analog Tag" for analog row 0..9 (the row's "..." button, or F2 in
    // the row's drop-down); the picked name fills that row.
    void pickForRow(int row);
    AnalogTagWindow* picker() const { return picker_; }

  protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void display();
    void read();
    // Another screen shown: the keyboard to its title. A refused one: to the box at fault.
    void afterMove(bool moved);
    void tablesChanged(TableChange change);

    Station& st_;
    ErrorReport& report_;
    forms::WindowCalls guard_{st_, report_, this};
    ScreenSetupForm form_;
    bool exited_ = false;
    std::string picked_;  // where the picker leaves its choice
    QPointer<AnalogTagWindow> picker_;

    QLineEdit* txtScreen_;
    QLabel* lblScrNo_;
    QLineEdit* txtJump_;
    std::array<QComboBox*, kScreenRows> cboAnTag_{};
    std::array<QToolButton*, kScreenRows> cmdPick_{};
    std::array<QLabel*, kScreenRows> lblAn_{};
    std::array<QComboBox*, kScreenRows> cboDigTag_{};
    std::array<QLabel*, kScreenRows> lblDig_{};
    QPushButton* cmdPrev_;
    QPushButton* cmdNext_;
    QPushButton* comExit_;
    ChangeNotice::Subscription changes_;
};

}  // namespace kova
