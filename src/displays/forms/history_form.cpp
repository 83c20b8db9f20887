#include "displays/forms/history_form.h"

#include <QCategoryAxis>
#include <QChart>
#include <QCloseEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLegend>
#include <QLegendMarker>
#include <QLineSeries>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <algorithm>

#include "core/forms/form_widgets.h"
#include "core/forms/thread_work.h"
#include "displays/forms/chart_view.h"

namespace kova {

namespace {

using forms::button;
QString q(const std::string& s) {
    return QString::fromStdString(s);
}
}  // namespace

HistoryWindow::HistoryWindow(Station& st, ErrorReport& report, PrintWindow print, QWidget* parent)
    : QWidget(parent, Qt::Window), st_(st), report_(report), print_(std::move(print)) {
    setObjectName("ViewHist");
    setWindowTitle(kHistoryCaption);

    // Created in tab order: file, columns, X axis, steps, print, exit.
    cmdSelectFile_ = button("CmdSelectFile", kHistorySelectFileCaption, this);
    lblFile_ = new QLabel(this);
    lblFile_->setObjectName("LblFile");
    lblFile_->setAccessibleName("File");
    lblFile_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    lblFile_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);

    auto* columnsCaption = new QLabel("&Columns", this);
    list1_ = new QListWidget(this);
    list1_->setObjectName("List1");
    list1_->setSelectionMode(QAbstractItemView::MultiSelection);
    columnsCaption->setBuddy(list1_);
    list1_->setAccessibleName("Columns");

    auto* pens = new QGroupBox("Pens", this);
    auto* penGrid = new QGridLayout(pens);
    for (int p = 0; p < kHistoryPens; ++p) {
        auto* caption = new QLabel(QString("%1").arg(p + 1), pens);
        penLabels_[p] = new QLabel(pens);
        penLabels_[p]->setObjectName(QString("Lbl1_%1").arg(p + 1));
        penLabels_[p]->setAccessibleName(QString("Pen %1").arg(p + 1));
        // A long label is cut at the panel's edge rather than widening it.
        penLabels_[p]->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
        penGrid->addWidget(caption, p, 0);
        penGrid->addWidget(penLabels_[p], p, 1);
    }
    penGrid->setColumnStretch(1, 1);

    auto* axis = new QGroupBox(kHistoryAxisFrame, this);
    axis->setObjectName("FraXAxis");
    optTime_ = new QRadioButton(kHistoryTimeOption, axis);
    optTime_->setObjectName("OptTime");
    optPeriod_ = new QRadioButton(kHistoryPeriodOption, axis);
    optPeriod_->setObjectName("OptPeriod");
    auto* axisLayout = new QVBoxLayout(axis);
    axisLayout->addWidget(optTime_);
    axisLayout->addWidget(optPeriod_);

    chart_ = new ChartView(this);
    chart_->setFocusPolicy(Qt::NoFocus);
    // Readable, and small enough for a laptop's screen at a scale factor of 2.
    chart_->setMinimumSize(400, 240);
    // Times of day are long: upright and never cut short, every label is read in full, the
    // first one at X = 0 included (a slanted label there would reach past the chart's edge).
    chart_->xLabelAxis()->setLabelsAngle(-90);
    chart_->xLabelAxis()->setTruncateLabels(false);
    work_ = std::make_unique<forms::ThreadWork>(
        this, [this](const std::function<void()>& done) { guard_(done); });
    model_ = std::make_unique<HistoryView>(st_, *chart_, work_.get());
    model_->onChanged([this] { refresh(); });

    cmdUp_ = button("CmdUp", kHistoryForwardCaption, this);
    cmdDown_ = button("CmdDown", kHistoryBackCaption, this);
    cmdPrint_ = button("CmdPrint", kHistoryPrintCaption, this);
    cmdExit_ = button("CmdExit", kHistoryExitCaption, this);

