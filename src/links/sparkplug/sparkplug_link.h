#pragma once
// The station as a Sparkplug B edge node on a broker. Its own thread reads the snapshots the
// scan leaves in the hub and never touches the station: it births after every connect (and
// only while the primary host, when one is named, says it is online), sends what changed
// after each tick, answers a rebirth command, and hands writes from NCMD to the station's
// command inbox, where the scan applies them with the readings screens' rules. Every
// connection has its own bdSeq, 0..255, in its last will (the NDEATH) and in its births.
#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <thread>

#include "links/command_inbox.h"
#include "links/mqtt/mqtt_link.h"
#include "links/snapshot_hub.h"
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
                                                LineOut lines, LineOut notices, std::string& error);
    // Sends the NDEATH, disconnects and stops the thread.
    ~SparkplugLink();
    SparkplugLink(const SparkplugLink&) = delete;
    SparkplugLink& operator=(const SparkplugLink&) = delete;

    // The name every command line starts with.
    static constexpr const char* kCommandSource = "sparkplug NCMD";

  private:
    SparkplugLink(const SparkplugOptions& options, links::SnapshotHub& hub,
                  links::CommandInbox& inbox, LineOut lines, LineOut notices);
    mqtt::MqttOptions::Will nextWill();
    void run();

    SparkplugOptions options_;
    links::SnapshotHub& hub_;
    links::CommandInbox& inbox_;
    LineOut lines_;
    LineOut notices_;
    std::atomic<unsigned> nextBdSeq_{0};
    std::atomic<std::uint8_t> bdSeq_{0};  // of the connection made last
    std::unique_ptr<mqtt::MqttLink> link_;
    std::atomic<bool> stop_{false};
    std::thread thread_;
};

}  // namespace kova::sparkplug
