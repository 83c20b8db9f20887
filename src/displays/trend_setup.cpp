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
    for (int pen = 1; pen <= 4; ++pen) form.CboTagNo[pen - 1] = TrendPenText(st, trend, pen);
}

std::string TrendPenText(const Station& st, int trend, int pen) {
    const int tag = st.trends.TrendTable(trend, pen);
    // A number no tag has (a damaged table) shows as an empty pen rather than failing.
    return tag != 0 && TagTable::inRange(tag) ? st.tags[tag].TagName : "";
}

std::string TrendPenRefusal(const Station& st, const std::string& text, int& tag) {
    tag = 0;
    const std::string name = NormalizeTagName(text);
    if (name.empty()) return {};
    tag = FindTag(st.nameIndex, name);
    if (tag == 0) return "Tag Name " + name + " not Found";
    return {};
}

bool SaveTrend(Station& st, const SetTrendForm& form) {
    const int trend = st.trends.CurrentTrend;
    for (int pen = 1; pen <= 4; ++pen) {
        int tag = 0;
        const std::string refusal = TrendPenRefusal(st, form.CboTagNo[pen - 1], tag);
        st.trends.TrendTable(trend, pen) = static_cast<std::int16_t>(tag);  // 0 on a refusal
        if (!refusal.empty()) {
            st.platform.prompter->message(refusal, kSetTrendErrorTitle);
            return true;
        }
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
