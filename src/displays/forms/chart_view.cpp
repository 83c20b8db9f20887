#include "displays/forms/chart_view.h"

#include <QCategoryAxis>
#include <QChart>
#include <QLegendMarker>
#include <QLineSeries>
#include <QValueAxis>
#include <algorithm>
#include <cmath>
#include <limits>

namespace kova {

namespace {

// Four pens that stay apart on screen and on a grey-scale print.
const QColor kPenColours[] = {QColor(0, 90, 200), QColor(210, 40, 30), QColor(20, 140, 40),
                              QColor(150, 60, 170)};

// A tick step of 1, 2 or 5 times a power of ten that cuts `span` into about `parts`.
double niceStep(double span, int parts) {
    const double raw = span / parts;
    if (!(raw > 0) || !std::isfinite(raw)) return 1;
    const double magnitude = std::pow(10.0, std::floor(std::log10(raw)));
    const double n = raw / magnitude;
    const double factor = n < 1.5 ? 1 : n < 3 ? 2 : n < 7 ? 5 : 10;
    return factor * magnitude;
}

// A range with ticks at round values (109.394 and 24.875 are hard to read): multiples of a
// 1-2-5 step, anchored at 0, about `parts` of them. The step and the range change in the
// order that never asks the axis for thousands of ticks in between.
void setRoundRange(QValueAxis* axis, double low, double high, int parts) {
    const double step = niceStep(high - low, parts);
    axis->setTickType(QValueAxis::TicksDynamic);
    axis->setTickAnchor(0);
    if (step >= axis->tickInterval()) {
        axis->setTickInterval(step);
        axis->setRange(low, high);
    } else {
        axis->setRange(low, high);
        axis->setTickInterval(step);
    }
}

constexpr int kXParts = 8;
// No time or period text comes near this; a longer field (a file that is not a log) is cut
// so that one label cannot cover the chart.
constexpr int kLongestXLabel = 40;
constexpr int kYParts = 6;

}  // namespace

ChartView::ChartView(QWidget* parent) : QChartView(parent) {
    setObjectName("DynaPlot1");
    setAccessibleName("Chart");
    // A redraw repaints the plot on the one thread the scan runs on, so it is kept cheap: lines
    // one pixel wide without antialiasing take the painter's fast path (smoothing every grid line
    // and curve made it cost about twice as much), and the changed area is repainted as one
    // rectangle rather than as many small ones each clipped on its own.
    setRenderHint(QPainter::Antialiasing, false);
    setViewportUpdateMode(QGraphicsView::BoundingRectViewportUpdate);
    setMinimumSize(320, 200);
    auto* c = new QChart;
    c->legend()->setAlignment(Qt::AlignBottom);
    c->setMargins(QMargins(4, 4, 4, 4));
    // Square corners fill as one rectangle: a rounded background costs a path fill on every
    // redraw.
    c->setBackgroundRoundness(0);
    xAxis_ = new QValueAxis(c);
    yAxis_ = new QValueAxis(c);
    xLabels_ = new QCategoryAxis(c);
    xLabels_->setLabelsPosition(QCategoryAxis::AxisLabelsPositionOnValue);
    xLabels_->setStartValue(0);
    xLabels_->setVisible(false);
    xAxis_->setLabelFormat("%g");
    yAxis_->setLabelFormat("%g");
    c->addAxis(xAxis_, Qt::AlignBottom);
    c->addAxis(xLabels_, Qt::AlignBottom);
    c->addAxis(yAxis_, Qt::AlignLeft);
    setChart(c);
    setRoundRange(xAxis_, 0, 1, kXParts);
    setRoundRange(yAxis_, 0, 1, kYParts);
}

QColor ChartView::curveColour(int index) {
    return kPenColours[(index % 4 + 4) % 4];
}

int ChartView::curveCount() const {
    return static_cast<int>(curves_.size());
}

QLineSeries* ChartView::series(int index) const {
    if (index < 0 || index >= curveCount()) return nullptr;
    return curves_[index];
}

void ChartView::setPoints(QLineSeries* s, std::span<const float> y, double xIncrement) {
    QList<QPointF> points;
    points.reserve(static_cast<qsizetype>(y.size()));
    for (std::size_t k = 0; k < y.size(); ++k)
        points.append(QPointF(static_cast<double>(k) * xIncrement, static_cast<double>(y[k])));
    // Replacing the whole list redraws once; clear() + append() would redraw per point.
    s->replace(points);
}

void ChartView::addCurve(const std::string& name, std::span<const float> y, double xIncrement) {
    auto* s = new QLineSeries(chart());
    s->setName(QString::fromStdString(name));
    QPen pen(curveColour(curveCount()));
    pen.setWidthF(1);  // wider lines go through the path stroker: several times the cost
    s->setPen(pen);
    setPoints(s, y, xIncrement);
    chart()->addSeries(s);
    s->attachAxis(xAxis_);
    s->attachAxis(yAxis_);
    curves_.push_back(s);
    inLegend_.push_back(-1);
    showInLegend(curveCount() - 1);
    fitX();
}

void ChartView::replaceCurve(int index, std::span<const float> y, double xIncrement) {
    QLineSeries* s = series(index);
    if (!s) return;
    setPoints(s, y, xIncrement);
    showInLegend(index);
    fitX();
}

void ChartView::setCurveLegend(int index, const std::string& text) {
    QLineSeries* s = series(index);
    if (!s) return;
    s->setName(QString::fromStdString(text));
    showInLegend(index);
}

// The legend names only what is drawn: a pen with no tag or column, or no points yet, has
// no entry (an empty one would name a line that is not there).
void ChartView::showInLegend(int index) {
    QLineSeries* s = curves_[static_cast<std::size_t>(index)];
    const bool shown = s->count() > 0 && !s->name().trimmed().isEmpty();
    // Only a change touches the legend (a marker reads as hidden until the window shows, so
    // the record is kept here); each touch lays the chart out again.
    auto& known = inLegend_[static_cast<std::size_t>(index)];
    if (known == (shown ? 1 : 0)) return;
    known = shown ? 1 : 0;
    for (QLegendMarker* m : chart()->legend()->markers(s)) m->setVisible(shown);
}

void ChartView::setXSpan(double last) {
    xSpan_ = std::isfinite(last) && last > 0 ? last : 0;
    fitX();
}

void ChartView::fitX() {
    double last = xSpan_;
    if (last <= 0)
        for (QLineSeries* s : curves_)
            if (s->count() > 0) last = std::max(last, s->at(s->count() - 1).x());
    if (last <= 0) last = 1;
    setRoundRange(xAxis_, 0, last, kXParts);
    xLabels_->setRange(0, last);
}

void ChartView::autoScaleY() {
    double lo = std::numeric_limits<double>::infinity();
    double hi = -lo;
    for (QLineSeries* s : curves_) {
        for (const QPointF& p : s->points()) {
            lo = std::min(lo, p.y());
            hi = std::max(hi, p.y());
        }
    }
    if (!(lo <= hi)) {
        lo = 0;
        hi = 1;
    }
    // A flat curve still gets a band to sit in.
    const double pad = hi > lo ? (hi - lo) * 0.05 : std::max(1.0, std::abs(hi) * 0.05);
    yAxis_->setReverse(false);
    setRoundRange(yAxis_, lo - pad, hi + pad, kYParts);
}

void ChartView::setYLimits(double minimum, double maximum) {
    // A limit too large for a double ("1E999") cannot be drawn: the axis stays as it was.
    if (!std::isfinite(minimum) || !std::isfinite(maximum)) return;
    // Qt's axis needs minimum < maximum. Limits the wrong way round turn the axis upside
    // down, so the bottom still shows the minimum given; equal limits get a band around them.
    if (minimum == maximum) {
        const double half = std::max(0.5, std::abs(minimum) * 0.05);
        minimum -= half;
        maximum += half;
    }
    yAxis_->setReverse(minimum > maximum);
    setRoundRange(yAxis_, std::min(minimum, maximum), std::max(minimum, maximum), kYParts);
}

int ChartView::xLabelCount() const {
    return static_cast<int>(labels_.size());
}

void ChartView::removeXLabel(int index) {
    if (index < 0 || index >= xLabelCount()) return;
    labels_.erase(labels_.begin() + index);
    rebuildXLabels();
}

void ChartView::addXLabel(double x, const std::string& text) {
    labels_.push_back({x, QString::fromStdString(text)});
    rebuildXLabels();
}

void ChartView::rebuildXLabels() {
    for (const QString& l : xLabels_->categoriesLabels()) xLabels_->remove(l);
    // The category axis drops a label that repeats another or does not move right; keep
    // every label by making repeats unique with zero-width spaces, in X order.
    std::vector<Label> sorted = labels_;
    std::stable_sort(sorted.begin(), sorted.end(),
                     [](const Label& a, const Label& b) { return a.x < b.x; });
    double lastX = -std::numeric_limits<double>::infinity();
    int n = 0;
    for (const Label& l : sorted) {
        if (!(l.x > lastX)) continue;
        QString text = l.text.isEmpty() ? QStringLiteral(" ") : l.text;
        if (text.size() > kLongestXLabel) text = text.left(kLongestXLabel - 1) + QChar(0x2026);
        text += QString(n++, QChar(0x200B));
        xLabels_->append(text, l.x);
        lastX = l.x;
    }
    const bool labelled = !labels_.empty();
    xLabels_->setVisible(labelled);
    xAxis_->setLabelsVisible(!labelled);
}

}  // namespace kova