    auto* top = new QHBoxLayout;
    top->addWidget(cmdSelectFile_);
    top->addWidget(lblFile_, 1);
    auto* side = new QVBoxLayout;
    side->addWidget(columnsCaption);
    side->addWidget(list1_, 1);
    side->addWidget(pens);
    side->addWidget(axis);
    auto* sidePanel = new QWidget(this);
    sidePanel->setLayout(side);
    side->setContentsMargins(0, 0, 0, 0);
    sidePanel->setFixedWidth(230);
    auto* middle = new QHBoxLayout;
    middle->addWidget(sidePanel);
    middle->addWidget(chart_, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(cmdUp_);
    buttons->addWidget(cmdDown_);
    buttons->addWidget(cmdPrint_);
    buttons->addStretch();
    buttons->addWidget(cmdExit_);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addLayout(middle, 1);
    layout->addLayout(buttons);
    resize(960, 600);

    // The window's load: "Period" is chosen.
    optPeriod_->setChecked(!model_->timeAxis());
    optTime_->setChecked(model_->timeAxis());

    connect(cmdSelectFile_, &QPushButton::clicked, this, &HistoryWindow::selectFileClicked);
    connect(list1_, &QListWidget::itemSelectionChanged, this, &HistoryWindow::listSelectionChanged);
    connect(optTime_, &QRadioButton::toggled, this,
            [this](bool on) { guard_([&] { model_->chooseTimeAxis(on); }); });
    connect(cmdUp_, &QPushButton::clicked, this, &HistoryWindow::forwardClicked);
    connect(cmdDown_, &QPushButton::clicked, this, &HistoryWindow::backClicked);
    connect(cmdPrint_, &QPushButton::clicked, this, &HistoryWindow::printClicked);
    connect(cmdExit_, &QPushButton::clicked, this, &HistoryWindow::exitClicked);
}

HistoryWindow::~HistoryWindow() {
    // Reads still under way end on their own; nothing they found is shown any more.
    work_.reset();
}

void HistoryWindow::selectFileClicked() {
    guard_([&] { model_->selectFile(); });
    refresh();
}

void HistoryWindow::refresh() {
    // A cancelled, refused or unreadable choice leaves the list as it was.
    if (model_->columnsRead() != columnsShown_) {
        columnsShown_ = model_->columnsRead();
        showFile();
    }
    showPens();
    if (model_->busy())
        setCursor(Qt::BusyCursor);
    else
        unsetCursor();
}

void HistoryWindow::showFile() {
    lblFile_->setText(q(model_->fileName()));
    lblFile_->setToolTip(q(model_->fileName()));
    const QSignalBlocker quiet(list1_);
    list1_->clear();
    for (const std::string& item : model_->listItems()) list1_->addItem(q(item));
    acceptedRows_.clear();
}

std::vector<int> HistoryWindow::selectedRows() const {
    std::vector<int> rows;
    for (int r = 0; r < list1_->count(); ++r)
        if (list1_->item(r)->isSelected()) rows.push_back(r);
    return rows;
}

void HistoryWindow::listSelectionChanged() {
    const std::vector<int> rows = selectedRows();
    bool accepted = true;
    guard_([&] { accepted = model_->selectItems(rows); });
    if (!accepted) {
        // Four pens: the item beyond them is not selected.
        const QSignalBlocker quiet(list1_);
        for (int r = 0; r < list1_->count(); ++r)
            list1_->item(r)->setSelected(std::find(acceptedRows_.begin(), acceptedRows_.end(), r) !=
                                         acceptedRows_.end());
        st_.platform.beeper->beep();
        return;
    }
    acceptedRows_ = rows;
    refresh();
}

void HistoryWindow::showPens() {
    for (int p = 0; p < kHistoryPens; ++p) {
        const QString text = q(model_->penLabels()[p]);
        penLabels_[p]->setText(text);
        penLabels_[p]->setToolTip(text);
        // The label takes its curve's colour, so each name is matched to its line.
        if (QLineSeries* s = chart_->series(p)) {
            QPalette pal = penLabels_[p]->palette();
            pal.setColor(QPalette::WindowText, s->pen().color());
            penLabels_[p]->setPalette(pal);
        }
    }
}

void HistoryWindow::forwardClicked() {
    guard_([&] { model_->forward(); });
    refresh();
}

void HistoryWindow::backClicked() {
    guard_([&] { model_->back(); });
    refresh();
}

void HistoryWindow::printClicked() {
    if (print_) guard_([&] { print_(this); });
}

void HistoryWindow::exitClicked() {
    close();
}

void HistoryWindow::closeEvent(QCloseEvent* event) {
    guard_([&] { model_->exit(); });
    event->accept();
}

}  // namespace kova
