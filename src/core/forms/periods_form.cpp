#include "core/forms/periods_form.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "core/forms/form_widgets.h"

namespace kova {

namespace {
QRadioButton* option(const char* name, const char* caption, QWidget* parent) {
    auto* b = new QRadioButton(caption, parent);
    b->setObjectName(name);
    return b;
}

QLineEdit* numberBox(const char* name, QWidget* parent) {
    auto* e = new QLineEdit(parent);
    e->setObjectName(name);
    e->setMaximumWidth(90);
    return e;
}

// A frame holding a number box and its two unit options side by side.
QGroupBox* periodFrame(const char* caption, QLineEdit* box, QRadioButton* ms, QRadioButton* secs,
                       QWidget* parent) {
    auto* frame = new QGroupBox(caption, parent);
    // The number box is named by its frame's caption, given to it, not left to be guessed.
    box->setAccessibleName(caption);
    auto* units = new QVBoxLayout;
    units->addWidget(ms);
    units->addWidget(secs);
    auto* row = new QHBoxLayout(frame);
    row->addWidget(box, 0, Qt::AlignVCenter);
    row->addSpacing(12);
    row->addLayout(units);
    row->addStretch();
    return frame;
}
}  // namespace

PeriodsWindow::PeriodsWindow(Station& st, ErrorReport& report, QWidget* parent)
    : QWidget(parent, Qt::Window), st_(st), report_(report) {
    setObjectName("Periods");
    setWindowTitle("I/O And Logging Periods");

    txtIOPeriod_ = numberBox("TxtIOPeriod", this);
    optIOmSecs_ = option("OptIOmSecs", "mSeconds", this);
    optIOSecs_ = option("OptIOSecs", "Seconds", this);
    txtLogPeriod_ = numberBox("TxtLogPeriod", this);
    optLogmSecs_ = option("OptLogmSecs", "mSeconds", this);
    optLogSecs_ = option("OptLogSecs", "Seconds", this);
    optLogTrend_ = option("OptLogTrend", "= Log Period", this);
    optIOTrend_ = option("OptIOTrend", "= I/O Reading Period", this);
    cmdExit_ = new QPushButton("E&xit", this);
    cmdExit_->setObjectName("CmdExit");

    auto* ioFrame =
        periodFrame("Period Between I/O Readings", txtIOPeriod_, optIOmSecs_, optIOSecs_, this);
    auto* logFrame = periodFrame("Period Between Logged Readings", txtLogPeriod_, optLogmSecs_,
                                 optLogSecs_, this);
    auto* trendFrame = new QGroupBox("Period For Trends", this);
    auto* trendLayout = new QVBoxLayout(trendFrame);
    trendLayout->addWidget(optLogTrend_);
    trendLayout->addWidget(optIOTrend_);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdExit_);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(ioFrame);
    layout->addWidget(logFrame);
    layout->addWidget(trendFrame);
    layout->addLayout(buttons);
    setMinimumWidth(340);

    connect(cmdExit_, &QPushButton::clicked, this, &PeriodsWindow::exitClicked);
    guard_([&] { display(OpenPeriodsForm(st_)); });
    // Another configuration: its periods.
    changes_ = st_.changes.subscribe([this](TableChange change) {
        if (change == TableChange::Configuration) guard_([&] { display(OpenPeriodsForm(st_)); });
    });
}

void PeriodsWindow::display(const PeriodsForm& f) {
    txtIOPeriod_->setText(QString::fromStdString(f.TxtIOPeriod));
    (f.OptIOSecs ? optIOSecs_ : optIOmSecs_)->setChecked(true);
    txtLogPeriod_->setText(QString::fromStdString(f.TxtLogPeriod));
    (f.OptLogSecs ? optLogSecs_ : optLogmSecs_)->setChecked(true);
    (f.OptLogTrend ? optLogTrend_ : optIOTrend_)->setChecked(true);
}

PeriodsForm PeriodsWindow::read() const {
    PeriodsForm f;
    f.TxtIOPeriod = txtIOPeriod_->text().toStdString();
    f.OptIOSecs = optIOSecs_->isChecked();
    f.TxtLogPeriod = txtLogPeriod_->text().toStdString();
    f.OptLogSecs = optLogSecs_->isChecked();
    f.OptLogTrend = optLogTrend_->isChecked();
    return f;
}

void PeriodsWindow::exitClicked() {
    PeriodsForm f = read();
    bool accepted = false;
    guard_([&] { accepted = ExitPeriodsForm(st_, f); });
    // The model may have put "50" back into a period box.
    txtIOPeriod_->setText(QString::fromStdString(f.TxtIOPeriod));
    txtLogPeriod_->setText(QString::fromStdString(f.TxtLogPeriod));
    if (accepted) {
        close();
        return;
    }
    // The keyboard goes back to the period at fault, its text selected.
    if (f.FailedBox == "TxtIOPeriod") forms::FocusAndSelect(txtIOPeriod_);
    if (f.FailedBox == "TxtLogPeriod") forms::FocusAndSelect(txtLogPeriod_);
}

}  // namespace kova
