#pragma once
// What kova-cli run hands to the broker when --mqtt is given: alarm lines as they reach
// the status bar, and after every tick the changed tag values (and the writes that came in).
#include <memory>
#include <string>

#include "cli_run_options.h"
#include "core/station.h"
#include "links/outbox/outbox.h"

namespace kova::cli {

class RunPublisher {
  public:
    virtual ~RunPublisher() = default;
    virtual void alarmLine(const std::string& line) = 0;
    virtual void afterTick(Station& st) = 0;
};

// nullptr with `error` empty when --mqtt was not given; nullptr with the reason when the
// link cannot be set up (or this kova-cli was built without MQTT).
// outbox: where the records wait for the broker (nullptr: no records are sent).
std::unique_ptr<RunPublisher> StartRunPublisher(const RunOptions& o, links::Outbox* outbox,
                                                std::string& error);

}  // namespace kova::cli
