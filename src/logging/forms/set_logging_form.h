#pragma once
// The "Logging Parameters" window (SetLogging): where the log file goes and which columns
// it has.
#include <QWidget>

#include "core/error_report.h"
#include "core/forms/window_calls.h"
#include "core/station.h"
#include "logging/set_logging_model.h"

class QCheckBox;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace kova {

class SetLoggingWindow : public QWidget {
    Q_OBJECT
  public:
    SetLoggingWindow(Station& st, ErrorReport& report, QWidget* parent = nullptr);

    // ComFile: the file dialog; the chosen path becomes the log file and its folder.
    void chooseFileClicked();
    // ChkDaily: daily files follow the box at once.
    void dailyClicked(bool checked);
    // ComExit: the rest of the controls are stored and the window closes.
    void exitClicked();

  private:
    void display(const SetLoggingForm& f);
    SetLoggingForm read() const;

    Station& st_;
    ErrorReport& report_;
    forms::WindowCalls guard_{st_, report_, this};
    SetLoggingForm form_;
    QLineEdit* txtFileName_;
    QPushButton* comFile_;
    QRadioButton* optDateFormat1_;
    QRadioButton* optDateFormat2_;
    QCheckBox* chkTime_;
    QCheckBox* chkDate_;
    QCheckBox* chkDaily_;
    QCheckBox* newFile_;
    QPushButton* comExit_;
    ChangeNotice::Subscription changes_;
};

}  // namespace kova
