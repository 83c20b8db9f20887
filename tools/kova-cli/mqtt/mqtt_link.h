#pragma once
// The connection to the MQTT broker, on libmosquitto. Its network loop runs on a thread of
// its own: publishing only queues, so the scan never waits for the network; the link
// reconnects by itself with back-off (1 s doubling to 30 s) after the broker goes away.
#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "mqtt/mqtt_options.h"

struct mosquitto;
struct mosquitto_message;

namespace kova::mqtt {

class MqttLink {
  public:
    // A message that arrived on a subscribed topic.
    struct Incoming {
        std::string topic;
        std::string payload;
    };

    // Sets up the client (last will "<prefix>/status" = "offline", retained) and starts
    // connecting in the background; nullptr and the reason when the options cannot work
    // (TLS file unreadable, no such host name form, ...). A broker that is down is not an
    // error: the link keeps trying.
    static std::unique_ptr<MqttLink> Start(const MqttOptions& options, std::string& error);
    // Publishes "offline" (retained), disconnects cleanly and stops the network thread.
    ~MqttLink();
    MqttLink(const MqttLink&) = delete;
    MqttLink& operator=(const MqttLink&) = delete;

    // Queues a message (QoS 1); false when the client refused it (for example while the
    // broker is away: the retained values are sent again on the next connect).
    bool publish(const std::string& topic, const std::string& payload, bool retain);
    // Runs on the network thread after every (re)connect, after "online" is published. It
    // must be short and must not call back into the link. Replacing it (an empty function
    // included) waits until a running call has finished.
    void onConnect(std::function<void()> callback);
    // The messages that arrived since the last call, oldest first.
    std::vector<Incoming> takeIncoming();
    bool connected() const { return connected_; }
    // How many times a connection was made.
    int connections() const { return connections_; }

  private:
    explicit MqttLink(const MqttOptions& options);
    static void connectCallback(mosquitto*, void* self, int rc);
    static void disconnectCallback(mosquitto*, void* self, int rc);
    static void messageCallback(mosquitto*, void* self, const mosquitto_message* message);

    MqttOptions options_;
    mosquitto* client_ = nullptr;
    bool loopStarted_ = false;
    std::atomic<bool> connected_{false};
    std::atomic<int> connections_{0};
    std::mutex mutex_;  // guards incoming_ and onConnect_
    std::vector<Incoming> incoming_;
    std::function<void()> onConnect_;
};

}  // namespace kova::mqtt
