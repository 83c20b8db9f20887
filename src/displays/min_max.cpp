#include "displays/min_max.h"

#include "core/station.h"

namespace kova {

void UpdateMinMax(Station& st) {
    MinMaxState& mm = st.minMax;
    for (int i = 1; i <= kMinMaxTags; ++i) {
        const float v = st.tags[i].Value;
        if (v >= mm.TagMaximum[i]) mm.TagMaximum[i] = v;
        if (v < mm.TagMinimum[i]) mm.TagMinimum[i] = v;
    }
}

void ResetMinMax(Station& st) {
    for (int i = 1; i <= kMinMaxTags; ++i) {
        st.minMax.TagMaximum[i] = st.tags[i].Value;
        st.minMax.TagMinimum[i] = st.tags[i].Value;
    }
}

}  // namespace kova
