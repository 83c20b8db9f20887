#include "tags/forms/daq_type_form.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "tags/daq_type_model.h"

namespace kova {

DaqTypeWindow::DaqTypeWindow(Station& st, ErrorReport& report, QWidget* parent)
    : QWidget(parent, Qt::Window), st_(st), report_(report) {
    setObjectName("FrmDaqType");
    setWindowTitle("DAQ Type");

    auto* frame = new QGroupBox("DAQ Type", this);
    frame->setObjectName("FraDaqType");
    auto* options = new QVBoxLayout(frame);
    for (int i = 0; i < kDaqTypeCount; ++i) {
        auto* b = new QRadioButton(QString::fromStdString(DaqTypeCaption(i)), frame);
        b->setObjectName(QString("OptDaqType%1").arg(i));
        const QString tip = QString::fromStdString(DaqTypeTip(i));
        b->setToolTip(tip);
        b->setAccessibleDescription(tip);
        optDaqType_[static_cast<std::size_t>(i)] = b;
        options->addWidget(b);
    }
    cmdExit_ = new QPushButton("E&xit", this);
    cmdExit_->setObjectName("CmdExit");

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdExit_);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(frame);
    layout->addLayout(buttons);
    setMinimumWidth(260);

    connect(cmdExit_, &QPushButton::clicked, this, &DaqTypeWindow::exitClicked);
    showType();
    // Another configuration: its module type.
    changes_ = st_.changes.subscribe([this](TableChange change) {
        if (change == TableChange::Configuration) showType();
    });
}

void DaqTypeWindow::showType() {
    const DaqTypeForm f = OpenDaqTypeForm(st_);
    for (int i = 0; i < kDaqTypeCount; ++i)
        if (f.OptDaqType[static_cast<std::size_t>(i)])
            optDaqType_[static_cast<std::size_t>(i)]->setChecked(true);
}

void DaqTypeWindow::exitClicked() {
    DaqTypeForm f;
    for (int i = 0; i < kDaqTypeCount; ++i)
        f.OptDaqType[static_cast<std::size_t>(i)] =
            optDaqType_[static_cast<std::size_t>(i)]->isChecked();
    if (guard_([&] { ExitDaqTypeForm(st_, f); })) emit daqTypeApplied();
    close();
}

}  // namespace kova
