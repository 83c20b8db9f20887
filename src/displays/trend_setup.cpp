#include "displays/trend_setup.h"

#include "tags/tag_name_index.h"
#include "tags/tag_table.h"

namespace kova {

namespace {

void moveTo(Station& st, SetTrendForm& form, int step) {
    if (SaveTrend(st, form)) return;
    st.trends.CurrentTrend = StepTrend(st.trends.CurrentTrend, step);
    DisplayTrend(st, form);
}

}  // namespace

SetTrendForm OpenSetTrend(Station& st) {
    st.trends.CurrentTrend = 1;
    SetTrendForm form;
    DisplayTrend(st, form);
    return form;
}

void DisplayTrend(const Station& st, SetTrendForm& form) {
    const int trend = st.trends.CurrentTrend;
    form.LblTrendNo = std::to_string(trend);
    form.TagList.clear();
    for (int i = 1; i <= kUserTags; ++i) form.TagList.push_back(st.tags[i].TagName);
    for (int pen = 1; pen <= 4; ++pen) {
        const int tag = st.trends.TrendTable(trend, pen);
        // A number no tag has (a damaged table) shows as an empty pen rather than failing.
        form.CboTagNo[pen - 1] = tag != 0 && TagTable::inRange(tag) ? st.tags[tag].TagName : "";
    }
}

bool SaveTrend(Station& st, const SetTrendForm& form) {
    const int trend = st.trends.CurrentTrend;
    for (int pen = 1; pen <= 4; ++pen) {
        const std::string name = NormalizeTagName(form.CboTagNo[pen - 1]);
        if (name.empty()) {
            st.trends.TrendTable(trend, pen) = 0;
            continue;
        }
        const int tag = FindTag(st.nameIndex, name);
        if (tag == 0) {
            st.platform.prompter->message("Tag Name " + name + " not Found", "ERROR");
            st.trends.TrendTable(trend, pen) = 0;
            return true;
        }
        st.trends.TrendTable(trend, pen) = static_cast<std::int16_t>(tag);
    }
    return false;
}

void SetTrendNext(Station& st, SetTrendForm& form) {
    moveTo(st, form, +1);
}

void SetTrendPrevious(Station& st, SetTrendForm& form) {
    moveTo(st, form, -1);
}

bool SetTrendExit(Station& st, const SetTrendForm& form) {
    return !SaveTrend(st, form);
}

}  // namespace kova
