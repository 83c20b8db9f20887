#include "cli_run_outbox.h"

#include <CLI/CLI.hpp>
#include <filesystem>

namespace kova::cli {

void AddOutboxOptions(CLI::App& run, RunOptions& o) {
    const char* group = "MQTT (see docs/mqtt.md)";
    run.add_option("--outbox", o.outbox,
                   "The folder where records wait while the broker is away (default: "
                   "KOVA_OUTBOX/<setup file name> in the working folder)")
        ->type_name("FOLDER")
        ->group(group);
    run.add_option("--outbox-max-mb", o.outboxMaxMb,
                   "The most the waiting records may take, in MB; the oldest go first "
                   "(default 64)")
        ->type_name("MB")
        ->check(CLI::Range(1, 1 << 20))
        ->group(group);
    run.add_option("--outbox-max-age", o.outboxMaxAgeHours,
                   "Records that waited longer than this many hours are dropped (default 168, "
                   "a week)")
        ->type_name("HOURS")
        ->check(CLI::Range(1, 24 * 3650))
        ->group(group);
}

std::string DefaultOutboxFolder(const std::string& setupFile) {
    return (std::filesystem::current_path() / "KOVA_OUTBOX" /
            std::filesystem::path(setupFile).stem())
        .string();
}

std::unique_ptr<links::Outbox> OpenRunOutbox(const RunOptions& o, std::string& error) {
    error.clear();
    const bool given = !o.outbox.empty() || o.outboxMaxMb || o.outboxMaxAgeHours;
    if (!o.mqttBroker) {
        if (given) error = "the --outbox... options need a link that sends records (--mqtt)";
        return nullptr;
    }
    links::OutboxLimits limits;
    if (o.outboxMaxMb) limits.maxBytes = static_cast<std::uint64_t>(*o.outboxMaxMb) << 20;
    if (o.outboxMaxAgeHours) limits.maxAge = std::chrono::hours(*o.outboxMaxAgeHours);
    return links::Outbox::Open(o.outbox.empty() ? DefaultOutboxFolder(o.file) : o.outbox, limits,
                               error);
}

}  // namespace kova::cli
