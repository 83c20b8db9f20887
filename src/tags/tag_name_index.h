#pragma once
// The sorted name index of user tags and the name look-up the control language, screens
// and alarms use.
#include <cstdint>
#include <string>

#include "core/one_based.h"
#include "tags/tag.h"

namespace kova {

struct TagNameEntry {
    std::string Name;
    std::int16_t Number = 0;
    bool operator==(const TagNameEntry&) const = default;
};

using TagNameIndex = Table<TagNameEntry, kUserTags>;

// Case-insensitive comparison: -1, 0 or +1.
int CompareNoCase(const std::string& a, const std::string& b);

// Fills the index from tags 1..32 and sorts it in descending order of name (case-insensitive,
// Hoare quicksort with the middle pivot), so that empty names gather at the high end.
void RebuildTagNameIndex(const TagTable& tags, TagNameIndex& index);

// Tag number of a name, 0 when not found. The exact names TS, HR, MN, SC, DW, SU give
// 33..38; everything else goes through the index with its fixed probe pattern (16, then
// +-8, +-4, +-2, +-1), and entry 32, which that pattern never reaches, is compared last.
int FindTag(const TagNameIndex& index, const std::string& name);

}  // namespace kova
