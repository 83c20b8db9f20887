// kova-cli check FILE.SUF: runs every checker over the file and lists what they find.
#include <cstdio>
#include <memory>

#include "commands.h"
#include "core/atomic_file.h"
#include "core/setup_file.h"

namespace {

using namespace kova;

// What the checkers look at: the file's bytes and, when every record reads, the
// configuration it holds (null otherwise).
struct SetupUnderCheck {
    std::string bytes;
    std::unique_ptr<Station> station;
};

using Problems = std::vector<std::string>;

// Every record reads: no record cut short, no length past its record, no unknown variant.
void CheckRecordsRead(const SetupUnderCheck& file, Problems& problems) {
    for (auto& p : FindSetupFileProblems(file.bytes)) problems.push_back(std::move(p));
}

struct Checker {
    const char* name;
    void (*run)(const SetupUnderCheck&, Problems&);
    bool needsStation;  // runs only when the file reads
};

// One line per checker; they run in this order.
constexpr Checker kCheckers[] = {
    {"records", CheckRecordsRead, false},
};

}  // namespace

int CheckCommand(const std::vector<std::string>& args) {
    if (args.size() != 1 || args[0].empty() || args[0][0] == '-')
        return cli::Fail("check: expected one setup file: kova-cli check FILE.SUF");
    const std::string& path = args[0];
    SetupUnderCheck file;
    std::string error;
    if (!ReadWholeFile(path, file.bytes, error, 1u << 20)) return cli::Fail("check: " + error);
    auto st = std::make_unique<Station>();
    if (DecodeSetupFile(*st, file.bytes, error)) file.station = std::move(st);

    Problems problems;
    for (const Checker& c : kCheckers) {
        if (c.needsStation && !file.station) continue;
        c.run(file, problems);
    }
    for (const auto& p : problems) std::printf("%s: %s\n", path.c_str(), p.c_str());
    if (problems.empty()) std::printf("%s: no problems found\n", path.c_str());
    return problems.empty() ? 0 : 1;
}
