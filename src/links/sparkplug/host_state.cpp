#include "links/sparkplug/host_state.h"

#include <nlohmann/json.hpp>

namespace kova::sparkplug {

std::optional<HostState> ParseHostState(const std::string& payload, std::string& error) {
    if (payload.size() > kMaxHostStatePayload) {
        error = "a STATE payload of more than " + std::to_string(kMaxHostStatePayload) + " bytes";
        return std::nullopt;
    }
    const nlohmann::json j = nlohmann::json::parse(payload, nullptr, false);
    if (j.is_discarded() || !j.is_object()) {
        error = "the STATE payload is not a JSON object";
        return std::nullopt;
    }
    const auto online = j.find("online");
    if (online == j.end() || !online->is_boolean()) {
        error = "the STATE payload has no \"online\": true or false";
        return std::nullopt;
    }
    HostState s;
    s.online = online->get<bool>();
    const auto timestamp = j.find("timestamp");
    if (timestamp != j.end() && timestamp->is_number_unsigned())
        s.timestamp = timestamp->get<std::uint64_t>();
    return s;
}

bool HostWatch::seen(const HostState& s) {
    if (s.timestamp < newest_) return false;
    newest_ = s.timestamp;
    const bool changed = s.online != online_;
    online_ = s.online;
    return changed;
}

}  // namespace kova::sparkplug
