#include "displays/forms/trend_view_form.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/forms/form_widgets.h"
#include "core/forms/scan_gap.h"
#include "displays/forms/chart_view.h"

namespace kova {

namespace {

using forms::button;
using forms::IndicatorBox;
// A value shown beside its heading; screen readers announce the heading as its name.
QLabel* valueLabel(const char* name, const char* heading, QWidget* parent) {
    auto* l = new QLabel(parent);
    l->setObjectName(name);
    l->setAccessibleName(heading);
    l->setFrameShape(QFrame::Panel);
    l->setFrameShadow(QFrame::Sunken);
    l->setMinimumWidth(36);
    l->setAlignment(Qt::AlignCenter);
    return l;
}

QLineEdit* limitBox(const char* name, const char* text, QWidget* parent) {
    auto* e = new QLineEdit(text, parent);
    e->setObjectName(name);
    e->setMaximumWidth(80);
    return e;
}

}  // namespace

ViewTrendWindow::ViewTrendWindow(Station& st, ErrorReport& report, QWidget* parent)
    : QWidget(parent, Qt::Window), st_(st), report_(report) {
    setObjectName("ViewTrend");
    setWindowTitle(kViewTrendCaption);

    chart_ = new ChartView(this);
    chart_->setAccessibleName("Trend Chart");
    // The smallest window still shows the curves, their scale and the legend readably, and
    // fits a laptop's screen at a scale factor of 2 (683 x 384 points).
    chart_->setMinimumSize(400, 220);
    for (int i = 0; i < 4; ++i) {
        auto* l = new QLabel(this);
        l->setObjectName(QString("Lbl1%1").arg(i));
        l->setAccessibleName(QString("Pen %1").arg(i + 1));
        QPalette p = l->palette();
        p.setColor(QPalette::WindowText, ChartView::curveColour(i));
        l->setPalette(p);
        QFont f = l->font();
        f.setBold(true);
        l->setFont(f);
        // A long label wraps instead of widening the window.
        l->setWordWrap(true);
        l->setAlignment(Qt::AlignLeft | Qt::AlignTop);
        lbl1_[static_cast<std::size_t>(i)] = l;
    }
    lbl5_ = valueLabel("Lbl5", kViewTrendNumberHeading, this);
    lbl4_ = new QLabel(this);
    lbl4_->setObjectName("Lbl4");
    // Room for the longest period, so the heading never clips it.
    lbl4_->setMinimumWidth(lbl4_->fontMetrics().horizontalAdvance("Sample Period 32767mS"));
    lblRate_ = valueLabel("LblRate", kViewTrendRateHeading, this);
    lblRate_->setMinimumWidth(56);
    txtLowY_ = limitBox("TxtLowY", "0", this);
    txtUpperY_ = limitBox("TxtUpperY", "4000", this);
    chkAuto_ = new QCheckBox(kViewTrendAutoCaption, this);
    chkAuto_->setObjectName("ChkAuto");
    optLog_ = new IndicatorBox(kViewTrendLogCaption, this);
    optLog_->setObjectName("OptLog");
    optLog_->setAttribute(Qt::WA_TransparentForMouseEvents);
    optLog_->setFocusPolicy(Qt::NoFocus);
    auto* comPrev = button("ComPrev", kViewTrendPrevCaption, this);
    auto* comNext = button("ComNext", kViewTrendNextCaption, this);
    auto* comExit = button("ComExit", kViewTrendExitCaption, this);

    // Heading: trend number, sample period, measured rate.
    auto* trendHeading = new QLabel(kViewTrendNumberHeading, this);
    trendHeading->setBuddy(lbl5_);
    auto* rateHeading = new QLabel(kViewTrendRateHeading, this);
    rateHeading->setBuddy(lblRate_);
    auto* top = new QHBoxLayout;
    top->addWidget(trendHeading);
    top->addWidget(lbl5_);
    top->addSpacing(16);
    top->addWidget(lbl4_);
    top->addStretch();
    top->addWidget(rateHeading);
    top->addWidget(lblRate_);
    top->addWidget(new QLabel(kViewTrendRateUnit, this));

    // The pens, each in its curve's colour.
    auto* pens = new QGridLayout;
    for (int i = 0; i < 4; ++i) {
        pens->addWidget(lbl1_[static_cast<std::size_t>(i)], 0, i);
        pens->setColumnStretch(i, 1);
    }

    auto* lowHeading = new QLabel("Lower Y", this);
    lowHeading->setBuddy(txtLowY_);
    auto* upperHeading = new QLabel("Upper Y", this);
    upperHeading->setBuddy(txtUpperY_);
    txtLowY_->setAccessibleName(lowHeading->text());
    txtUpperY_->setAccessibleName(upperHeading->text());
    auto* limits = new QHBoxLayout;
    limits->addWidget(lowHeading);
    limits->addWidget(txtLowY_);
    limits->addSpacing(8);
    limits->addWidget(upperHeading);
    limits->addWidget(txtUpperY_);
    limits->addSpacing(8);
    limits->addWidget(chkAuto_);
    limits->addStretch();
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(comPrev);
    buttons->addWidget(comNext);
    buttons->addStretch();
    buttons->addWidget(optLog_);
    buttons->addStretch();
    buttons->addWidget(comExit);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addLayout(pens);
    layout->addWidget(chart_, 1);
    layout->addLayout(limits);
    layout->addLayout(buttons);
    resize(780, 560);

    setTabOrder(txtLowY_, txtUpperY_);
    setTabOrder(txtUpperY_, chkAuto_);
    setTabOrder(chkAuto_, comPrev);
    setTabOrder(comPrev, comNext);
    setTabOrder(comNext, comExit);
    chart_->setFocusPolicy(Qt::NoFocus);

    connect(comPrev, &QPushButton::clicked, this, &ViewTrendWindow::previousClicked);
    connect(comNext, &QPushButton::clicked, this, &ViewTrendWindow::nextClicked);
    connect(comExit, &QPushButton::clicked, this, &QWidget::close);
    connect(chkAuto_, &QCheckBox::toggled, this, &ViewTrendWindow::redraw);
    connect(txtLowY_, &QLineEdit::returnPressed, this, &ViewTrendWindow::redraw);
    connect(txtUpperY_, &QLineEdit::returnPressed, this, &ViewTrendWindow::redraw);

    guard_([&] { form_ = OpenViewTrend(st_, *chart_); });
    chkAuto_->blockSignals(true);
    chkAuto_->setChecked(form_.ChkAuto);
    chkAuto_->blockSignals(false);
    display();

    timer1_.setObjectName("Timer1");
    timer1_.setInterval(kViewTrendRefreshMs);
    connect(&timer1_, &QTimer::timeout, this,
            [this] { forms::ScanGap::instance().run(this, [this] { tick(); }); });
    timer1_.start();
    // The pen labels follow the tag table at once.
    changes_ = st_.changes.subscribe([this](TableChange change) {
        if (change != TableChange::DaqType) redraw();
    });
}

void ViewTrendWindow::readBoxes() {
    form_.TxtLowY = txtLowY_->text().toStdString();
    form_.TxtUpperY = txtUpperY_->text().toStdString();
    form_.ChkAuto = chkAuto_->isChecked();
}

void ViewTrendWindow::display() {
    for (int i = 0; i < 4; ++i)
        lbl1_[static_cast<std::size_t>(i)]->setText(
            QString::fromStdString(form_.Lbl1[static_cast<std::size_t>(i)]));
    lbl5_->setText(QString::fromStdString(form_.Lbl5));
    lbl4_->setText(QString::fromStdString(form_.Lbl4));
    lblRate_->setText(QString::fromStdString(form_.LblRate));
    optLog_->setChecked(form_.OptLog);
}

void ViewTrendWindow::tick() {
    readBoxes();
    guard_([&] { ViewTrendTick(st_, form_, *chart_); });
    display();
}

void ViewTrendWindow::redraw() {
    readBoxes();
    guard_([&] { DrawTrend(st_, form_, *chart_); });
    display();
}

void ViewTrendWindow::previousClicked() {
    readBoxes();
    guard_([&] { ViewTrendPrevious(st_, form_, *chart_); });
    display();
}

void ViewTrendWindow::nextClicked() {
    readBoxes();
    guard_([&] { ViewTrendNext(st_, form_, *chart_); });
    display();
}

}  // namespace kova
