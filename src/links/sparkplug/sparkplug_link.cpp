#include "links/sparkplug/sparkplug_link.h"

#include <mosquitto.h>

#include <algorithm>
#include <chrono>
#include <future>

#include "links/link_command.h"
#include "links/sparkplug/edge_node.h"
#include "links/sparkplug/held_record.h"
#include "links/sparkplug/host_state.h"
#include "links/sparkplug/node_command.h"

namespace kova::sparkplug {

namespace {

// How long the thread waits for a new snapshot before it looks at the broker's messages.
constexpr auto kIdleWait = std::chrono::milliseconds(50);
// Held records sent in one pass; the rest follow in the next ones, so commands and live data
// are not held up by a long backlog.
constexpr int kHistoryPerPass = 200;

std::uint64_t NowUtcMillis() {
    using namespace std::chrono;
    return static_cast<std::uint64_t>(
        duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count());
}

}  // namespace

SparkplugLink::SparkplugLink(const SparkplugOptions& options, links::SnapshotHub& hub,
                             links::CommandInbox& inbox, LineOut lines, LineOut notices)
    : options_(options),
      hub_(hub),
      inbox_(inbox),
      lines_(std::move(lines)),
      notices_(std::move(notices)) {}

std::unique_ptr<SparkplugLink> SparkplugLink::Start(mqtt::MqttOptions connection,
                                                    const SparkplugOptions& options,
                                                    links::SnapshotHub& hub,
                                                    links::CommandInbox& inbox, LineOut lines,
                                                    LineOut notices, std::string& error,
                                                    links::Outbox* outbox) {
    std::unique_ptr<SparkplugLink> self(
        new SparkplugLink(options, hub, inbox, std::move(lines), std::move(notices)));
    SparkplugLink* node = self.get();
    connection.writes = false;             // no <prefix>/set/+: commands come as NCMD
    connection.persistentSession = false;  // every edge node session starts clean
    connection.willForConnect = [node](bool previousAccepted) {
        return node->nextWill(previousAccepted);
    };
    connection.subscriptions = {
        sparkplug::NodeTopic(options.name, sparkplug::NodeMessage::Command)};
    if (!options.hostId.empty())
        connection.subscriptions.push_back(sparkplug::HostStateTopic(options.hostId));
    connection.maxPayloadBytes = sparkplug::kMaxCommandPayload;
    // The longest topic taken is the longest of the two subscribed to.
    connection.maxTopicBytes = 0;
    for (const std::string& t : connection.subscriptions)
        connection.maxTopicBytes = std::max(connection.maxTopicBytes, t.size());
    if (outbox) self->history_ = outbox->reader("sparkplug");
    self->link_ = mqtt::MqttLink::Start(connection, error);
    if (!self->link_) return nullptr;
    self->thread_ = std::thread(&SparkplugLink::run, node);
    return self;
}

SparkplugLink::~SparkplugLink() {
    stop_ = true;
    if (thread_.joinable()) thread_.join();
    link_.reset();  // the NDEATH, then DISCONNECT
}

mqtt::MqttOptions::Will SparkplugLink::nextWill(bool previousAccepted) {
    // bdSeq counts the connections the broker accepted, 0..255 and round again; the birth of
    // the connection carries the same number, so a host can match a death with its birth.
    // An attempt that never got through (the broker down) used no number.
    if (previousAccepted) bdSeq_ = static_cast<std::uint8_t>(bdSeq_ + 1);
    const std::uint8_t bdSeq = bdSeq_;
    return {sparkplug::NodeTopic(options_.name, sparkplug::NodeMessage::Death),
            sparkplug::DeathPayload(bdSeq, NowUtcMillis()), false};
}

bool SparkplugLink::sendHistory(EdgeNode& node, const std::string& topic, std::uint64_t liveFrom) {
    for (int i = 0; i < kHistoryPerPass; ++i) {
        const std::optional<links::OutboxRecord> r = history_->next(std::chrono::milliseconds(0));
        if (!r) return true;
        if (r->sequence <= liveFrom) {
            const std::string payload = node.history(
                HeldValuesOf(r->body), r->timeMs > 0 ? static_cast<std::uint64_t>(r->timeMs) : 0);
            if (!payload.empty() && link_->publish(topic, payload, false) != MOSQ_ERR_SUCCESS) {
                history_->rewind();  // sent again after the next birth
                return false;
            }
        }
        history_->delivered(r->sequence);
    }
    return true;
}

void SparkplugLink::run() {
    using sparkplug::NodeMessage;
    const std::string birthTopic = sparkplug::NodeTopic(options_.name, NodeMessage::Birth);
    const std::string dataTopic = sparkplug::NodeTopic(options_.name, NodeMessage::Data);
    const std::string commandTopic = sparkplug::NodeTopic(options_.name, NodeMessage::Command);
    const std::string stateTopic =
        options_.hostId.empty() ? std::string() : sparkplug::HostStateTopic(options_.hostId);
    sparkplug::EdgeNode node;
    sparkplug::HostWatch host;
    std::uint64_t looked = 0;  // the newest snapshot seen
    std::uint64_t seen = 0;    // the newest snapshot sent
    int connections = 0;
    bool born = false;
    std::uint64_t liveFrom = 0;  // held records up to this one were appended before the birth
    bool rebirth = false;
    bool retainedTold = false;
    std::string stateProblemTold;
    auto publish = [&](const std::string& topic, const std::string& payload) {
        return link_->publish(topic, payload, false) == MOSQ_ERR_SUCCESS;
    };

    while (!stop_) {
        const auto snapshot = hub_.waitNewer(looked, kIdleWait);
        if (snapshot) looked = snapshot->sequence;
        for (const std::string& line : link_->takeNotices()) notices_(line);

        // A new connection is noticed before its messages are read: the host's retained state
        // that arrives on it counts for it.
        if (link_->connections() != connections) {
            connections = link_->connections();
            born = born_ = false;
            host.reconnected();
        }
        mqtt::MqttLink::Taken taken = link_->takeIncoming();
        if (taken.dropped > 0)
            notices_(std::to_string(taken.dropped) + " commands were dropped: more than " +
                     std::to_string(mqtt::MqttLink::kMaxWritesWaiting) + " arrived at once");
        for (const mqtt::MqttLink::Incoming& in : taken.messages) {
            if (!stateTopic.empty() && in.topic == stateTopic && !in.topicCut) {
                std::string why;
                const auto state =
                    in.payloadTooLong ? std::nullopt : sparkplug::ParseHostState(in.payload, why);
                if (!state) {
                    if (in.payloadTooLong) why = "a STATE payload too large to read";
                    if (why != stateProblemTold)
                        notices_(stateTopic + ": ignored: " + links::PrintableText(why));
                    stateProblemTold = why;
                    continue;
                }
                if (!host.seen(*state)) continue;
                if (host.online()) {
                    notices_("the primary host " + options_.hostId + " is online: births follow");
                } else {
                    notices_("the primary host " + options_.hostId +
                             " is offline: the node leaves the broker (NDEATH) and waits for it");
                    if (born) link_->reconnect();
                    born = born_ = false;
                }
                continue;
            }
            if (in.topic != commandTopic || in.topicCut) continue;
            // A retained command would run again at every connect.
            if (in.retained) {
                if (!retainedTold)
                    lines_(std::string(kCommandSource) +
                           ": ignored: a retained command is never applied (further ones "
                           "are ignored without a word)");
                retainedTold = true;
                continue;
            }
            sparkplug::NodeCommand c = sparkplug::ReadNodeCommand(in.payload, in.payloadBytes,
                                                                  options_.writes, kCommandSource);
            for (const std::string& line : c.refusals) lines_(line);
            if (c.rebirth) {
                rebirth = true;
                lines_(std::string(kCommandSource) + ": " + sparkplug::kRebirthMetric +
                       ": a new birth follows");
            }
            for (links::LinkCommand& w : c.writes) {
                // The scan applies it and prints its line; a full inbox answers at once.
                std::future<links::CommandResult> result = inbox_.submit(std::move(w));
                if (result.wait_for(std::chrono::seconds(0)) == std::future_status::ready)
                    lines_(result.get().line);
            }
        }

        if (!link_->connected()) {
            born = born_ = false;
            continue;
        }
        for (const std::string& line : node.takeNotices()) notices_(line);
        const auto latest = hub_.latest();
        if (!latest) continue;
        if (!stateTopic.empty() && !host.online()) continue;
        if (!born || rebirth || node.needsRebirth(*latest)) {
            if (!born && history_) liveFrom = history_->newest();
            born = publish(birthTopic, node.birth(*latest, bdSeq_));
            born_ = born;
            rebirth = false;
            seen = latest->sequence;
            continue;
        }
        if (history_ && !sendHistory(node, dataTopic, liveFrom)) continue;
        if (latest->sequence <= seen) continue;
        seen = latest->sequence;
        const std::string data = node.data(*latest);
        if (!data.empty()) publish(dataTopic, data);
    }
}

}  // namespace kova::sparkplug
