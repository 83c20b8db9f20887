#include "displays/trend_table.h"

namespace kova {

void ResetTrendSamples(TrendState& t) {
    t.TrendSamples.fill(0.0f);
    t.NewestSample = kTrendRows;
    t.OldestSample = 1;
}

}  // namespace kova
