// A simulated day of logging, read back by Python's csv module (an ordinary CSV reader that
// shares nothing with the writer), and a writer killed in the middle of its work.
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <fstream>
#include <map>

#include "log_rig.h"
#include "logging/log_switch.h"
#include "logging/log_writer.h"

namespace kova {

using test::At;
using test::ReadFileBytes;

namespace {
// Reads a log with csv.reader and compares it with the expected rows: the header (when one
// is expected), every text field exactly, every value as a number to seven significant
// digits with its blank before and after, and CR LF at the end of every line.
const char* kCheckScript = R"PY(
import csv, sys
log_path, expected_path = sys.argv[1], sys.argv[2]
with open(expected_path, encoding="utf-8") as f:
    expected = [line.rstrip("\n").split("\t") for line in f]
header, expected_rows = expected[0], expected[1:]
raw = open(log_path, "rb").read()
if raw.count(b"\n") != raw.count(b"\r\n") or not raw.endswith(b"\r\n"):
    sys.exit("lines do not all end with CR LF")
with open(log_path, encoding="cp1252", newline="") as f:
    rows = list(csv.reader(f))
if header != ["-"]:
    if rows[0] != header:
        sys.exit("header %r, expected %r" % (rows[0], header))
    rows = rows[1:]
if len(rows) != len(expected_rows):
    sys.exit("%d rows, expected %d" % (len(rows), len(expected_rows)))
for n, (row, want) in enumerate(zip(rows, expected_rows), 1):
    if len(row) != len(want):
        sys.exit("row %d has %d fields: %r" % (n, len(row), row))
    for k, (got, exp) in enumerate(zip(row, want)):
        if exp.startswith("="):
            if not (got.endswith(" ") and got[0] in " -"):
                sys.exit("row %d field %d not padded: %r" % (n, k, got))
            g, e = float(got), float(exp[1:])
            if abs(g - e) > 1e-6 * max(1.0, abs(e)):
                sys.exit("row %d field %d: %r, expected %s" % (n, k, got, exp[1:]))
        elif got != exp:
            sys.exit("row %d field %d: %r, expected %r" % (n, k, got, exp))
print("OK %d" % len(rows))
)PY";

bool HavePython() {
    return std::system("python3 -c 'import csv' >/dev/null 2>&1") == 0;
}

// Runs the check and returns its output (the first line).
std::string CheckWithPython(const test::TempFolder& folder, const std::filesystem::path& log,
                            const std::string& header, const std::vector<std::string>& rows) {
    const auto script = folder / "check_log.py";
    const auto expected = folder / ("expected-" + log.filename().string() + ".txt");
    std::ofstream(script) << kCheckScript;
    {
        std::ofstream out(expected);
        out << header << "\n";
        for (const auto& row : rows) out << row << "\n";
    }
    const std::string cmd =
        "python3 '" + script.string() + "' '" + log.string() + "' '" + expected.string() + "' 2>&1";
    std::string output;
    if (FILE* p = popen(cmd.c_str(), "r")) {
        char buf[512];
        while (std::fgets(buf, sizeof buf, p)) output += buf;
        pclose(p);
    }
    if (!output.empty() && output.back() == '\n') output.pop_back();
    return output;
}

std::string Fixed(const char* fmt, double v) {
    char buf[64];
    std::snprintf(buf, sizeof buf, fmt, v);
    return buf;
}

std::string TwoDigits(int v) {
    return Fixed("%02.0f", v);
}
}  // namespace

