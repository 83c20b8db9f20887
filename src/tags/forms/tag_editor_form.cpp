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
    lblRawValue1_ = labelFor("Raw Value1", txtRawValue1_, scaling);
    lblRawValue2_ = labelFor("Raw Value2", txtRawValue2_, scaling);
    lblEngValue1_ = labelFor("Engineering Value1", txtEngValue1_, scaling);
    lblEngValue2_ = labelFor("Engineering Value2", txtEngValue2_, scaling);
    points->addWidget(lblRawValue1_, 0, 0);
    points->addWidget(txtRawValue1_, 0, 1);
    points->addWidget(lblEngValue1_, 0, 2);
    points->addWidget(txtEngValue1_, 0, 3);
    points->addWidget(lblRawValue2_, 1, 0);
    points->addWidget(txtRawValue2_, 1, 1);
    points->addWidget(lblEngValue2_, 1, 2);
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

    guard_([&] { form_ = OpenTagForm(st_); });
    for (const std::string& name : form_.IONames) cboIOName_->addItem(q(name));
    display();
    txtLabel_->setFocus();
    changes_ = st_.changes.subscribe([this](TableChange change) { tablesChanged(change); });
}

void TagEditorWindow::display() {
    lblTag_->setText(QString::number(form_.LblTag));
    forms::ShowText(txtLabel_, form_.TxtLabel);
    forms::ShowText(txtTagName_, form_.TxtTagName);
    forms::ShowText(txtRTUAddr_, form_.TxtRTUAddr);
    forms::ShowText(cboIOName_, form_.CboIOName);
    forms::ShowText(txtRawValue1_, form_.TxtRawValue1);
    forms::ShowText(txtRawValue2_, form_.TxtRawValue2);
    forms::ShowText(txtEngValue1_, form_.TxtEngValue1);
    forms::ShowText(txtEngValue2_, form_.TxtEngValue2);
    forms::ShowText(txtUnits_, form_.TxtUnits);
    chkLog_->setChecked(form_.ChkLog);

    // A digital tag's engineering boxes hold its state texts, and its raw points are the
    // fixed 0 and 1: the captions say so and the raw boxes take no typing.
    ScalingCaptions c;
    guard_([&] { c = TagFormScalingCaptions(st_, form_); });
    const std::pair<QLabel*, const std::string*> captions[] = {{lblRawValue1_, &c.RawValue1},
                                                               {lblRawValue2_, &c.RawValue2},
                                                               {lblEngValue1_, &c.EngValue1},
                                                               {lblEngValue2_, &c.EngValue2}};
    for (const auto& [label, text] : captions) {
        label->setText(q(*text));
        label->buddy()->setAccessibleName(q(*text));
    }
    forms::ShowReadOnly(txtRawValue1_, c.Digital);
    forms::ShowReadOnly(txtRawValue2_, c.Digital);
    const QString fixed = c.Digital ? "A digital tag's raw points are always 0 and 1" : QString();
    txtRawValue1_->setToolTip(fixed);
    txtRawValue2_->setToolTip(fixed);
    txtEngValue1_->setPlaceholderText(q(c.EngHint1));
    txtEngValue2_->setPlaceholderText(q(c.EngHint2));
}

QWidget* TagEditorWindow::boxNamed(const std::string& name) const {
    const std::pair<const char*, QWidget*> boxes[] = {
        {"TxtLabel", txtLabel_},         {"TxtTagName", txtTagName_},
        {"TxtRTUAddr", txtRTUAddr_},     {"CboIOName", cboIOName_},
        {"TxtRawValue1", txtRawValue1_}, {"TxtRawValue2", txtRawValue2_},
        {"TxtEngValue1", txtEngValue1_}, {"TxtEngValue2", txtEngValue2_},
        {"TxtUnits", txtUnits_}};
    for (const auto& [n, w] : boxes)
        if (name == n) return w;
    return nullptr;
}

void TagEditorWindow::focusFirstBox() {
    forms::FocusAndSelect(txtLabel_);
}

void TagEditorWindow::pointAtFault() {
    if (QWidget* box = boxNamed(form_.FailedBox)) forms::FocusAndSelect(box);
}

void TagEditorWindow::tablesChanged(TableChange change) {
    // The tag table's own changes come from this window.
    if (change == TableChange::Tags) return;
    read();
    guard_([&] {
        form_.IONames = TagFormIONames(st_);
        // A record typed for a configuration that was replaced is not the new one's.
        if (change == TableChange::Configuration) ShowTag(st_, form_);
    });
    std::vector<std::string> names = form_.IONames;
    forms::RefillKeepingText(cboIOName_, names);
    display();
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
    guard_([&] { ChooseIOName(st_, form_, s(cboIOName_->itemText(index))); });
    display();
}

void TagEditorWindow::previousClicked() {
    read();
    bool shown = false;
    guard_([&] { shown = TagFormPrevious(st_, form_); });
    display();
    if (shown)
        focusFirstBox();
    else
        pointAtFault();
}

void TagEditorWindow::nextClicked() {
    read();
    bool shown = false;
    guard_([&] { shown = TagFormNext(st_, form_); });
    display();
    if (shown)
        focusFirstBox();
    else
        pointAtFault();
}

void TagEditorWindow::findClicked() {
    read();
    bool shown = false;
    guard_([&] { shown = TagFormFind(st_, form_); });
    display();
    if (shown)
        focusFirstBox();
    else
        pointAtFault();
}

void TagEditorWindow::deleteClicked() {
    read();
    bool shown = false;
    guard_([&] { shown = TagFormDelete(st_, form_); });
    display();
    if (shown)
        focusFirstBox();
    else
        pointAtFault();
}

void TagEditorWindow::printClicked() {
    guard_([&] { PrintTagListing(st_, printer_); });
}

void TagEditorWindow::exitClicked() {
    read();
    bool leave = false;
    guard_([&] { leave = TagFormExit(st_, form_); });
    if (!leave) {
        display();
        pointAtFault();
        return;
    }
    left_ = true;
    close();
}

void TagEditorWindow::closeEvent(QCloseEvent* event) {
    if (!left_) guard_([&] { LeaveTagForm(st_); });
    left_ = true;
    QWidget::closeEvent(event);
}

}  // namespace kova
