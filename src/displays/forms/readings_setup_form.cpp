#include "displays/forms/readings_setup_form.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QToolButton>
#include <QVBoxLayout>

#include "app/window_registry.h"
#include "core/forms/form_widgets.h"
#include "tags/forms/analog_tag_form.h"

namespace kova {

namespace {

QString qs(const std::string& s) {
    return QString::fromStdString(s);
}

QLabel* heading(const char* text, QWidget* parent, bool bold = false) {
    auto* l = new QLabel(text, parent);
    if (bold) {
        QFont f = l->font();
        f.setBold(true);
        l->setFont(f);
    }
    return l;
}

QComboBox* tagCombo(const QString& name, const QString& accessible, QWidget* parent) {
    auto* c = new QComboBox(parent);
    c->setObjectName(name);
    c->setEditable(true);
    c->setInsertPolicy(QComboBox::NoInsert);
    // No inline completion: "TEMP" typed must not quietly become "TEMPERATURE".
    c->setCompleter(nullptr);
    c->setMaxVisibleItems(16);
    c->setMinimumWidth(120);
    forms::nameBox(c, accessible);
    return c;
}

QLabel* description(const QString& name, const QString& accessible, QWidget* parent) {
    auto* l = new QLabel(parent);
    l->setObjectName(name);
    l->setMinimumWidth(150);
    l->setFrameShape(QFrame::StyledPanel);
    l->setAccessibleName(accessible);
    return l;
}

}  // namespace

ReadingsSetupWindow::ReadingsSetupWindow(Station& st, ErrorReport& report, QWidget* parent)
    : QWidget(parent, Qt::Window), st_(st), report_(report) {
    setObjectName("SetRead");
    setWindowTitle(kSetupScreensCaption);

    // The screen's title, number and jump target.
    txtScreen_ = new QLineEdit(this);
    txtScreen_->setObjectName("TxtScreen");
    txtScreen_->setMinimumWidth(220);
    txtScreen_->setAccessibleName(kScreenHeadings[0]);
    lblScrNo_ = new QLabel(this);
    lblScrNo_->setObjectName("LblScrNo");
    lblScrNo_->setMinimumWidth(30);
    lblScrNo_->setFrameShape(QFrame::StyledPanel);
    lblScrNo_->setAccessibleName(kScreenHeadings[1]);
    txtJump_ = new QLineEdit(this);
    txtJump_->setObjectName("TxtJump");
    txtJump_->setMaximumWidth(50);
    txtJump_->setAccessibleName(kScreenHeadings[2]);
    auto* titleLabel = heading(kScreenHeadings[0], this);
    titleLabel->setBuddy(txtScreen_);
    auto* jumpLabel = heading(kScreenHeadings[2], this);
    jumpLabel->setBuddy(txtJump_);
    auto* top = new QHBoxLayout;
    top->addWidget(titleLabel);
    top->addWidget(txtScreen_, 1);
    top->addSpacing(12);
    top->addWidget(heading(kScreenHeadings[1], this));
    top->addWidget(lblScrNo_);
    top->addSpacing(12);
    top->addWidget(jumpLabel);
    top->addWidget(txtJump_);

    // Ten analog rows (drop-down, picker button, description) beside ten digital rows.
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(6);
    grid->addWidget(heading(kScreenHeadings[3], this, true), 0, 0, 1, 3);
    grid->addWidget(heading(kScreenHeadings[4], this, true), 0, 4, 1, 2);
    grid->addWidget(heading(kScreenHeadings[5], this), 1, 0);
    grid->addWidget(heading(kScreenHeadings[6], this), 1, 2);
    grid->addWidget(heading(kScreenHeadings[5], this), 1, 4);
    grid->addWidget(heading(kScreenHeadings[6], this), 1, 5);
    grid->setColumnMinimumWidth(3, 24);
    for (int i = 0; i < kScreenRows; ++i) {
        const auto k = static_cast<std::size_t>(i);
        const QString n = QString::number(i + 1);
        cboAnTag_[k] = tagCombo(QString("CboAnTag%1").arg(i), "Analog TagName " + n, this);
        cmdPick_[k] = new QToolButton(this);
        cmdPick_[k]->setObjectName(QString("CmdPickAnTag%1").arg(i));
        cmdPick_[k]->setText("...");
        cmdPick_[k]->setToolTip("Choose Analog Tag (F2 in the drop-down)");
        cmdPick_[k]->setAccessibleName("Choose Analog Tag for analog row " + n);
        cmdPick_[k]->setFocusPolicy(Qt::StrongFocus);
        lblAn_[k] = description(QString("LblAn%1").arg(i), "Analog Description " + n, this);
        cboDigTag_[k] = tagCombo(QString("CboDigTag%1").arg(i), "Digital TagName " + n, this);
        lblDig_[k] = description(QString("LblDig%1").arg(i), "Digital Description " + n, this);
        grid->addWidget(cboAnTag_[k], i + 2, 0);
        grid->addWidget(cmdPick_[k], i + 2, 1);
        grid->addWidget(lblAn_[k], i + 2, 2);
        grid->addWidget(cboDigTag_[k], i + 2, 4);
        grid->addWidget(lblDig_[k], i + 2, 5);
        cboAnTag_[k]->installEventFilter(this);
        cboAnTag_[k]->lineEdit()->installEventFilter(this);
        connect(cmdPick_[k], &QToolButton::clicked, this, [this, i] { pickForRow(i); });
    }

    cmdPrev_ = new QPushButton("&Previous", this);
    cmdPrev_->setObjectName("CmdPrev");
    cmdNext_ = new QPushButton("&Next", this);
    cmdNext_->setObjectName("CmdNext");
    comExit_ = new QPushButton("E&xit", this);
    comExit_->setObjectName("ComExit");
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdPrev_);
    buttons->addWidget(cmdNext_);
    buttons->addWidget(comExit_);

