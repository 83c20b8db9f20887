#include "cli_run_mqtt.h"

#include <CLI/CLI.hpp>
#include <iostream>

#ifdef KOVA_WITH_MQTT
#include <filesystem>

#include "mqtt/mqtt_client_id.h"
#include "mqtt/mqtt_station.h"
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
    run.add_flag("--mqtt-writes", o.mqttWrites,
                 "Accept <prefix>/set/<TAGNAME> from the broker: sets an output or variable "
                 "as an operator write on a readings screen does")
        ->group(group);
}

namespace {

bool MqttCompanionGiven(const RunOptions& o) {
    return o.mqttPrefix || !o.mqttUser.empty() || !o.mqttPasswordFile.empty() ||
           !o.mqttCaFile.empty() || o.mqttWrites || o.mqttClientId;
}

#ifdef KOVA_WITH_MQTT
class MqttPublisher final : public RunPublisher {
  public:
    MqttPublisher(std::unique_ptr<mqtt::MqttLink> link, const std::string& prefix)
        : link_(std::move(link)), station_(*link_, prefix, std::cerr) {}
    void alarmLine(const std::string& line) override { station_.publishAlarm(line); }
    void afterTick(Station& st) override { station_.afterTick(st); }

  private:
    std::unique_ptr<mqtt::MqttLink> link_;
    mqtt::MqttStation station_;
};
#endif

}  // namespace

std::unique_ptr<RunPublisher> StartRunPublisher(const RunOptions& o, std::string& error) {
    error.clear();
    if (!o.mqttBroker) {
        if (MqttCompanionGiven(o)) error = "the --mqtt-... options need --mqtt HOST[:PORT]";
        return nullptr;
    }
#ifdef KOVA_WITH_MQTT
    mqtt::MqttOptions m;
    if (!mqtt::ParseBrokerAddress(*o.mqttBroker, m.host, m.port, error)) return nullptr;
    m.prefix = o.mqttPrefix ? *o.mqttPrefix : mqtt::DefaultTopicPrefix(o.file);
    if (m.prefix.empty() || m.prefix.find_first_of("#+") != std::string::npos) {
        error = "--mqtt-prefix must be a topic without # or +, not \"" + m.prefix + "\"";
        return nullptr;
    }
    m.username = o.mqttUser;
    m.passwordFile = o.mqttPasswordFile;
    m.caFile = o.mqttCaFile;
    m.writes = o.mqttWrites;
    if (o.mqttClientId) {
        m.clientId = *o.mqttClientId;
        if (const std::string why = mqtt::ClientIdProblem(m.clientId); !why.empty()) {
            error = "--mqtt-client-id: " + why;
            return nullptr;
        }
    } else {
        // Made once and kept, so the broker knows the station again after a restart.
        const mqtt::ClientId id = mqtt::DefaultClientId(m.prefix, std::filesystem::current_path());
        m.clientId = id.id;
        if (!id.note.empty()) std::cerr << "kova-cli: mqtt: " << id.note << std::endl;
    }
    auto link = mqtt::MqttLink::Start(m, error);
    if (!link) return nullptr;
    return std::make_unique<MqttPublisher>(std::move(link), m.prefix);
#else
    error = "--mqtt: this kova-cli was built without MQTT (libmosquitto)";
    return nullptr;
#endif
}

}  // namespace kova::cli
