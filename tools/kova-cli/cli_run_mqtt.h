#pragma once
// What kova-cli run hands to the broker when --mqtt is given: alarm lines as they reach
// the status bar, and after every tick the changed tag values (and the writes that came in).
#include <memory>
#include <string>

#include "cli_run_options.h"
#include "core/station.h"
#ifdef KOVA_WITH_MQTT
#include "links/mqtt/mqtt_options.h"
#endif
#include "links/outbox/outbox.h"

namespace kova::cli {

class RunPublisher {
  public:
    virtual ~RunPublisher() = default;
    virtual void alarmLine(const std::string& line) = 0;
    virtual void afterTick(Station& st) = 0;
};

#ifdef KOVA_WITH_MQTT
// The broker, login, TLS and client ID of --mqtt and its companions; `prefix` names the
// station in its default client ID. False and the message when an option cannot work.
bool MqttOptionsFrom(const RunOptions& o, const std::string& prefix, mqtt::MqttOptions& m,
                     std::string& error);
#endif

// nullptr with `error` empty when --mqtt was not given, or --sparkplug was (the station then
// speaks Sparkplug B on the broker instead of its plain topics); nullptr with the reason when the
// link cannot be set up (or this kova-cli was built without MQTT).
// outbox: where the records wait for the broker (nullptr: no records are sent).
std::unique_ptr<RunPublisher> StartRunPublisher(const RunOptions& o, links::Outbox* outbox,
                                                std::string& error);

}  // namespace kova::cli
