// One scan tick of a full configuration on the TEST module: 32 tags (the module's 18
// channels and 14 variables), 30 control lines, 20 alarms on moving tags, logging on with
// every tag logged (time and date columns too), every trend pen sampling on each scan.
// Reports the time and the heap allocations per tick:
//   quiet    no log record and no alarm change on the measured ticks: must allocate nothing;
//   logging  a log record on every tick, alarms quiet: nothing in steady state either;
//   alarms   limits the moving tags cross now and then, a record every tenth tick: what an
//            alarm line costs, averaged over the ticks.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "core/scan_cycle.h"
#include "logging/log_writer.h"
#include "support/allocation_counter.h"
#include "support/full_station.h"

namespace {

enum Mode { kQuiet = 0, kLogging = 1, kAlarms = 2 };

class NoTimer final : public kova::ScanTimer {
  public:
    void setInterval(int) override {}
};

void BM_FullTick(benchmark::State& state) {
    const auto mode = static_cast<Mode>(state.range(0));
    const auto folder =
        std::filesystem::temp_directory_path() / ("kova-bench-" + std::to_string(getpid()));
    std::filesystem::create_directories(folder);
    {
        kova::Station st;
        kova::SimulatedClock clock({2026, 11, 15, 10, 0, 0, 0});
        NoTimer timer;
        st.platform.clock = &clock;
        st.platform.timer = &timer;
        st.switches.PollEnabled = true;
        const std::int16_t logPeriod = mode == kLogging ? 100 : mode == kAlarms ? 1000 : 30000;
        st.periods = {100, kova::kUnitMs, logPeriod, kova::kUnitMs, 0};
        kova::bench::BuildFullStation(st, mode == kAlarms);
        kova::bench::LogEverythingTo(st, (folder / "BENCH.CSV").string());
        for (int i = 0; i < 400; ++i) {  // warm up: buffers grown, alarms through their states
            clock.advance(100);
            kova::Tick(st);
        }

        const long long before = kova::bench::AllocationCount();
        const std::int32_t records = st.logRun.SampleNumber;
        for (auto _ : state) {
            clock.advance(100);
            if (mode == kQuiet) st.scan.LogAccumMs = 0;  // never a record in this mode
            kova::Tick(st);
        }
        const double ticks = static_cast<double>(state.iterations());
        state.counters["allocs_per_tick"] = benchmark::Counter(
            static_cast<double>(kova::bench::AllocationCount() - before) / ticks);
        state.counters["records_per_tick"] =
            benchmark::Counter(static_cast<double>(st.logRun.SampleNumber - records) / ticks);
        if (!kova::LogFileIsOpen(st)) state.SkipWithError("logging stopped");
        kova::CloseLogFile(st);
    }
    std::filesystem::remove_all(folder);
}
BENCHMARK(BM_FullTick)
    ->ArgName("quiet0_logging1_alarms2")
    ->Arg(kQuiet)
    ->Arg(kLogging)
    ->Arg(kAlarms);

}  // namespace
