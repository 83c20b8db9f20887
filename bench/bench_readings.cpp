// One ReadTimer tick of the readings screen with all twenty lines in use: the time the
// window takes from the user-interface thread, which the scan shares.
#include <benchmark/benchmark.h>

#include "displays/readings_view.h"
#include "tags/tag_name_index.h"
#include "tags/tag_table.h"

namespace {

void BM_ReadTimerTickFullScreen(benchmark::State& state) {
    kova::Station st;
    const char* ioNames[] = {"AI-1",
                             "AI-2",
                             "AI-3",
                             "AI-4",
                             "AO-1",
                             "AO-2",
                             "Analog Variable",
                             "AI-5",
                             "AI-6",
                             "AI-7",
                             "DI-1",
                             "DI-2",
                             "DI-3",
                             "DI-4",
                             "DO-1",
                             "DO-2",
                             "DO-3",
                             "DO-4",
                             "Digital Variable",
                             "Digital Variable"};
    for (int i = 1; i <= 20; ++i) {
        kova::Tag& t = st.tags[i];
        t.TagName = "TAG" + std::to_string(i);
        t.Label = "Label of tag " + std::to_string(i);
        t.Units = "units";
        t.EngText1 = "OFF";
        t.EngText2 = "ON";
        kova::BindIOName(t, ioNames[i - 1]);
        t.Address = 1;
        t.RawValue2 = 4095;
        t.EngValue2 = 100;
        kova::ComputeScaling(t);
        st.screens.Lines(1, i) = {t.TagName, static_cast<std::int16_t>(i), 0};
    }
    kova::RebuildTagNameIndex(st.tags, st.nameIndex);
    kova::ReadingsViewForm form = kova::OpenReadingsView(st);
    float v = 0;
    for (auto _ : state) {
        // New values every tick, and the digital states flip, as a running scan makes them.
        v += 1.25f;
        for (int i = 1; i <= 20; ++i)
            st.tags[i].Value = i <= 10 ? v * i : (i + static_cast<int>(v)) % 2;
        kova::ReadTimerTick(st, form);
        benchmark::DoNotOptimize(form);
    }
}
BENCHMARK(BM_ReadTimerTickFullScreen);

}  // namespace
