#pragma once
// The connection to the MQTT broker, on libmosquitto (MQTT 5, or 3.1.1 with a broker that
// speaks no other). Its network loop runs on a thread of its own: publishing only queues,
// so the scan never waits for the network. The thread connects, reconnects after the
// broker went away with back-off (1 s doubling to 30 s; every 5 minutes when the broker
// refused the login, the certificate or the client ID), and notes why a connection failed,
// once per cause, for the station to tell.
#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "mqtt/mqtt_connection.h"
#include "mqtt/mqtt_options.h"

struct mosquitto;
struct mosquitto_message;
struct mqtt5__property;

namespace kova::mqtt {

class MqttLink {
  public:
    // The longest write payload taken: no number a tag takes is longer. A longer one is
    // refused before it is copied, however large.
    static constexpr std::size_t kMaxWritePayload = 64;
    // The longest tag name a write topic is kept with (a tag's record holds 128 bytes).
    static constexpr std::size_t kMaxTopicTail = 128;
    // Writes kept between two ticks; more are dropped and counted.
    static constexpr std::size_t kMaxWritesWaiting = 10000;

    // A message that arrived on a subscribed topic.
    struct Incoming {
        std::string topic;    // cut after the prefix and kMaxTopicTail bytes
        std::string payload;  // empty when the payload was too long
        std::size_t payloadBytes = 0;
        bool payloadTooLong = false;
        bool topicCut = false;
        bool retained = false;  // the broker kept it and sent it on subscribing
    };
    struct Taken {
        std::vector<Incoming> messages;  // oldest first
        long long dropped = 0;           // writes dropped since the last take (over the cap)
    };

    // Sets up the client (the client ID of the options, last will "<prefix>/status" =
    // "offline", retained) and starts connecting in the background; nullptr and the reason
    // when the options cannot work (TLS file unreadable, ...). A broker that is down is not
    // an error: the link keeps trying and tells why.
    static std::unique_ptr<MqttLink> Start(const MqttOptions& options, std::string& error);
    // Publishes "offline" (retained), disconnects cleanly and stops the network thread.
    ~MqttLink();
    MqttLink(const MqttLink&) = delete;
    MqttLink& operator=(const MqttLink&) = delete;

    // Queues a message (QoS 1). 0 when queued, else libmosquitto's reason (MOSQ_ERR_NO_CONN
    // while the broker is away: the retained values are sent again on the next connect).
    int publish(const std::string& topic, const std::string& payload, bool retain);
    // Runs on the network thread after every (re)connect, after "online" is published. It
    // must be short and must not call back into the link. Replacing it (an empty function
    // included) waits until a running call has finished.
    void onConnect(std::function<void()> callback);
    // The messages that arrived since the last call.
    Taken takeIncoming();
    // Writes arrived and not taken yet, the dropped ones included.
    long long writesWaiting();
    // What the user should hear about the connection since the last call, a line each.
    std::vector<std::string> takeNotices();
    bool connected() const { return connected_; }
    // How many times a connection was made.
    int connections() const { return connections_; }
    const std::string& clientId() const { return options_.clientId; }

  private:
    explicit MqttLink(const MqttOptions& options);
    void run();
    void note(const std::string& line);
    // Waits, or until the link is stopped; false when stopped.
    bool pause(std::chrono::steady_clock::duration d);
    static void connectCallback(mosquitto*, void* self, int rc, int flags, const mqtt5__property*);
    static void disconnectCallback(mosquitto*, void* self, int rc, const mqtt5__property*);
    static void messageCallback(mosquitto*, void* self, const mosquitto_message* message);
    static void logCallback(mosquitto*, void* self, int level, const char* text);

    MqttOptions options_;
    mosquitto* client_ = nullptr;
    std::thread thread_;
    std::atomic<std::thread::id> networkThread_{};
    std::atomic<bool> stop_{false};
    std::atomic<bool> stopping_{false};  // the clean stop: "offline" and DISCONNECT go out
    std::atomic<bool> connected_{false};
    std::atomic<int> connections_{0};
    std::mutex waitMutex_;
    std::condition_variable wake_;

    // Seen by the callbacks during one connection, read by the network thread after it.
    ConnectionEvent event_;
    ConnectionTeller teller_;

    std::mutex mutex_;  // guards incoming_, dropped_, notices_ and onConnect_
    std::vector<Incoming> incoming_;
    long long dropped_ = 0;
    std::vector<std::string> notices_;
    std::function<void()> onConnect_;
};

}  // namespace kova::mqtt
