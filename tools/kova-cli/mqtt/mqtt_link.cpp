#include "mqtt/mqtt_link.h"

#include <mosquitto.h>

namespace kova::mqtt {

namespace {

constexpr int kKeepAliveSeconds = 30;
constexpr int kQos = 1;

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

}  // namespace

MqttLink::MqttLink(const MqttOptions& options) : options_(options) {}

std::unique_ptr<MqttLink> MqttLink::Start(const MqttOptions& options, std::string& error) {
    InitLibraryOnce();
    std::unique_ptr<MqttLink> link(new MqttLink(options));
    const std::string id = options.clientId.empty() ? options.prefix : options.clientId;
    link->client_ = mosquitto_new(id.c_str(), true, link.get());
    if (!link->client_) {
        error = "MQTT: cannot create a client";
        return nullptr;
    }
    mosquitto* c = link->client_;
    mosquitto_int_option(c, MOSQ_OPT_PROTOCOL_VERSION, MQTT_PROTOCOL_V311);
    const std::string status = StatusTopic(options);
    int rc = mosquitto_will_set(c, status.c_str(), 7, "offline", kQos, true);
    if (rc != MOSQ_ERR_SUCCESS) {
        error = std::string("MQTT: the last will cannot be set: ") + mosquitto_strerror(rc);
        return nullptr;
    }
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
    mosquitto_reconnect_delay_set(c, 1, 30, true);
    mosquitto_connect_callback_set(c, &MqttLink::connectCallback);
    mosquitto_disconnect_callback_set(c, &MqttLink::disconnectCallback);
    mosquitto_message_callback_set(c, &MqttLink::messageCallback);
    // A broker that is not there yet is no error: the network thread keeps trying.
    rc = mosquitto_connect_async(c, options.host.c_str(), options.port, kKeepAliveSeconds);
    if (rc == MOSQ_ERR_INVAL) {
        error = "MQTT: cannot connect to \"" + options.host + "\"";
        return nullptr;
    }
    // Queued first, so "online" is the first thing the broker hears from this station.
    mosquitto_publish(c, nullptr, status.c_str(), 6, "online", kQos, true);
    rc = mosquitto_loop_start(c);
    if (rc != MOSQ_ERR_SUCCESS) {
        error = std::string("MQTT: the network thread cannot start: ") + mosquitto_strerror(rc);
        return nullptr;
    }
    link->loopStarted_ = true;
    return link;
}

MqttLink::~MqttLink() {
    if (!client_) return;
    if (loopStarted_) {
        if (connected_) {
            // A clean stop says so itself (the broker sends the will only when a client
            // vanishes); the message goes out before the disconnect.
            int mid = 0;
            const std::string status = StatusTopic(options_);
            mosquitto_publish(client_, &mid, status.c_str(), 7, "offline", kQos, true);
        }
        mosquitto_disconnect(client_);
        mosquitto_loop_stop(client_, false);
    }
    mosquitto_destroy(client_);
}

bool MqttLink::publish(const std::string& topic, const std::string& payload, bool retain) {
    const int rc =
        mosquitto_publish(client_, nullptr, topic.c_str(), static_cast<int>(payload.size()),
                          payload.data(), kQos, retain);
    return rc == MOSQ_ERR_SUCCESS;
}

void MqttLink::onConnect(std::function<void()> callback) {
    std::lock_guard lock(mutex_);
    onConnect_ = std::move(callback);
}

std::vector<MqttLink::Incoming> MqttLink::takeIncoming() {
    std::lock_guard lock(mutex_);
    std::vector<Incoming> out;
    out.swap(incoming_);
    return out;
}

void MqttLink::connectCallback(mosquitto* c, void* self, int rc) {
    auto* link = static_cast<MqttLink*>(self);
    if (rc != 0) return;  // refused (bad credentials, ...): the loop tries again later
    // The subscription goes out before anything the station publishes as connected, so a
    // peer that has seen a tag value knows its writes will be heard.
    if (link->options_.writes) {
        const std::string sets = link->options_.prefix + "/set/+";
        mosquitto_subscribe(c, nullptr, sets.c_str(), kQos);
    }
    const std::string status = StatusTopic(link->options_);
    mosquitto_publish(c, nullptr, status.c_str(), 6, "online", kQos, true);
    ++link->connections_;
    link->connected_ = true;
    // Called under the lock, so that whoever replaces the callback (a station going away)
    // waits until a running call has finished.
    std::lock_guard lock(link->mutex_);
    if (link->onConnect_) link->onConnect_();
}

void MqttLink::disconnectCallback(mosquitto*, void* self, int) {
    static_cast<MqttLink*>(self)->connected_ = false;
}

void MqttLink::messageCallback(mosquitto*, void* self, const mosquitto_message* message) {
    auto* link = static_cast<MqttLink*>(self);
    Incoming in;
    in.topic = message->topic ? message->topic : "";
    if (message->payload && message->payloadlen > 0)
        in.payload.assign(static_cast<const char*>(message->payload),
                          static_cast<std::size_t>(message->payloadlen));
    std::lock_guard lock(link->mutex_);
    // A flood of writes cannot grow memory without bound: past this many unread ones the
    // oldest are the ones kept, the rest dropped.
    if (link->incoming_.size() < 10000) link->incoming_.push_back(std::move(in));
}

}  // namespace kova::mqtt
