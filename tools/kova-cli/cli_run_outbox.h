#pragma once
// The station's outbox (store and forward of its records) for the links that need it:
// where it lives and its bounds (--outbox, --outbox-max-mb, --outbox-max-age).
#include <memory>
#include <string>

#include "cli_run_options.h"
#include "links/outbox/outbox.h"

namespace kova::cli {

void AddOutboxOptions(CLI::App& run, RunOptions& o);
// The outbox folder when none is given: KOVA_OUTBOX/<setup file base name> in the working
// folder, so two stations started in one folder keep their records apart.
std::string DefaultOutboxFolder(const std::string& setupFile);
// Opens the outbox when a link that needs it is on (nullptr with `error` empty when none is),
// nullptr with the reason when the folder cannot be used.
std::unique_ptr<links::Outbox> OpenRunOutbox(const RunOptions& o, std::string& error);

}  // namespace kova::cli
