#include "cli_run_sparkplug.h"

#include <CLI/CLI.hpp>
#include <cstdio>

#ifdef KOVA_WITH_SPARKPLUG
#include "cli_run_mqtt.h"
#include "links/sparkplug/sparkplug_link.h"
#include "links/sparkplug/sparkplug_names.h"
#endif

namespace kova::cli {

void AddSparkplugOptions(CLI::App& run, RunOptions& o) {
    const char* group = "Sparkplug B (see docs/sparkplug.md)";
    run.add_option_function<std::string>(
           "--sparkplug", [&o](const std::string& v) { o.sparkplug = v; },
           "Be the Sparkplug B edge node GROUP/NODE on the broker of --mqtt (instead of the "
           "plain topics); with --mqtt-writes, NCMD may set outputs and variables")
        ->type_name("GROUP/NODE")
        ->group(group);
    run.add_option_function<std::string>(
           "--sparkplug-host", [&o](const std::string& v) { o.sparkplugHost = v; },
           "Publish births and data only while the primary host ID says it is online "
           "(spBv1.0/STATE/ID)")
        ->type_name("ID")
        ->group(group);
}

std::string SparkplugOptionsProblem(const RunOptions& o) {
    if (!o.sparkplug) {
        if (o.sparkplugHost) return "--sparkplug-host needs --sparkplug GROUP/NODE";
        return {};
    }
    if (!o.mqttBroker) return "--sparkplug needs the broker: --mqtt HOST[:PORT]";
    if (o.mqttPrefix)
        return "--mqtt-prefix does not go with --sparkplug: its topics are "
               "spBv1.0/GROUP/...";
    if (o.mqttFormat != "plain")
        return "--mqtt-format does not go with --sparkplug: its payloads are Sparkplug B's";
#ifdef KOVA_WITH_SPARKPLUG
    sparkplug::NodeName name;
    std::string error;
    if (!sparkplug::ParseNodeName(*o.sparkplug, name, error)) return error;
    if (o.sparkplugHost)
        if (const std::string why = sparkplug::IdProblem(*o.sparkplugHost); !why.empty())
            return "--sparkplug-host: the host ID \"" + links::PrintableText(*o.sparkplugHost) +
                   "\" cannot be used: " + why;
    return {};
#else
    return "--sparkplug: this kova-cli was built without Sparkplug B (libprotobuf)";
#endif
}

std::unique_ptr<RunningLink> StartSparkplugLink(const RunOptions& o, links::SnapshotHub& hub,
                                                links::CommandInbox& inbox, links::Outbox* outbox,
                                                std::string& error) {
    error = SparkplugOptionsProblem(o);
    if (!error.empty() || !o.sparkplug) return nullptr;
#ifdef KOVA_WITH_SPARKPLUG
    class Running final : public RunningLink {
      public:
        std::unique_ptr<sparkplug::SparkplugLink> link;
    };
    sparkplug::SparkplugOptions s;
    sparkplug::ParseNodeName(*o.sparkplug, s.name, error);
    s.hostId = o.sparkplugHost.value_or("");
    s.writes = o.mqttWrites;
    mqtt::MqttOptions m;
    if (!MqttOptionsFrom(
            o, std::string(sparkplug::kNamespace) + "/" + s.name.group + "/" + s.name.node, m,
            error))
        return nullptr;
    auto running = std::make_unique<Running>();
    running->link = sparkplug::SparkplugLink::Start(
        m, s, hub, inbox,
        [](const std::string& line) {
            std::printf("%s\n", line.c_str());
            std::fflush(stdout);
        },
        [](const std::string& line) {
            std::fprintf(stderr, "kova-cli: sparkplug: %s\n", line.c_str());
            std::fflush(stderr);
        },
        error, outbox);
    if (!running->link) return nullptr;
    return running;
#else
    (void)hub;
    (void)inbox;
    (void)outbox;
    return nullptr;
#endif
}

}  // namespace kova::cli
