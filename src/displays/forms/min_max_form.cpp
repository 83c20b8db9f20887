#include "displays/forms/min_max_form.h"

#include <QFontMetrics>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/forms/scan_gap.h"
#include "displays/min_max_view.h"

namespace kova {

namespace {

QLabel* cell(const QString& name, Qt::Alignment align, QWidget* parent) {
    auto* l = new QLabel(parent);
    l->setObjectName(name);
    l->setAlignment(align | Qt::AlignVCenter);
    return l;
}

}  // namespace

MinMaxWindow::MinMaxWindow(Station& st, ErrorReport& report, QWidget* parent)
    : QWidget(parent, Qt::Window), st_(st), report_(report) {
    setObjectName("MinMaxFrm");
    setWindowTitle(kMinMaxCaption);

    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(18);
    for (int c = 0; c < 4; ++c) {
        auto* heading = new QLabel(kMinMaxHeadings[c], this);
        heading->setObjectName(QString("LblHeading_%1").arg(c));
        QFont bold = heading->font();
        bold.setBold(true);
        heading->setFont(bold);
        heading->setAlignment(c == 0 ? Qt::AlignLeft : Qt::AlignRight);
        grid->addWidget(heading, 0, c);
    }
    const int numberWidth = QFontMetrics(font()).horizontalAdvance("-0.0000000E+00") + 8;
    for (int i = 0; i < kMinMaxTags; ++i) {
        Row& row = rows_[static_cast<std::size_t>(i)];
        row.label = cell(QString("Label1_%1").arg(i), Qt::AlignLeft, this);
        row.reading = cell(QString("LblRead_%1").arg(i), Qt::AlignRight, this);
        row.maximum = cell(QString("LblMax_%1").arg(i), Qt::AlignRight, this);
        row.minimum = cell(QString("LblMin_%1").arg(i), Qt::AlignRight, this);
        for (QLabel* l : {row.reading, row.maximum, row.minimum}) l->setMinimumWidth(numberWidth);
        grid->addWidget(row.label, i + 1, 0);
        grid->addWidget(row.reading, i + 1, 1);
        grid->addWidget(row.maximum, i + 1, 2);
        grid->addWidget(row.minimum, i + 1, 3);
    }
    grid->setColumnMinimumWidth(0, 140);
    grid->setColumnStretch(0, 1);

    cmdReset_ = new QPushButton(kMinMaxResetCaption, this);
    cmdReset_->setObjectName("CmdReset");
    cmdExit_ = new QPushButton(kMinMaxExitCaption, this);
    cmdExit_->setObjectName("CmdExit");
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(cmdReset_);
    buttons->addStretch();
    buttons->addWidget(cmdExit_);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addSpacing(6);
    layout->addLayout(buttons);
    setTabOrder(cmdReset_, cmdExit_);

    connect(cmdReset_, &QPushButton::clicked, this, &MinMaxWindow::resetClicked);
    connect(cmdExit_, &QPushButton::clicked, this, &QWidget::close);

    refresh();
    timer1_.setObjectName("Timer1");
    timer1_.setInterval(kMinMaxRefreshMs);
    connect(&timer1_, &QTimer::timeout, this,
            [this] { forms::ScanGap::instance().run(this, [this] { refresh(); }); });
    timer1_.start();
    cmdReset_->setFocus();
    // The labels follow the tag table at once, not a second later.
    changes_ = st_.changes.subscribe([this](TableChange change) {
        if (change != TableChange::DaqType) refresh();
    });
}

void MinMaxWindow::refresh() {
    MinMaxRows view;
    if (!guard_([&] { view = MinMaxView(st_); })) return;
    for (int i = 0; i < kMinMaxTags; ++i) {
        const Row& row = rows_[static_cast<std::size_t>(i)];
        const MinMaxRow& r = view[i + 1];
        const QString label = QString::fromStdString(r.Label);
        const auto put = [](QLabel* l, const std::string& text) {
            const QString t = QString::fromStdString(text);
            if (l->text() != t) l->setText(t);
        };
        put(row.label, r.Label);
        put(row.reading, r.Reading);
        put(row.maximum, r.Maximum);
        put(row.minimum, r.Minimum);
        // A screen reader names each number by its row and column; a name set again unchanged
        // would still send a screen reader a change notice every second.
        const auto name = [](QLabel* l, const QString& n) {
            if (l->accessibleName() != n) l->setAccessibleName(n);
        };
        name(row.reading, label + " Reading");
        name(row.maximum, label + " Maximum");
        name(row.minimum, label + " Minimum");
    }
}

void MinMaxWindow::resetClicked() {
    guard_([&] { ResetMinMax(st_); });
    refresh();
}

}  // namespace kova
