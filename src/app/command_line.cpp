#include "app/command_line.h"

#include "kova_version.h"

namespace kova::app {

namespace {
bool isHelp(const std::string& a) {
    return a == "-h" || a == "--help";
}
bool isVersion(const std::string& a) {
    return a == "-v" || a == "--version";
}
constexpr const char* kTickTrace = "--tick-trace";
}  // namespace

CommandLine::Action HelpOrVersionAsked(const std::vector<std::string>& args) {
    for (const std::string& a : args) {
        if (a == "--") break;
        if (isHelp(a)) return CommandLine::Action::Help;
        if (isVersion(a)) return CommandLine::Action::Version;
    }
    return CommandLine::Action::Run;
}

CommandLine ReadCommandLine(const std::vector<std::string>& args) {
    CommandLine line;
    line.action = HelpOrVersionAsked(args);
    if (line.action != CommandLine::Action::Run) return line;
    bool optionsEnded = false;
    const std::string traceWithFile = std::string(kTickTrace) + "=";
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (!optionsEnded && a == "--") {
            optionsEnded = true;
            continue;
        }
        if (!optionsEnded && (a == kTickTrace || a.rfind(traceWithFile, 0) == 0)) {
            std::string file;
            if (a == kTickTrace && i + 1 < args.size())
                file = args[++i];
            else if (a != kTickTrace)
                file = a.substr(traceWithFile.size());
            if (file.empty()) {
                line.action = CommandLine::Action::Error;
                line.error = "--tick-trace needs the name of the file to write the trace to";
                return line;
            }
            line.tickTrace = file;
            continue;
        }
        if (!optionsEnded && a.size() > 1 && a[0] == '-') {
            line.action = CommandLine::Action::Error;
            line.error = "unknown option " + a;
            return line;
        }
        if (line.folder) {
            line.action = CommandLine::Action::Error;
            line.error = "one working folder only, not also " + a;
            return line;
        }
        line.folder = std::filesystem::path(a);
    }
    return line;
}

std::string CommandLineHelp() {
    return std::string("Usage: kova [OPTION]... [FOLDER]\n") + "KOVA " + kVersion +
           ": polls, logs and controls small data-acquisition modules on a PC printer port.\n"
           "\n"
           "KOVA works in FOLDER: Default.Suf, KOVA_P.CAL and the log files are there.\n"
           "Without FOLDER it works in the current folder when that holds a Default.Suf,\n"
           "otherwise in the folder KOVA in your documents folder (~/Documents/KOVA), made\n"
           "on first start with the demonstration configuration in it.\n"
           "\n"
           "  -h, --help     show this help and end\n"
           "  -v, --version  show the version and end\n"
           "  --tick-trace FILE\n"
           "                 write each scan tick's start (s) and duration (ms) to FILE,\n"
           "                 one line per tick, to see how steady the scan is\n"
           "\n"
           "Qt's own options (-platform, -display, -style, ...) are accepted too.\n"
           "The manual page kova(1) and the Help menu say more.\n";
}

std::string VersionLine() {
    return std::string("kova ") + kVersion;
}

}  // namespace kova::app
