// kova-cli build FILE.json -o FILE.SUF
#include <CLI/CLI.hpp>
#include <memory>

#include "commands.h"
#include "core/atomic_file.h"
#include "core/fault.h"
#include "core/setup_file.h"
#include "setup_json.h"
#include "tags/tag_table.h"

namespace kova::cli {

namespace {
struct BuildOptions {
    std::string input;
    std::string output;
};

// nlohmann's message without its "[json.exception.parse_error.101] " tag.
std::string jsonMessage(const Json::exception& e) {
    std::string what = e.what();
    if (const auto at = what.find("] "); at != std::string::npos) what.erase(0, at + 2);
    return what;
}

int build(const BuildOptions& o) {
    if (o.output.empty()) return Fail("build: -o needs the setup file to write");
    std::string text, error;
    if (!ReadWholeFile(o.input, text, error, 16u << 20)) return Fail("build: " + error);
    // Every error from here on names the file it is about.
    Json json;
    try {
        json = ParseSetupJson(text);
    } catch (const JsonKeyError& e) {  // a key given twice
        return Fail("build: " + o.input + ": " + e.what());
    } catch (const Json::exception& e) {  // a syntax error, a number like 1e400
        return Fail("build: " + o.input + ": not valid JSON: " + jsonMessage(e));
    }
    auto st = std::make_unique<Station>();
    try {
        SetupFromJson(json, *st);
    } catch (const JsonKeyError& e) {
        return Fail("build: " + o.input + ": " + e.what());
    } catch (const Json::exception& e) {
        return Fail("build: " + o.input + ": " + jsonMessage(e));
    } catch (const Fault& e) {
        return Fail("build: " + o.input + ": " + e.what());
    }
    // A name the tag editor would refuse is not made here either.
    for (int n = 1; n <= kUserTags; ++n)
        if (TagNameHasTopicCharacters(st->tags[n].TagName))
            return Fail("build: " + o.input + ": key tags[" + std::to_string(n - 1) +
                        "].TagName: " + kTagNameTopicCharacters);
    try {
        SaveSetupFile(*st, o.output);  // its faults name the output file
    } catch (const Fault& e) {
        return Fail(std::string("build: ") + e.what());
    } catch (const std::exception& e) {
        return Fail("build: " + o.output + ": " + e.what());
    }
    return 0;
}
}  // namespace

void AddBuildCommand(CLI::App& app, CommandRun& run) {
    auto o = std::make_shared<BuildOptions>();
    CLI::App* cmd =
        app.add_subcommand("build", "Writes the setup file exactly as a JSON description says");
    cmd->add_option("FILE.json", o->input, "The JSON description (as dump writes it)")->required();
    cmd->add_option("-o", o->output, "The setup file to write")->required()->type_name("FILE.SUF");
    cmd->callback([o, &run] { run = [o] { return build(*o); }; });
}

}  // namespace kova::cli
