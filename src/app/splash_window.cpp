#include "app/splash_window.h"

#include <QApplication>
#include <QFont>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTimer>
#include <QVBoxLayout>

#include "app/window_registry.h"

namespace kova::app {

namespace {
const char* const kAddressBlock =
    "KOVA For Parallel Port DAQs\n"
    "Data acquisition, control, alarms and logging\n"
    "for QRT modules on the PC printer port.\n"
    "\n"
    "KOVA Instruments";
}  // namespace

SplashWindow::SplashWindow(Measure measure, Pause pause, QWidget* parent)
    : QWidget(parent, Qt::Window), measure_(std::move(measure)), pause_(std::move(pause)) {
    setObjectName("MonitorIntro");
    setWindowTitle("KOVA");

    auto* title = new QLabel("KOVA", this);
    QFont big = title->font();
    big.setPointSize(big.pointSize() * 2);
    big.setBold(true);
    title->setFont(big);
    title->setAlignment(Qt::AlignCenter);

    txtSpeed_ = new QLineEdit(this);
    txtSpeed_->setObjectName("TxtSpeed");
    txtSpeed_->setReadOnly(true);
    txtSpeed_->setAlignment(Qt::AlignCenter);
    txtSpeed_->setText(kFindingSpeedText);

    address_ = new QPlainTextEdit(this);
    address_->setObjectName("TxtAddress");
    address_->setReadOnly(true);
    address_->setPlainText(kAddressBlock);
    address_->setFixedHeight(address_->fontMetrics().lineSpacing() * 7 + 12);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(title);
    layout->addWidget(txtSpeed_);
    layout->addWidget(address_);
    setFixedWidth(420);

    timer1_ = new QTimer(this);
    timer1_->setObjectName("Timer1");
    timer1_->setSingleShot(true);
    timer1_->setInterval(100);
    connect(timer1_, &QTimer::timeout, this, &SplashWindow::timerFired);
}

void SplashWindow::start() {
    adjustSize();
    CenterOnScreen(this);
    show();
    timer1_->start();
}

void SplashWindow::timerFired() {
    timer1_->stop();
    QApplication::setOverrideCursor(Qt::WaitCursor);
    PcSpeedResult result;
    try {
        result = measure_();
    } catch (const std::exception& e) {
        // The main window reports it once it is up; the drivers get the slowest PC's count.
        fault_ = e.what();
        result = PcSpeedResult{0, DelayFromSpeed(0)};
    }
    QApplication::restoreOverrideCursor();
    txtSpeed_->setText(QString::fromStdString(SpeedText(result)));
    // A PC too fast for the busy-wait's counter gets the largest count; say why.
    txtSpeed_->setToolTip(QString::fromStdString(CapNote(result)));
    txtSpeed_->setAccessibleDescription(txtSpeed_->toolTip());
    txtSpeed_->repaint();
    try {
        pause_(result.Delay);
    } catch (const std::exception& e) {
        fault_ = e.what();
    }
    emit finished(result);
}

}  // namespace kova::app
