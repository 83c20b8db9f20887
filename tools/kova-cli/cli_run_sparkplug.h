#pragma once
// kova-cli run --sparkplug GROUP/NODE: the station as a Sparkplug B edge node on the broker
// of --mqtt, reading the snapshots of the station's links and sending writes to its inbox.
#include <memory>
#include <string>

#include "cli_run_options.h"
#include "links/command_inbox.h"
#include "links/outbox/outbox.h"
#include "links/snapshot_hub.h"

namespace kova::cli {

// A link that runs on threads of its own until it is destroyed.
class RunningLink {
  public:
    virtual ~RunningLink() = default;
};

// The --sparkplug group of options.
void AddSparkplugOptions(CLI::App& run, RunOptions& o);

// "" when the Sparkplug options fit together, else why not (checked before anything starts).
std::string SparkplugOptionsProblem(const RunOptions& o);

// nullptr with `error` empty when --sparkplug was not given; nullptr with the reason when the
// link cannot start (or this kova-cli was built without it).
// outbox: the records held while the node was not born, sent after its next birth.
std::unique_ptr<RunningLink> StartSparkplugLink(const RunOptions& o, links::SnapshotHub& hub,
                                                links::CommandInbox& inbox, links::Outbox* outbox,
                                                std::string& error);

}  // namespace kova::cli
