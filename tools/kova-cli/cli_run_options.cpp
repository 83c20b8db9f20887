#include "cli_run_options.h"

#include <CLI/CLI.hpp>
#include <limits>
#include <string>

#include "cli_values.h"

namespace kova::cli {

namespace {
constexpr long long kMaxStallTick = std::numeric_limits<long long>::max();
constexpr long long kMaxStallMs = 3600000;  // an hour
}  // namespace

void AddRunOptions(CLI::App& run, RunOptions& o) {
    run.add_option("FILE.SUF", o.file, "The setup file to run")->required();
    AddWholeNumberOption(run, "--ticks", o.ticks, 0, std::numeric_limits<long long>::max(),
                         "Stop after N ticks (without it: until SIGINT or SIGTERM)");
    AddStartTimeOption(run, "--start", o.start,
                       "Run on a simulated clock from this local time; each tick moves it by "
                       "the timer interval the scan asked for");
    run.add_flag("--poll", o.poll, "Switch polling on");
    run.add_flag("--log", o.log, "Switch logging on");
    run.add_option_function<std::string>(
           "--save", [&o](const std::string& v) { o.save = v; },
           "Save the configuration to this setup file at the end")
        ->type_name("OUT.SUF");
    run.add_option_function<std::string>(
           "--state", [&o](const std::string& v) { o.state = v; },
           "Write tag values, extremes, outputs and scan time as JSON at the end")
        ->type_name("OUT.json");
    run.add_option_function<std::string>(
           "--port",
           [&o](const std::string& v) {
               if (v != "sim")
                   throw CLI::ValidationError("--port", "takes \"sim\", not \"" + v + "\"");
               o.simPort = true;
           },
           "sim: the module's simulator on a simulated port instead of the real port")
        ->type_name("sim");
    // Not in --help: a stalled scan is what the service watchdog must catch, and this is
    // how a test (or someone checking an installed service) makes one.
    run.add_option_function<std::string>(
           "--stall-scan",
           [&o](const std::string& v) {
               const auto colon = v.find(':');
               const auto tick = ParseWholeNumber(v.substr(0, colon), 1, kMaxStallTick);
               const auto ms = colon == std::string::npos
                                   ? std::nullopt
                                   : ParseWholeNumber(v.substr(colon + 1), 0, kMaxStallMs);
               if (!tick || !ms)
                   throw CLI::ValidationError(
                       "--stall-scan", "takes TICK:MS (tick 1.." + std::to_string(kMaxStallTick) +
                                           ", 0.." + std::to_string(kMaxStallMs) + " ms), not \"" +
                                           v + "\"");
               o.stall = ScanStall{*tick, *ms};
           },
           "After tick TICK the scan stalls for MS milliseconds")
        ->type_name("TICK:MS")
        ->group("");
}

}  // namespace kova::cli
