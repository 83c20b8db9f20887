// kova-cli dump FILE.SUF
#include <CLI/CLI.hpp>
#include <memory>

#include "cli_output.h"
#include "commands.h"
#include "core/setup_file.h"
#include "setup_json.h"

namespace kova::cli {

namespace {
struct DumpOptions {
    std::string file;
};

int dump(const DumpOptions& o) {
    auto st = std::make_unique<Station>();
    const LoadOutcome loaded = LoadSetupFile(*st, o.file);
    if (!loaded.ok) return Fail("dump: " + loaded.error);
    std::string error;
    if (!WriteStandardOutput(WriteJson(SetupToJson(*st)), error)) return Fail("dump: " + error);
    return 0;
}
}  // namespace

void AddDumpCommand(CLI::App& app, CommandRun& run) {
    auto o = std::make_shared<DumpOptions>();
    CLI::App* cmd = app.add_subcommand("dump", "The whole configuration as JSON on stdout");
    cmd->add_option("FILE.SUF", o->file, "The setup file")->required();
    cmd->callback([o, &run] { run = [o] { return dump(*o); }; });
}

}  // namespace kova::cli
