#include "displays/min_max_view.h"

#include "core/numeric.h"

namespace kova {

MinMaxRows MinMaxView(const Station& st) {
    MinMaxRows rows;
    for (int i = 1; i <= kMinMaxTags; ++i) {
        rows[i].Label = st.tags[i].Label;
        rows[i].Reading = numberText(st.tags[i].Value);
        rows[i].Maximum = numberText(st.minMax.TagMaximum[i]);
        rows[i].Minimum = numberText(st.minMax.TagMinimum[i]);
    }
    return rows;
}

}  // namespace kova
