// kova-cli: the engine's command-line front end. Each command lives in a file of its own
// (cli_<command>.cpp) and declares its options there; this file reads the command line.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <string>

#include "commands.h"
#include "kova_version.h"

namespace {

constexpr const char* kUsage =
    "usage: kova-cli dump FILE.SUF\n"
    "       kova-cli build FILE.json -o FILE.SUF\n"
    "       kova-cli check FILE.SUF\n"
    "       kova-cli run FILE.SUF [--ticks N] [--start \"YYYY-MM-DD HH:MM:SS.mmm\"] [--poll] "
    "[--log]\n"
    "                    [--save OUT.SUF] [--state OUT.json] [--port sim] [--http [ADDR:]PORT]\n"
    "       kova-cli passwd USERS-FILE NAME [--role viewer|operator]\n"
    "Each command has its own --help.";

bool isCommand(const CLI::App& app, const std::string& name) {
    for (const CLI::App* sub : app.get_subcommands([](const CLI::App*) { return true; }))
        if (sub->get_name() == name) return true;
    return false;
}

}  // namespace

namespace kova::cli {
int Fail(const std::string& message) {
    std::string line = "kova-cli: " + message;
    for (char& c : line)
        if (c == '\n' || c == '\r') c = ' ';
    std::fprintf(stderr, "%s\n", line.c_str());
    return 2;
}
}  // namespace kova::cli

int main(int argc, char** argv) {
    using namespace kova::cli;
    CLI::App app(std::string("kova-cli ") + kova::kVersion +
                     ": inspect, build, check and run KOVA setup files",
                 "kova-cli");
    app.set_version_flag("--version", std::string("kova-cli ") + kova::kVersion,
                         "Print the version and exit");
    app.require_subcommand(1);
    // A path such as /data/Plant.SUF is a file name on every system, never a "/option" in
    // the Windows manner (which the Windows build would otherwise accept).
    app.allow_windows_style_options(false);
    CommandRun run;
    AddDumpCommand(app, run);
    AddBuildCommand(app, run);
    AddCheckCommand(app, run);
    AddRunCommand(app, run);
    AddPasswdCommand(app, run);
    app.footer(kUsage);  // after the commands, which would inherit it

    if (argc < 2) return Fail("no command given (kova-cli --help lists them)");
    const std::string name = argv[1];
    if (name == "help") {
        std::printf("%s", app.help().c_str());
        return 0;
    }
    if (!name.empty() && name[0] == '-' && name != "-h" && name != "--help" && name != "--version")
        return Fail("unknown option " + name + " (kova-cli --help lists the commands)");
    if (name.empty() || (name[0] != '-' && !isCommand(app, name)))
        return Fail("unknown command \"" + name + "\" (kova-cli --help lists the commands)");
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& e) {
        return app.exit(e);  // --help: the help of the command asked about, on stdout
    } catch (const CLI::ParseError& e) {
        // "kova-cli: <command>: <what is wrong> (kova-cli <command> --help)"
        std::string what = e.what();
        if (what.empty()) what = "cannot read the command line";
        return Fail(name + ": " + what + " (kova-cli " + name + " --help)");
    }
    try {
        return run ? run() : Fail("no command given (kova-cli --help lists them)");
    } catch (const std::exception& e) {
        return Fail(name + ": " + e.what());
    }
}
