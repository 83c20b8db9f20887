#include "links/mqtt/mqtt_link.h"

#include <mosquitto.h>
#include <mqtt_protocol.h>

#include <cerrno>
#include <cstring>

#include "links/mqtt/tcp_probe.h"

namespace kova::mqtt {

namespace {

constexpr int kKeepAliveSeconds = 30;
constexpr int kQos = 1;
// How long a clean stop waits for "offline" and the DISCONNECT to go out.
constexpr auto kCleanStopWait = std::chrono::seconds(2);
// How long a clean stop waits for the broker to take the goodbye message.
constexpr auto kGoodbyeWait = std::chrono::seconds(1);
// How long a connection left on purpose waits before the next one.
constexpr auto kReconnectWait = std::chrono::milliseconds(500);

// libmosquitto wants one library-wide initialisation before the first client.
void InitLibraryOnce() {
    static const int once = [] {
        mosquitto_lib_init();
        return 0;
    }();
    (void)once;
}

std::string StatusTopic(const MqttOptions& o) {
    return o.prefix + "/status";
}

bool PlainStatus(const MqttOptions& o) {
    return !o.willForConnect;
}

// The first connect carries the session's expiry (MQTT 5 ends a session at once without
// it); the library sends the same properties again on every reconnect.
int connectFirst(mosquitto* c, const MqttOptions& o, bool mqtt311) {
    // MQTT 3.1.1 keeps a session without being told for how long, and takes no properties
    // (this also clears those of the MQTT 5 connect before).
    if (mqtt311)
        return mosquitto_connect_bind_v5(c, o.host.c_str(), o.port, kKeepAliveSeconds, nullptr,
                                         nullptr);
    mosquitto_property* props = nullptr;
    if (o.persistentSession)
        mosquitto_property_add_int32(&props, MQTT_PROP_SESSION_EXPIRY_INTERVAL,
                                     MqttLink::kSessionExpirySeconds);
    const int rc =
        mosquitto_connect_bind_v5(c, o.host.c_str(), o.port, kKeepAliveSeconds, nullptr, props);
    mosquitto_property_free_all(&props);
    return rc;
}

}  // namespace

MqttLink::MqttLink(const MqttOptions& options)
    : options_(options),
      teller_(options.host, options.port, options.clientId, !options.caFile.empty()) {}

std::unique_ptr<MqttLink> MqttLink::Start(const MqttOptions& options, std::string& error) {
    InitLibraryOnce();
    std::unique_ptr<MqttLink> link(new MqttLink(options));
    if (options.clientId.empty()) {
        error = "MQTT: no client ID";
        return nullptr;
    }
    // A persistent session: the broker keeps the subscription and the QoS 1 messages for the
    // station across the station's restarts and the broker's own (with its persistence on).
    link->client_ = mosquitto_new(options.clientId.c_str(), !options.persistentSession, link.get());
    if (!link->client_) {
        error = "MQTT: cannot create a client with the ID \"" + options.clientId + "\"";
        return nullptr;
    }
    mosquitto* c = link->client_;
    // MQTT 5 says why the broker closes a connection (a session taken over among others).
    mosquitto_int_option(c, MOSQ_OPT_PROTOCOL_VERSION, MQTT_PROTOCOL_V5);
    // The network loop is this link's own thread; publishing from the scan only queues.
    mosquitto_threaded_set(c, true);
    if (PlainStatus(options)) {
        link->will_ = {StatusTopic(options), "offline", true};
        const int rc = link->setWill(link->will_);
        if (rc != MOSQ_ERR_SUCCESS) {
            error = std::string("MQTT: the last will cannot be set: ") + mosquitto_strerror(rc);
            return nullptr;
        }
    }
    int rc = MOSQ_ERR_SUCCESS;
    if (!options.username.empty() || !options.passwordFile.empty()) {
        std::string password;
        if (!options.passwordFile.empty() &&
            !ReadPasswordFile(options.passwordFile, password, error))
            return nullptr;
        rc = mosquitto_username_pw_set(
            c, options.username.empty() ? nullptr : options.username.c_str(),
            options.passwordFile.empty() ? nullptr : password.c_str());
        if (rc != MOSQ_ERR_SUCCESS) {
            error = std::string("MQTT: user name and password: ") + mosquitto_strerror(rc);
            return nullptr;
        }
    }
    if (!options.caFile.empty()) {
        rc = mosquitto_tls_set(c, options.caFile.c_str(), nullptr, nullptr, nullptr, nullptr);
        if (rc != MOSQ_ERR_SUCCESS) {
            error = options.caFile + ": cannot be used as the broker's CA file (" +
                    mosquitto_strerror(rc) + ")";
            return nullptr;
        }
    }
    mosquitto_connect_v5_callback_set(c, &MqttLink::connectCallback);
    mosquitto_disconnect_v5_callback_set(c, &MqttLink::disconnectCallback);
    mosquitto_message_callback_set(c, &MqttLink::messageCallback);
    mosquitto_publish_v5_callback_set(c, &MqttLink::publishCallback);
    mosquitto_log_callback_set(c, &MqttLink::logCallback);
    link->thread_ = std::thread(&MqttLink::run, link.get());
    return link;
}

MqttLink::~MqttLink() {
    if (!client_) return;
    if (thread_.joinable()) {
        stopping_ = true;
        if (connected_) leaveCleanly(true);
        {
            std::unique_lock lock(waitMutex_);
            wake_.notify_all();
        }
        // The network thread leaves once the connection has ended; a broker that does not
        // take the goodbye in time does not hold the station up.
        const auto deadline = std::chrono::steady_clock::now() + kCleanStopWait;
        while (std::chrono::steady_clock::now() < deadline && connected_)
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        stop_ = true;
        {
            std::unique_lock lock(waitMutex_);
            wake_.notify_all();
        }
        thread_.join();
    }
    mosquitto_destroy(client_);
}

void MqttLink::leaveCleanly(bool endSession) {
    // A clean stop says so itself (the broker sends the will only when a client vanishes);
    // the will's message goes out before the disconnect.
    MqttOptions::Will will;
    {
        std::lock_guard lock(mutex_);
        will = will_;
    }
    int mid = 0;
    if (!will.topic.empty() &&
        mosquitto_publish(client_, &mid, will.topic.c_str(), static_cast<int>(will.payload.size()),
                          will.payload.data(), kQos, will.retain) == MOSQ_ERR_SUCCESS) {
        // Disconnecting before the broker took it would leave it queued here, and the client
        // would send it again on the next connection (a stale goodbye after a new hello).
        const auto deadline = std::chrono::steady_clock::now() + kGoodbyeWait;
        while (connected_ && ackedMid_ != mid && std::chrono::steady_clock::now() < deadline)
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    // A station stopped on purpose ends its session: writes sent while it is stopped must not
    // be applied when it starts again.
    mosquitto_property* props = nullptr;
    if (endSession && options_.persistentSession && !teller_.useMqtt311())
        mosquitto_property_add_int32(&props, MQTT_PROP_SESSION_EXPIRY_INTERVAL, 0);
    mosquitto_disconnect_v5(client_, 0, props);
    mosquitto_property_free_all(&props);
}

void MqttLink::reconnect() {
    if (!connected_) return;
    restart_ = true;
    leaveCleanly(false);
}

int MqttLink::setWill(const MqttOptions::Will& will) {
    return mosquitto_will_set(client_, will.topic.c_str(), static_cast<int>(will.payload.size()),
                              will.payload.data(), kQos, will.retain);
}

bool MqttLink::pause(std::chrono::steady_clock::duration d) {
    std::unique_lock lock(waitMutex_);
    return !wake_.wait_for(lock, d, [this] { return stop_ || stopping_; });
}

void MqttLink::run() {
    networkThread_ = std::this_thread::get_id();
    mosquitto* c = client_;
    bool first = true;
    bool spoke311 = false;
    while (!stop_ && !stopping_) {
        const bool previousAccepted = event_.accepted;
        event_ = ConnectionEvent{};
        if (options_.willForConnect) {
            // Each connection has a will of its own (a new death certificate number).
            MqttOptions::Will will = options_.willForConnect(previousAccepted);
            const int willRc = setWill(will);
            if (willRc != MOSQ_ERR_SUCCESS)
                note(std::string("the last will cannot be set: ") + mosquitto_strerror(willRc));
            std::lock_guard lock(mutex_);
            will_ = std::move(will);
        }
        errno = 0;
        int rc = MOSQ_ERR_SUCCESS;
        int err = 0;
        if (first) {
            // The first connect waits for TCP without a limit: the network is asked first.
            const TcpProbe probe = ProbeTcp(options_.host, options_.port, options_.connectWait,
                                            [this] { return stop_ || stopping_; });
            if (probe.outcome == TcpProbe::Outcome::Stopped) break;
            if (probe.outcome == TcpProbe::Outcome::Reached) {
                errno = 0;
                rc = connectFirst(c, options_, teller_.useMqtt311());
                err = errno;
                // Later attempts reconnect with what this one gave the library.
                first = false;
            } else {
                rc = probe.outcome == TcpProbe::Outcome::NoSuchHost ? MOSQ_ERR_EAI : MOSQ_ERR_ERRNO;
                err = probe.err;
            }
        } else {
            rc = mosquitto_reconnect_async(c);
            err = errno;
        }
        if (rc == MOSQ_ERR_SUCCESS) {
            // Until the connection ends: a clean stop ends it with "offline" and DISCONNECT.
            while (!stop_) {
                errno = 0;
                rc = mosquitto_loop(c, 100, 1);
                err = errno;
                if (rc != MOSQ_ERR_SUCCESS) break;
                if (connected_) teller_.connectedAt(std::chrono::steady_clock::now());
            }
            connected_ = false;
        }
        if (stop_ || stopping_) break;
        if (restart_.exchange(false)) {
            // Left on purpose (reconnect()): no failure to tell, and back at once.
            if (!pause(kReconnectWait)) break;
            continue;
        }
        event_.rc = rc;
        event_.err = err;
        const ConnectionTeller::Next next =
            teller_.failed(event_, std::chrono::steady_clock::now());
        if (!next.tell.empty()) note(next.tell);
        if (teller_.useMqtt311() && !spoke311) {
            // A new first connect: MQTT 3.1.1 carries no properties.
            mosquitto_int_option(c, MOSQ_OPT_PROTOCOL_VERSION, MQTT_PROTOCOL_V311);
            spoke311 = true;
            first = true;
        }
        if (!pause(next.wait)) break;
    }
}

void MqttLink::note(const std::string& line) {
    std::lock_guard lock(mutex_);
    notices_.push_back(line);
}

int MqttLink::publish(const std::string& topic, const std::string& payload, bool retain) {
    return mosquitto_publish(client_, nullptr, topic.c_str(), static_cast<int>(payload.size()),
                             payload.data(), kQos, retain);
}

int MqttLink::publishTracked(const std::string& topic, const std::string& payload, int& mid) {
    return mosquitto_publish(client_, &mid, topic.c_str(), static_cast<int>(payload.size()),
                             payload.data(), kQos, false);
}

void MqttLink::onPublished(std::function<void(int)> callback) {
    std::lock_guard lock(publishedMutex_);
    onPublished_ = std::move(callback);
}

void MqttLink::publishCallback(mosquitto*, void* self, int mid, int, const mqtt5__property*) {
    auto* link = static_cast<MqttLink*>(self);
    // The goodbye is the last message before DISCONNECT: when it is the one acknowledged last,
    // the broker has it.
    link->ackedMid_ = mid;
    std::lock_guard lock(link->publishedMutex_);
    if (link->onPublished_) link->onPublished_(mid);
}

void MqttLink::onConnect(std::function<void()> callback) {
    std::lock_guard lock(mutex_);
    onConnect_ = std::move(callback);
}

MqttLink::Taken MqttLink::takeIncoming() {
    std::lock_guard lock(mutex_);
    Taken out;
    out.messages.swap(incoming_);
    out.dropped = std::exchange(dropped_, 0);
    return out;
}

long long MqttLink::writesWaiting() {
    std::lock_guard lock(mutex_);
    return static_cast<long long>(incoming_.size()) + dropped_;
}

std::vector<std::string> MqttLink::takeNotices() {
    std::lock_guard lock(mutex_);
    std::vector<std::string> out;
    out.swap(notices_);
    return out;
}

void MqttLink::connectCallback(mosquitto* c, void* self, int rc, int, const mqtt5__property*) {
    auto* link = static_cast<MqttLink*>(self);
    if (rc != 0) {
        link->event_.refusal = rc;  // refused: the network thread says why
        return;
    }
    link->event_.accepted = true;
    // The subscription goes out before anything the station publishes as connected, so a
    // peer that has seen a tag value knows its writes will be heard.
    if (link->options_.writes) {
        const std::string sets = link->options_.prefix + "/set/+";
        mosquitto_subscribe(c, nullptr, sets.c_str(), kQos);
    }
    for (const std::string& topic : link->options_.subscriptions)
        mosquitto_subscribe(c, nullptr, topic.c_str(), kQos);
    if (PlainStatus(link->options_)) {
        const std::string status = StatusTopic(link->options_);
        mosquitto_publish(c, nullptr, status.c_str(), 6, "online", kQos, true);
    }
    ++link->connections_;
    link->connected_ = true;
    const std::string again = link->teller_.accepted(std::chrono::steady_clock::now());
    // Called under the lock, so that whoever replaces the callback (a station going away)
    // waits until a running call has finished.
    std::lock_guard lock(link->mutex_);
    if (!again.empty()) link->notices_.push_back(again);
    if (link->onConnect_) link->onConnect_();
}

void MqttLink::disconnectCallback(mosquitto*, void* self, int rc, const mqtt5__property*) {
    auto* link = static_cast<MqttLink*>(self);
    link->connected_ = false;
    // A DISCONNECT from the broker carries an MQTT reason (0x80 and above); the library's own
    // codes are small numbers.
    if (rc >= 0x80) link->event_.disconnectReason = rc;
}

void MqttLink::messageCallback(mosquitto*, void* self, const mosquitto_message* message) {
    auto* link = static_cast<MqttLink*>(self);
    Incoming in;
    // Nothing is copied beyond what a write can be: a topic of the prefix, "/set/" and a tag
    // name, a payload of a number.
    const char* topic = message->topic ? message->topic : "";
    const std::size_t keep = link->options_.maxTopicBytes > 0
                                 ? link->options_.maxTopicBytes
                                 : link->options_.prefix.size() + 5 + kMaxTopicTail;
    const std::size_t length = std::strlen(topic);
    in.topicCut = length > keep;
    in.topic.assign(topic, in.topicCut ? keep : length);
    in.retained = message->retain;
    in.payloadBytes = message->payloadlen > 0 ? static_cast<std::size_t>(message->payloadlen) : 0;
    in.payloadTooLong = in.payloadBytes > link->options_.maxPayloadBytes;
    if (!in.payloadTooLong && message->payload && in.payloadBytes > 0)
        in.payload.assign(static_cast<const char*>(message->payload), in.payloadBytes);
    std::lock_guard lock(link->mutex_);
    // A flood of writes cannot grow memory without bound: past this many unread ones the
    // oldest are the ones kept, the rest dropped and counted.
    if (link->incoming_.size() < kMaxWritesWaiting)
        link->incoming_.push_back(std::move(in));
    else
        ++link->dropped_;
}

void MqttLink::logCallback(mosquitto*, void* self, int level, const char* text) {
    // The library's own error words (OpenSSL's on a TLS failure) tell the user more than
    // its return code.
    // Only what the network thread logs belongs to the connection it watches.
    auto* link = static_cast<MqttLink*>(self);
    if (level == MOSQ_LOG_ERR && text && link->networkThread_ == std::this_thread::get_id())
        link->event_.errorLog = text;
}

}  // namespace kova::mqtt
