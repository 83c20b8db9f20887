// kova-cli check FILE.SUF: runs every checker over the file and lists what they find.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>

#include "cli_check_tags.h"
#include "cli_check_windows.h"
#include "cli_output.h"
#include "commands.h"
#include "core/atomic_file.h"
#include "core/configuration.h"
#include "core/numeric.h"
#include "core/scan_cycle.h"
#include "core/setup_file.h"
#include "logging/log_texts.h"

namespace kova::cli {

namespace {

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

std::string oneLine(std::string text) {
    for (char& c : text)
        if (c == '\n') c = ' ';
    return text;
}

// A numeric variant's value; strings and empty values are left to the record checks.
bool numberOf(const Variant& v, double& out) {
    if (v.type == kVarString || v.type == kVarEmpty || v.type == kVarNull) return false;
    out = v.number;
    return true;
}

// Values a file can carry but a set-up window would refuse, each with the window's own
// words, so the user knows which window puts it right.
void CheckSetupWindowValues(const SetupUnderCheck& file, Problems& problems) {
    const Station& st = *file.station;
    const Periods& p = st.periods;
    auto add = [&](const std::string& what, const char* message) {
        problems.push_back(what + ": the periods window refuses it (\"" + message + "\")");
    };
    const bool ioMs = p.IOUnits == kUnitMs, logMs = p.LogUnits == kUnitMs;
    if (ioMs && p.IOPeriod < kShortestScanMs)
        add("IOPeriod " + std::to_string(p.IOPeriod) + " mSeconds (the scan runs it as " +
                std::to_string(kShortestScanMs) + " mSeconds)",
            "Time Between I/O Readings Cannot Be Less than 50mSecs");
    if (logMs && p.LogPeriod < kShortestScanMs)
        add("LogPeriod " + std::to_string(p.LogPeriod) + " mSeconds",
            "Time Between Logging Readings Cannot Be Less than 50mSecs");
    const bool unitsKnown =
        (ioMs || p.IOUnits == kUnitSeconds) && (logMs || p.LogUnits == kUnitSeconds);
    if (unitsKnown && static_cast<long long>(p.IOPeriod) * p.IOUnits >
                          static_cast<long long>(p.LogPeriod) * p.LogUnits)
        add("IOPeriod " + std::to_string(p.IOPeriod) + (ioMs ? " mSeconds" : " Seconds") +
                " with LogPeriod " + std::to_string(p.LogPeriod) +
                (logMs ? " mSeconds" : " Seconds"),
            "Period for I/O Readings must be less than or equal to Logging Period");

    const LogSettings& log = st.logging;
    auto logProblem = [&](const std::string& what, const char* message) {
        problems.push_back(what + ": the logging start/stop window refuses it (\"" +
                           oneLine(message) + "\")");
    };
    double v = 0;
    if (numberOf(log.StopSampleCount, v) && (v < 0 || v > 32000))
        logProblem("StopSampleCount " + plainNumberText(v), logtext::kSampleNumberRange);
    auto clock = [&](const char* name, const Variant& hour, const Variant& minute,
                     const char* message) {
        double h = 0, m = 0;
        const bool hasHour = numberOf(hour, h), hasMinute = numberOf(minute, m);
        if ((hasHour && (h < 0 || h > 23 || h != static_cast<long long>(h))) ||
            (hasMinute && (m < 0 || m > 59 || m != static_cast<long long>(m))))
            logProblem(std::string(name) + " " + plainNumberText(h) + ":" + plainNumberText(m),
                       message);
    };
    clock("start time", log.StartHour, log.StartMinute, logtext::kStartTimeFormat);
    clock("stop time", log.StopHour, log.StopMinute, logtext::kStopTimeFormat);
    if (log.LogMode < 0 || log.LogMode > 2)
        problems.push_back("LogMode " + std::to_string(log.LogMode) +
                           " is none of 0 (samples), 1 (tag value), 2 (clock times)");
    if (log.LogMode == 1 && (log.ConditionTag < 1 || log.ConditionTag > 42))
        logProblem("ConditionTag " + std::to_string(log.ConditionTag) + " (logging by tag value)",
                   logtext::kTagNotFound);

    for (int t = 1; t <= 10; ++t)
        for (int pen = 1; pen <= 4; ++pen) {
            const int n = st.trends.TrendTable(t, pen);
            if (n < 0 || n > 42)
                problems.push_back("trend " + std::to_string(t) + " pen " + std::to_string(pen) +
                                   ": tag number " + std::to_string(n) + " is outside 0..42");
        }
    if (st.daq.PrinterPortNumber < 1)
        problems.push_back("PrinterPortNumber " + std::to_string(st.daq.PrinterPortNumber) +
                           " is not a printer port (LPT 1 and up)");
}

// Named tags the tag editor would not accept as they stand.
void CheckTags(const SetupUnderCheck& file, Problems& problems) {
    for (auto& p : CheckTagRecords(*file.station)) problems.push_back(std::move(p));
}

// The file read into a station of its own, for checks that must change what they check.
std::unique_ptr<Station> scratchStation(const SetupUnderCheck& file) {
    auto st = std::make_unique<Station>();
    std::string error;
    if (!DecodeSetupFile(*st, file.bytes, error)) return nullptr;
    DeriveAfterLoad(*st);
    return st;
}

// Trend pens and the logging condition that lost the tag they followed.
void CheckReferences(const SetupUnderCheck& file, Problems& problems) {
    for (auto& p : CheckTagReferences(*file.station)) problems.push_back(std::move(p));
}

// Alarms the alarm set-up window would not save as they stand.
void CheckAlarms(const SetupUnderCheck& file, Problems& problems) {
    for (auto& p : CheckAlarmRecords(*file.station)) problems.push_back(std::move(p));
}

// Jump targets and screen lines the screen set-up window would not save.
void CheckScreens(const SetupUnderCheck& file, Problems& problems) {
    for (auto& p : CheckScreenRecords(*file.station)) problems.push_back(std::move(p));
}

// Trend pens the trend set-up window would not keep.
void CheckTrends(const SetupUnderCheck& file, Problems& problems) {
    for (auto& p : CheckTrendRecords(*file.station)) problems.push_back(std::move(p));
}

// Every stored control line passes the editor's check. The editor executes each assignment
// once; that happens on a copy of its own, so no other checker sees the values it writes.
void CheckControlLines(const SetupUnderCheck& file, Problems& problems) {
    const auto scratch = scratchStation(file);
    if (!scratch) return;  // cannot happen: the file read once already
    for (auto& p : CheckControlRecords(*file.station, *scratch)) problems.push_back(std::move(p));
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
    {"set-up windows", CheckSetupWindowValues, true},
    {"tags", CheckTags, true},
    {"references", CheckReferences, true},
    {"alarms", CheckAlarms, true},
    {"screens", CheckScreens, true},
    {"trends", CheckTrends, true},
    {"control lines", CheckControlLines, true},
};

int check(const std::string& path) {
    SetupUnderCheck file;
    std::string error;
    if (!ReadWholeFile(path, file.bytes, error, 1u << 20)) return Fail("check: " + error);
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
    std::string report;
    for (const auto& p : problems) report += path + ": " + p + "\n";
    if (problems.empty()) report = path + ": no problems found\n";
    if (!WriteStandardOutput(report, error)) return Fail("check: " + error);
    return problems.empty() ? 0 : 1;
}

}  // namespace

void AddCheckCommand(CLI::App& app, CommandRun& run) {
    auto path = std::make_shared<std::string>();
    CLI::App* cmd = app.add_subcommand(
        "check", "Every problem of a setup file, one per line (exit 1 when there are any)");
    cmd->add_option("FILE.SUF", *path, "The setup file")->required();
    cmd->callback([path, &run] { run = [path] { return check(*path); }; });
}

}  // namespace kova::cli
