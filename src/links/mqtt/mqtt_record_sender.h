#pragma once
// Sends the outbox's records to <prefix>/records with QoS 1, on a thread of its own, in
// order. A record leaves the outbox when the broker acknowledged it. After every connect the
// records that waited (the broker was away, or the station was stopped) go first, each marked
// "replayed": true with its original time; until they are all handed to the broker the
// station holds back its tag values (catchingUp()), so a consumer sees history before the
// present. The payload is the record's object with its sequence and the mark in front:
// {"seq":12,"replayed":false,"ts":...,"time":"...","q":"good","values":{...}}.
#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <thread>

#include "links/mqtt/mqtt_link.h"
#include "links/outbox/outbox.h"

namespace kova::mqtt {

class MqttRecordSender {
  public:
    // The most records handed to the broker and not acknowledged yet.
    static constexpr std::size_t kInFlight = 200;

    MqttRecordSender(MqttLink& link, links::Outbox& outbox, std::string prefix);
    ~MqttRecordSender();
    MqttRecordSender(const MqttRecordSender&) = delete;
    MqttRecordSender& operator=(const MqttRecordSender&) = delete;

    // The link's connect callback (network thread): what waited until now is the backlog.
    void connected();
    // True from a connect until the backlog is handed to the broker.
    bool catchingUp() const { return catchingUp_; }
    // Records the broker acknowledged so far (this run).
    long long acknowledged() const { return acknowledged_; }

    // The payload of a record as published.
    static std::string Payload(const links::OutboxRecord& r, bool replayed);

  private:
    void run();
    void acked(int mid);

    MqttLink& link_;
    std::unique_ptr<links::Outbox::Reader> reader_;
    std::string topic_;
    std::atomic<bool> stop_{false};
    std::atomic<bool> catchingUp_{false};
    std::atomic<long long> acknowledged_{0};

    std::mutex mutex_;
    std::condition_variable wake_;
    std::map<int, std::uint64_t> inFlight_;  // message id -> sequence
    std::set<std::uint64_t> ackedAhead_;     // acknowledged past a record still in flight
    std::uint64_t delivered_ = 0;
    std::uint64_t backlogEnd_ = 0;  // records up to this one are replayed
    std::uint64_t sent_ = 0;        // the last sequence handed to the broker
    std::chrono::steady_clock::time_point lastAck_{};
    std::optional<links::OutboxRecord> retry_;
    std::uint64_t generation_ = 0;  // one up at every connect
    std::thread thread_;
};

}  // namespace kova::mqtt
