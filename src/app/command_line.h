#pragma once
// The program's command line: kova [FOLDER], --help, --version, --tick-trace FILE. Qt's own options
// (-platform, -style, ...) are taken out by the application object before the rest is read,
// so help and version are looked for first: they must work without a display.
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace kova::app {

struct CommandLine {
    enum class Action { Run, Help, Version, Error };
    Action action = Action::Run;
    std::optional<std::filesystem::path> folder;  // the working folder asked for
    std::optional<std::string> tickTrace;         // --tick-trace: the file to trace ticks to
    std::string error;                            // Action::Error: what is wrong
};

// Help or version when either is asked for anywhere on the command line, else Run.
CommandLine::Action HelpOrVersionAsked(const std::vector<std::string>& args);
// The arguments left once Qt took its own (the program's name not included).
CommandLine ReadCommandLine(const std::vector<std::string>& args);

std::string CommandLineHelp();
std::string VersionLine();  // "kova 0.1.0"

}  // namespace kova::app
