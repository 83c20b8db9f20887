#pragma once
// The client ID a station gives the broker. The broker lets one client per ID in: a second
// one with the same ID throws the first off. The default is the topic prefix, the host's
// name and a random part made once and kept in the station's working folder, so no other
// station or subscriber shares it by accident, and it stays the same across restarts (a
// broker keeps a persistent session by its ID).
#include <filesystem>
#include <string>

namespace kova::mqtt {

// The file in the working folder that keeps the random part.
inline constexpr const char* kClientIdFile = "KOVA_MQTT.ID";

struct ClientId {
    std::string id;
    std::string note;  // "" or why the random part could not be kept (it then changes)
};

// "<prefix>@<host>-<16 hex digits>"; the random part is read from `folder`/KOVA_MQTT.ID,
// or made and written there when the file is missing or holds no such part.
ClientId DefaultClientId(const std::string& prefix, const std::filesystem::path& folder);

// "" when the text can be a client ID, else why not.
std::string ClientIdProblem(const std::string& id);

}  // namespace kova::mqtt
