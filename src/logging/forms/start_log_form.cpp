#include "logging/forms/start_log_form.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QVBoxLayout>

#include "core/forms/form_widgets.h"
#include "logging/forms/labelled.h"

namespace kova {

namespace {
using logform::LabelFor;

template <typename T>
T* named(T* w, const char* name) {
    w->setObjectName(name);
    return w;
}

QLineEdit* box(const char* name, int width, QWidget* parent) {
    auto* e = named(new QLineEdit(parent), name);
    e->setMaximumWidth(width);
    return e;
}

// Two options that exclude each other but not the other options of the window.
QButtonGroup* pair(QRadioButton* a, QRadioButton* b, QWidget* parent) {
    auto* g = new QButtonGroup(parent);
    g->addButton(a);
    g->addButton(b);
    return g;
}
}  // namespace

StartLogWindow::StartLogWindow(Station& st, ErrorReport& report, QWidget* parent)
    : QWidget(parent, Qt::Window), st_(st), report_(report) {
    setObjectName("StartLog");
    setWindowTitle("Logging Start/Stop");

    // Created in the order of the layout, which is the tab order.
    auto* modeFrame = named(new QGroupBox("Start And Stop Logging", this), "FraLogMode");
    optLogMode_ = new QButtonGroup(this);
    optLogMode_->setObjectName("OptLogMode");
    const char* modeCaptions[] = {"By number of &samples", "By a &tag's value", "By &clock times"};
    auto* modes = new QHBoxLayout(modeFrame);
    for (int i = 0; i < 3; ++i) {
        auto* b = new QRadioButton(modeCaptions[i], modeFrame);
        b->setObjectName(QString("OptLogMode%1").arg(i));
        optLogMode_->addButton(b, i);
        modes->addWidget(b);
    }
    modes->addStretch();

    auto* samplesFrame = named(new QGroupBox("Number Of Samples", this), "FraSamples");
    txtSampleNo_ = box("TxtSampleNo", 90, samplesFrame);
    QLabel* samplesLabel =
        LabelFor("Stop after &N samples (0 = never):", txtSampleNo_, samplesFrame);

    auto* tagFrame = named(new QGroupBox("Tag Value", this), "FraTagValue");
    cboTag_ = named(new QComboBox(tagFrame), "CboTag");
    cboTag_->setEditable(true);
    cboTag_->setInsertPolicy(QComboBox::NoInsert);
    cboTag_->setMinimumWidth(140);
    QLabel* tagLabel = LabelFor("Condition t&ag:", cboTag_, tagFrame);
    txtStartValue_ = box("TxtStartValue", 110, tagFrame);
    QLabel* startLabel = LabelFor("Start&ing value:", txtStartValue_, tagFrame);
    optStartAbove_ =
        named(new QRadioButton("Start when the value is a&bove", tagFrame), "OptStartAbove");
    optStartBelow_ =
        named(new QRadioButton("Start when the value is be&low", tagFrame), "OptStartBelow");
    txtStopValue_ = box("TxtStopValue", 110, tagFrame);
    QLabel* stopLabel = LabelFor("Sto&pping value:", txtStopValue_, tagFrame);
    optStopAbove_ =
        named(new QRadioButton("Stop when the value is abo&ve", tagFrame), "OptStopAbove");
    optStopBelow_ =
        named(new QRadioButton("Stop when the value is bel&ow", tagFrame), "OptStopBelow");
    pair(optStartAbove_, optStartBelow_, this);
    pair(optStopAbove_, optStopBelow_, this);

    auto* timeFrame = named(new QGroupBox("Clock Times", this), "FraClockTimes");
    txtStartTime_ = box("TxtStartTime", 70, timeFrame);
    QLabel* startTimeLabel = LabelFor("Start ti&me (HH:MM):", txtStartTime_, timeFrame);
    txtStopTime_ = box("TxtStopTime", 70, timeFrame);
    QLabel* stopTimeLabel = LabelFor("Stop tim&e (HH:MM):", txtStopTime_, timeFrame);

    chkLogging_ = named(new QCheckBox("Lo&gging switched on", this), "ChkLogging");
    exit_ = named(new QPushButton("E&xit", this), "Exit");

    auto* samples = new QHBoxLayout(samplesFrame);
    samples->addWidget(samplesLabel);
    samples->addWidget(txtSampleNo_);
    samples->addStretch();

    auto* tag = new QGridLayout(tagFrame);
    tag->addWidget(tagLabel, 0, 0);
    tag->addWidget(cboTag_, 0, 1);
    tag->addWidget(startLabel, 1, 0);
    tag->addWidget(txtStartValue_, 1, 1);
    tag->addWidget(optStartAbove_, 1, 2);
    tag->addWidget(optStartBelow_, 1, 3);
    tag->addWidget(stopLabel, 2, 0);
    tag->addWidget(txtStopValue_, 2, 1);
    tag->addWidget(optStopAbove_, 2, 2);
    tag->addWidget(optStopBelow_, 2, 3);
    tag->setColumnStretch(4, 1);

    auto* times = new QHBoxLayout(timeFrame);
    times->addWidget(startTimeLabel);
    times->addWidget(txtStartTime_);
    times->addSpacing(16);
    times->addWidget(stopTimeLabel);
    times->addWidget(txtStopTime_);
    times->addStretch();

    auto* bottom = new QHBoxLayout;
    bottom->addWidget(chkLogging_);
    bottom->addStretch();
    bottom->addWidget(exit_);

    // The frames scroll on a screen too small for them; the switch and Exit stay in reach.
    auto* content = new QWidget(this);
    auto* frames = new QVBoxLayout(content);
    frames->setContentsMargins(0, 0, 0, 0);
    frames->addWidget(modeFrame);
    frames->addWidget(samplesFrame);
    frames->addWidget(tagFrame);
    frames->addWidget(timeFrame);
    frames->addStretch();
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(forms::scrollingPart(content, this), 1);
    layout->addLayout(bottom);

    connect(exit_, &QPushButton::clicked, this, &StartLogWindow::exitClicked);
    guard_([&] {
        forms::RefillKeepingText(cboTag_, ConditionTagChoices(st_));
        opened_ = OpenStartLogForm(st_);
        display(opened_);
    });
    changes_ = st_.changes.subscribe([this](TableChange change) { tablesChanged(change); });
}

void StartLogWindow::tablesChanged(TableChange change) {
    StartLogForm f = read();
    guard_([&] {
        StartLogTablesChanged(st_, f, opened_, change);
        forms::RefillKeepingText(cboTag_, ConditionTagChoices(st_));
    });
    display(f);
}

void StartLogWindow::display(const StartLogForm& f) {
    if (QAbstractButton* b = optLogMode_->button(f.OptLogMode)) b->setChecked(true);
    forms::ShowText(txtSampleNo_, f.TxtSampleNo);
    forms::ShowText(cboTag_, f.CboTag);
    forms::ShowText(txtStartValue_, f.TxtStartValue);
    (f.OptStartAbove ? optStartAbove_ : optStartBelow_)->setChecked(true);
    forms::ShowText(txtStopValue_, f.TxtStopValue);
    (f.OptStopAbove ? optStopAbove_ : optStopBelow_)->setChecked(true);
    forms::ShowText(txtStartTime_, f.TxtStartTime);
    forms::ShowText(txtStopTime_, f.TxtStopTime);
    chkLogging_->setChecked(f.ChkLogging);
}

StartLogForm StartLogWindow::read() const {
    StartLogForm f;
    // A mode number no button stands for (from a file) stays as it was.
    const int mode = optLogMode_->checkedId();
    f.OptLogMode = mode >= 0 ? mode : opened_.OptLogMode;
    f.TxtSampleNo = txtSampleNo_->text().toStdString();
    f.CboTag = cboTag_->currentText().toStdString();
    f.TxtStartValue = txtStartValue_->text().toStdString();
    f.OptStartAbove = optStartAbove_->isChecked();
    f.TxtStopValue = txtStopValue_->text().toStdString();
    f.OptStopAbove = optStopAbove_->isChecked();
    f.TxtStartTime = txtStartTime_->text().toStdString();
    f.TxtStopTime = txtStopTime_->text().toStdString();
    f.ChkLogging = chkLogging_->isChecked();
    return f;
}

void StartLogWindow::exitClicked() {
    StartLogForm f = read();
    bool accepted = false;
    if (!guard_([&] { accepted = ExitStartLogForm(st_, f); })) {
        // The log file could not be opened: the box shows that logging stayed off.
        chkLogging_->setChecked(st_.switches.LoggingEnabled.isOn());
    } else if (!f.ChkLogging) {
        chkLogging_->setChecked(false);  // no log file name: the box is cleared
    }
    emit loggingSwitched();
    if (accepted) {
        close();
        return;
    }
    // The keyboard goes back to the box at fault, its text selected.
    const std::pair<const char*, QWidget*> boxes[] = {
        {"TxtSampleNo", txtSampleNo_},     {"CboTag", cboTag_},
        {"TxtStartValue", txtStartValue_}, {"TxtStopValue", txtStopValue_},
        {"TxtStartTime", txtStartTime_},   {"TxtStopTime", txtStopTime_}};
    for (const auto& [name, box] : boxes)
        if (f.FailedBox == name) forms::FocusAndSelect(box);
}

}  // namespace kova
