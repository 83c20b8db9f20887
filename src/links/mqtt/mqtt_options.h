#pragma once
// What `kova-cli run --mqtt` needs to reach a broker.
#include <chrono>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

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

    // A link that speaks another convention than <prefix>/status and <prefix>/set:
    struct Will {
        std::string topic;
        std::string payload;
        bool retain = true;
    };
    // Asked on the network thread before every connection attempt for that connection's
    // last will, which the link also publishes itself before it leaves cleanly; told whether
    // the broker accepted the connection made with the will given before (false the first
    // time). Empty: the will is "<prefix>/status" = "offline" (retained), and "online" goes
    // out on connecting.
    std::function<Will(bool previousAccepted)> willForConnect;
    // The broker keeps the session (subscriptions, messages for it) while the station is
    // away; false: every connection starts clean (Sparkplug wants it so).
    bool persistentSession = true;
    // Topics subscribed to (QoS 1) on every connect, besides <prefix>/set/+ with writes.
    std::vector<std::string> subscriptions;
    // Incoming payloads longer than this are not copied (the message still arrives, marked).
    std::size_t maxPayloadBytes = 64;  // MqttLink::kMaxWritePayload
    // Incoming topics are kept up to this many bytes; 0: <prefix>/set/ and a tag name.
    std::size_t maxTopicBytes = 0;
    // How long the broker's host may take to answer a connection before the link says it
    // does not answer and tries again later.
    std::chrono::milliseconds connectWait{10000};
};

// "HOST" or "HOST:PORT" (a bracketed IPv6 address keeps its colons: "[::1]:1884").
bool ParseBrokerAddress(const std::string& text, std::string& host, int& port, std::string& error);
// "kova/" + the setup file's base name without its extension ("Plant.SUF" -> "kova/Plant").
std::string DefaultTopicPrefix(const std::string& setupFile);
// The password: the first line of the file, without its line end.
bool ReadPasswordFile(const std::string& path, std::string& password, std::string& error);

}  // namespace kova::mqtt
