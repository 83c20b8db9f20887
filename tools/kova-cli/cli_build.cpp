// kova-cli build FILE.json -o FILE.SUF
#include <memory>
#include <optional>

#include "commands.h"
#include "core/atomic_file.h"
#include "core/fault.h"
#include "core/setup_file.h"
#include "setup_json.h"

int BuildCommand(const std::vector<std::string>& args) {
    using namespace kova;
    constexpr const char* kUsage = "build: usage: kova-cli build FILE.json -o FILE.SUF";
    std::optional<std::string> input, output;
    for (std::size_t i = 0; i < args.size(); ++i) {
        if (args[i] == "-o") {
            if (output || i + 1 >= args.size()) return cli::Fail(kUsage);
            output = args[++i];
        } else if (!input && !args[i].empty() && args[i][0] != '-') {
            input = args[i];
        } else {
            return cli::Fail(kUsage);
        }
    }
    if (!input || !output || output->empty()) return cli::Fail(kUsage);

    std::string text, error;
    if (!ReadWholeFile(*input, text, error, 16u << 20)) return cli::Fail("build: " + error);
    cli::Json json;
    try {
        json = cli::Json::parse(text);
    } catch (const cli::Json::parse_error& e) {
        std::string what = e.what();
        if (const auto at = what.find("] "); at != std::string::npos) what.erase(0, at + 2);
        return cli::Fail("build: " + *input + ": not valid JSON: " + what);
    }
    auto st = std::make_unique<Station>();
    try {
        cli::SetupFromJson(json, *st);
    } catch (const cli::JsonKeyError& e) {
        return cli::Fail("build: " + *input + ": " + e.what());
    }
    try {
        SaveSetupFile(*st, *output);
    } catch (const Fault& e) {
        return cli::Fail(std::string("build: ") + e.what());
    }
    return 0;
}
