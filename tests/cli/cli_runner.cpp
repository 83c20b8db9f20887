#include "cli_runner.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>

#include <cstdlib>

#include "support/test_support.h"

extern char** environ;

namespace kova::test {

std::filesystem::path CliPath() {
    const char* path = std::getenv("KOVA_CLI");
    return path ? std::filesystem::path(path) : std::filesystem::path();
}

CliResult RunCli(const std::vector<std::string>& args) {
    return RunCliIn({}, args);
}

CliResult RunCliIn(const std::filesystem::path& folder, const std::vector<std::string>& args) {
    return RunCliTo(folder, args, {});
}

CliResult RunCliTo(const std::filesystem::path& folder, const std::vector<std::string>& args,
                   const std::filesystem::path& standardOutput) {
    CliResult result;
    const auto cli = CliPath();
    if (cli.empty()) {
        ADD_FAILURE() << "KOVA_CLI is not set";
        return result;
    }
    TempFolder dir;
    const auto out = standardOutput.empty() ? dir / "stdout" : standardOutput;
    const auto err = dir / "stderr";
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    posix_spawn_file_actions_addopen(&actions, 2, err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (!folder.empty()) posix_spawn_file_actions_addchdir_np(&actions, folder.c_str());
    std::vector<std::string> all = {cli.string()};
    all.insert(all.end(), args.begin(), args.end());
    std::vector<char*> argv;
    for (auto& a : all) argv.push_back(a.data());
    argv.push_back(nullptr);
    pid_t pid = 0;
    const int rc = posix_spawn(&pid, cli.c_str(), &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (rc != 0) {
        ADD_FAILURE() << "cannot start " << cli;
        return result;
    }
    int status = 0;
    waitpid(pid, &status, 0);
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    if (standardOutput.empty()) result.out = ReadFileBytes(out);
    result.err = ReadFileBytes(err);
    return result;
}

}  // namespace kova::test
