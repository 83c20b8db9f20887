// kova-cli check FILE.SUF: runs every checker over the file and lists what they find.
#include <cstdio>
#include <memory>

#include "commands.h"
#include "control/line_check.h"
#include "core/atomic_file.h"
#include "core/configuration.h"
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

// Values the program cannot use: an unknown module type, a period unit other than
// milliseconds or seconds, tag numbers outside the tag table.
void CheckValues(const SetupUnderCheck& file, Problems& problems) {
    const Station& st = *file.station;
    auto add = [&](const std::string& p) { problems.push_back(p); };
    if (st.profile.TypeCode < 0 || st.profile.TypeCode > 5)
        add("DaqType " + std::to_string(st.profile.TypeCode) + " is not a module type (0..5)");
    if (st.periods.IOUnits != kUnitMs && st.periods.IOUnits != kUnitSeconds)
        add("IOUnits " + std::to_string(st.periods.IOUnits) +
            " is neither 1 (milliseconds) nor 1000 (seconds)");
    if (st.periods.LogUnits != kUnitMs && st.periods.LogUnits != kUnitSeconds)
        add("LogUnits " + std::to_string(st.periods.LogUnits) +
            " is neither 1 (milliseconds) nor 1000 (seconds)");
    for (int s = 1; s <= 10; ++s)
        for (int l = 1; l <= 20; ++l) {
            const int n = st.screens.Lines(s, l).TagNumber;
            if (n < 0 || n > 42)
                add("screen " + std::to_string(s) + " line " + std::to_string(l) + ": tag number " +
                    std::to_string(n) + " is outside 0..42");
        }
    for (int a = 1; a <= kAlarmCount; ++a) {
        const int n = st.alarms.Alarms[a].TagNo;
        if (n < 0 || n > 42)
            add("alarm " + std::to_string(a) + ": tag number " + std::to_string(n) +
                " is outside 0..42");
    }
}

// Every stored control line compiles as the editor would check it.
void CheckControlLines(const SetupUnderCheck& file, Problems& problems) {
    for (auto& p : CheckControlTable(*file.station)) problems.push_back(std::move(p));
}

struct Checker {
    const char* name;
    void (*run)(const SetupUnderCheck&, Problems&);
    bool needsStation;  // runs only when the file reads
};

// One line per checker; they run in this order.
constexpr Checker kCheckers[] = {
    {"records", CheckRecordsRead, false},
    {"values", CheckValues, true},
    {"control lines", CheckControlLines, true},
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
    Problems problems;
    if (DecodeSetupFile(*st, file.bytes, error)) {
        try {
            DeriveAfterLoad(*st);  // name index, I/O list and control count, as a load does
            file.station = std::move(st);
        } catch (const std::exception& e) {
            problems.push_back(std::string("the configuration cannot be used: ") + e.what());
        }
    }

    for (const Checker& c : kCheckers) {
        if (c.needsStation && !file.station) continue;
        c.run(file, problems);
    }
    for (const auto& p : problems) std::printf("%s: %s\n", path.c_str(), p.c_str());
    if (problems.empty()) std::printf("%s: no problems found\n", path.c_str());
    return problems.empty() ? 0 : 1;
}
