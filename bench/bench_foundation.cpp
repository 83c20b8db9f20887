// Cost of the foundation's hot helpers: name look-up, scaling and calibration.
#include <benchmark/benchmark.h>

#include "daq/calibration.h"
#include "tags/tag_name_index.h"
#include "tags/tag_table.h"

namespace {

void BM_FindTagFullTable(benchmark::State& state) {
    kova::TagTable tags;
    for (int i = 1; i <= 32; ++i) tags[i].TagName = "TAG" + std::to_string(i);
    kova::TagNameIndex index;
    kova::RebuildTagNameIndex(tags, index);
    int i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(kova::FindTag(index, tags[1 + (i++ % 32)].TagName));
    }
}
BENCHMARK(BM_FindTagFullTable);

void BM_CorrectAndScale(benchmark::State& state) {
    kova::Tag t;
    t.RawValue2 = 4095;
    t.EngValue2 = 100;
    kova::ComputeScaling(t);
    const kova::CalibrationData cal{3950, 3930, 4};
    std::int16_t raw = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(kova::ScaleInput(t, kova::CorrectReading(cal, raw)));
        raw = static_cast<std::int16_t>((raw + 7) % 4000);
    }
}
BENCHMARK(BM_CorrectAndScale);

}  // namespace
