#include "tags/forms/tag_editor_form.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/forms/form_widgets.h"
#include "platform/printer.h"

namespace kova {

namespace {

using forms::button;
QLineEdit* box(const char* name, int width, QWidget* parent) {
    auto* e = new QLineEdit(parent);
    e->setObjectName(name);
    if (width > 0) e->setFixedWidth(width);
    return e;
}

// A label beside its box: the box carries the label's text as its accessible name, so
// screen readers and UI automation find it by what the user reads.
QLabel* labelFor(const char* caption, QWidget* control, QWidget* parent) {
    auto* l = new QLabel(caption, parent);
    l->setBuddy(control);
    forms::nameBox(control, caption);
    return l;
}

QString q(const std::string& s) {
    return QString::fromStdString(s);
}
std::string s(const QString& q) {
    return q.toStdString();
}
}  // namespace

TagEditorWindow::TagEditorWindow(Station& st, ErrorReport& report, Printer& printer,
                                 QWidget* parent)
    : QWidget(parent, Qt::Window), st_(st), report_(report), printer_(printer) {
    setObjectName("CfgTags");
    setWindowTitle("Tag Configuration");

    lblTag_ = new QLabel(this);
    lblTag_->setObjectName("LblTag");
    lblTag_->setMinimumWidth(40);
    txtLabel_ = box("TxtLabel", 0, this);
    txtTagName_ = box("TxtTagName", 160, this);
    txtRTUAddr_ = box("TxtRTUAddr", 60, this);
    cboIOName_ = new QComboBox(this);
    cboIOName_->setObjectName("CboIOName");
    // Editable, as a typed name is what "I/O Name Not Selected From List " is about; what is
    // typed is never added to the list.
    cboIOName_->setEditable(true);
    cboIOName_->setInsertPolicy(QComboBox::NoInsert);
    cboIOName_->setMaxVisibleItems(20);
    cboIOName_->setFixedWidth(160);
    txtRawValue1_ = box("TxtRawValue1", 100, this);
    txtRawValue2_ = box("TxtRawValue2", 100, this);
    txtEngValue1_ = box("TxtEngValue1", 120, this);
    txtEngValue2_ = box("TxtEngValue2", 120, this);
    txtUnits_ = box("TxtUnits", 100, this);
    chkLog_ = new QCheckBox("Log To Disk", this);
    chkLog_->setObjectName("ChkLog");

    auto* fields = new QGridLayout;
    fields->addWidget(new QLabel("Tag Number", this), 0, 0);
    fields->addWidget(lblTag_, 0, 1);
    lblTag_->setAccessibleName("Tag Number");
    fields->addWidget(labelFor("Description", txtLabel_, this), 1, 0);
    fields->addWidget(txtLabel_, 1, 1, 1, 2);
    fields->addWidget(labelFor("Tag Name", txtTagName_, this), 2, 0);
    fields->addWidget(txtTagName_, 2, 1);
    fields->addWidget(labelFor("DAQ Address", txtRTUAddr_, this), 3, 0);
    fields->addWidget(txtRTUAddr_, 3, 1);
    fields->addWidget(labelFor("I/O Name", cboIOName_, this), 4, 0);
    fields->addWidget(cboIOName_, 4, 1);
    fields->setColumnStretch(2, 1);

    auto* scaling = new QGroupBox("Scaling", this);
    scaling->setObjectName("FraScaling");
    auto* points = new QGridLayout(scaling);
    points->addWidget(labelFor("Raw Value1", txtRawValue1_, scaling), 0, 0);
    points->addWidget(txtRawValue1_, 0, 1);
    points->addWidget(labelFor("Engineering Value1", txtEngValue1_, scaling), 0, 2);
    points->addWidget(txtEngValue1_, 0, 3);
    points->addWidget(labelFor("Raw Value2", txtRawValue2_, scaling), 1, 0);
    points->addWidget(txtRawValue2_, 1, 1);
    points->addWidget(labelFor("Engineering Value2", txtEngValue2_, scaling), 1, 2);
    points->addWidget(txtEngValue2_, 1, 3);
    points->setColumnMinimumWidth(1, 110);
    points->setColumnStretch(4, 1);
    // Units and the log box under the frame, lined up with the boxes above it.
    auto* unitsRow = new QHBoxLayout;
    unitsRow->addWidget(txtUnits_);
    unitsRow->addSpacing(24);
    unitsRow->addWidget(chkLog_);
    unitsRow->addStretch();
    fields->addWidget(scaling, 5, 0, 1, 3);
    fields->addWidget(labelFor("Units", txtUnits_, this), 6, 0);
    fields->addLayout(unitsRow, 6, 1, 1, 2);

    auto* cmdPrev = button("ComPrev", "&Previous", this);
    auto* cmdNext = button("ComNext", "&Next", this);
    auto* cmdFind = button("CmdFind", "&Find", this);
    auto* cmdDelete = button("CmdDelete", "&Delete", this);
    auto* cmdPrint = button("CmdPrint", "P&rint", this);
    auto* cmdExit = button("Exit", "E&xit", this);
    auto* buttons = new QHBoxLayout;
    for (QPushButton* b : {cmdPrev, cmdNext, cmdFind, cmdDelete, cmdPrint}) buttons->addWidget(b);
    buttons->addStretch();
    buttons->addWidget(cmdExit);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(fields);
    layout->addSpacing(6);
    layout->addLayout(buttons);
    setMinimumWidth(560);

    // Tab order follows the layout, top to bottom and left to right.
    QWidget* order[] = {txtLabel_,     txtTagName_,   txtRTUAddr_,   cboIOName_,
                        txtRawValue1_, txtEngValue1_, txtRawValue2_, txtEngValue2_,
                        txtUnits_,     chkLog_,       cmdPrev,       cmdNext,
                        cmdFind,       cmdDelete,     cmdPrint,      cmdExit};
    for (std::size_t i = 0; i + 1 < std::size(order); ++i) setTabOrder(order[i], order[i + 1]);

    connect(cmdPrev, &QPushButton::clicked, this, &TagEditorWindow::previousClicked);
    connect(cmdNext, &QPushButton::clicked, this, &TagEditorWindow::nextClicked);
    connect(cmdFind, &QPushButton::clicked, this, &TagEditorWindow::findClicked);
    connect(cmdDelete, &QPushButton::clicked, this, &TagEditorWindow::deleteClicked);
    connect(cmdPrint, &QPushButton::clicked, this, &TagEditorWindow::printClicked);
    connect(cmdExit, &QPushButton::clicked, this, &TagEditorWindow::exitClicked);
    connect(cboIOName_, &QComboBox::activated, this, &TagEditorWindow::ioNameChosen);

    report_.guard([&] { form_ = OpenTagForm(st_); });
    for (const std::string& name : form_.IONames) cboIOName_->addItem(q(name));
    display();
    txtLabel_->setFocus();
}

void TagEditorWindow::display() {
    lblTag_->setText(QString::number(form_.LblTag));
    txtLabel_->setText(q(form_.TxtLabel));
    txtTagName_->setText(q(form_.TxtTagName));
    txtRTUAddr_->setText(q(form_.TxtRTUAddr));
    const int index = cboIOName_->findText(q(form_.CboIOName), Qt::MatchExactly);
    cboIOName_->setCurrentIndex(index);
    if (index < 0) cboIOName_->setEditText(q(form_.CboIOName));
    txtRawValue1_->setText(q(form_.TxtRawValue1));
    txtRawValue2_->setText(q(form_.TxtRawValue2));
    txtEngValue1_->setText(q(form_.TxtEngValue1));
    txtEngValue2_->setText(q(form_.TxtEngValue2));
    txtUnits_->setText(q(form_.TxtUnits));
    chkLog_->setChecked(form_.ChkLog);
}

void TagEditorWindow::read() {
    form_.TxtLabel = s(txtLabel_->text());
    form_.TxtTagName = s(txtTagName_->text());
    form_.TxtRTUAddr = s(txtRTUAddr_->text());
    form_.CboIOName = s(cboIOName_->currentText());
    form_.TxtRawValue1 = s(txtRawValue1_->text());
    form_.TxtRawValue2 = s(txtRawValue2_->text());
    form_.TxtEngValue1 = s(txtEngValue1_->text());
    form_.TxtEngValue2 = s(txtEngValue2_->text());
    form_.TxtUnits = s(txtUnits_->text());
    form_.ChkLog = chkLog_->isChecked();
}

void TagEditorWindow::ioNameChosen(int index) {
    read();
    report_.guard([&] { ChooseIOName(st_, form_, s(cboIOName_->itemText(index))); });
    display();
}

void TagEditorWindow::previousClicked() {
    read();
    report_.guard([&] { TagFormPrevious(st_, form_); });
    display();
}

void TagEditorWindow::nextClicked() {
    read();
    report_.guard([&] { TagFormNext(st_, form_); });
    display();
}

void TagEditorWindow::findClicked() {
    read();
    report_.guard([&] { TagFormFind(st_, form_); });
    display();
}

void TagEditorWindow::deleteClicked() {
    read();
    report_.guard([&] { TagFormDelete(st_, form_); });
    display();
}

void TagEditorWindow::printClicked() {
    report_.guard([&] { PrintTagListing(st_, printer_); });
}

void TagEditorWindow::exitClicked() {
    read();
    bool leave = false;
    report_.guard([&] { leave = TagFormExit(st_, form_); });
    if (!leave) {
        display();
        return;
    }
    left_ = true;
    close();
}

void TagEditorWindow::closeEvent(QCloseEvent* event) {
    if (!left_) report_.guard([&] { LeaveTagForm(st_); });
    left_ = true;
    QWidget::closeEvent(event);
}

}  // namespace kova
