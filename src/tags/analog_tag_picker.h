#pragma once
// The analog tag picker: a drop-down of the names of the analog user tags, from which the
// window that opened it takes one name.
#include <string>
#include <vector>

#include "tags/tag.h"

namespace kova {

// The list the picker fills when it opens: the TagName of every user tag 1..32 whose Kind
// is analog, in tag order. Unused tags are analog by default and add empty lines.
std::vector<std::string> AnalogTagChoices(const TagTable& tags);

// Choosing entry `index` (0-based, as the list counts) gives its text, the picked analog
// tag name; an index outside the list gives "".
std::string PickAnalogTag(const std::vector<std::string>& choices, int index);

}  // namespace kova
