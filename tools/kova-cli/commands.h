#pragma once
// The commands of kova-cli. Each adds itself to the command line as a subcommand with its
// own options and --help; the command named on the command line then runs. Exit codes:
// 0 success, 1 (check) problems found, 2 bad arguments, a file that cannot be used or a
// write that failed.
#include <functional>
#include <string>

namespace CLI {
class App;
}

namespace kova::cli {

// What runs the command once the command line has been read; returns the exit code.
using CommandRun = std::function<int()>;

// kova-cli dump FILE.SUF: the whole configuration as JSON on stdout.
void AddDumpCommand(CLI::App& app, CommandRun& run);
// kova-cli build FILE.json -o FILE.SUF: writes exactly what the JSON says.
void AddBuildCommand(CLI::App& app, CommandRun& run);
// kova-cli check FILE.SUF: every problem found in the file, one per line.
void AddCheckCommand(CLI::App& app, CommandRun& run);
// kova-cli run FILE.SUF [options]: runs the scan without a display.
void AddRunCommand(CLI::App& app, CommandRun& run);

// kova-cli passwd USERS-FILE NAME [--role ROLE]: a user of the station's web page.
void AddPasswdCommand(CLI::App& app, CommandRun& run);

// Prints "kova-cli: <message>" as one line on stderr and returns 2.
int Fail(const std::string& message);

}  // namespace kova::cli
