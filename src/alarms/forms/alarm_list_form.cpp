#include "alarms/forms/alarm_list_form.h"

#include <QFontMetrics>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>

#include "core/forms/fixed_pitch_font.h"
#include "core/forms/form_widgets.h"
#include "core/forms/scan_gap.h"

namespace kova {

namespace {

using forms::button;

constexpr const char* kCurrentCaption = "Current alarms";
constexpr const char* kHistoryCaption = "Alarm history";

}  // namespace

AlarmListWindow::AlarmListWindow(Station& st, ErrorReport& report, Printer& printer,
                                 QWidget* parent)
    : QWidget(parent, Qt::Window), st_(st), report_(report), printer_(printer) {
    setObjectName("FrmAlarms");
    setWindowTitle("Alarms");

    txtAlarms_ = new QPlainTextEdit(this);
    txtAlarms_->setObjectName("TxtAlarms");
    txtAlarms_->setReadOnly(true);
    txtAlarms_->setLineWrapMode(QPlainTextEdit::NoWrap);
    // Every line starts with a five-letter word, so the columns line up in a fixed pitch.
    txtAlarms_->setFont(forms::FixedPitchFont());
    txtAlarms_->setTabChangesFocus(true);
    txtAlarms_->setTextInteractionFlags(Qt::TextSelectableByKeyboard | Qt::TextSelectableByMouse);
    lblView_ = new QLabel(this);
    lblView_->setObjectName("LblView");
    lblView_->setBuddy(txtAlarms_);
    lblUnack_ = new QLabel(this);
    lblUnack_->setObjectName("LblUnacknowledged");

    cmdCurrent_ = button("CmdCurrent", "&Current", this);
    cmdHistory_ = button("CmdHistory", "&History", this);
    cmdAck_ = button("CmdAck", "&Acknowledge", this);
    cmdSave_ = button("CmdSave", "&Save History...", this);
    cmdPrint_ = button("CmdPrint", "&Print History...", this);
    cmdExit_ = button("CmdExit", "E&xit", this);

    auto* top = new QHBoxLayout;
    top->addWidget(lblView_);
    top->addStretch();
    top->addWidget(lblUnack_);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(cmdCurrent_);
    buttons->addWidget(cmdHistory_);
    buttons->addWidget(cmdAck_);
    buttons->addStretch();
    buttons->addWidget(cmdSave_);
    buttons->addWidget(cmdPrint_);
    buttons->addStretch();
    buttons->addWidget(cmdExit_);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(txtAlarms_, 1);
    layout->addLayout(buttons);

    // Room for a line of a long message and for twenty alarms.
    const QFontMetrics fm(txtAlarms_->font());
    txtAlarms_->setMinimumSize(fm.horizontalAdvance(QString(72, 'M')) + 24, fm.lineSpacing() * 12);
    resize(fm.horizontalAdvance(QString(72, 'M')) + 60, fm.lineSpacing() * 22 + 80);

    QWidget* order[] = {txtAlarms_, cmdCurrent_, cmdHistory_, cmdAck_,
                        cmdSave_,   cmdPrint_,   cmdExit_};
    for (std::size_t i = 1; i < std::size(order); ++i) setTabOrder(order[i - 1], order[i]);

    connect(cmdCurrent_, &QPushButton::clicked, this, &AlarmListWindow::currentClicked);
    connect(cmdHistory_, &QPushButton::clicked, this, &AlarmListWindow::historyClicked);
    connect(cmdAck_, &QPushButton::clicked, this, &AlarmListWindow::ackClicked);
    connect(cmdSave_, &QPushButton::clicked, this, &AlarmListWindow::saveClicked);
    connect(cmdPrint_, &QPushButton::clicked, this, &AlarmListWindow::printClicked);
    connect(cmdExit_, &QPushButton::clicked, this, &QWidget::close);

    guard_([&] { form_ = OpenAlarmList(st_); });
    display();

    timer_.setObjectName("TmrRefresh");
    timer_.setInterval(kRefreshMs);
    connect(&timer_, &QTimer::timeout, this,
            [this] { forms::ScanGap::instance().run(this, [this] { refresh(); }); });
    timer_.start();
}

void AlarmListWindow::display() {
    const QString caption = form_.ShowingHistory ? kHistoryCaption : kCurrentCaption;
    lblView_->setText(caption);
    txtAlarms_->setAccessibleName(caption);
    const QString text = QString::fromStdString(form_.TxtAlarms).remove('\r');
    if (txtAlarms_->toPlainText() != text) {
        // Rewriting keeps the reader's place in the list.
        const int at = txtAlarms_->verticalScrollBar()->value();
        txtAlarms_->setPlainText(text);
        txtAlarms_->verticalScrollBar()->setValue(at);
    }
    lblUnack_->setText(QString::fromStdString(UnacknowledgedText(st_)));
}

void AlarmListWindow::currentClicked() {
    guard_([&] { ShowCurrentAlarms(st_, form_); });
    display();
}

void AlarmListWindow::historyClicked() {
    guard_([&] { ShowAlarmHistory(st_, form_); });
    display();
}

void AlarmListWindow::ackClicked() {
    guard_([&] { AcknowledgeFromList(st_, form_); });
    display();
}

void AlarmListWindow::saveClicked() {
    guard_([&] { SaveAlarmHistory(st_); });
}

void AlarmListWindow::printClicked() {
    guard_([&] { PrintAlarmHistory(st_, printer_); });
}

void AlarmListWindow::refresh() {
    guard_([&] {
        if (form_.ShowingHistory)
            ShowAlarmHistory(st_, form_);
        else
            ShowCurrentAlarms(st_, form_);
    });
    display();
}

}  // namespace kova
