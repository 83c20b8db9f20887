#pragma once
// What the program is told on its command line. Besides Qt's own options there is one:
// "--tick-trace FILE" (or "--tick-trace=FILE"), a trace of every scan tick into FILE.
#include <optional>
#include <string>
#include <vector>

namespace kova::app {

struct ProgramOptions {
    std::optional<std::string> tickTrace;  // the trace file, when one was asked for
    std::string error;                     // a mistake on the command line, "" when none
};

// The arguments after the program's name. Arguments it does not know are left to Qt.
ProgramOptions ParseProgramOptions(const std::vector<std::string>& args);

}  // namespace kova::app
