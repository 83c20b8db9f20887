// One redraw of a live trend: four pens of 200 points through the real Qt Charts chart, as
// the View Trends window does every two seconds. Target: well under 5 ms, so that a redraw
// never delays a 50 ms scan tick. Measured twice: the redraw alone (model, points replaced,
// Y range fitted) and the redraw with the chart painted, as the screen would show it.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QPixmap>
#include <cmath>

#include "core/trend_sampling.h"
#include "displays/forms/chart_view.h"
#include "displays/trend_view.h"
#include "ui/offscreen_application.h"

namespace {

// A station whose trend 1 has four pens with a full ring of moving samples.
struct Live {
    kova::Station st;
    int tick = 0;
    Live() {
        for (int pen = 1; pen <= 4; ++pen) {
            st.tags[pen].TagName = "PEN" + std::to_string(pen);
            st.tags[pen].Label = "Pen " + std::to_string(pen);
            st.trends.TrendTable(1, pen) = static_cast<std::int16_t>(pen);
        }
        st.periods = {500, kova::kUnitMs, 5, kova::kUnitSeconds, 0};
        for (int i = 0; i < kova::kTrendRows; ++i) sample();
    }
    // A saw-tooth per pen, as the TEST module gives.
    void sample() {
        ++tick;
        for (int pen = 1; pen <= 4; ++pen)
            st.tags[pen].Value = static_cast<float>(pen * 200 + (tick * 8) % 200);
        kova::SampleTrends(st);
    }
};

void BM_TrendRedraw(benchmark::State& state) {
    kova::bench::EnsureOffscreenApplication();
    Live live;
    kova::ChartView chart;
    chart.resize(740, 420);
    chart.show();
    kova::ViewTrendForm form = kova::OpenViewTrend(live.st, chart);
    QCoreApplication::processEvents();
    for (auto _ : state) {
        live.sample();
        kova::DrawTrend(live.st, form, chart);
    }
    state.counters["points"] = 4 * form.N;
}
BENCHMARK(BM_TrendRedraw)->Unit(benchmark::kMillisecond);

void BM_TrendRedrawAndPaint(benchmark::State& state) {
    kova::bench::EnsureOffscreenApplication();
    Live live;
    kova::ChartView chart;
    chart.resize(740, 420);
    chart.show();
    kova::ViewTrendForm form = kova::OpenViewTrend(live.st, chart);
    QCoreApplication::processEvents();
    for (auto _ : state) {
        live.sample();
        kova::DrawTrend(live.st, form, chart);
        // The chart lays out and paints everything, as on the screen.
        const QPixmap shown = chart.grab();
        benchmark::DoNotOptimize(shown.cacheKey());
    }
}
BENCHMARK(BM_TrendRedrawAndPaint)->Unit(benchmark::kMillisecond);

}  // namespace
