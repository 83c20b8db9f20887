#pragma once
// Runs kova-cli (the path in KOVA_CLI) and captures what it printed and its exit code.
#include <filesystem>
#include <string>
#include <vector>

namespace kova::test {

struct CliResult {
    int exitCode = -1;
    std::string out;
    std::string err;
};

std::filesystem::path CliPath();
CliResult RunCli(const std::vector<std::string>& args);
// The same with the given working folder (where run finds "KOVA_P.CAL").
CliResult RunCliIn(const std::filesystem::path& folder, const std::vector<std::string>& args);
// The same with standard output going to the given file (a device such as /dev/full);
// `out` stays empty then.
CliResult RunCliTo(const std::filesystem::path& folder, const std::vector<std::string>& args,
                   const std::filesystem::path& standardOutput);

}  // namespace kova::test
