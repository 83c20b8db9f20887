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

#include "control/line_check.h"
#include "control/run_controls.h"
#include "core/scan_cycle.h"
#include "logging/log_writer.h"
#include "support/allocation_counter.h"
#include "support/control_lines.h"
#include "tags/tag_name_index.h"
#include "tags/tag_table.h"

namespace {

enum Mode { kQuiet = 0, kLogging = 1, kAlarms = 2 };

class NoTimer final : public kova::ScanTimer {
  public:
    void setInterval(int) override {}
};

void tag(kova::Station& st, int n, const std::string& name, const std::string& io) {
    kova::Tag& t = st.tags[n];
    t.TagName = name;
    t.Label = name;
    kova::BindIOName(t, io);
    t.Address = 1;
    t.RawValue1 = 0;
    t.EngValue1 = 0;
    t.RawValue2 = 2000;
    t.EngValue2 = 100;
    t.Log = 1;
    kova::ComputeScaling(t);
}

void buildTags(kova::Station& st) {
    kova::BuildIOList(st.profile, kova::kDaqTest);
    for (int i = 1; i <= 8; ++i) tag(st, i, "LEVEL" + std::to_string(i), "AI-" + std::to_string(i));
    for (int i = 1; i <= 4; ++i)
        tag(st, 8 + i, "SW" + std::to_string(i), "DI-" + std::to_string(i));
    for (int i = 1; i <= 2; ++i)
        tag(st, 12 + i, "SETPT" + std::to_string(i), "AO-" + std::to_string(i));
    for (int i = 1; i <= 4; ++i)
        tag(st, 14 + i, "PUMP" + std::to_string(i), "DO-" + std::to_string(i));
    for (int i = 19; i <= 32; ++i) tag(st, i, "VAR" + std::to_string(i), "Analog Variable");
    kova::RebuildTagNameIndex(st.tags, st.nameIndex);
}

void buildControls(kova::Station& st) {
    const char* const lines[30][3] = {
        {"@LEVEL1>50", "@PUMP1 = 1", "@PUMP1 = 0"},
        {"@LEVEL2>80&@LEVEL3<20", "@PUMP2 = 1", "@PUMP2 = 0"},
        {"@LEVEL4>=50|@LEVEL5>=50", "@PUMP3 = 1\r\n@VAR19 = @VAR19 + 1", "@PUMP3 = 0"},
        {"", "@VAR20 = (@LEVEL1 + @LEVEL2 + @LEVEL3 + @LEVEL4) / 4", ""},
        {"@VAR20>60", "@SETPT1 = @VAR20 * 0.5 + 10", "@SETPT1 = 20"},
        {"@HR>=8&@HR<18", "@PUMP4 = 1", "@PUMP4 = 0"},
        {"@SU=0", "@VAR21 = 0\r\n@VAR22 = 0", ""},
        {"", "@VAR21 = @VAR21 + 1", ""},
        {"@VAR21>100", "@VAR21 = 0\r\n@VAR22 = @VAR22 + 1", ""},
        {"", "@VAR23 = SIN(@VAR21 / 10) * 50 + 50", ""},
        {"@VAR23>75", "@SETPT2 = 1", "@SETPT2 = 0"},
        {"@LEVEL6<>@LEVEL7", "@VAR24 = ABS(@LEVEL6 - @LEVEL7)", "@VAR24 = 0"},
        {"@VAR24>5", "@VAR25 = 1", "@VAR25 = 0"},
        {"", "@VAR26 = SQR(@LEVEL8 * @LEVEL8 + 1)", ""},
        {"", "@VAR27 = @VAR27 * 0.9 + @LEVEL1 * 0.1", ""},
        {"@VAR27>@LEVEL1", "@VAR28 = 1", "@VAR28 = 0"},
        {"(@LEVEL1>10)&(@LEVEL2>10)&(@SW1=1)", "@VAR29 = 1", "@VAR29 = 0"},
        {"", "@VAR30 = LOG(@LEVEL2 + 1) + EXP(0 - @LEVEL3 / 100)", ""},
        {"@MN=0&@SC<2", "@VAR31 = @VAR31 + 1", ""},
        {"", "@VAR32 = 2 ^ (@LEVEL4 / 50)", ""},
        {"@VAR32>3", "@PUMP4 = 1", ""},
        {"", "@VAR30 = ATN(@LEVEL5 / 10) * 57.29578", ""},
        {"@VAR30>45", "@VAR31 = COS(@VAR30 / 57.29578)", "@VAR31 = 1"},
        {"@DW=1|@DW=7", "@VAR28 = @VAR28 + 0", ""},
        {"@LEVEL1<5", "@SETPT1 = 0", ""},
        {"", "@VAR19 = @VAR19 - 1", ""},
        {"@VAR19<0", "@VAR19 = 0", ""},
        {"@SW2=1|@SW3=1", "@VAR25 = @VAR25 + 1", ""},
        {"@LEVEL3<=@LEVEL4", "@VAR28 = @VAR28 + 0", "@VAR28 = 0"},
        {"", "@VAR29 = TAN(@LEVEL6 / 200)", ""},
    };
    kova::bench::InstallControlLines(st, lines, 30);
}

// Alarms on the eight ramping inputs and twelve variables the statements move.
void buildAlarms(kova::Station& st, bool crossing) {
    const int tags[20] = {1, 2, 3, 4, 5, 6, 7, 8, 19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30};
    for (int n = 1; n <= 20; ++n) {
        kova::AlarmDef& a = st.alarms.Alarms[n];
        a.TagNo = static_cast<std::int16_t>(tags[n - 1]);
        a.TagName = st.tags[a.TagNo].TagName;
        a.HiMsg = a.TagName + " too high";
        a.LoMsg = a.TagName + " too low";
        a.NormMsg = a.TagName + " back to normal";
        // The inputs ramp through about 10 engineering units per channel step.
        const float base = n <= 8 ? static_cast<float>(n) * 10.0f : 40.0f;
        a.HiVal = crossing ? base + 9.0f : 1e9f;
        a.LoVal = crossing ? base + 1.0f : -1e9f;
    }
    st.switches.AlarmsEnabled = 1;
}

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
        buildTags(st);
        buildControls(st);
        buildAlarms(st, mode == kAlarms);
        for (int trend = 1; trend <= 10; ++trend)
            for (int pen = 1; pen <= 4; ++pen)
                st.trends.TrendTable(trend, pen) =
                    static_cast<std::int16_t>(1 + ((trend - 1) * 4 + pen - 1) % 32);
        st.logging.LogFileName = (folder / "BENCH.CSV").string();
        st.logging.OverwriteFile = 1;
        st.logging.LogTimeColumn = kova::Variant::integer(1);
        st.logging.LogDateColumn = kova::Variant::integer(1);
        st.switches.LoggingEnabled = kova::Variant::integer(1);
        kova::OpenLogFile(st);
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
