#pragma once
// What kova-cli run adds for the station's outward links: after every tick the commands
// that came in are applied (each printing its line) and a snapshot of the station is
// published; with --http the station's web page serves from those snapshots.
#include <memory>
#include <string>

#include "cli_run_options.h"
#include "core/station.h"
#include "links/outbox/outbox.h"

namespace kova::cli {

class RunLinks {
  public:
    virtual ~RunLinks() = default;
    // On the scan's thread, after each tick.
    virtual void afterTick(Station& st, long long lateTicks) = 0;
};

// nullptr with `error` empty when no link was asked for; nullptr with the reason when one
// cannot start (or this kova-cli was built without it).
// outbox: the records held for the links (nullptr: none are kept).
std::unique_ptr<RunLinks> StartRunLinks(const RunOptions& o, links::Outbox* outbox,
                                        std::string& error);

}  // namespace kova::cli
