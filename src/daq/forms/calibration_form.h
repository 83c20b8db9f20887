#pragma once
// The "Calibrate QRT105 Analog To Digital Convertor" window (Calibrat).
#include <QWidget>

#include "core/error_report.h"
#include "core/forms/window_calls.h"
#include "core/station.h"
#include "daq/calibration_model.h"

class QLineEdit;
class QPushButton;

namespace kova {

class CalibrationWindow : public QWidget {
    Q_OBJECT
  public:
    // read: one reading of channel 1 (the module's driver unless a test gives another).
    CalibrationWindow(Station& st, ErrorReport& report, QWidget* parent = nullptr,
                      CalibrationReader read = ReadCalibrationChannel);

    void offsetClicked();
    void gainClicked();

  private:
    CalibrationForm read() const;
    void display(const CalibrationForm& f);

    Station& st_;
    ErrorReport& report_;
    forms::WindowCalls guard_{st_, report_, this};
    CalibrationReader reader_;
    QLineEdit* txtInput_;
    QLineEdit* txtOffset_;
    QLineEdit* txtMeasure_;
};

}  // namespace kova
