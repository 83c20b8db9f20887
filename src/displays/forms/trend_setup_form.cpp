#include "displays/forms/trend_setup_form.h"

#include <QComboBox>
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
// A pen box: a name typed or picked from the list. What is typed is what gets checked, so
// no completion and no adding typed names to the list.
QComboBox* penBox(int pen, QWidget* parent) {
    auto* c = new QComboBox(parent);
    c->setObjectName(QString("CboTagNo%1").arg(pen));
    c->setEditable(true);
    c->setInsertPolicy(QComboBox::NoInsert);
    c->setCompleter(nullptr);
    c->setMaxVisibleItems(16);
    c->setMinimumContentsLength(12);
    // The box and the line typed into both carry the heading, for readers and automation.
    forms::nameBox(c, kSetTrendPenHeadings[pen - 1]);
    return c;
}
}  // namespace

SetTrendWindow::SetTrendWindow(Station& st, ErrorReport& report, QWidget* parent)
    : QWidget(parent, Qt::Window), st_(st), report_(report) {
    setObjectName("SetTrend");
    setWindowTitle(kSetTrendCaption);

    lblTrendNo_ = new QLabel(this);
    lblTrendNo_->setObjectName("LblTrendNo");
    lblTrendNo_->setAccessibleName(kSetTrendNumberHeading);
    lblTrendNo_->setFrameShape(QFrame::Panel);
    lblTrendNo_->setFrameShadow(QFrame::Sunken);
    lblTrendNo_->setMinimumWidth(40);
    lblTrendNo_->setAlignment(Qt::AlignCenter);
    for (int pen = 1; pen <= 4; ++pen) cboTagNo_[pen - 1] = penBox(pen, this);
    auto* cmdPrev = button("CmdPrev", kSetTrendPreviousCaption, this);
    auto* comNext = button("ComNext", kSetTrendNextCaption, this);
    auto* comExit = button("ComExit", kSetTrendExitCaption, this);

    auto* fields = new QFormLayout;
    auto* number = new QLabel(kSetTrendNumberHeading, this);
    number->setBuddy(lblTrendNo_);
    fields->addRow(number, lblTrendNo_);
    for (int pen = 1; pen <= 4; ++pen) {
        auto* heading = new QLabel(kSetTrendPenHeadings[pen - 1], this);
        heading->setBuddy(cboTagNo_[pen - 1]);
        fields->addRow(heading, cboTagNo_[pen - 1]);
    }
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(cmdPrev);
    buttons->addWidget(comNext);
    buttons->addStretch();
    buttons->addWidget(comExit);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(fields);
    layout->addSpacing(6);
    layout->addLayout(buttons);
    setMinimumWidth(360);

    // Keyboard order follows the layout: the pens top to bottom, then the buttons.
    setTabOrder(cboTagNo_[0], cboTagNo_[1]);
    setTabOrder(cboTagNo_[1], cboTagNo_[2]);
    setTabOrder(cboTagNo_[2], cboTagNo_[3]);
    setTabOrder(cboTagNo_[3], cmdPrev);
    setTabOrder(cmdPrev, comNext);
    setTabOrder(comNext, comExit);

    connect(cmdPrev, &QPushButton::clicked, this, &SetTrendWindow::previousClicked);
    connect(comNext, &QPushButton::clicked, this, &SetTrendWindow::nextClicked);
    connect(comExit, &QPushButton::clicked, this, &SetTrendWindow::exitClicked);
    guard_([&] { form_ = OpenSetTrend(st_); });
    display(form_);
    changes_ = st_.changes.subscribe([this](TableChange change) { tablesChanged(change); });
}

void SetTrendWindow::display(const SetTrendForm& f) {
    lblTrendNo_->setText(QString::fromStdString(f.LblTrendNo));
    for (int pen = 1; pen <= 4; ++pen) {
        QComboBox* c = cboTagNo_[pen - 1];
        forms::RefillKeepingText(c, f.TagList);
        forms::ShowText(c, f.CboTagNo[pen - 1]);
    }
}

void SetTrendWindow::tablesChanged(TableChange change) {
    form_ = read();
    guard_([&] { SetTrendTablesChanged(st_, form_, change); });
    display(form_);
}

void SetTrendWindow::afterMove(bool moved) {
    display(form_);  // a refused trend stays as typed
    if (moved)
        forms::FocusAndSelect(cboTagNo_[0]);
    else if (form_.FailedPen >= 1 && form_.FailedPen <= 4)
        forms::FocusAndSelect(cboTagNo_[static_cast<std::size_t>(form_.FailedPen - 1)]);
}

SetTrendForm SetTrendWindow::read() const {
    SetTrendForm f = form_;
    for (int pen = 1; pen <= 4; ++pen)
        f.CboTagNo[pen - 1] = cboTagNo_[pen - 1]->currentText().toStdString();
    return f;
}

void SetTrendWindow::previousClicked() {
    form_ = read();
    bool moved = false;
    if (guard_([&] { moved = SetTrendPrevious(st_, form_); })) afterMove(moved);
}

void SetTrendWindow::nextClicked() {
    form_ = read();
    bool moved = false;
    if (guard_([&] { moved = SetTrendNext(st_, form_); })) afterMove(moved);
}

void SetTrendWindow::exitClicked() {
    form_ = read();
    bool accepted = false;
    guard_([&] { accepted = SetTrendExit(st_, form_); });
    if (accepted)
        close();
    else
        afterMove(false);
}

}  // namespace kova
