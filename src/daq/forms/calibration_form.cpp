#include "daq/forms/calibration_form.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/forms/form_widgets.h"

namespace kova {

namespace {

using forms::button;
QLineEdit* box(const char* name, bool readOnly, QWidget* parent) {
    auto* e = new QLineEdit(parent);
    e->setObjectName(name);
    forms::ShowReadOnly(e, readOnly);
    e->setMaximumWidth(120);
    return e;
}

}  // namespace

CalibrationWindow::CalibrationWindow(Station& st, ErrorReport& report, QWidget* parent,
                                     CalibrationReader read)
    : QWidget(parent, Qt::Window), st_(st), report_(report), reader_(std::move(read)) {
    setObjectName("Calibrat");
    setWindowTitle("Calibrate QRT105 Analog To Digital Convertor");

    auto* instructions = new QLabel(kCalibrationInstructions, this);
    instructions->setObjectName("LblInstructions");
    instructions->setWordWrap(true);

    txtInput_ = box("TxtInput", false, this);
    txtOffset_ = box("TxtOffset", true, this);
    txtMeasure_ = box("TxtMeasure", true, this);
    auto* cmdOffset = button("CmdOffset", "&Offset", this);
    auto* cmdGain = button("ComCalibrate", "&Gain", this);
    auto* cmdExit = button("ComExit", "E&xit", this);

    auto* boxes = new QFormLayout;
    boxes->addRow("Input Voltage in mVs", txtInput_);
    boxes->addRow("Offset Voltage in mVs", txtOffset_);
    boxes->addRow("Gain", txtMeasure_);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(cmdOffset);
    buttons->addWidget(cmdGain);
    buttons->addStretch();
    buttons->addWidget(cmdExit);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(instructions);
    layout->addSpacing(6);
    layout->addLayout(boxes);
    layout->addLayout(buttons);
    setFixedWidth(460);

    connect(cmdOffset, &QPushButton::clicked, this, &CalibrationWindow::offsetClicked);
    connect(cmdGain, &QPushButton::clicked, this, &CalibrationWindow::gainClicked);
    connect(cmdExit, &QPushButton::clicked, this, &QWidget::close);
    display(OpenCalibrationForm(st_));
}

CalibrationForm CalibrationWindow::read() const {
    return {txtInput_->text().toStdString(), txtOffset_->text().toStdString(),
            txtMeasure_->text().toStdString()};
}

void CalibrationWindow::display(const CalibrationForm& f) {
    txtInput_->setText(QString::fromStdString(f.TxtInput));
    txtOffset_->setText(QString::fromStdString(f.TxtOffset));
    txtMeasure_->setText(QString::fromStdString(f.TxtMeasure));
}

void CalibrationWindow::offsetClicked() {
    CalibrationForm f = read();
    guard_([&] { CalibrateOffset(st_, f, reader_); });
    display(f);
}

void CalibrationWindow::gainClicked() {
    CalibrationForm f = read();
    guard_([&] { CalibrateGain(st_, f, reader_); });
    display(f);
}

}  // namespace kova
