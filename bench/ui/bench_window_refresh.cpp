// What each window's periodic refresh costs the one thread the scan runs on, with every
// window open over a full configuration scanning at 50 ms and logging every scan. Each
// benchmark runs one refresh as its timer does and then lets Qt do what follows it on the
// thread: the layout passes and the painting of what changed (offscreen, into the window's
// backing store, as on a screen). Target: each under 2 ms, so that a refresh falling between
// two scans never delays the next one.
//   scan tick    the main window's tick: one scan, the indicators and the status fields
//   readings     the readings window's 1 s refresh of its 56 value boxes
//   min/max      the min/max window's 1 s refresh of its 14 rows
//   trend        the trend window's 2 s redraw of four pens of 200 points
//   alarm list   the alarm list's refresh, with every alarm's line moving
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <QApplication>
#include <QEvent>
#include <QWidget>
#include <filesystem>
#include <functional>
#include <memory>
#include <sstream>
#include <string>

#include "alarms/forms/alarm_list_form.h"
#include "app/main_window.h"
#include "displays/forms/min_max_form.h"
#include "displays/forms/readings_view_form.h"
#include "displays/forms/trend_view_form.h"
#include "logging/log_writer.h"
#include "platform/null_platform.h"
#include "support/full_station.h"
#include "ui/offscreen_application.h"

namespace {

using kova::app::MainWindow;
using kova::app::WindowKind;

// Counts the widgets painted, to show what a refresh makes Qt redraw.
class PaintCounter final : public QObject {
  public:
    long long paints = 0;

  protected:
    bool eventFilter(QObject*, QEvent* e) override {
        if (e->type() == QEvent::Paint) ++paints;
        return false;
    }
};

// The running program: every window the menus open, over a station scanning every 50 ms
// and logging every scan.
struct Program {
    std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("kova-bench-ui-" + std::to_string(getpid()));
    kova::Station st;
    kova::NullPrompter prompter;
    std::ostringstream errors;
    std::unique_ptr<MainWindow> main;
    PaintCounter painted;

    explicit Program(bool allWindows) {
        std::filesystem::create_directories(folder);
        st.workingFolder = folder;
        main = std::make_unique<MainWindow>(st, &prompter, &errors);
        kova::bench::BuildFullStation(st, true);
        st.periods = {50, kova::kUnitMs, 50, kova::kUnitMs, 0};
        st.switches.PollEnabled = true;
        kova::bench::LogEverythingTo(st, (folder / "BENCH.CSV").string());
        main->show();
        if (allWindows)
            for (int k = 0; k <= static_cast<int>(WindowKind::DaqType); ++k)
                main->openWindow(static_cast<WindowKind>(k));
        // The windows' own timers stay still: each benchmark fires one refresh itself.
        if (auto* w = window<kova::ReadingsViewWindow>()) w->readTimer()->stop();
        if (auto* w = window<kova::MinMaxWindow>()) w->timer1()->stop();
        if (auto* w = window<kova::ViewTrendWindow>()) w->timer()->stop();
        if (auto* w = window<kova::AlarmListWindow>()) w->refreshTimer()->stop();
        qApp->installEventFilter(&painted);
        for (int i = 0; i < 250; ++i) tick();  // a full trend ring, alarms through their states
        settle();
    }
    ~Program() {
        qApp->removeEventFilter(&painted);
        main.reset();
        kova::CloseLogFile(st);
        std::filesystem::remove_all(folder);
    }
    void tick() { main->tick(); }
    // What Qt does on the thread after a refresh: layout requests, then painting.
    // (The platform asks for the painting a moment later; here it is asked for at once.)
    static void settle() {
        QCoreApplication::processEvents();
        for (QWidget* w : QApplication::topLevelWidgets()) {
            if (!w->isVisible()) continue;
            QEvent paintNow(QEvent::UpdateRequest);
            QCoreApplication::sendEvent(w, &paintNow);
        }
    }
    // The open window of a kind.
    template <typename W>
    static W* window() {
        for (QWidget* w : QApplication::topLevelWidgets())
            if (auto* found = qobject_cast<W*>(w)) return found;
        return nullptr;
    }
};

// One program for all the benchmarks of a kind (building it takes a while).
Program& program(bool allWindows) {
    kova::bench::EnsureOffscreenApplication();
    static std::unique_ptr<Program> all;
    static std::unique_ptr<Program> none;
    auto& p = allWindows ? all : none;
    if (!p) p = std::make_unique<Program>(allWindows);
    return *p;
}

// The part measured: a refresh and what Qt does after it. A function of its own, so that a
// profiler can count it alone (valgrind --tool=callgrind --toggle-collect='*measuredPart*').
[[gnu::noinline]] void measuredPart(const std::function<void()>& refresh) {
    refresh();
    Program::settle();
}

void measure(benchmark::State& state, Program& p, const std::function<void()>& refresh) {
    long long paints = 0;
    for (auto _ : state) {
        state.PauseTiming();
        p.tick();  // the scan moves the values on, as between two refreshes
        Program::settle();
        const long long before = p.painted.paints;
        state.ResumeTiming();
        measuredPart(refresh);
        paints += p.painted.paints - before;
    }
    state.counters["widgets_painted"] =
        benchmark::Counter(static_cast<double>(paints), benchmark::Counter::kAvgIterations);
}

void BM_ScanTick(benchmark::State& state) {
    Program& p = program(state.range(0) != 0);
    const long long paintsBefore = p.painted.paints;
    for (auto _ : state) measuredPart([&] { p.tick(); });
    state.counters["widgets_painted"] = benchmark::Counter(
        static_cast<double>(p.painted.paints - paintsBefore), benchmark::Counter::kAvgIterations);
}
BENCHMARK(BM_ScanTick)->ArgName("all_windows")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

void BM_ReadingsRefresh(benchmark::State& state) {
    Program& p = program(true);
    auto* w = Program::window<kova::ReadingsViewWindow>();
    if (!w) return state.SkipWithError("no readings window");
    measure(state, p, [&] { w->readTimerTick(); });
}
BENCHMARK(BM_ReadingsRefresh)->Unit(benchmark::kMillisecond);

void BM_MinMaxRefresh(benchmark::State& state) {
    Program& p = program(true);
    auto* w = Program::window<kova::MinMaxWindow>();
    if (!w) return state.SkipWithError("no min/max window");
    measure(state, p, [&] { w->refresh(); });
}
BENCHMARK(BM_MinMaxRefresh)->Unit(benchmark::kMillisecond);

void BM_TrendRefresh(benchmark::State& state) {
    Program& p = program(true);
    auto* w = Program::window<kova::ViewTrendWindow>();
    if (!w) return state.SkipWithError("no trend window");
    measure(state, p, [&] { w->tick(); });
}
BENCHMARK(BM_TrendRefresh)->Unit(benchmark::kMillisecond);

void BM_AlarmListRefresh(benchmark::State& state) {
    Program& p = program(true);
    auto* w = Program::window<kova::AlarmListWindow>();
    if (!w) return state.SkipWithError("no alarm list");
    measure(state, p, [&] { w->refresh(); });
}
BENCHMARK(BM_AlarmListRefresh)->Unit(benchmark::kMillisecond);

}  // namespace
