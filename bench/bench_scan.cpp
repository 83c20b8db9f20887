// One scan tick of a full configuration: 32 tags on the TEST module, every trend pen in
// use, min/max tracked. Also counts heap allocations per tick (target: none in steady state).
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <new>

#include "core/scan_cycle.h"
#include "support/allocation_counter.h"
#include "tags/tag_table.h"

namespace {

class NoTimer final : public kova::ScanTimer {
  public:
    void setInterval(int) override {}
};

void BM_TickFullConfiguration(benchmark::State& state) {
    kova::Station st;
    kova::SimulatedClock clock({2026, 11, 15, 10, 0, 0, 0});
    NoTimer timer;
    st.platform.clock = &clock;
    st.platform.timer = &timer;
    st.switches.PollEnabled = true;
    st.periods = {100, kova::kUnitMs, 1000, kova::kUnitMs, 0};
    const char* ioNames[] = {"AI-1", "AI-2", "AI-3", "AI-4", "AI-5", "AI-6", "AI-7", "AI-8",
                             "DI-1", "DI-2", "DI-3", "DI-4", "AO-1", "AO-2", "DO-1", "DO-2"};
    for (int i = 1; i <= 32; ++i) {
        kova::Tag& t = st.tags[i];
        t.TagName = "TAG" + std::to_string(i);
        kova::BindIOName(t, i <= 16 ? ioNames[i - 1] : "Analog Variable");
        t.Address = 1;
        t.RawValue2 = 4095;
        t.EngValue2 = 100;
        kova::ComputeScaling(t);
    }
    for (int trend = 1; trend <= 10; ++trend)
        for (int pen = 1; pen <= 4; ++pen)
            st.trends.TrendTable(trend, pen) =
                static_cast<std::int16_t>(1 + (trend * 4 + pen) % 32);
    kova::RebuildTagNameIndex(st.tags, st.nameIndex);
    for (int i = 0; i < 10; ++i) kova::Tick(st);  // warm up

    long long ticks = 0;
    const long long before = kova::bench::AllocationCount();
    for (auto _ : state) {
        clock.advance(100);
        kova::Tick(st);
        ++ticks;
    }
    state.counters["allocs_per_tick"] =
        benchmark::Counter(static_cast<double>(kova::bench::AllocationCount() - before) /
                           static_cast<double>(ticks ? ticks : 1));
}
BENCHMARK(BM_TickFullConfiguration);

}  // namespace