TEST(LogDay, ADayOfDailyFilesReadsBackWithAnOrdinaryCsvReader) {
    if (!HavePython()) GTEST_SKIP() << "python3 with its csv module is not available";
    test::LogRig r;
    r.st.periods = {1, kUnitSeconds, 10, kUnitSeconds, 0};
    r.st.logging.DailyFiles = 1;
    r.st.logging.LogDirectory = r.folder.path().string() + "/";
    r.st.logging.LogFileName = r.st.logging.LogDirectory + "PLANT.CSV";
    r.st.logging.LogTimeColumn = Variant::integer(1);
    r.st.logging.LogDateColumn = Variant::integer(1);
    r.tag(1, "TANK", "Tank Level", true);
    r.tag(2, "SPARE", "Spare", false);
    r.tag(3, "TEMP",
          "Temp\xC3\xA9rature \xC2\xB0"
          "C",
          true);
    r.tag(4, "PUMP", "Pump", true);
    const LocalDateTime start = At(2026, 11, 14, 23, 59, 30);
    r.clock.set(start);
    ASSERT_TRUE(ToggleLogging(r.st));

    std::map<std::string, std::vector<std::string>> expected;  // file name -> rows
    const long scans = 30 + 86400 + 5;                         // to 00:00:05 on the 16th
    std::int32_t lastSample = 0;
    for (long k = 1; k <= scans; ++k) {
        const float tank = static_cast<float>(50 + 45 * std::sin(k / 5000.0));
        const float temp = -20.0f + static_cast<float>(k % 7000) * 0.01f;
        const float pump = static_cast<float>((k / 600) % 2);
        r.st.tag(1).Value = tank;
        r.st.tag(2).Value = 99;
        r.st.tag(3).Value = temp;
        r.st.tag(4).Value = pump;
        r.scan();
        if (r.st.logRun.SampleNumber == lastSample) continue;
        lastSample = r.st.logRun.SampleNumber;
        const LocalDateTime t = addMilliseconds(start, 10000LL * lastSample);
        const std::string file =
            "DA" + TwoDigits(t.day) + TwoDigits(t.month) + TwoDigits(t.year % 100) + ".CSV";
        expected[file].push_back(std::to_string(10 * lastSample) + "\t" + TwoDigits(t.hour) + ":" +
                                 TwoDigits(t.minute) + ":" + TwoDigits(t.second) + ".000\t" +
                                 TwoDigits(t.day) + "/" + TwoDigits(t.month) + "/" +
                                 TwoDigits(t.year % 100) + "\t=" + Fixed("%.9g", tank) +
                                 "\t=" + Fixed("%.9g", temp) + "\t=" + Fixed("%.9g", pump));
    }
    ASSERT_EQ(expected.size(), 3u);
    EXPECT_EQ(expected["DA141126.CSV"].size(), 2u);
    EXPECT_EQ(expected["DA151126.CSV"].size(), 8640u);
    EXPECT_EQ(expected["DA161126.CSV"].size(), 1u);

    const std::string header =
        "LOG PERIOD\tTIME\tDATE\tTank Level\tTemp\xC3\xA9rature \xC2\xB0"
        "C\tPump";
    // Logging started on the 14th: that file is appended to without a header.
    EXPECT_EQ(CheckWithPython(r.folder, r.folder / "DA141126.CSV", "-", expected["DA141126.CSV"]),
              "OK 2");
    EXPECT_EQ(
        CheckWithPython(r.folder, r.folder / "DA151126.CSV", header, expected["DA151126.CSV"]),
        "OK 8640");
    EXPECT_EQ(
        CheckWithPython(r.folder, r.folder / "DA161126.CSV", header, expected["DA161126.CSV"]),
        "OK 1");
    // The header and the start of the first record of the full day, byte for byte.
    const std::string day = ReadFileBytes(r.folder / "DA151126.CSV");
    EXPECT_EQ(day.substr(0, 79),
              "LOG PERIOD,TIME,DATE,Tank Level,Temp\xE9rature \xB0"
              "C,Pump\r\n"
              "30,00:00:00.000,15/11/26, ");
}

TEST(LogDay, TheCheckerRejectsAWrongFile) {
    if (!HavePython()) GTEST_SKIP() << "python3 with its csv module is not available";
    test::TempFolder folder;
    test::WriteFileBytes(folder / "BAD.CSV", "LOG PERIOD,Level\r\n1, 12.5 \r\n2, 12.6 \n");
    EXPECT_EQ(
        CheckWithPython(folder, folder / "BAD.CSV", "LOG PERIOD\tLevel", {"1\t=12.5", "2\t=12.6"}),
        "lines do not all end with CR LF");
    test::WriteFileBytes(folder / "BAD.CSV", "LOG PERIOD,Level\r\n1, 12.5 \r\n2, 12.7 \r\n");
    EXPECT_EQ(
        CheckWithPython(folder, folder / "BAD.CSV", "LOG PERIOD\tLevel", {"1\t=12.5", "2\t=12.6"}),
        "row 2 field 1: ' 12.7 ', expected 12.6");
}

TEST(LogDay, AKilledWriterLeavesEveryWrittenRecordWhole) {
    test::LogRig r;
    r.st.periods = {500, kUnitMs, 500, kUnitMs, 0};
    r.st.logging.LogFileName = r.path("KILL.CSV");
    r.st.logging.OverwriteFile = 1;
    r.tag(1, "TANK", "Tank Level", true, 12.5f);
    const pid_t child = fork();
    ASSERT_NE(child, -1);
    if (child == 0) {
        ToggleLogging(r.st);
        r.scans(3);
        kill(getpid(), SIGKILL);  // no close, no exit handlers, no destructors
        _exit(0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), SIGKILL);
    EXPECT_EQ(ReadFileBytes(r.folder / "KILL.CSV"),
              "LOG PERIOD,Tank Level\r\n0.500, 12.5 \r\n1.000, 12.5 \r\n1.500, 12.5 \r\n");
}

}  // namespace kova
