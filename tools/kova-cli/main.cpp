// kova-cli: the engine's command-line front end. Picks the command; each command lives in
// a file of its own (cli_<command>.cpp).
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "commands.h"

namespace {

struct Command {
    const char* name;
    int (*run)(const std::vector<std::string>&);
};

constexpr Command kCommands[] = {
    {"dump", DumpCommand},
    {"build", BuildCommand},
    {"check", CheckCommand},
    {"run", RunCommand},
};

void usage(std::FILE* out) {
    std::fputs(
        "usage: kova-cli dump FILE.SUF\n"
        "       kova-cli build FILE.json -o FILE.SUF\n"
        "       kova-cli run FILE.SUF [--ticks N] [--start \"YYYY-MM-DD HH:MM:SS.mmm\"] [--poll] "
        "[--log] [--save OUT.SUF]\n"
        "                    [--state OUT.json] [--port sim]\n"
        "       kova-cli check FILE.SUF\n",
        out);
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
    using kova::cli::Fail;
    if (argc < 2) return Fail("no command given (kova-cli --help lists them)");
    const std::string name = argv[1];
    if (name == "--help" || name == "-h" || name == "help") {
        usage(stdout);
        return 0;
    }
    const std::vector<std::string> args(argv + 2, argv + argc);
    for (const Command& c : kCommands) {
        if (name != c.name) continue;
        try {
            return c.run(args);
        } catch (const std::exception& e) {
            return Fail(name + ": " + e.what());
        }
    }
    return Fail("unknown command \"" + name + "\" (kova-cli --help lists the commands)");
}
