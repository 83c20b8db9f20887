#pragma once
// The "DAQ Type" window (FrmDaqType): one option button per module type.
#include <QWidget>
#include <array>

#include "core/error_report.h"
#include "core/forms/window_calls.h"
#include "core/station.h"
#include "tags/daq_profile.h"

class QRadioButton;
class QPushButton;

namespace kova {

class DaqTypeWindow : public QWidget {
    Q_OBJECT
  public:
    DaqTypeWindow(Station& st, ErrorReport& report, QWidget* parent = nullptr);

    // E&xit: the selected type becomes the module in use; the window closes.
    void exitClicked();

  signals:
    // The module type changed (or was rebuilt unchanged) through E&xit.
    void daqTypeApplied();

  private:
    void showType();

    Station& st_;
    ErrorReport& report_;
    forms::WindowCalls guard_{st_, report_, this};
    std::array<QRadioButton*, kDaqTypeCount> optDaqType_{};
    QPushButton* cmdExit_;
    ChangeNotice::Subscription changes_;
};

}  // namespace kova
