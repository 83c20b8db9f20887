#pragma once
// What `kova-cli run --mqtt` needs to reach a broker.
#include <string>

namespace kova::mqtt {

struct MqttOptions {
    std::string host;
    int port = 1883;
    std::string prefix;        // topics are <prefix>/status, <prefix>/tags/<TAGNAME>, ...
    std::string username;      // empty: no user name
    std::string passwordFile;  // the password is the file's first line
    std::string caFile;        // non-empty: TLS, the broker's certificate checked against it
    bool writes = false;       // accept <prefix>/set/<TAGNAME>
    std::string clientId;      // the ID given to the broker (see mqtt_client_id.h)
};

// "HOST" or "HOST:PORT" (a bracketed IPv6 address keeps its colons: "[::1]:1884").
bool ParseBrokerAddress(const std::string& text, std::string& host, int& port, std::string& error);
// "kova/" + the setup file's base name without its extension ("Plant.SUF" -> "kova/Plant").
std::string DefaultTopicPrefix(const std::string& setupFile);
// The password: the first line of the file, without its line end.
bool ReadPasswordFile(const std::string& path, std::string& password, std::string& error);

}  // namespace kova::mqtt
