#include "displays/forms/readings_view_form.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QFocusEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/forms/form_widgets.h"
#include "core/forms/scan_gap.h"

namespace kova {

namespace {

using forms::IndicatorBox;

QString qs(const std::string& s) {
    return QString::fromStdString(s);
}

// A box the program fills: read by screen readers, skipped by the Tab key, and looking
// like a box that takes no typing.
QLineEdit* shownBox(const QString& name, int width, QWidget* parent) {
    auto* e = new QLineEdit(parent);
    e->setObjectName(name);
    forms::ShowReadOnly(e, true);
    e->setFocusPolicy(Qt::NoFocus);
    e->setMinimumWidth(width);
    return e;
}

// A value box takes typing only on a line whose tag takes the operator's writes (an
// output or a variable); on an input or an empty line it only shows.
void allowTyping(QLineEdit* e, bool writable) {
    if (e->isReadOnly() != writable) return;
    forms::ShowReadOnly(e, !writable);
    e->setFocusPolicy(writable ? Qt::StrongFocus : Qt::NoFocus);
    e->setToolTip(writable ? QString() : QString("An input: its value is read, not written"));
}

void setName(QWidget* w, const QString& name) {
    if (w->accessibleName() != name) w->setAccessibleName(name);
}

void setText(QLineEdit* e, const std::string& text) {
    const QString t = qs(text);
    if (e->text() != t) e->setText(t);
}

}  // namespace

ReadingsViewWindow::ReadingsViewWindow(Station& st, ErrorReport& report, QWidget* parent)
    : QWidget(parent, Qt::Window), st_(st), report_(report) {
    setObjectName("ViewRead");
    setWindowTitle(kViewReadingsCaption);

    txtScreen_ = shownBox("TxtScreen", 260, this);
    txtScreen_->setAccessibleName("Screen Title");
    QFont big = txtScreen_->font();
    big.setPointSize(big.pointSize() + 2);
    big.setBold(true);
    txtScreen_->setFont(big);
    vOptLog_ = new IndicatorBox(kLoggingDataCaption, this);
    vOptLog_->setObjectName("VOptLog");
    vOptLog_->setFocusPolicy(Qt::NoFocus);
    vOptLog_->setAttribute(Qt::WA_TransparentForMouseEvents);
    auto* top = new QHBoxLayout;
    top->addWidget(txtScreen_, 1);
    top->addSpacing(16);
    top->addWidget(vOptLog_);

    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(6);
    grid->setColumnMinimumWidth(3, 20);
    for (int i = 0; i < kScreenRows; ++i) {
        const auto k = static_cast<std::size_t>(i);
        txtLabel_[k] = shownBox(QString("TxtLabel%1").arg(i), 180, this);
        txtAn_[k] = new QLineEdit(this);
        txtAn_[k]->setObjectName(QString("TxtAn%1").arg(i));
        txtAn_[k]->setMinimumWidth(100);
        txtUnits_[k] = shownBox(QString("TxtUnits%1").arg(i), 60, this);
        txtUnits_[k]->setMaximumWidth(90);
        lblDIP_[k] = new QLabel(this);
        lblDIP_[k]->setObjectName(QString("LblDIP%1").arg(i));
        lblDIP_[k]->setMinimumWidth(160);
        txtDig_[k] = shownBox(QString("TxtDig%1").arg(i), 90, this);
        chkDig_[k] = new QCheckBox(this);
        chkDig_[k]->setObjectName(QString("ChkDig%1").arg(i));
        lblDIP_[k]->setBuddy(chkDig_[k]);
        grid->addWidget(txtLabel_[k], i, 0);
        grid->addWidget(txtAn_[k], i, 1);
        grid->addWidget(txtUnits_[k], i, 2);
        grid->addWidget(lblDIP_[k], i, 4);
        grid->addWidget(txtDig_[k], i, 5);
        grid->addWidget(chkDig_[k], i, 6);
        txtAn_[k]->installEventFilter(this);
        connect(chkDig_[k], &QCheckBox::clicked, this,
                [this, i](bool ticked) { boxClicked(i, ticked); });
    }

    cmdPrev_ = new QPushButton("&Previous", this);
    cmdPrev_->setObjectName("CmdPrev");
    cmdNext_ = new QPushButton("&Next", this);
    cmdNext_->setObjectName("CmdNext");
    cmdJump_ = new QPushButton("&Jump To", this);
    cmdJump_->setObjectName("CmdJump");
    comExit_ = new QPushButton("E&xit", this);
    comExit_->setObjectName("ComExit");
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdPrev_);
    buttons->addWidget(cmdNext_);
    buttons->addWidget(cmdJump_);
    buttons->addWidget(comExit_);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addSpacing(6);
    layout->addLayout(grid);
    layout->addSpacing(6);
    layout->addLayout(buttons);

    // Tab order: the value boxes, the tick boxes, the buttons.
    QList<QWidget*> order;
    for (std::size_t k = 0; k < kScreenRows; ++k) order << txtAn_[k];
    for (std::size_t k = 0; k < kScreenRows; ++k) order << chkDig_[k];
    order << cmdPrev_ << cmdNext_ << cmdJump_ << comExit_;
    for (qsizetype i = 1; i < order.size(); ++i) setTabOrder(order[i - 1], order[i]);

