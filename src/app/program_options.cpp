#include "app/program_options.h"

namespace kova::app {

namespace {
constexpr const char* kTickTrace = "--tick-trace";
}

ProgramOptions ParseProgramOptions(const std::vector<std::string>& args) {
    ProgramOptions o;
    const std::string withValue = std::string(kTickTrace) + "=";
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        std::optional<std::string> file;
        if (a == kTickTrace) {
            if (i + 1 < args.size()) file = args[++i];
        } else if (a.rfind(withValue, 0) == 0) {
            file = a.substr(withValue.size());
        } else {
            continue;
        }
        if (!file || file->empty()) {
            o.error = "--tick-trace needs the name of the file to write the trace to";
            return o;
        }
        o.tickTrace = *file;
    }
    return o;
}

}  // namespace kova::app
