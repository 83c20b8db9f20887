#include "links/sparkplug/held_record.h"

#include <nlohmann/json.hpp>

namespace kova::sparkplug {

std::vector<HeldValue> HeldValuesOf(const std::string& body) {
    std::vector<HeldValue> out;
    const nlohmann::json j = nlohmann::json::parse(body, nullptr, false);
    if (j.is_discarded() || !j.is_object()) return out;
    const auto values = j.find("values");
    if (values == j.end() || !values->is_object()) return out;
    for (const auto& [name, value] : values->items())
        if (value.is_number()) out.push_back({name, value.get<float>()});
    return out;
}

}  // namespace kova::sparkplug
