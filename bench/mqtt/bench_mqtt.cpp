// The cost a station's scan pays per tick for MQTT: publishing 32 changed tag values only
// queues them for the network thread. Runs against a private mosquitto on 127.0.0.1.
#include <arpa/inet.h>
#include <benchmark/benchmark.h>
#include <netinet/in.h>
#include <signal.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

#include "core/configuration.h"
#include "links/mqtt/mqtt_station.h"
#include "support/allocation_counter.h"
#include "tags/tag_table.h"

extern char** environ;

namespace {

int FreePort() {
    const int s = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    bind(s, reinterpret_cast<sockaddr*>(&a), sizeof a);
    socklen_t len = sizeof a;
    getsockname(s, reinterpret_cast<sockaddr*>(&a), &len);
    close(s);
    return ntohs(a.sin_port);
}

struct Broker {
    pid_t pid = -1;
    int port = FreePort();
    std::filesystem::path conf =
        std::filesystem::temp_directory_path() / ("kova-bench-mqtt-" + std::to_string(getpid()));
    Broker() {
        std::ofstream(conf)
            << "listener " << port
            << " 127.0.0.1\nallow_anonymous true\npersistence false\nlog_dest none\n";
        const char* bin = "/usr/sbin/mosquitto";
        if (access(bin, X_OK) != 0) return;
        std::string c = conf.string();
        char* argv[] = {const_cast<char*>(bin), const_cast<char*>("-c"), c.data(), nullptr};
        if (posix_spawn(&pid, bin, nullptr, nullptr, argv, environ) != 0) pid = -1;
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
    }
    ~Broker() {
        if (pid > 0) {
            kill(pid, SIGTERM);
            waitpid(pid, nullptr, 0);
        }
        std::filesystem::remove(conf);
    }
};

void BM_Publish32ChangedTags(benchmark::State& state) {
    Broker broker;
    if (broker.pid <= 0) {
        state.SkipWithError("no mosquitto broker (/usr/sbin/mosquitto)");
        return;
    }
    kova::mqtt::MqttOptions o;
    o.host = "127.0.0.1";
    o.port = broker.port;
    o.prefix = "kova/bench";
    o.clientId = "kova-bench-station";
    std::string error;
    auto link = kova::mqtt::MqttLink::Start(o, error);
    for (int i = 0; i < 200 && link && !link->connected(); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    if (!link || !link->connected()) {
        state.SkipWithError("cannot connect to the private broker");
        return;
    }
    kova::Station st;
    kova::ApplyStartupDefaults(st);
    for (int n = 1; n <= kova::kUserTags; ++n) st.tags[n].TagName = "TAG" + std::to_string(n);
    kova::DeriveAfterLoad(st);
    std::ostringstream errors;
    kova::mqtt::MqttStation station(*link, o.prefix, errors);
    station.publishTags(st);
    float v = 0;
    const long long first = station.published();
    const auto before = kova::bench::AllocationCount();
    for (auto _ : state) {
        v += 0.5f;
        for (int n = 1; n <= kova::kUserTags; ++n) st.tags[n].Value = v + static_cast<float>(n);
        station.publishTags(st);
    }
    state.counters["allocs/tick"] =
        benchmark::Counter(static_cast<double>(kova::bench::AllocationCount() - before),
                           benchmark::Counter::kAvgIterations);
    state.counters["tags/tick"] = benchmark::Counter(
        static_cast<double>(station.published() - first), benchmark::Counter::kAvgIterations);
}
BENCHMARK(BM_Publish32ChangedTags)->Unit(benchmark::kMicrosecond);

}  // namespace
