#include "links/mqtt/mqtt_client_id.h"

#include <unistd.h>

#include <random>

#include "core/atomic_file.h"
#include "core/fault.h"

namespace kova::mqtt {

namespace {

constexpr std::size_t kRandomDigits = 16;

bool IsRandomPart(const std::string& s) {
    if (s.size() != kRandomDigits) return false;
    for (char c : s)
        if (!((c >= '0' && c <= '9') || (c >= 'a' && c <= 'f'))) return false;
    return true;
}

std::string NewRandomPart() {
    std::random_device device;
    std::uniform_int_distribution<int> digit(0, 15);
    std::string s;
    for (std::size_t i = 0; i < kRandomDigits; ++i) s += "0123456789abcdef"[digit(device)];
    return s;
}

std::string HostName() {
    char name[256] = {};
    if (gethostname(name, sizeof name - 1) != 0 || name[0] == '\0') return "station";
    std::string host(name);
    // The first label only: "plant2.example.com" is "plant2".
    if (const auto dot = host.find('.'); dot != std::string::npos && dot > 0) host.resize(dot);
    return host;
}

}  // namespace

ClientId DefaultClientId(const std::string& prefix, const std::filesystem::path& folder) {
    const std::filesystem::path file = folder / kClientIdFile;
    ClientId result;
    std::string bytes, error;
    std::string part;
    if (ReadWholeFile(file, bytes, error, 256)) {
        part = bytes.substr(0, bytes.find_first_of("\r\n"));
        if (!IsRandomPart(part)) part.clear();
    }
    if (part.empty()) {
        part = NewRandomPart();
        try {
            WriteFileAtomically(file, part + "\n");
        } catch (const std::exception& e) {
            result.note = std::string("the client ID's random part cannot be kept (") + e.what() +
                          "): the ID changes at every start; give one with --mqtt-client-id";
        }
    }
    result.id = prefix + "@" + HostName() + "-" + part;
    return result;
}

std::string ClientIdProblem(const std::string& id) {
    if (id.empty()) return "a client ID cannot be empty";
    if (id.size() > 256) return "a client ID of more than 256 bytes is refused by brokers";
    for (unsigned char c : id)
        if (c < 0x20 || c == 0x7F) return "a client ID cannot hold control characters";
    return {};
}

}  // namespace kova::mqtt
