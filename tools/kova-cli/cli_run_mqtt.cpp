#include "cli_run_mqtt.h"

#include <CLI/CLI.hpp>
#include <iostream>

#ifdef KOVA_WITH_MQTT
#include <filesystem>

#include "links/mqtt/mqtt_client_id.h"
#include "links/mqtt/mqtt_station.h"
#endif

namespace kova::cli {

void AddMqttOptions(CLI::App& run, RunOptions& o) {
    const char* group = "MQTT (see docs/mqtt.md)";
    run.add_option_function<std::string>(
           "--mqtt", [&o](const std::string& v) { o.mqttBroker = v; },
           "Publish the station's tags and alarms to the MQTT broker at HOST[:PORT] "
           "(port 1883 when not given)")
        ->type_name("HOST[:PORT]")
        ->group(group);
    run.add_option_function<std::string>(
           "--mqtt-prefix", [&o](const std::string& v) { o.mqttPrefix = v; },
           "The first part of every topic (default: kova/ and the setup file's base name)")
        ->type_name("PREFIX")
        ->group(group);
    run.add_option("--mqtt-user", o.mqttUser, "The user name to log in to the broker with")
        ->type_name("NAME")
        ->group(group);
    run.add_option("--mqtt-password-file", o.mqttPasswordFile,
                   "The password to log in with is the first line of this file")
        ->type_name("FILE")
        ->group(group);
    run.add_option("--mqtt-ca-file", o.mqttCaFile,
                   "Use TLS; the broker's certificate is checked against the CA certificates "
                   "in this file")
        ->type_name("FILE")
        ->group(group);
    run.add_option_function<std::string>(
           "--mqtt-client-id", [&o](const std::string& v) { o.mqttClientId = v; },
           "The client ID to give the broker (default: the topic prefix, the host's name and a "
           "random part kept in KOVA_MQTT.ID in the working folder)")
        ->type_name("ID")
        ->group(group);
    run.add_option("--mqtt-format", o.mqttFormat,
                   "How a tag's value is published: plain (the number) or json "
                   "({\"v\":12.5,\"ts\":<ms since 1970 UTC>,\"q\":\"good\"})")
        ->type_name("plain|json")
        ->check(CLI::IsMember({"plain", "json"}))
        ->group(group);
    run.add_flag("--mqtt-writes", o.mqttWrites,
                 "Accept <prefix>/set/<TAGNAME> from the broker: sets an output or variable "
                 "as an operator write on a readings screen does")
        ->group(group);
}

namespace {

bool MqttCompanionGiven(const RunOptions& o) {
    return o.mqttPrefix || !o.mqttUser.empty() || !o.mqttPasswordFile.empty() ||
           !o.mqttCaFile.empty() || o.mqttWrites || o.mqttClientId || o.mqttFormat != "plain";
}

#ifdef KOVA_WITH_MQTT
class MqttPublisher final : public RunPublisher {
  public:
    MqttPublisher(std::unique_ptr<mqtt::MqttLink> link, const std::string& prefix,
                  mqtt::ValueFormat format, links::Outbox* outbox)
        : link_(std::move(link)),
          records_(outbox ? std::make_unique<mqtt::MqttRecordSender>(*link_, *outbox, prefix)
                          : nullptr),
          station_(*link_, prefix, std::cerr, format, records_.get()) {}
    void alarmLine(const std::string& line) override { station_.publishAlarm(line); }
    void afterTick(Station& st) override { station_.afterTick(st); }

  private:
    std::unique_ptr<mqtt::MqttLink> link_;
    std::unique_ptr<mqtt::MqttRecordSender> records_;
    mqtt::MqttStation station_;
};
#endif

}  // namespace

#ifdef KOVA_WITH_MQTT
bool MqttOptionsFrom(const RunOptions& o, const std::string& prefix, mqtt::MqttOptions& m,
                     std::string& error) {
    if (!mqtt::ParseBrokerAddress(*o.mqttBroker, m.host, m.port, error)) return false;
    m.prefix = prefix;
    m.username = o.mqttUser;
    m.passwordFile = o.mqttPasswordFile;
    m.caFile = o.mqttCaFile;
    m.writes = o.mqttWrites;
    if (o.mqttClientId) {
        m.clientId = *o.mqttClientId;
        if (const std::string why = mqtt::ClientIdProblem(m.clientId); !why.empty()) {
            error = "--mqtt-client-id: " + why;
            return false;
        }
    } else {
        // Made once and kept, so the broker knows the station again after a restart.
        const mqtt::ClientId id = mqtt::DefaultClientId(prefix, std::filesystem::current_path());
        m.clientId = id.id;
        if (!id.note.empty()) std::cerr << "kova-cli: mqtt: " << id.note << std::endl;
    }
    return true;
}
#endif

std::unique_ptr<RunPublisher> StartRunPublisher(const RunOptions& o, links::Outbox* outbox,
                                                std::string& error) {
    error.clear();
    if (!o.mqttBroker) {
        if (MqttCompanionGiven(o)) error = "the --mqtt-... options need --mqtt HOST[:PORT]";
        return nullptr;
    }
    if (o.sparkplug) return nullptr;  // the Sparkplug link has the broker
#ifdef KOVA_WITH_MQTT
    const std::string prefix = o.mqttPrefix ? *o.mqttPrefix : mqtt::DefaultTopicPrefix(o.file);
    if (prefix.empty() || prefix.find_first_of("#+") != std::string::npos) {
        error = "--mqtt-prefix must be a topic without # or +, not \"" + prefix + "\"";
        return nullptr;
    }
    mqtt::MqttOptions m;
    if (!MqttOptionsFrom(o, prefix, m, error)) return nullptr;
    auto link = mqtt::MqttLink::Start(m, error);
    if (!link) return nullptr;
    return std::make_unique<MqttPublisher>(
        std::move(link), m.prefix,
        o.mqttFormat == "json" ? mqtt::ValueFormat::Json : mqtt::ValueFormat::Plain, outbox);
#else
    (void)outbox;
    error = "--mqtt: this kova-cli was built without MQTT (libmosquitto)";
    return nullptr;
#endif
}

}  // namespace kova::cli
