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

#include <CLI/CLI.hpp>

#include "cli_output.h"
#include "cli_run_mqtt.h"
#include "cli_run_options.h"
#include "cli_run_outbox.h"
#include "cli_run_sparkplug.h"
#include "cli_run_web.h"
#include "commands.h"
#include "core/configuration.h"
#include "core/fault.h"
#include "core/scan_cycle.h"
#include "daq/driver_dispatch.h"
#include "daq/sim/module_simulators.h"
#include "links/records/record_maker.h"
#include "logging/log_switch.h"
#include "logging/log_writer.h"
#include "platform/port_backends.h"
#include "platform/simulated_bus.h"
#include "run_support.h"
#include "service_notify.h"
#include "setup_json.h"

namespace kova::cli {
namespace {

std::atomic<bool> gStop{false};

// Prints each alarm line as it reaches the status bar.
class PrintingStatus final : public StatusSink {
  public:
    void setStatusText(const std::string& text) override {
        if (text.empty()) return;
        std::printf("%s\n", text.c_str());
        std::fflush(stdout);
        if (publisher) publisher->alarmLine(text);
    }
    RunPublisher* publisher = nullptr;
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
bool writeState(const Station& st, long long lateTicks, const std::string& path,
                std::string& error) {
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
    j["LateTicks"] = lateTicks;
    return WriteOutputFile(path, j.dump(2) + "\n", error);
}

// --stall-scan: the scan hangs after the tick asked for, as a stuck driver would; only a
// stop ends the stall early.
void stallIfAsked(const RunOptions& o, long long tick, const std::atomic<bool>& stop) {
    if (!o.stall || o.stall->tick != tick) return;
    std::fprintf(stderr,
                 "kova-cli: run: the scan stalls for %lld ms after tick %lld (--stall-scan)\n",
                 o.stall->ms, tick);
    std::fflush(stderr);
    SleepUntilOrStop(std::chrono::steady_clock::now() + std::chrono::milliseconds(o.stall->ms),
                     stop);
}

}  // namespace
}  // namespace kova::cli

using namespace kova;
using namespace kova::cli;

static int RunCommand(const RunOptions& o) {
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
    // As the program does: say so, and go on with the identity calibration.
    if (!loaded.calibrationError.empty())
        std::fprintf(stderr, "kova-cli: run: %s\n", loaded.calibrationError.c_str());
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

    if (const std::string why = SparkplugOptionsProblem(o); !why.empty())
        return Fail("run: " + why);
    std::string outboxError;
    const std::unique_ptr<links::Outbox> outbox = OpenRunOutbox(o, outboxError);
    if (!outboxError.empty()) return Fail("run: " + outboxError);
    std::string mqttError;
    const std::unique_ptr<RunPublisher> publisher = StartRunPublisher(o, outbox.get(), mqttError);
    if (!mqttError.empty()) return Fail("run: " + mqttError);
    status.publisher = publisher.get();
    std::string linksError;
    const std::unique_ptr<RunLinks> links = StartRunLinks(o, outbox.get(), linksError);
    if (!linksError.empty()) return Fail("run: " + linksError);

    MeasureSpeedForRun(st, gStop);
    RunTeller teller;
    teller.tell(st);

    FaultReport report;
    bool writeFailed = false;  // a file (the log) could not be written: exit code 2
    auto guarded = [&](auto&& action) {
        try {
            action();
            return true;
        } catch (const Fault& e) {
            writeFailed = writeFailed || e.kind() == FaultKind::File;
            report.fault(e.what());
            return false;
        } catch (const std::exception& e) {
            report.fault(e.what());
            return false;
        }
    };
    if (o.poll) st.switches.PollEnabled = true;
    if (o.log) guarded([&] { ToggleLogging(st); });

    ServiceNotifier service;  // systemd, when run as its service
    auto next = std::chrono::steady_clock::now();
    long long lateTicks = 0;  // real clock: ticks that began more than a period after their time
    for (long long n = 0; !gStop && (!o.ticks || n < *o.ticks); ++n) {
        if (o.start) {
            if (n > 0) simClock.advance(timer.interval);
        } else if (n > 0) {
            const auto period = std::chrono::milliseconds(timer.interval);
            next += period;
            if (!SleepUntilOrStop(next, gStop, [&] { service.waiting(); })) break;
            if (std::chrono::steady_clock::now() - next > period) ++lateTicks;
        }
        if (guarded([&] { Tick(st); })) report.clear();
        stallIfAsked(o, n + 1, gStop);
        teller.tell(st);
        if (outbox) {
            // The record of a logging period that ended with this tick waits in the outbox
            // until the links delivered it; appending never waits for the disk.
            if (auto record = links::RecordAfterTick(st))
                outbox->append(record->timeMs, std::move(record->body));
            for (const std::string& line : outbox->takeNotices())
                std::fprintf(stderr, "kova-cli: outbox: %s\n", line.c_str());
        }
        if (publisher) guarded([&] { publisher->afterTick(st); });
        if (links) guarded([&] { links->afterTick(st, lateTicks); });
        service.tickDone();  // the whole tick, its publishing included
    }

    service.stopping();
    guarded([&] { CloseLogFile(st); });
    // A write that failed names its file and makes the exit code 2.
    int rc = writeFailed ? 2 : 0;
    if (o.save) {
        try {
            SaveConfiguration(st, *o.save);
        } catch (const std::exception& e) {
            rc = Fail(std::string("run: ") + e.what());
        }
    }
    std::string error;
    if (o.state && !writeState(st, lateTicks, *o.state, error)) rc = Fail("run: " + error);
    if (simulator) std::printf("%s\n", simulator->LatchedOutputsLine().c_str());
    if (!FinishStandardOutput(error)) rc = Fail("run: " + error);
    return rc;
}

void kova::cli::AddRunCommand(CLI::App& app, CommandRun& run) {
    auto o = std::make_shared<RunOptions>();
    CLI::App* cmd = app.add_subcommand(
        "run",
        "Runs the scan of a setup file without a display, as the program's start-up "
        "would run it");
    AddRunOptions(*cmd, *o);
    AddMqttOptions(*cmd, *o);
    AddOutboxOptions(*cmd, *o);
    AddWebOptions(*cmd, *o);
    AddSparkplugOptions(*cmd, *o);
    cmd->callback([o, &run] { run = [o] { return RunCommand(*o); }; });
}
