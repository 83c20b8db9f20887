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
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "links/mqtt/mqtt_connection.h"
#include "links/mqtt/mqtt_options.h"

struct mosquitto;
struct mosquitto_message;
struct mqtt5__property;

namespace kova::mqtt {

class MqttLink {
  public:
    // The longest write payload taken: no number a tag takes is longer. A longer one is
    // refused before it is copied, however large (MqttOptions::maxPayloadBytes by default).
    static constexpr std::size_t kMaxWritePayload = 64;
    // The longest tag name a write topic is kept with (a tag's record holds 128 bytes).
    static constexpr std::size_t kMaxTopicTail = 128;
    // Writes kept between two ticks; more are dropped and counted.
    static constexpr std::size_t kMaxWritesWaiting = 10000;
    // How long the broker keeps the station's session (its subscription and the writes sent
    // to it) while the station is away: a day.
    static constexpr std::uint32_t kSessionExpirySeconds = 24 * 3600;

    // A message that arrived on a subscribed topic.
    struct Incoming {
        std::string topic;    // cut after the prefix and kMaxTopicTail bytes
        std::string payload;  // empty when the payload was too long (maxPayloadBytes)
        std::size_t payloadBytes = 0;
        bool payloadTooLong = false;
        bool topicCut = false;
        bool retained = false;  // the broker kept it and sent it on subscribing
    };
    struct Taken {
        std::vector<Incoming> messages;  // oldest first
        long long dropped = 0;           // writes dropped since the last take (over the cap)
    };

    // Sets up the client (the client ID of the options, a persistent session the broker keeps
    // for kSessionExpirySeconds while the station is away, last will "<prefix>/status" =
    // "offline", retained) and starts connecting in the background; nullptr and the reason
    // when the options cannot work (TLS file unreadable, ...). A broker that is down is not
    // an error: the link keeps trying and tells why.
    static std::unique_ptr<MqttLink> Start(const MqttOptions& options, std::string& error);
    // Publishes "offline" (retained), disconnects cleanly and stops the network thread.
    ~MqttLink();
    MqttLink(const MqttLink&) = delete;
    MqttLink& operator=(const MqttLink&) = delete;

    // Ends the connection as a clean stop does (the will's message, then DISCONNECT) and
    // connects again at once; nothing is told of it. Nothing happens while not connected.
    void reconnect();
    // Queues a message (QoS 1). 0 when queued, else libmosquitto's reason (MOSQ_ERR_NO_CONN
    // while the broker is away: the retained values are sent again on the next connect).
    int publish(const std::string& topic, const std::string& payload, bool retain);
    // The same, not retained, with the message's id in `mid` for onPublished.
    int publishTracked(const std::string& topic, const std::string& payload, int& mid);
    // Runs on the network thread when the broker acknowledged a QoS 1 message (its id). Must
    // be short and must not call back into the link.
    void onPublished(std::function<void(int)> callback);
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
    // The will's message, acknowledged, then DISCONNECT; endSession: the broker forgets the
    // persistent session too.
    void leaveCleanly(bool endSession);
    int setWill(const MqttOptions::Will& will);
    // Waits, or until the link is stopped; false when stopped.
    bool pause(std::chrono::steady_clock::duration d);
    static void connectCallback(mosquitto*, void* self, int rc, int flags, const mqtt5__property*);
    static void disconnectCallback(mosquitto*, void* self, int rc, const mqtt5__property*);
    static void publishCallback(mosquitto*, void* self, int mid, int reason,
                                const mqtt5__property*);
    static void messageCallback(mosquitto*, void* self, const mosquitto_message* message);
    static void logCallback(mosquitto*, void* self, int level, const char* text);

    MqttOptions options_;
    mosquitto* client_ = nullptr;
    std::thread thread_;
    std::atomic<std::thread::id> networkThread_{};
    std::atomic<bool> stop_{false};
    std::atomic<bool> stopping_{false};  // the clean stop: "offline" and DISCONNECT go out
    std::atomic<bool> connected_{false};
    std::atomic<bool> restart_{false};  // the connection is being left by reconnect()
    std::atomic<int> ackedMid_{0};      // the message the broker acknowledged last
    std::atomic<int> connections_{0};
    std::mutex waitMutex_;
    std::condition_variable wake_;

    // Seen by the callbacks during one connection, read by the network thread after it.
    ConnectionEvent event_;
    ConnectionTeller teller_;

    std::mutex mutex_;        // guards incoming_, dropped_, notices_, onConnect_ and will_
    MqttOptions::Will will_;  // the current connection's
    std::vector<Incoming> incoming_;
    long long dropped_ = 0;
    std::vector<std::string> notices_;
    std::function<void()> onConnect_;
    std::mutex publishedMutex_;  // guards onPublished_
    std::function<void(int)> onPublished_;
};

}  // namespace kova::mqtt
