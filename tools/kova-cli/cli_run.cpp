// kova-cli run: loads a setup file as the program's start-up does and runs the scan,
// on a simulated clock (--start) or on the real one until SIGINT/SIGTERM.
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <fstream>
#include "commands.h"
#include "core/configuration.h"
#include "core/fault.h"
#include "core/scan_cycle.h"
#include "daq/driver_dispatch.h"
#include "daq/sim/module_simulators.h"
#include "logging/log_switch.h"
#include "logging/log_writer.h"
#include "platform/port_backends.h"
#include "platform/simulated_bus.h"
#include "run_support.h"
#include "setup_json.h"

namespace kova::cli {
namespace {

std::atomic<bool> gStop{false};

struct RunOptions {
    std::string file;
    std::optional<long long> ticks;
    std::optional<LocalDateTime> start;
    bool poll = false;
    bool log = false;
    std::optional<std::string> save;
    std::optional<std::string> state;
    bool simPort = false;
};

// "YYYY-MM-DD HH:MM:SS.mmm" (the milliseconds may be left out).
std::optional<LocalDateTime> parseStart(const std::string& s) {
    LocalDateTime t;
    int n = 0;
    if (std::sscanf(s.c_str(), "%d-%d-%d %d:%d:%d%n", &t.year, &t.month, &t.day, &t.hour, &t.minute,
                    &t.second, &n) != 6)
        return std::nullopt;
    const std::string rest = s.substr(static_cast<std::size_t>(n));
    if (!rest.empty()) {
        if (rest.size() != 4 || rest[0] != '.') return std::nullopt;
        for (std::size_t i = 1; i < 4; ++i)
            if (rest[i] < '0' || rest[i] > '9') return std::nullopt;
        t.millisecond = std::atoi(rest.c_str() + 1);
    }
    if (t.month < 1 || t.month > 12 || t.day < 1 || t.day > 31 || t.hour > 23 || t.minute > 59 ||
        t.second > 59 || t.year < 1900 || t.year > 9999 || t.hour < 0 || t.minute < 0 ||
        t.second < 0)
        return std::nullopt;
    return t;
}

bool parseOptions(const std::vector<std::string>& args, RunOptions& o, std::string& error) {
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        auto value = [&](const char* name) -> std::optional<std::string> {
            if (i + 1 >= args.size()) {
                error = std::string(name) + " needs a value";
                return std::nullopt;
            }
            return args[++i];
        };
        if (a == "--ticks") {
            const auto v = value("--ticks");
            if (!v) return false;
            char* end = nullptr;
            const long long n = std::strtoll(v->c_str(), &end, 10);
            if (v->empty() || *end != '\0' || n < 0) {
                error = "--ticks takes a whole number, not \"" + *v + "\"";
                return false;
            }
            o.ticks = n;
        } else if (a == "--start") {
            const auto v = value("--start");
            if (!v) return false;
            o.start = parseStart(*v);
            if (!o.start) {
                error = "--start takes \"YYYY-MM-DD HH:MM:SS.mmm\", not \"" + *v + "\"";
                return false;
            }
        } else if (a == "--poll") {
            o.poll = true;
        } else if (a == "--log") {
            o.log = true;
        } else if (a == "--save") {
            const auto v = value("--save");
            if (!v) return false;
            o.save = *v;
        } else if (a == "--state") {
            const auto v = value("--state");
            if (!v) return false;
            o.state = *v;
        } else if (a == "--port") {
            const auto v = value("--port");
            if (!v) return false;
            if (*v != "sim") {
                error = "--port takes \"sim\", not \"" + *v + "\"";
                return false;
            }
            o.simPort = true;
        } else if (!a.empty() && a[0] == '-') {
            error = "unknown option " + a;
            return false;
        } else if (o.file.empty()) {
            o.file = a;
        } else {
            error = "more than one setup file given";
            return false;
        }
    }
    if (o.file.empty()) {
        error = "no setup file given";
        return false;
    }
    return true;
}

// Prints each alarm line as it reaches the status bar.
class PrintingStatus final : public StatusSink {
  public:
    void setStatusText(const std::string& text) override {
        if (text.empty()) return;
        std::printf("%s\n", text.c_str());
        std::fflush(stdout);
    }
};

// The interval the scan asked for; the simulated clock moves by it between ticks.
class RememberingTimer final : public ScanTimer {
  public:
    void setInterval(int ms) override { interval = ms; }
    int interval = 1000;
};

// Reports a fault once, and again only after a tick completed without it.
class FaultReport {
  public:
    void fault(const std::string& what) {
        if (what == last_) return;
        last_ = what;
        std::fprintf(stderr, "kova-cli: run-time error: %s\n", what.c_str());
    }
    void clear() { last_.clear(); }

