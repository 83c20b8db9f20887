#pragma once
// The options of kova-cli run. A new group of options adds its fields here and its own
// Add...Options function beside AddRunOptions, so each group stays in one place.
#include <optional>
#include <string>

#include "platform/clock.h"

namespace CLI {
class App;
}

namespace kova::cli {

// After tick `tick` the scan stalls for `ms` milliseconds, as a hung driver would.
struct ScanStall {
    long long tick = 0;
    long long ms = 0;
};

struct RunOptions {
    std::string file;
    std::optional<long long> ticks;
    std::optional<LocalDateTime> start;
    bool poll = false;
    bool log = false;
    std::optional<std::string> save;
    std::optional<std::string> state;
    bool simPort = false;
    // --mqtt and its companions: the station on an MQTT broker.
    std::optional<std::string> mqttBroker;  // HOST[:PORT]
    std::optional<std::string> mqttPrefix;
    std::string mqttUser;
    std::string mqttPasswordFile;
    std::string mqttCaFile;
    bool mqttWrites = false;
    std::optional<std::string> mqttClientId;
    // --sparkplug and --sparkplug-host: the station as a Sparkplug B edge node on that broker.
    std::optional<std::string> sparkplug;  // GROUP/NODE
    std::optional<std::string> sparkplugHost;
    std::string mqttFormat = "plain";  // plain | json
    // The outbox the links' records wait in (cli_run_outbox.cpp).
    std::string outbox;
    std::optional<int> outboxMaxMb;
    std::optional<int> outboxMaxAgeHours;
    // --http and its companions: the station's web page.
    std::optional<std::string> httpListen;  // [ADDR:]PORT
    std::string httpUsers;
    std::string httpCert;
    std::string httpKey;
    // The hidden --stall-scan TICK:MS, for testing the service watchdog from outside.
    std::optional<ScanStall> stall;
};

// Declares the setup file and every option of run on the run command; the values land in
// `o` while the command line is read, typed and range-checked.
void AddRunOptions(CLI::App& run, RunOptions& o);
// The --mqtt group (cli_run_mqtt.cpp).
void AddMqttOptions(CLI::App& run, RunOptions& o);
// The --outbox group (cli_run_outbox.cpp).
void AddOutboxOptions(CLI::App& run, RunOptions& o);
// The --http group (cli_run_web.cpp).
void AddWebOptions(CLI::App& run, RunOptions& o);

}  // namespace kova::cli
