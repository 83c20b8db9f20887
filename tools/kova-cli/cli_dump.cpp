// kova-cli dump FILE.SUF
#include <cstdio>
#include <memory>

#include "commands.h"
#include "core/setup_file.h"
#include "setup_json.h"

int DumpCommand(const std::vector<std::string>& args) {
    using namespace kova;
    if (args.size() != 1 || args[0].empty() || args[0][0] == '-')
        return cli::Fail("dump: expected one setup file: kova-cli dump FILE.SUF");
    auto st = std::make_unique<Station>();
    const LoadOutcome loaded = LoadSetupFile(*st, args[0]);
    if (!loaded.ok) return cli::Fail("dump: " + loaded.error);
    const std::string text = cli::WriteJson(cli::SetupToJson(*st));
    std::fwrite(text.data(), 1, text.size(), stdout);
    return std::fflush(stdout) == 0 ? 0 : cli::Fail("dump: cannot write the output");
}
