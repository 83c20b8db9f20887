#include "daq/forms/printer_port_form.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "core/forms/form_widgets.h"

namespace kova {

namespace {
QLineEdit* shownBox(const char* name, QWidget* parent) {
    auto* e = new QLineEdit(parent);
    e->setObjectName(name);
    forms::ShowReadOnly(e, true);
    e->setMinimumWidth(160);
    return e;
}
}  // namespace

PrinterPortWindow::PrinterPortWindow(Station& st, ErrorReport& report, QWidget* parent)
    : QWidget(parent, Qt::Window), st_(st), report_(report) {
    setObjectName("PrinterAddr");
    setWindowTitle("Set Printer Port Address");

    auto* frame = new QGroupBox("Printer Port", this);
    frame->setObjectName("FraPrinterPort");
    auto* options = new QVBoxLayout(frame);
    for (int i = 0; i < 3; ++i) {
        auto* b = new QRadioButton(QString("LPT %1").arg(i + 1), frame);
        b->setObjectName(QString("OptLpt%1").arg(i + 1));
        optLpt_[static_cast<std::size_t>(i)] = b;
        options->addWidget(b);
    }
    txtTypePort_ = shownBox("TxtTypePort", this);
    txtMode_ = shownBox("TxtMode", this);
    txtAddress_ = shownBox("TxtAddress", this);
    auto* findPort = new QPushButton("&Find Port", this);
    findPort->setObjectName("CmdFindPort");
    auto* exit = new QPushButton("E&xit", this);
    exit->setObjectName("Exit");

    auto* boxes = new QFormLayout;
    boxes->addRow("Type of Port", txtTypePort_);
    boxes->addRow("Mode", txtMode_);
    boxes->addRow("Address", txtAddress_);
    auto* top = new QHBoxLayout;
    top->addWidget(frame);
    top->addSpacing(8);
    top->addLayout(boxes);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(findPort);
    buttons->addStretch();
    buttons->addWidget(exit);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addLayout(buttons);

    connect(findPort, &QPushButton::clicked, this, &PrinterPortWindow::findPortClicked);
    connect(exit, &QPushButton::clicked, this, &QWidget::close);
    form_ = OpenPrinterPortForm(st_);
    display();
    // Another configuration: its printer port.
    changes_ = st_.changes.subscribe([this](TableChange change) {
        if (change != TableChange::Configuration) return;
        guard_([&] { form_ = OpenPrinterPortForm(st_); });
        display();
    });
}

void PrinterPortWindow::display() {
    optLpt_[static_cast<std::size_t>(form_.SelectedLpt - 1)]->setChecked(true);
    txtTypePort_->setText(QString::fromStdString(form_.TxtTypePort));
    txtMode_->setText(QString::fromStdString(form_.TxtMode));
    txtAddress_->setText(QString::fromStdString(form_.TxtAddress));
}

void PrinterPortWindow::findPortClicked() {
    for (int i = 0; i < 3; ++i)
        if (optLpt_[static_cast<std::size_t>(i)]->isChecked()) form_.SelectedLpt = i + 1;
    guard_([&] { FindPort(st_, form_); });
    display();
}

}  // namespace kova
