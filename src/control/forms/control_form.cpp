#include "control/forms/control_form.h"

#include <QCheckBox>
#include <QEvent>
#include <QFontMetrics>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextBlock>
#include <QVBoxLayout>

#include "core/forms/form_widgets.h"

namespace kova {

namespace {

using forms::button;
using forms::caption;

// A THEN or ELSE box: one assignment per line; Tab moves on instead of typing a tab.
QPlainTextEdit* assignmentBox(const char* name, QWidget* parent) {
    auto* e = new QPlainTextEdit(parent);
    e->setObjectName(name);
    e->setTabChangesFocus(true);
    e->setLineWrapMode(QPlainTextEdit::NoWrap);
    const int line = QFontMetrics(e->font()).lineSpacing();
    e->setMinimumHeight(4 * line + 12);
    return e;
}

// The boxes show text lines separated by LF; the line keeps them separated by CR LF.
QString shown(const std::string& text) {
    return QString::fromStdString(text).replace("\r\n", "\n");
}
std::string stored(const QString& text) {
    return QString(text).replace("\r\n", "\n").replace('\n', "\r\n").toStdString();
}

// Selects `token` in the text line `lineNo` of a box (case as typed or not); without a
// token, or when it is not there, the cursor goes to the start of that line.
void selectIn(QPlainTextEdit* e, int lineNo, const QString& token) {
    const QTextBlock block = e->document()->findBlockByNumber(lineNo);
    QTextCursor c(block.isValid() ? block : e->document()->firstBlock());
    const int at = token.isEmpty() ? -1 : c.block().text().indexOf(token, 0, Qt::CaseInsensitive);
    if (at >= 0) {
        c.setPosition(c.block().position() + at);
        c.setPosition(c.block().position() + at + static_cast<int>(token.size()),
                      QTextCursor::KeepAnchor);
    }
    e->setTextCursor(c);
}

}  // namespace

void TagChoiceBox::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Up:
        case Qt::Key_Down:
        case Qt::Key_PageUp:
        case Qt::Key_PageDown:
        case Qt::Key_Home:
        case Qt::Key_End:
            if (event->modifiers() == Qt::NoModifier) {
                showPopup();
                return;
            }
            break;
        default:
            break;
    }
    QComboBox::keyPressEvent(event);
}

ControlWindow::ControlWindow(Station& st, ErrorReport& report, QWidget* parent)
    : QWidget(parent, Qt::Window), st_(st), report_(report) {
    setObjectName("FrmControl");
    setWindowTitle("Control Language");

    lblLineNo_ = new QLabel(this);
    lblLineNo_->setObjectName("LblLineNo");
    lblLineNo_->setMinimumWidth(30);
    lblLineNo_->setAccessibleName("Line No.");
    txtIf_ = new QLineEdit(this);
    txtIf_->setObjectName("TxtIf");
    txtThen_ = assignmentBox("TxtThen", this);
    txtElse_ = assignmentBox("TxtElse", this);
    cboTag_ = new TagChoiceBox(this);
    cboTag_->setObjectName("CboTag");
    cboTag_->setMinimumContentsLength(12);
    chkIf_ = new QCheckBox(kChkIfCaption, this);
    chkIf_->setObjectName("ChkIf");
    chkEnableControl_ = new QCheckBox(kChkEnableControlCaption, this);
    chkEnableControl_->setObjectName("ChkEnableControl");
    cmdPrev_ = button("CmdPrev", "&Prev", this);
    cmdNext_ = button("CmdNext", "&Next", this);
    cmdInsert_ = button("CmdInsert", "&Insert", this);
    cmdDelete_ = button("CmdDelete", "&Delete", this);
    cmdExit_ = button("CmdExit", "E&xit", this);

    auto* grid = new QGridLayout;
    auto* lineRow = new QHBoxLayout;
    lineRow->addWidget(lblLineNo_);
    lineRow->addStretch();
    grid->addWidget(new QLabel("Line No.", this), 0, 0);
    grid->addLayout(lineRow, 0, 1);
    grid->addWidget(caption("I&F", txtIf_, this), 1, 0);
    grid->addWidget(txtIf_, 1, 1);
    grid->addWidget(caption("&THEN", txtThen_, this), 2, 0, Qt::AlignTop);
    grid->addWidget(txtThen_, 2, 1);
    grid->addWidget(caption("&ELSE", txtElse_, this), 3, 0, Qt::AlignTop);
    grid->addWidget(txtElse_, 3, 1);
    auto* tagRow = new QHBoxLayout;
    tagRow->addWidget(cboTag_);
    tagRow->addWidget(new QLabel("adds \"@\" and the name to the box last used", this));
    tagRow->addStretch();
    grid->addWidget(caption("T&ag", cboTag_, this), 4, 0);
    grid->addLayout(tagRow, 4, 1);
    grid->setColumnStretch(1, 1);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(cmdPrev_);
    buttons->addWidget(cmdNext_);
    buttons->addStretch();
    buttons->addWidget(cmdInsert_);
    buttons->addWidget(cmdDelete_);
    buttons->addStretch();
    buttons->addWidget(cmdExit_);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addWidget(chkIf_);
    layout->addWidget(chkEnableControl_);
    layout->addSpacing(6);
    layout->addLayout(buttons);
    setMinimumWidth(520);
    resize(600, 470);  // the THEN and ELSE boxes show a few lines each; the window may grow

    QWidget* order[] = {txtIf_,   txtThen_, txtElse_,   cboTag_,    chkIf_,  chkEnableControl_,
                        cmdPrev_, cmdNext_, cmdInsert_, cmdDelete_, cmdExit_};
    for (std::size_t i = 1; i < std::size(order); ++i) setTabOrder(order[i - 1], order[i]);
    for (QWidget* w : {static_cast<QWidget*>(txtIf_), static_cast<QWidget*>(txtThen_),
                       static_cast<QWidget*>(txtElse_)})
        w->installEventFilter(this);

    connect(cmdNext_, &QPushButton::clicked, this, &ControlWindow::nextClicked);
    connect(cmdPrev_, &QPushButton::clicked, this, &ControlWindow::prevClicked);
    connect(cmdInsert_, &QPushButton::clicked, this, &ControlWindow::insertClicked);
    connect(cmdDelete_, &QPushButton::clicked, this, &ControlWindow::deleteClicked);
    connect(cmdExit_, &QPushButton::clicked, this, &ControlWindow::exitClicked);
    connect(cboTag_, &QComboBox::activated, this, &ControlWindow::tagChosen);

    guard_([&] { form_ = OpenControlForm(st_); });
    forms::RefillKeepingText(cboTag_, form_.CboTag);
    cboTag_->setCurrentIndex(-1);
    display();
    txtIf_->setFocus();
    changes_ = st_.changes.subscribe([this](TableChange change) { tablesChanged(change); });
}

