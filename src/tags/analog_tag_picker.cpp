#include "tags/analog_tag_picker.h"

namespace kova {

std::vector<std::string> AnalogTagChoices(const TagTable& tags) {
    std::vector<std::string> names;
    for (int i = 1; i <= kUserTags; ++i)
        if (tags[i].Kind == kAnalog) names.push_back(tags[i].TagName);
    return names;
}

std::string PickAnalogTag(const std::vector<std::string>& choices, int index) {
    if (index < 0 || static_cast<std::size_t>(index) >= choices.size()) return {};
    return choices[static_cast<std::size_t>(index)];
}

}  // namespace kova
