#pragma once
// The "Set Printer Port Address" window (PrinterAddr).
#include <QWidget>
#include <array>

#include "core/error_report.h"
#include "core/forms/window_calls.h"
#include "core/station.h"
#include "daq/printer_port_detect.h"

class QLineEdit;
class QRadioButton;

namespace kova {

class PrinterPortWindow : public QWidget {
    Q_OBJECT
  public:
    PrinterPortWindow(Station& st, ErrorReport& report, QWidget* parent = nullptr);

    void findPortClicked();
    const PrinterPortForm& form() const { return form_; }

  private:
    void display();

    Station& st_;
    ErrorReport& report_;
    forms::WindowCalls guard_{st_, report_, this};
    PrinterPortForm form_;
    std::array<QRadioButton*, 3> optLpt_{};
    QLineEdit* txtTypePort_;
    QLineEdit* txtMode_;
    QLineEdit* txtAddress_;
    ChangeNotice::Subscription changes_;
};

}  // namespace kova
