#include "logging/forms/set_logging_form.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "core/forms/form_widgets.h"
#include "logging/forms/labelled.h"

namespace kova {

namespace {
using logform::LabelFor;

constexpr const char* kLogFileBoxTip =
    "Choose the log file with \"Choose File...\": its name cannot be typed here";

template <typename T>
T* named(T* w, const char* name) {
    w->setObjectName(name);
    return w;
}
}  // namespace

SetLoggingWindow::SetLoggingWindow(Station& st, ErrorReport& report, QWidget* parent)
    : QWidget(parent, Qt::Window), st_(st), report_(report) {
    setObjectName("SetLogging");
    setWindowTitle("Logging Parameters");

    // Created in the order of the layout, which is the tab order.
    txtFileName_ = named(new QLineEdit(this), "TxtFileName");
    // The name comes from the file dialog only: the box takes no typing and looks so, and
    // says (to the eye and to a screen reader) how the file is chosen.
    forms::ShowReadOnly(txtFileName_, true);
    txtFileName_->setToolTip(kLogFileBoxTip);
    txtFileName_->setAccessibleDescription(kLogFileBoxTip);
    txtFileName_->setPlaceholderText("(none: press Choose File...)");
    txtFileName_->setMinimumWidth(320);
    QLabel* fileLabel = LabelFor("&Log file:", txtFileName_, this);
    comFile_ = named(new QPushButton("Choose &File...", this), "ComFile");

    auto* dateFrame = named(new QGroupBox("Date Format", this), "FraDateFormat");
    optDateFormat1_ = named(new QRadioButton("&Day/Month/Year", dateFrame), "OptDateFormat1");
    optDateFormat2_ = named(new QRadioButton("&Month/Day/Year", dateFrame), "OptDateFormat2");

    auto* columnFrame = named(new QGroupBox("Columns", this), "FraColumns");
    chkTime_ = named(new QCheckBox("&Time column", columnFrame), "ChkTime");
    chkDate_ = named(new QCheckBox("D&ate column", columnFrame), "ChkDate");

    auto* fileFrame = named(new QGroupBox("Files", this), "FraFiles");
    chkDaily_ =
        named(new QCheckBox("Dail&y files (\"DA\" + date + \".CSV\" in the log file's folder)",
                            fileFrame),
              "ChkDaily");
    newFile_ =
        named(new QCheckBox("Start a &new file each time logging starts (else append)", fileFrame),
              "NewFile");
    comExit_ = named(new QPushButton("E&xit", this), "ComExit");

    auto* fileRow = new QHBoxLayout;
    fileRow->addWidget(fileLabel);
    fileRow->addWidget(txtFileName_, 1);
    fileRow->addWidget(comFile_);
    auto* dates = new QHBoxLayout(dateFrame);
    dates->addWidget(optDateFormat1_);
    dates->addWidget(optDateFormat2_);
    dates->addStretch();
    auto* columns = new QHBoxLayout(columnFrame);
    columns->addWidget(chkTime_);
    columns->addWidget(chkDate_);
    columns->addStretch();
    auto* files = new QVBoxLayout(fileFrame);
    files->addWidget(chkDaily_);
    files->addWidget(newFile_);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(comExit_);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(fileRow);
    layout->addWidget(dateFrame);
    layout->addWidget(columnFrame);
    layout->addWidget(fileFrame);
    layout->addStretch();
    layout->addLayout(buttons);

    connect(comFile_, &QPushButton::clicked, this, &SetLoggingWindow::chooseFileClicked);
    // clicked, not toggled: showing the settings must not count as the user's click.
    connect(chkDaily_, &QCheckBox::clicked, this, &SetLoggingWindow::dailyClicked);
    connect(comExit_, &QPushButton::clicked, this, &SetLoggingWindow::exitClicked);
    guard_([&] {
        form_ = OpenSetLoggingForm(st_);
        display(form_);
    });
    // Another configuration: its log file and columns.
    changes_ = st_.changes.subscribe([this](TableChange change) {
        if (change != TableChange::Configuration) return;
        guard_([&] {
            form_ = OpenSetLoggingForm(st_);
            display(form_);
        });
    });
}

void SetLoggingWindow::display(const SetLoggingForm& f) {
    txtFileName_->setText(QString::fromStdString(f.TxtFileName));
    txtFileName_->setCursorPosition(0);
    (f.OptDateFormat2 ? optDateFormat2_ : optDateFormat1_)->setChecked(true);
    chkTime_->setChecked(f.ChkTime);
    chkDate_->setChecked(f.ChkDate);
    chkDaily_->setChecked(f.ChkDaily);
    newFile_->setChecked(f.NewFile);
}

SetLoggingForm SetLoggingWindow::read() const {
    SetLoggingForm f = form_;
    f.OptDateFormat2 = optDateFormat2_->isChecked();
    f.ChkTime = chkTime_->isChecked();
    f.ChkDate = chkDate_->isChecked();
    f.ChkDaily = chkDaily_->isChecked();
    f.NewFile = newFile_->isChecked();
    return f;
}

void SetLoggingWindow::chooseFileClicked() {
    guard_([&] {
        form_ = read();
        if (ChooseLogFile(st_, form_)) {
            txtFileName_->setText(QString::fromStdString(form_.TxtFileName));
            txtFileName_->setCursorPosition(0);
        }
    });
}

void SetLoggingWindow::dailyClicked(bool checked) {
    guard_([&] { ClickDailyFiles(st_, form_, checked); });
}

void SetLoggingWindow::exitClicked() {
    form_ = read();
    if (guard_([&] { ExitSetLoggingForm(st_, form_); })) close();
}

}  // namespace kova
