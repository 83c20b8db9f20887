#include "links/mqtt/mqtt_record_sender.h"

#include <mosquitto.h>

namespace kova::mqtt {

namespace {
// Records in flight that the broker has not acknowledged for this long, while connected,
// are sent again (a duplicate carries the same sequence and time).
constexpr auto kAckTimeout = std::chrono::seconds(15);
constexpr auto kPoll = std::chrono::milliseconds(50);
constexpr auto kStopWait = std::chrono::seconds(2);
}  // namespace

MqttRecordSender::MqttRecordSender(MqttLink& link, links::Outbox& outbox, std::string prefix)
    : link_(link), reader_(outbox.reader("mqtt")), topic_(std::move(prefix) + "/records") {
    if (!reader_) return;  // another sender reads as "mqtt" already
    delivered_ = reader_->deliveredUpTo();
    sent_ = delivered_;
    link_.onPublished([this](int mid) { acked(mid); });
    thread_ = std::thread(&MqttRecordSender::run, this);
}

MqttRecordSender::~MqttRecordSender() {
    // A clean stop gives the records made so far a moment to reach the broker; what does not
    // stays in the outbox for the next run.
    const auto deadline = std::chrono::steady_clock::now() + kStopWait;
    while (reader_ && link_.connected() && std::chrono::steady_clock::now() < deadline) {
        {
            std::lock_guard lock(mutex_);
            if (delivered_ >= reader_->newest()) break;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    link_.onPublished({});
    stop_ = true;
    wake_.notify_all();
    if (thread_.joinable()) thread_.join();
}

std::string MqttRecordSender::Payload(const links::OutboxRecord& r, bool replayed) {
    std::string p =
        "{\"seq\":" + std::to_string(r.sequence) + ",\"replayed\":" + (replayed ? "true" : "false");
    if (r.body.size() > 2 && r.body.front() == '{') return p + "," + r.body.substr(1);
    return p + "}";
}

void MqttRecordSender::connected() {
    if (!reader_) return;
    std::lock_guard lock(mutex_);
    // What was in flight when the connection ended goes again, in order, before anything
    // newer: the client's own resending of it would otherwise race the records after it.
    // A consumer may see such a record twice, with the same sequence and time.
    inFlight_.clear();
    ackedAhead_.clear();
    retry_.reset();
    reader_->rewind();
    sent_ = delivered_;
    ++generation_;
    backlogEnd_ = reader_->newest();
    catchingUp_ = sent_ < backlogEnd_;
    lastAck_ = std::chrono::steady_clock::now();
    wake_.notify_all();
}

void MqttRecordSender::acked(int mid) {
    std::lock_guard lock(mutex_);
    const auto it = inFlight_.find(mid);
    if (it == inFlight_.end()) return;
    const std::uint64_t seq = it->second;
    inFlight_.erase(it);
    ++acknowledged_;
    lastAck_ = std::chrono::steady_clock::now();
    ackedAhead_.insert(seq);
    // Delivered up to the first record still in flight.
    std::uint64_t upTo = delivered_;
    while (!ackedAhead_.empty() && *ackedAhead_.begin() <= upTo + 1) {
        upTo = std::max(upTo, *ackedAhead_.begin());
        ackedAhead_.erase(ackedAhead_.begin());
    }
    if (upTo > delivered_) {
        delivered_ = upTo;
        reader_->delivered(upTo);
    }
    wake_.notify_all();
}

void MqttRecordSender::run() {
    while (!stop_) {
        {
            std::unique_lock lock(mutex_);
            if (!link_.connected() || inFlight_.size() >= kInFlight) {
                // Acknowledgements that never came (a broker that lost them): send again.
                if (link_.connected() && !inFlight_.empty() &&
                    std::chrono::steady_clock::now() - lastAck_ > kAckTimeout) {
                    inFlight_.clear();
                    ackedAhead_.clear();
                    retry_.reset();
                    reader_->rewind();
                    sent_ = delivered_;
                    lastAck_ = std::chrono::steady_clock::now();
                    continue;
                }
                wake_.wait_for(lock, kPoll);
                continue;
            }
        }
        std::optional<links::OutboxRecord> rec;
        std::uint64_t generation;
        {
            std::lock_guard lock(mutex_);
            generation = generation_;
            if (retry_) rec = std::exchange(retry_, std::nullopt);
        }
        if (!rec) rec = reader_->next(kPoll);
        if (!rec) {
            std::lock_guard lock(mutex_);
            if (sent_ >= backlogEnd_) catchingUp_ = false;
            continue;
        }
        std::unique_lock lock(mutex_);
        // A reconnect meanwhile sends again from the first record not delivered: this one
        // comes again in its turn.
        if (generation != generation_) continue;
        const bool replayed = rec->sequence <= backlogEnd_;
        int mid = 0;
        // Under the lock, so that an acknowledgement cannot come before the id is noted.
        const int rc = link_.publishTracked(topic_, Payload(*rec, replayed), mid);
        if (rc != MOSQ_ERR_SUCCESS) {
            // The broker went away meanwhile: this record goes first when it is back.
            retry_ = std::move(rec);
            wake_.wait_for(lock, kPoll);
            continue;
        }
        if (inFlight_.empty()) lastAck_ = std::chrono::steady_clock::now();
        inFlight_[mid] = rec->sequence;
        sent_ = rec->sequence;
        if (sent_ >= backlogEnd_) catchingUp_ = false;
    }
}

}  // namespace kova::mqtt