    // The rows scroll on a screen too small for them; the buttons stay in reach.
    auto* rows = new QWidget(this);
    grid->setContentsMargins(0, 0, 0, 0);
    rows->setLayout(grid);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addSpacing(6);
    layout->addWidget(forms::scrollingPart(rows, this), 1);
    layout->addSpacing(6);
    layout->addLayout(buttons);

    // Tab order follows the layout: the top line, the analog rows, the digital rows,
    // the buttons.
    QList<QWidget*> order = {txtScreen_, txtJump_};
    for (std::size_t k = 0; k < kScreenRows; ++k) order << cboAnTag_[k] << cmdPick_[k];
    for (std::size_t k = 0; k < kScreenRows; ++k) order << cboDigTag_[k];
    order << cmdPrev_ << cmdNext_ << comExit_;
    for (qsizetype i = 1; i < order.size(); ++i) setTabOrder(order[i - 1], order[i]);

    connect(cmdPrev_, &QPushButton::clicked, this, &ReadingsSetupWindow::prevClicked);
    connect(cmdNext_, &QPushButton::clicked, this, &ReadingsSetupWindow::nextClicked);
    connect(comExit_, &QPushButton::clicked, this, &ReadingsSetupWindow::exitClicked);

    guard_([&] { form_ = OpenSetupScreens(st_); });
    for (std::size_t k = 0; k < kScreenRows; ++k) {
        forms::RefillKeepingText(cboAnTag_[k], form_.AnalogChoices);
        forms::RefillKeepingText(cboDigTag_[k], form_.DigitalChoices);
    }
    display();
    txtScreen_->setFocus();
    changes_ = st_.changes.subscribe([this](TableChange change) { tablesChanged(change); });
}

void ReadingsSetupWindow::tablesChanged(TableChange change) {
    read();
    guard_([&] { ScreenSetupTablesChanged(st_, form_, change); });
    for (std::size_t k = 0; k < kScreenRows; ++k) {
        forms::RefillKeepingText(cboAnTag_[k], form_.AnalogChoices);
        forms::RefillKeepingText(cboDigTag_[k], form_.DigitalChoices);
    }
    display();
}

