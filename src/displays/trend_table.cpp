#include "displays/trend_table.h"

namespace kova {

void ResetTrendSamples(TrendState& t) {
    t.TrendSamples.fill(0.0f);
    t.NewestSample = kTrendRows;
    t.OldestSample = 1;
    t.SamplesTaken.fill(0);
    t.SampledTag.fill(0);
}

std::int16_t StepTrend(std::int16_t trend, int step) {
    const int next = trend + step;
    if (next > 10) return 1;
    if (next < 1) return 10;
    return static_cast<std::int16_t>(next);
}

}  // namespace kova
