#pragma once
// The commands of kova-cli. Each takes the arguments after its name and returns the exit
// code: 0 success, 1 (check) problems found, 2 bad arguments or a file that cannot be used.
#include <string>
#include <vector>

// kova-cli dump FILE.SUF: the whole configuration as JSON on stdout.
int DumpCommand(const std::vector<std::string>& args);
// kova-cli build FILE.json -o FILE.SUF: writes exactly what the JSON says.
int BuildCommand(const std::vector<std::string>& args);
// kova-cli check FILE.SUF: every problem found in the file, one per line.
int CheckCommand(const std::vector<std::string>& args);
// kova-cli run FILE.SUF [options]: runs the scan without a display.
int RunCommand(const std::vector<std::string>& args);

namespace kova::cli {
// Prints "kova-cli: <message>" as one line on stderr and returns 2.
int Fail(const std::string& message);
}  // namespace kova::cli
