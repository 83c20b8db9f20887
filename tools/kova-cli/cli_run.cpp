// Placeholder until the run command is written.
#include <cstdio>

#include "commands.h"

int RunCommand(const std::vector<std::string>&) {
    std::fputs("kova-cli: run: not available yet\n", stderr);
    return 2;
}
