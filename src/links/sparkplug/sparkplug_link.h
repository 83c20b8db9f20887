#pragma once
// The station as a Sparkplug B edge node on a broker. Its own thread reads the snapshots the
// scan leaves in the hub and never touches the station: it births after every connect (and
// only while the primary host, when one is named, says it is online), sends what changed
// after each tick, answers a rebirth command, and hands writes from NCMD to the station's
// command inbox, where the scan applies them with the readings screens' rules. Every
// connection has its own bdSeq, 0..255, in its last will (the NDEATH) and in its births.
// With the station's outbox, the records held while the node was not born (the broker away,
// the primary host offline) follow the next birth as NDATA marked historical, in order, each
// with its own time.
#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <thread>

#include "links/command_inbox.h"
#include "links/mqtt/mqtt_link.h"
#include "links/outbox/outbox.h"
#include "links/snapshot_hub.h"
#include "links/sparkplug/edge_node.h"
#include "links/sparkplug/sparkplug_names.h"

namespace kova::sparkplug {

struct SparkplugOptions {
    sparkplug::NodeName name;
    std::string hostId;   // "": no primary host to wait for
    bool writes = false;  // NCMD may set tags (--mqtt-writes)
};

class SparkplugLink {
  public:
    using LineOut = std::function<void(const std::string&)>;
    // `lines` takes the lines that name their source (a command's outcome); `notices` what
    // the user should hear of the connection. Both are called from the link's own thread.
    static std::unique_ptr<SparkplugLink> Start(mqtt::MqttOptions connection,
                                                const SparkplugOptions& options,
                                                links::SnapshotHub& hub, links::CommandInbox& inbox,
                                                LineOut lines, LineOut notices, std::string& error,
                                                links::Outbox* outbox = nullptr);
    // Sends the NDEATH, disconnects and stops the thread.
    ~SparkplugLink();
    SparkplugLink(const SparkplugLink&) = delete;
    SparkplugLink& operator=(const SparkplugLink&) = delete;

    // The node's birth went out on the current connection (and its host is online).
    bool born() const { return born_; }

    // The name every command line starts with.
    static constexpr const char* kCommandSource = "sparkplug NCMD";

  private:
    SparkplugLink(const SparkplugOptions& options, links::SnapshotHub& hub,
                  links::CommandInbox& inbox, LineOut lines, LineOut notices);
    mqtt::MqttOptions::Will nextWill(bool previousAccepted);
    void run();
    // Sends held records that were appended before the birth (up to `liveFrom`) as
    // historical data; later ones were live when the data went out and are only marked
    // delivered. False when the broker took no more.
    bool sendHistory(EdgeNode& node, const std::string& topic, std::uint64_t liveFrom);

    SparkplugOptions options_;
    links::SnapshotHub& hub_;
    links::CommandInbox& inbox_;
    LineOut lines_;
    LineOut notices_;
    std::atomic<std::uint8_t> bdSeq_{0};              // of the connection made last
    std::unique_ptr<links::Outbox::Reader> history_;  // before link_: stops after it
    std::unique_ptr<mqtt::MqttLink> link_;
    std::atomic<bool> stop_{false};
    std::atomic<bool> born_{false};
    std::thread thread_;
};

}  // namespace kova::sparkplug
