#include "links/mqtt/mqtt_options.h"

#include <charconv>
#include <filesystem>
#include <fstream>

namespace kova::mqtt {

bool ParseBrokerAddress(const std::string& text, std::string& host, int& port, std::string& error) {
    std::string h = text;
    std::string portText;
    if (!h.empty() && h.front() == '[') {
        const auto close = h.find(']');
        if (close == std::string::npos) {
            error = "--mqtt: \"" + text + "\" has no closing ]";
            return false;
        }
        if (close + 1 < h.size()) {
            if (h[close + 1] != ':') {
                error = "--mqtt takes HOST[:PORT], not \"" + text + "\"";
                return false;
            }
            portText = h.substr(close + 2);
            if (portText.empty()) {
                error = "--mqtt takes HOST[:PORT], not \"" + text + "\"";
                return false;
            }
        }
        h = h.substr(1, close - 1);
    } else if (const auto colon = h.rfind(':'); colon != std::string::npos) {
        portText = h.substr(colon + 1);
        h = h.substr(0, colon);
        if (portText.empty()) {
            error = "--mqtt takes HOST[:PORT], not \"" + text + "\"";
            return false;
        }
    }
    if (h.empty()) {
        error = "--mqtt takes HOST[:PORT], not \"" + text + "\"";
        return false;
    }
    int p = 1883;
    if (!portText.empty()) {
        const auto [end, ec] =
            std::from_chars(portText.data(), portText.data() + portText.size(), p);
        if (ec != std::errc() || end != portText.data() + portText.size() || p < 1 || p > 65535) {
            error = "--mqtt: the port must be 1..65535, not \"" + portText + "\"";
            return false;
        }
    }
    host = h;
    port = p;
    return true;
}

std::string DefaultTopicPrefix(const std::string& setupFile) {
    return "kova/" + std::filesystem::path(setupFile).stem().string();
}

bool ReadPasswordFile(const std::string& path, std::string& password, std::string& error) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        error = path + ": cannot read the MQTT password file";
        return false;
    }
    // A password file holds one short line; read no more than a line can sensibly be.
    std::string line;
    char c;
    while (line.size() < 4096 && in.get(c) && c != '\n') line.push_back(c);
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (line.empty()) {
        error = path + ": the MQTT password file is empty";
        return false;
    }
    password = line;
    return true;
}

}  // namespace kova::mqtt