void ControlWindow::tablesChanged(TableChange change) {
    read();
    guard_([&] { ControlFormTablesChanged(st_, form_, change); });
    forms::RefillKeepingText(cboTag_, form_.CboTag);
    display();
}

void ControlWindow::display() {
    lblLineNo_->setText(QString::number(form_.LblLineNo));
    txtIf_->setText(QString::fromStdString(form_.TxtIf));
    txtThen_->setPlainText(shown(form_.TxtThen));
    txtElse_->setPlainText(shown(form_.TxtElse));
    chkIf_->setChecked(form_.ChkIf);
    chkEnableControl_->setChecked(form_.ChkEnableControl);
}

void ControlWindow::read() {
    form_.TxtIf = txtIf_->text().toStdString();
    form_.TxtThen = stored(txtThen_->toPlainText());
    form_.TxtElse = stored(txtElse_->toPlainText());
    form_.ChkIf = chkIf_->isChecked();
    form_.ChkEnableControl = chkEnableControl_->isChecked();
}

QWidget* ControlWindow::box(const std::string& name) const {
    if (name == kFocusIf) return txtIf_;
    if (name == kFocusThen) return txtThen_;
    if (name == kFocusElse) return txtElse_;
    return nullptr;
}

// After a refused check: the box whose text failed gets the focus, with the token the
// message names selected, or the cursor on the failing text line.
void ControlWindow::pointAtFailure() {
    const QString token = QString::fromStdString(form_.FailedToken);
    if (form_.FailedBox == kFocusIf) {
        const int at = token.isEmpty() ? -1 : txtIf_->text().indexOf(token, 0, Qt::CaseInsensitive);
        if (at >= 0)
            txtIf_->setSelection(at, static_cast<int>(token.size()));
        else
            txtIf_->end(false);
        txtIf_->setFocus();
    } else if (form_.FailedBox == kFocusThen || form_.FailedBox == kFocusElse) {
        auto* e = form_.FailedBox == kFocusThen ? txtThen_ : txtElse_;
        selectIn(e, form_.FailedLine, token);
        e->setFocus();
    }
}

void ControlWindow::nextClicked() {
    step(+1);
}

void ControlWindow::prevClicked() {
    step(-1);
}

// Next and Prev: a refused line stays in the boxes exactly as typed.
void ControlWindow::step(int direction) {
    read();
    bool moved = false;
    guard_(
        [&] { moved = direction > 0 ? ControlFormNext(st_, form_) : ControlFormPrev(st_, form_); });
    if (!moved) {
        pointAtFailure();
        return;
    }
    display();
    forms::FocusAndSelect(txtIf_);  // another line: the keyboard starts at its IF box
    emit controlsStored();
}

void ControlWindow::insertClicked() {
    read();
    guard_([&] { ControlFormInsert(st_, form_); });
    display();
    txtIf_->setFocus();
}

void ControlWindow::deleteClicked() {
    read();
    guard_([&] { ControlFormDelete(st_, form_); });
    display();
}

void ControlWindow::exitClicked() {
    read();
    bool closing = false;
    guard_([&] { closing = ControlFormExit(st_, form_); });
    if (!closing) {
        pointAtFailure();
        return;
    }
    emit controlsStored();
    close();
}

bool ControlWindow::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusIn) {
        if (watched == txtIf_) ControlFormFocus(form_, kFocusIf);
        if (watched == txtThen_) ControlFormFocus(form_, kFocusThen);
        if (watched == txtElse_) ControlFormFocus(form_, kFocusElse);
    }
    return QWidget::eventFilter(watched, event);
}

// "@" + the name goes at the end of the box that last had the focus, which gets it back.
void ControlWindow::tagChosen(int index) {
    if (index < 0) return;
    read();
    ControlFormChooseTag(form_, cboTag_->itemText(index).toStdString());
    const std::string focus = form_.LastFocus;
    if (focus == kFocusIf) {
        txtIf_->setText(QString::fromStdString(form_.TxtIf));
        txtIf_->end(false);
    } else {
        auto* e = focus == kFocusThen ? txtThen_ : txtElse_;
        e->setPlainText(shown(focus == kFocusThen ? form_.TxtThen : form_.TxtElse));
        e->moveCursor(QTextCursor::End);
    }
    if (QWidget* w = box(focus)) w->setFocus();
}

}  // namespace kova
