#include "core/trend_sampling.h"

namespace kova {

void SampleTrends(Station& st) {
    TrendState& t = st.trends;
    t.NewestSample =
        t.NewestSample >= kTrendRows ? 1 : static_cast<std::int16_t>(t.NewestSample + 1);
    t.OldestSample =
        t.OldestSample >= kTrendRows ? 1 : static_cast<std::int16_t>(t.OldestSample + 1);
    for (int trend = 1; trend <= 10; ++trend) {
        for (int pen = 1; pen <= 4; ++pen) {
            const int tag = t.TrendTable(trend, pen);
            // System variables on a pen are accepted by the set-up but sample as 0.
            const float v = tag >= 1 && tag <= kUserTags ? st.tags[tag].Value : 0.0f;
            const int column = (trend - 1) * 4 + pen;
            t.TrendSamples(t.NewestSample, column) = v;
            // A pen given another tag starts its history again with this sample.
            if (t.SampledTag[column] != tag) {
                t.SampledTag[column] = static_cast<std::int16_t>(tag);
                t.SamplesTaken[column] = 0;
            }
            if (t.SamplesTaken[column] < kTrendRows) ++t.SamplesTaken[column];
        }
    }
}

}  // namespace kova
