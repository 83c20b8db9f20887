#include "alarms/forms/alarm_setup_form.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/forms/form_widgets.h"

namespace kova {

namespace {

using forms::button;
using forms::caption;

QLineEdit* textBox(const char* name, int width, QWidget* parent) {
    auto* e = new QLineEdit(parent);
    e->setObjectName(name);
    if (width > 0) e->setMaximumWidth(width);
    return e;
}

}  // namespace

AlarmSetupWindow::AlarmSetupWindow(Station& st, ErrorReport& report, QWidget* parent)
    : QWidget(parent, Qt::Window), st_(st), report_(report) {
    setObjectName("FrmAlmSetUp");
    setWindowTitle("Alarm Set Up");

    lblAlmNo_ = new QLabel(this);
    lblAlmNo_->setObjectName("LblAlmNo");
    lblAlmNo_->setAccessibleName("Alarm No.");
    cboTag_ = new QComboBox(this);
    cboTag_->setObjectName("CboTag");
    cboTag_->setEditable(true);  // a name may be typed; one that is no tag is refused
    cboTag_->setInsertPolicy(QComboBox::NoInsert);
    cboTag_->setMinimumContentsLength(12);
    txtHiVal_ = textBox("TxtHiVal", 120, this);
    txtHiMsg_ = textBox("TxtHiMsg", 0, this);
    txtLoVal_ = textBox("TxtLoVal", 120, this);
    txtLoMsg_ = textBox("TxtLoMsg", 0, this);
    txtNormMsg_ = textBox("TxtNormMsg", 0, this);
    chkEnableAlm_ = new QCheckBox(kEnableAlarmsCaption, this);
    chkEnableAlm_->setObjectName("ChkEnableAlm");
    cmdPrev_ = button("Prev", "&Prev", this);
    cmdNext_ = button("Next", "&Next", this);
    cmdDelete_ = button("CmdDelete", "&Delete", this);
    cmdExit_ = button("Exit", "E&xit", this);

    auto* grid = new QGridLayout;
    auto* numberRow = new QHBoxLayout;
    numberRow->addWidget(lblAlmNo_);
    numberRow->addStretch();
    grid->addWidget(new QLabel("Alarm No.", this), 0, 0);
    grid->addLayout(numberRow, 0, 1);
    grid->addWidget(caption("&Tag Name", cboTag_, this), 1, 0);
    auto* tagRow = new QHBoxLayout;
    tagRow->addWidget(cboTag_);
    tagRow->addStretch();
    grid->addLayout(tagRow, 1, 1);
    grid->addWidget(caption("&High Alarm Value", txtHiVal_, this), 2, 0);
    grid->addWidget(txtHiVal_, 2, 1);
    grid->addWidget(caption("High Alarm &Message", txtHiMsg_, this), 3, 0);
    grid->addWidget(txtHiMsg_, 3, 1);
    grid->addWidget(caption("&Low Alarm Value", txtLoVal_, this), 4, 0);
    grid->addWidget(txtLoVal_, 4, 1);
    grid->addWidget(caption("Low Alarm Messa&ge", txtLoMsg_, this), 5, 0);
    grid->addWidget(txtLoMsg_, 5, 1);
    grid->addWidget(caption("N&ormal Message", txtNormMsg_, this), 6, 0);
    grid->addWidget(txtNormMsg_, 6, 1);
    grid->setColumnStretch(1, 1);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(cmdPrev_);
    buttons->addWidget(cmdNext_);
    buttons->addStretch();
    buttons->addWidget(cmdDelete_);
    buttons->addStretch();
    buttons->addWidget(cmdExit_);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addWidget(chkEnableAlm_);
    layout->addSpacing(6);
    layout->addLayout(buttons);
    setMinimumWidth(460);

    QWidget* order[] = {cboTag_,       txtHiVal_, txtHiMsg_, txtLoVal_,  txtLoMsg_, txtNormMsg_,
                        chkEnableAlm_, cmdPrev_,  cmdNext_,  cmdDelete_, cmdExit_};
    for (std::size_t i = 1; i < std::size(order); ++i) setTabOrder(order[i - 1], order[i]);

    connect(cmdNext_, &QPushButton::clicked, this, &AlarmSetupWindow::nextClicked);
    connect(cmdPrev_, &QPushButton::clicked, this, &AlarmSetupWindow::prevClicked);
    connect(cmdDelete_, &QPushButton::clicked, this, &AlarmSetupWindow::deleteClicked);
    connect(cmdExit_, &QPushButton::clicked, this, &AlarmSetupWindow::exitClicked);

    guard_([&] { form_ = OpenAlarmSetup(st_); });
    forms::RefillKeepingText(cboTag_, tagEntries());
    chkEnableAlm_->setChecked(form_.ChkEnableAlm);
    display();
    cboTag_->setFocus();
    changes_ = st_.changes.subscribe([this](TableChange change) { tablesChanged(change); });
}

// The drop-down's entries: no tag first (the alarm is cleared), then the tag names.
std::vector<std::string> AlarmSetupWindow::tagEntries() const {
    std::vector<std::string> entries{""};
    entries.insert(entries.end(), form_.CboTagList.begin(), form_.CboTagList.end());
    return entries;
}

void AlarmSetupWindow::tablesChanged(TableChange change) {
    read();
    guard_([&] { AlarmSetupTablesChanged(st_, form_, change); });
    forms::RefillKeepingText(cboTag_, tagEntries());
    chkEnableAlm_->setChecked(form_.ChkEnableAlm);
    display();
}

void AlarmSetupWindow::afterMove(bool moved) {
    if (moved) {
        display();
        forms::FocusAndSelect(cboTag_);
        return;
    }
    // A refused alarm stays as typed.
    const std::pair<const char*, QWidget*> boxes[] = {
        {"CboTag", cboTag_},     {"TxtHiVal", txtHiVal_}, {"TxtHiMsg", txtHiMsg_},
        {"TxtLoVal", txtLoVal_}, {"TxtLoMsg", txtLoMsg_}, {"TxtNormMsg", txtNormMsg_}};
    for (const auto& [name, box] : boxes)
        if (form_.FailedBox == name) forms::FocusAndSelect(box);
}

void AlarmSetupWindow::display() {
    lblAlmNo_->setText(QString::number(form_.LblAlmNo));
    forms::ShowText(cboTag_, form_.CboTag);
    forms::ShowText(txtHiVal_, form_.TxtHiVal);
    forms::ShowText(txtHiMsg_, form_.TxtHiMsg);
    forms::ShowText(txtLoVal_, form_.TxtLoVal);
    forms::ShowText(txtLoMsg_, form_.TxtLoMsg);
    forms::ShowText(txtNormMsg_, form_.TxtNormMsg);
}

void AlarmSetupWindow::read() {
    form_.CboTag = cboTag_->currentText().toStdString();
    form_.TxtHiVal = txtHiVal_->text().toStdString();
    form_.TxtHiMsg = txtHiMsg_->text().toStdString();
    form_.TxtLoVal = txtLoVal_->text().toStdString();
    form_.TxtLoMsg = txtLoMsg_->text().toStdString();
    form_.TxtNormMsg = txtNormMsg_->text().toStdString();
    form_.ChkEnableAlm = chkEnableAlm_->isChecked();
}

void AlarmSetupWindow::nextClicked() {
    read();
    bool moved = false;
    guard_([&] { moved = NextAlarm(st_, form_); });
    afterMove(moved);
}

void AlarmSetupWindow::prevClicked() {
    read();
    bool moved = false;
    guard_([&] { moved = PrevAlarm(st_, form_); });
    afterMove(moved);
}

void AlarmSetupWindow::deleteClicked() {
    read();
    guard_([&] { DeleteAlarm(st_, form_); });
    display();
    forms::FocusAndSelect(cboTag_);
}

void AlarmSetupWindow::exitClicked() {
    read();
    bool closing = false;
    guard_([&] { closing = ExitAlarmSetup(st_, form_); });
    if (!closing) {
        afterMove(false);
        return;
    }
    emit alarmsStored();
    close();
}

}  // namespace kova
