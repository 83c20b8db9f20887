#include "displays/trend_view.h"

#include <algorithm>
#include <span>

#include "core/numeric.h"
#include "logging/log_conditions.h"

namespace kova {

namespace {

bool penHasTag(int tag) {
    return tag >= 1 && tag <= kTableTags;
}

// The labels that follow the current trend.
void showTrend(const Station& st, ViewTrendForm& form) {
    const int trend = st.trends.CurrentTrend;
    form.Lbl5 = std::to_string(trend);
    for (int pen = 1; pen <= 4; ++pen) form.Lbl1[pen - 1] = PenLabel(st, trend, pen);
}

void showPeriod(const Station& st, ViewTrendForm& form) {
    const TrendPeriod p = TrendSamplePeriod(st);
    form.Lbl4 = p.text;
    form.SamplePeriod = p.seconds;
}

void showSwitches(const Station& st, ViewTrendForm& form) {
    form.OptLog = LoggingActive(st);
    form.LblRate = plainNumberText(st.scan.ScanTime);
}

// The ring row of the oldest of the N samples shown on the page.
int startRow(const Station& st, const ViewTrendForm& form) {
    long long r = static_cast<long long>(st.trends.NewestSample) + 1 -
                  static_cast<long long>(form.N) * form.TrendPage;
    if (r < 1) r += ((1 - r + kTrendRows - 1) / kTrendRows) * kTrendRows;
    return static_cast<int>(r);
}

// The points of a pen that are samples of its tag, counted from point 0 (the newest).
int drawnPoints(const TrendState& t, const ViewTrendForm& form, int tag, int column) {
    if (!penHasTag(tag) || t.SampledTag[column] != tag) return 0;
    const long long skipped = static_cast<long long>(form.N) * (form.TrendPage - 1);
    return static_cast<int>(std::clamp<long long>(t.SamplesTaken[column] - skipped, 0, form.N));
}

void fillPoints(const Station& st, ViewTrendForm& form) {
    const int trend = st.trends.CurrentTrend;
    const int first = startRow(st, form);
    for (int pen = 1; pen <= 4; ++pen) {
        const int tag = st.trends.TrendTable(trend, pen);
        const int column = (trend - 1) * 4 + pen;
        std::vector<float>& points = form.Points[pen - 1];
        points.assign(static_cast<std::size_t>(form.N), 0.0f);
        form.Drawn[pen - 1] = drawnPoints(st.trends, form, tag, column);
        if (!penHasTag(tag)) continue;
        // The oldest sample goes to the last point, the newest to point 0.
        int r = first;
        for (int k = form.N; k >= 1; --k) {
            points[static_cast<std::size_t>(k - 1)] = st.trends.TrendSamples(r, column);
            r = r >= kTrendRows ? 1 : r + 1;
        }
    }
}

void setYRange(const ViewTrendForm& form, ChartPlot& plot) {
    if (form.ChkAuto) {
        plot.autoScaleY();
    } else if (isNumeric(form.TxtLowY) && isNumeric(form.TxtUpperY)) {
        // Taken as typed: a minimum above the maximum is the user's to correct.
        plot.setYLimits(leadingNumber(form.TxtLowY), leadingNumber(form.TxtUpperY));
    }
}

}  // namespace

TrendPeriod TrendSamplePeriod(const Station& st) {
    const Periods& p = st.periods;
    const bool atLog = p.TrendAtLogPeriod != 0;
    const std::int16_t period = atLog ? p.LogPeriod : p.IOPeriod;
    const bool seconds = (atLog ? p.LogUnits : p.IOUnits) == kUnitSeconds;
    return {"Sample Period " + std::to_string(period) + (seconds ? "Sec" : "mS"),
            seconds ? period : period / 1000.0};
}

std::string PenLabel(const Station& st, int trend, int pen) {
    const int tag = st.trends.TrendTable(trend, pen);
    return penHasTag(tag) ? st.tags[tag].Label : " ";
}

ViewTrendForm OpenViewTrend(Station& st, ChartPlot& plot) {
    ViewTrendForm form;
    showSwitches(st, form);
    form.TrendPage = 1;
    st.trends.CurrentTrend = 1;
    showTrend(st, form);
    form.N = kTrendPoints;
    form.ChkAuto = true;
    DrawTrend(st, form, plot);
    return form;
}

void DrawTrend(const Station& st, ViewTrendForm& form, ChartPlot& plot) {
    showPeriod(st, form);
    // The set-up window may have moved the shared trend since the last draw.
    showTrend(st, form);
    fillPoints(st, form);
    // The axis spans all N points, however few of them hold samples yet.
    plot.setXSpan((form.N - 1) * form.SamplePeriod);
    auto drawn = [&](int pen) {
        return std::span<const float>(form.Points[pen - 1])
            .first(static_cast<std::size_t>(form.Drawn[pen - 1]));
    };
    if (plot.curveCount() == 0) {
        for (int pen = 1; pen <= 4; ++pen)
            plot.addCurve("Curve" + std::to_string(pen), drawn(pen), form.SamplePeriod);
    } else {
        for (int pen = 1; pen <= 4; ++pen)
            plot.replaceCurve(pen - 1, drawn(pen), form.SamplePeriod);
    }
    for (int pen = 1; pen <= 4; ++pen) plot.setCurveLegend(pen - 1, form.Lbl1[pen - 1]);
    // After the points, so that an automatic range fits the data just drawn.
    setYRange(form, plot);
}

void ViewTrendTick(const Station& st, ViewTrendForm& form, ChartPlot& plot) {
    showSwitches(st, form);
    DrawTrend(st, form, plot);
}

void ViewTrendNext(Station& st, ViewTrendForm& form, ChartPlot& plot) {
    st.trends.CurrentTrend = StepTrend(st.trends.CurrentTrend, +1);
    DrawTrend(st, form, plot);
}

void ViewTrendPrevious(Station& st, ViewTrendForm& form, ChartPlot& plot) {
    st.trends.CurrentTrend = StepTrend(st.trends.CurrentTrend, -1);
    DrawTrend(st, form, plot);
}

void TrendPageBack(const Station& st, ViewTrendForm& form, ChartPlot& plot) {
    if (form.TrendPage > 1) --form.TrendPage;
    DrawTrend(st, form, plot);
}

}  // namespace kova
