#include "displays/trend_setup.h"

#include "tags/tag_name_index.h"
#include "tags/tag_table.h"

namespace kova {

namespace {

// SaveTrend that also notes the pen at fault; true when the trend was stored.
bool saveShown(Station& st, SetTrendForm& form) {
    form.FailedPen = 0;
    if (!SaveTrend(st, form)) return true;
    for (int pen = 1; pen <= 4 && form.FailedPen == 0; ++pen) {
        int tag = 0;
        if (!TrendPenRefusal(st, form.CboTagNo[pen - 1], tag).empty()) form.FailedPen = pen;
    }
    return false;
}

bool moveTo(Station& st, SetTrendForm& form, int step) {
    if (!saveShown(st, form)) return false;
    st.trends.CurrentTrend = StepTrend(st.trends.CurrentTrend, step);
    DisplayTrend(st, form);
    return true;
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
    form.ShownPens = form.CboTagNo;
}

void SetTrendTablesChanged(const Station& st, SetTrendForm& form, TableChange change) {
    if (change == TableChange::DaqType) return;
    if (change == TableChange::Configuration) {
        DisplayTrend(st, form);
        return;
    }
    form.TagList.clear();
    for (int i = 1; i <= kUserTags; ++i) form.TagList.push_back(st.tags[i].TagName);
    const int trend = st.trends.CurrentTrend;
    for (int pen = 1; pen <= 4; ++pen) {
        const std::string now = TrendPenText(st, trend, pen);
        if (form.CboTagNo[pen - 1] == form.ShownPens[pen - 1]) form.CboTagNo[pen - 1] = now;
        form.ShownPens[pen - 1] = now;
    }
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

bool SetTrendNext(Station& st, SetTrendForm& form) {
    return moveTo(st, form, +1);
}

bool SetTrendPrevious(Station& st, SetTrendForm& form) {
    return moveTo(st, form, -1);
}

bool SetTrendExit(Station& st, SetTrendForm& form) {
    return saveShown(st, form);
}

}  // namespace kova