  private:
    std::string last_;
};

// What the run ends with and the setup file does not hold: every tag's value (system
// variables included), the extremes, the output image and the scan rate.
bool writeState(const Station& st, const std::string& path) {
    Json j;
    Json tags = Json::array();
    for (int i = 1; i <= kTableTags; ++i)
        tags.push_back(
            {{"Number", i}, {"TagName", st.tags[i].TagName}, {"Value", st.tags[i].Value}});
    j["tags"] = tags;
    Json mx = Json::array(), mn = Json::array();
    for (int i = 1; i <= kMinMaxTags; ++i) {
        mx.push_back(st.minMax.TagMaximum[i]);
        mn.push_back(st.minMax.TagMinimum[i]);
    }
    j["TagMaximum"] = mx;
    j["TagMinimum"] = mn;
    j["DigitalOutputImage"] = st.daq.DigitalOutputImage;
    Json ao = Json::array();
    for (int i = 1; i <= 32; ++i) ao.push_back(st.daq.AnalogOutputValues[i]);
    j["AnalogOutputValues"] = ao;
    j["ScanTime"] = st.scan.ScanTime;
    std::ofstream out(path, std::ios::binary);
    out << j.dump(2) << "\n";
    return static_cast<bool>(out);
}

}  // namespace
}  // namespace kova::cli

using namespace kova;
using namespace kova::cli;

int RunCommand(const std::vector<std::string>& args) {
    RunOptions o;
    std::string error;
    if (!parseOptions(args, o, error)) {
        return Fail("run: " + error);
    }

    InstallStopSignals(gStop);
    Station st;
    st.workingFolder = std::filesystem::current_path();
    PrintingStatus status;
    RememberingTimer timer;
    SimulatedClock simClock(o.start.value_or(LocalDateTime{}));
    SystemClock systemClock;
    st.platform.status = &status;
    st.platform.timer = &timer;
    st.platform.clock =
        o.start ? static_cast<Clock*>(&simClock) : static_cast<Clock*>(&systemClock);

    // The port: the module's simulator on a simulated bus, or the real port back-end.
    SimulatedBus bus;
    std::unique_ptr<ModuleSimulator> simulator;
    std::unique_ptr<PortIo> realPort;
    const LoadOutcome loaded = StartStation(st, o.file);
    if (!loaded.ok) {
        return Fail("run: " + loaded.error);
    }
    if (o.simPort) {
        st.platform.port = &bus;
        SelectPort(st, st.daq.PrinterPortNumber,
                   static_cast<std::uint16_t>(st.daq.PrinterPortBase));
        // Attached after the port selection wrote its control byte, as a module powered up
        // on an initialised port, so the first scan already reads the fixed inputs.
        simulator = MakeModuleSimulator(st.profile.TypeCode);
        if (simulator) simulator->attach(bus, st.daq.Port.DataPort);
    } else if (st.profile.TypeCode != kDaqTest) {
        std::string problem;
        realPort = OpenPortBackend(st.daq.PrinterPortNumber, problem);
        st.platform.port = realPort.get();
        SelectPort(st, st.daq.PrinterPortNumber,
                   static_cast<std::uint16_t>(st.daq.PrinterPortBase));
    }

    MeasureSpeedForRun(st, gStop);
    RunTeller teller;
    teller.tell(st);

    FaultReport report;
    auto guarded = [&](auto&& action) {
        try {
            action();
            return true;
        } catch (const std::exception& e) {
            report.fault(e.what());
            return false;
        }
    };
    if (o.poll) st.switches.PollEnabled = true;
    if (o.log) guarded([&] { ToggleLogging(st); });

    auto next = std::chrono::steady_clock::now();
    for (long long n = 0; !gStop && (!o.ticks || n < *o.ticks); ++n) {
        if (o.start) {
            if (n > 0) simClock.advance(timer.interval);
        } else if (n > 0) {
            next += std::chrono::milliseconds(timer.interval);
            if (!SleepUntilOrStop(next, gStop)) break;
        }
        if (guarded([&] { Tick(st); })) report.clear();
        teller.tell(st);
    }

    guarded([&] { CloseLogFile(st); });
    int rc = 0;
    if (o.save && !guarded([&] { SaveConfiguration(st, *o.save); })) rc = 1;
    if (o.state && !writeState(st, *o.state)) {
        std::fprintf(stderr, "kova-cli: run: %s: cannot write the state file\n", o.state->c_str());
        rc = 1;
    }
    if (simulator) std::printf("%s\n", simulator->LatchedOutputsLine().c_str());
    return rc;
}
