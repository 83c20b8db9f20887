#include "tags/tag_name_index.h"

#include <cctype>
#include <utility>

namespace kova {

int CompareNoCase(const std::string& a, const std::string& b) {
    const std::size_t n = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < n; ++i) {
        const int ca = std::toupper(static_cast<unsigned char>(a[i]));
        const int cb = std::toupper(static_cast<unsigned char>(b[i]));
        if (ca != cb) return ca < cb ? -1 : 1;
    }
    if (a.size() == b.size()) return 0;
    return a.size() < b.size() ? -1 : 1;
}

namespace {
void sortDescending(TagNameIndex& idx, int lo, int hi) {
    int i = lo;
    int j = hi;
    const std::string pivot = idx[(lo + hi) / 2].Name;
    while (i <= j) {
        while (CompareNoCase(idx[i].Name, pivot) > 0) ++i;
        while (CompareNoCase(idx[j].Name, pivot) < 0) --j;
        if (i <= j) {
            std::swap(idx[i], idx[j]);
            ++i;
            --j;
        }
    }
    if (lo < j) sortDescending(idx, lo, j);
    if (i < hi) sortDescending(idx, i, hi);
}
}  // namespace

void RebuildTagNameIndex(const TagTable& tags, TagNameIndex& index) {
    for (int i = 1; i <= kUserTags; ++i) index[i] = {tags[i].TagName, static_cast<std::int16_t>(i)};
    sortDescending(index, 1, kUserTags);
}

int FindTag(const TagNameIndex& index, const std::string& name) {
    if (name.empty()) return 0;
    static const char* const systemNames[] = {"TS", "HR", "MN", "SC", "DW", "SU"};
    for (int k = 0; k < 6; ++k)
        if (name == systemNames[k]) return 33 + k;

    int p = 16;
    int s = 16;
    while (s >= 1) {
        const TagNameEntry& e = index[p];
        if (e.Name == name) return e.Number;
        if (!e.Name.empty())
            p += (s / 2) * CompareNoCase(e.Name, name);
        else
            p -= s / 2;
        s /= 2;
    }
    if (index[32].Name == name) return index[32].Number;
    return 0;
}

}  // namespace kova