    connect(cmdPrev_, &QPushButton::clicked, this, &ReadingsViewWindow::prevClicked);
    connect(cmdNext_, &QPushButton::clicked, this, &ReadingsViewWindow::nextClicked);
    connect(cmdJump_, &QPushButton::clicked, this, &ReadingsViewWindow::jumpClicked);
    connect(comExit_, &QPushButton::clicked, this, &QWidget::close);

    guard_([&] { form_ = OpenReadingsView(st_); });
    display();
    // The cursor starts on a button, so that no value box is being edited from the start.
    cmdNext_->setFocus();

    readTimer_.setObjectName("ReadTimer");
    readTimer_.setInterval(kReadTimerMs);
    connect(&readTimer_, &QTimer::timeout, this,
            [this] { forms::ScanGap::instance().run(this, [this] { readTimerTick(); }); });
    readTimer_.start();
    changes_ = st_.changes.subscribe([this](TableChange change) {
        guard_([&] { ReadingsViewTablesChanged(st_, form_, change); });
        display();
    });
}

void ReadingsViewWindow::display() {
    setWindowTitle(qs(form_.Caption));
    setText(txtScreen_, form_.TxtScreen);
    showRows();
}

void ReadingsViewWindow::showRows() {
    vOptLog_->setChecked(form_.VOptLog);
    for (int i = 0; i < kScreenRows; ++i) {
        const auto k = static_cast<std::size_t>(i);
        const QString n = QString::number(i + 1);
        const ReadingsAnalogRow& a = form_.Analog[k];
        setText(txtLabel_[k], a.TxtLabel);
        if (!AnalogRowEditing(st_, form_, i)) setText(txtAn_[k], a.TxtAn);
        allowTyping(txtAn_[k], form_.AnalogWritable[k]);
        setText(txtUnits_[k], a.TxtUnits);
        // Each box is named after the label beside it.
        const QString label = a.TxtLabel.empty() ? "Analog " + n : qs(a.TxtLabel);
        setName(txtLabel_[k], "Analog label " + n);
        setName(txtAn_[k], label);
        setName(txtUnits_[k], label + " units");

        const ReadingsDigitalRow& d = form_.Digital[k];
        const QString dip = qs(d.LblDIP);
        if (lblDIP_[k]->text() != dip) lblDIP_[k]->setText(dip);
        setText(txtDig_[k], d.TxtDig);
        chkDig_[k]->setChecked(d.ChkDig);
        // Only an output's or a variable's box takes a click; an input's only shows.
        const bool writable = form_.DigitalWritable[k];
        if (chkDig_[k]->isEnabled() != writable) chkDig_[k]->setEnabled(writable);
        const QString dlabel = d.LblDIP.empty() ? "Digital " + n : dip;
        setName(txtDig_[k], dlabel + " state");
        setName(chkDig_[k], dlabel);
    }
}

void ReadingsViewWindow::nextClicked() {
    guard_([&] { NextReadingsScreen(st_, form_); });
    display();
}

void ReadingsViewWindow::prevClicked() {
    guard_([&] { PrevReadingsScreen(st_, form_); });
    display();
}

void ReadingsViewWindow::jumpClicked() {
    guard_([&] { JumpReadingsScreen(st_, form_); });
    display();
}

void ReadingsViewWindow::readTimerTick() {
    // A fault that repeats every second is reported once, until a tick runs clean.
    try {
        ReadTimerTick(st_, form_);
        tickFault_.clear();
    } catch (const std::exception& e) {
        const std::string text = FaultText(e);
        if (text != tickFault_) guard_.report(e);
        tickFault_ = text;
    }
    showRows();
}

void ReadingsViewWindow::valueFocused(int row) {
    guard_([&] { AnalogValueFocused(st_, form_, row); });
}

void ReadingsViewWindow::valueLeft(int row) {
    const auto k = static_cast<std::size_t>(row);
    guard_([&] { AnalogValueLeft(st_, form_, row, txtAn_[k]->text().toStdString()); });
    setText(txtAn_[k], form_.Analog[k].TxtAn);
}

void ReadingsViewWindow::boxClicked(int row, bool ticked) {
    guard_([&] { DigitalBoxChanged(st_, form_, row, ticked); });
}

int ReadingsViewWindow::analogRowOf(QObject* watched) const {
    for (int i = 0; i < kScreenRows; ++i)
        if (watched == txtAn_[static_cast<std::size_t>(i)]) return i;
    return -1;
}

bool ReadingsViewWindow::eventFilter(QObject* watched, QEvent* event) {
    const int row = analogRowOf(watched);
    if (row >= 0) {
        switch (event->type()) {
            case QEvent::FocusIn:
                valueFocused(row);
                break;
            case QEvent::FocusOut: {
                // Another window or a pop-up taking the focus leaves the operator mid-entry.
                const Qt::FocusReason why = static_cast<QFocusEvent*>(event)->reason();
                if (why != Qt::ActiveWindowFocusReason && why != Qt::PopupFocusReason)
                    valueLeft(row);
                break;
            }
            case QEvent::KeyPress: {
                // Enter finishes the entry and moves on, as Tab does.
                const int key = static_cast<QKeyEvent*>(event)->key();
                if (key == Qt::Key_Return || key == Qt::Key_Enter) {
                    focusNextChild();
                    return true;
                }
                break;
            }
            default:
                break;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void ReadingsViewWindow::closeEvent(QCloseEvent* event) {
    readTimer_.stop();
    for (QLineEdit* e : txtAn_) e->removeEventFilter(this);
    event->accept();
}

}  // namespace kova