void ReadingsSetupWindow::afterMove(bool moved) {
    if (moved) {
        display();
        forms::FocusAndSelect(txtScreen_);
        return;
    }
    // A refused screen stays as typed.
    if (form_.FailedBox == "TxtJump") forms::FocusAndSelect(txtJump_);
    for (std::size_t k = 0; k < kScreenRows; ++k) {
        if (form_.FailedBox == "CboAnTag" + std::to_string(k)) forms::FocusAndSelect(cboAnTag_[k]);
        if (form_.FailedBox == "CboDigTag" + std::to_string(k))
            forms::FocusAndSelect(cboDigTag_[k]);
    }
}

void ReadingsSetupWindow::display() {
    forms::ShowText(txtScreen_, form_.TxtScreen);
    forms::ShowText(txtJump_, form_.TxtJump);
    lblScrNo_->setText(QString::number(form_.LblScrNo));
    for (std::size_t k = 0; k < kScreenRows; ++k) {
        forms::ShowText(cboAnTag_[k], form_.CboAnTag[k]);
        lblAn_[k]->setText(qs(form_.LblAn[k]));
        forms::ShowText(cboDigTag_[k], form_.CboDigTag[k]);
        lblDig_[k]->setText(qs(form_.LblDig[k]));
    }
}

void ReadingsSetupWindow::read() {
    form_.TxtScreen = txtScreen_->text().toStdString();
    form_.TxtJump = txtJump_->text().toStdString();
    for (std::size_t k = 0; k < kScreenRows; ++k) {
        form_.CboAnTag[k] = cboAnTag_[k]->currentText().toStdString();
        form_.CboDigTag[k] = cboDigTag_[k]->currentText().toStdString();
    }
}

void ReadingsSetupWindow::nextClicked() {
    read();
    bool moved = false;
    guard_([&] { moved = NextSetupScreen(st_, form_); });
    afterMove(moved);
}

void ReadingsSetupWindow::prevClicked() {
    read();
    bool moved = false;
    guard_([&] { moved = PrevSetupScreen(st_, form_); });
    afterMove(moved);
}

void ReadingsSetupWindow::exitClicked() {
    read();
    bool leave = false;
    guard_([&] { leave = ExitSetupScreens(st_, form_); });
    if (!leave) {
        afterMove(false);
        return;
    }
    exited_ = true;
    close();
}

void ReadingsSetupWindow::closeEvent(QCloseEvent* event) {
    // The close box exits as E&xit does: the screen is stored, or the user agrees to leave.
    if (!exited_) {
        read();
        bool leave = true;
        guard_([&] { leave = ExitSetupScreens(st_, form_); });
        if (!leave) {
            event->ignore();
            return;
        }
        exited_ = true;
    }
    if (picker_) picker_->close();
    event->accept();
}

void ReadingsSetupWindow::pickForRow(int row) {
    AskPickerFromRow(form_, row);
    if (!picker_) {
        picker_ = new AnalogTagWindow(st_, picked_, this);
        picker_->setAttribute(Qt::WA_DeleteOnClose);
        connect(picker_, &AnalogTagWindow::tagPicked, this, [this](const QString& name) {
            read();
            const int row = form_.PickerRow;
            TakePickedTag(form_, name.toStdString());
            for (std::size_t k = 0; k < kScreenRows; ++k)
                cboAnTag_[k]->setEditText(qs(form_.CboAnTag[k]));
            // The keyboard goes back to the row that asked.
            if (row >= 0) {
                activateWindow();
                cboAnTag_[static_cast<std::size_t>(row)]->setFocus();
            }
        });
        picker_->adjustSize();
        app::CenterOnScreen(picker_);
    }
    picker_->show();
    picker_->raise();
    picker_->activateWindow();
}

bool ReadingsSetupWindow::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_F2) {
        for (int i = 0; i < kScreenRows; ++i)
            if (watched == cboAnTag_[static_cast<std::size_t>(i)] ||
                watched == cboAnTag_[static_cast<std::size_t>(i)]->lineEdit()) {
                pickForRow(i);
                return true;
            }
    }
    return QWidget::eventFilter(watched, event);
}

}  // namespace kova
