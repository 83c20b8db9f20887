// kova-cli run: a setup file runs as the program's start-up would run it, on a simulated
// or the real clock.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <chrono>
#include <memory>
#include <thread>

#include "cli_runner.h"
#include "core/configuration.h"
#include "core/setup_file.h"
#include "support/test_support.h"
#include "tags/tag_table.h"

namespace kova::test {
namespace {

constexpr const char* kStart = "2026-11-15 10:00:00.000";  // a Sunday

void setTag(Station& st, int n, const std::string& name, const std::string& io, int raw2 = 1,
            float eng2 = 1) {
    Tag& t = st.tags[n];
    t.TagName = name;
    t.Label = name + " label";
    BindIOName(t, io);
    t.Address = 1;
    t.RawValue1 = 0;
    t.EngValue1 = 0;
    t.RawValue2 = static_cast<std::int16_t>(raw2);
    t.EngValue2 = eng2;
}

void setControl(Station& st, int n, const std::string& thenText, const std::string& thenCode) {
    ControlLine& l = st.control.Lines[n];
    l.IfText = "";
    l.IfCode = ",";
    l.ThenText = thenText;
    l.ThenCode = thenCode;
}

struct Folder {
    TempFolder dir;
    std::string save(const Station& st, const std::string& name = "run.SUF") {
        SaveConfiguration(st, dir / name);
        return (dir / name).string();
    }
};

nlohmann::json readJson(const std::filesystem::path& p) {
    return nlohmann::json::parse(ReadFileBytes(p));
}

TEST(CliRun, SimulatedClockGivesTheHandComputedValues) {
    Folder f;
    auto st = std::make_unique<Station>();
    setTag(*st, 1, "A1", "AI-1");
    setTag(*st, 2, "T", "Analog Variable");
    setControl(*st, 1, "@T = @TS", "@T,@TS,!");
    st->switches.ControlsEnabled = 1;
    const std::string file = f.save(*st);

    const CliResult r =
        RunCliIn(f.dir.path(), {"run", file, "--start", kStart, "--ticks", "5", "--poll", "--state",
                                "state.json", "--save", "out.SUF"});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(r.out, "");
    // One-second period: five scans read AI-1 as 200, 202, 204, 206, 208.
    auto out = std::make_unique<Station>();
    ASSERT_TRUE(LoadSetupFile(*out, f.dir / "out.SUF").ok);
    EXPECT_EQ(out->tags[1].Value, 208.0f);
    EXPECT_EQ(out->tags[2].Value, 36004.0f);  // TS of the fifth tick, copied by the statement
    const auto state = readJson(f.dir / "state.json");
    EXPECT_EQ(state["tags"][32]["TagName"], "TS");
    EXPECT_EQ(state["tags"][32]["Value"], 36004.0);
    EXPECT_EQ(state["tags"][33]["Value"], 10.0);  // HR
    EXPECT_EQ(state["tags"][34]["Value"], 0.0);   // MN
    EXPECT_EQ(state["tags"][35]["Value"], 4.0);   // SC
    EXPECT_EQ(state["tags"][36]["Value"], 1.0);   // DW: Sunday
    EXPECT_EQ(state["tags"][37]["Value"], 1.0);   // SU after the first pass
    EXPECT_EQ(state["TagMaximum"][0], 208.0);
    EXPECT_EQ(state["TagMinimum"][0], 0.0);      // both start at 0
    EXPECT_EQ(state["TagMaximum"][1], 36003.0);  // tracked before the statements of the same tick
    // The calibration file was created in the working folder with the defaults.
    EXPECT_EQ(ReadFileBytes(f.dir / "KOVA_P.CAL"), " 4000  4000  0 \r\n");
}

TEST(CliRun, WithoutPollInputsReadZeroAndTagsTakeTheirOffset) {
    Folder f;
    auto st = std::make_unique<Station>();
    setTag(*st, 1, "A1", "AI-1", 2, 6);  // slope 3, offset 0 ...
    st->tags[1].EngValue1 = 4;           // ... then offset 4
    const std::string file = f.save(*st);
    const CliResult r = RunCliIn(
        f.dir.path(), {"run", file, "--start", kStart, "--ticks", "3", "--save", "out.SUF"});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    auto out = std::make_unique<Station>();
    ASSERT_TRUE(LoadSetupFile(*out, f.dir / "out.SUF").ok);
    EXPECT_EQ(out->tags[1].Value, 4.0f);
}

TEST(CliRun, AlarmLinesArePrintedAsTheyReachTheStatusBar) {
    Folder f;
    auto st = std::make_unique<Station>();
    setTag(*st, 1, "A1", "AI-1");
    AlarmDef& a = st->alarms.Alarms[1];
    a.TagName = "A1";
    a.TagNo = 1;
    a.HiVal = 205;
    a.HiMsg = "A1 high";
    a.LoVal = 100;
    a.LoMsg = "A1 low";
    a.NormMsg = "A1 normal";
    st->switches.AlarmsEnabled = 1;
    const std::string file = f.save(*st);
    // Values 200, 202, 204, 206, ..., 398, 200: high from the 4th tick (10:00:03), normal again
    // when the ramp falls back on the 101st (10:01:40).
    const CliResult r =
        RunCliIn(f.dir.path(), {"run", file, "--start", kStart, "--ticks", "102", "--poll"});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(r.out,
              "ALARM 11-15-2026 10:00:03 A1 high\n"
              "NORML 11-15-2026 10:01:40 A1 normal\n");
}

TEST(CliRun, BadArgumentsAreOneLineErrorsWithExitCode2) {
    Folder f;
    auto st = std::make_unique<Station>();
    const std::string file = f.save(*st);
    for (const std::vector<std::string>& args : std::vector<std::vector<std::string>>{
             {"run"},
             {"run", file, "--bogus"},
             {"run", file, "--start", "yesterday"},
             {"run", file, "--start", "2026-13-01 00:00:00.000"},
             {"run", file, "--ticks", "-4"},
             {"run", file, "--ticks"},
             {"run", file, "--port", "lpt9"},
             {"run", (f.dir / "none.SUF").string(), "--ticks", "1"}}) {
        const CliResult r = RunCliIn(f.dir.path(), args);
        EXPECT_EQ(r.exitCode, 2) << args.back();
        EXPECT_EQ(r.err.rfind("kova-cli: run: ", 0), 0u) << r.err;
        EXPECT_EQ(r.err.find('\n'), r.err.size() - 1) << r.err;
    }
}

TEST(CliRun, CorruptSetupFileIsRefusedNamingTheFile) {
    Folder f;
    WriteFileBytes(f.dir / "bad.SUF", std::string(300, '\x7f'));
    const CliResult r =
        RunCliIn(f.dir.path(), {"run", (f.dir / "bad.SUF").string(), "--ticks", "1"});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_NE(r.err.find("bad.SUF"), std::string::npos);
}

TEST(CliRun, SimulatedQrtuLatchesTheOutputsTheStatementsWrite) {
    Folder f;
    auto st = std::make_unique<Station>();
    st->profile.TypeCode = kDaqQrtu;
    setTag(*st, 1, "IN1", "AI-1");
    setTag(*st, 2, "OUT2", "DO-2");
    setTag(*st, 3, "AO", "AO-1");
    setTag(*st, 4, "DIN", "DI-3");
    setControl(*st, 1, "@OUT2 = 1", "@OUT2,1,!");
    setControl(*st, 2, "@AO = @IN1 / 10", "@AO,@IN1,10,/,!");
    st->switches.ControlsEnabled = 1;
    const std::string file = f.save(*st);
    const CliResult r =
        RunCliIn(f.dir.path(), {"run", file, "--start", kStart, "--ticks", "3", "--poll", "--port",
                                "sim", "--save", "out.SUF", "--state", "s.json"});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    // AI-1 reads 1 x 100 + 20; the statements write DO-2 and AO-1 = 12.
    // The measured speed comes first, as the program's splash shows it.
    EXPECT_EQ(r.out.rfind("PC SPEED=", 0), 0u) << r.out;
    EXPECT_EQ(r.out.substr(r.out.find('\n') + 1), "outputs: DO=0x02 AO-1=12 AO-2=0\n");
    auto out = std::make_unique<Station>();
    ASSERT_TRUE(LoadSetupFile(*out, f.dir / "out.SUF").ok);
    EXPECT_EQ(out->tags[1].Value, 120.0f);
    EXPECT_EQ(out->tags[4].Value, 1.0f);  // 0x5AA5: DI-3 on
    const auto state = readJson(f.dir / "s.json");
    EXPECT_EQ(state["DigitalOutputImage"], 2);
    EXPECT_EQ(state["AnalogOutputValues"][0], 12);
}

TEST(CliRun, SimulatedQrt105ReadsItsFixedInputs) {
    Folder f;
    auto st = std::make_unique<Station>();
    st->profile.TypeCode = kDaqQrt105;
    setTag(*st, 1, "IN3", "AI-3");
    setTag(*st, 2, "IN8", "AI-8");
    setTag(*st, 3, "D2", "DI-2");
    setTag(*st, 4, "D1", "DI-1");
    const std::string file = f.save(*st);
    const CliResult r = RunCliIn(f.dir.path(), {"run", file, "--start", kStart, "--ticks", "2",
                                                "--poll", "--port", "sim", "--save", "out.SUF"});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    // The measured speed comes first, as the program's splash shows it.
    EXPECT_EQ(r.out.rfind("PC SPEED=", 0), 0u) << r.out;
    EXPECT_EQ(r.out.substr(r.out.find('\n') + 1), "outputs: DO=0x00 AO-1=0 AO-2=0\n");
    auto out = std::make_unique<Station>();
    ASSERT_TRUE(LoadSetupFile(*out, f.dir / "out.SUF").ok);
    EXPECT_EQ(out->tags[1].Value, 1400.0f);  // 3 x 450 + 50
    EXPECT_EQ(out->tags[2].Value, 3650.0f);  // 8 x 450 + 50
    EXPECT_EQ(out->tags[3].Value, 1.0f);     // word 10: DI-2 and DI-4 on
    EXPECT_EQ(out->tags[4].Value, 0.0f);
}

TEST(CliRun, LogWritesARecordPerLoggingPeriod) {
    Folder f;
    auto st = std::make_unique<Station>();
    setTag(*st, 1, "A1", "AI-1");
    st->tags[1].Log = 1;
    st->periods = {500, kUnitMs, 1000, kUnitMs, 0};
    st->logging.LogFileName = (f.dir / "log.CSV").string();
    st->logging.OverwriteFile = 1;
    st->logging.LogTimeColumn = Variant::boolean(true);
    const std::string file = f.save(*st);
    const CliResult r =
        RunCliIn(f.dir.path(), {"run", file, "--start", kStart, "--ticks", "6", "--poll", "--log"});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    // Scans read 200, 202, ...; a record every second scan, time stamps from the logging clock.
    EXPECT_EQ(ReadFileBytes(f.dir / "log.CSV"),
              "LOG PERIOD,TIME,A1 label\r\n"
              "1.000,10:00:01.000, 202 \r\n"
              "2.000,10:00:02.000, 206 \r\n"
              "3.000,10:00:03.000, 210 \r\n");
}

// Starts kova-cli run on the real clock in the background; its standard error goes to
// `errors` when given.
pid_t startRun(const std::filesystem::path& folder, const std::vector<std::string>& args,
               const std::filesystem::path& errors = {}) {
    const pid_t pid = fork();
    if (pid == 0) {
        if (chdir(folder.c_str()) != 0) _exit(127);
        const int devnull = open("/dev/null", O_WRONLY);
        dup2(devnull, 1);
        if (!errors.empty()) dup2(open(errors.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), 2);
        std::vector<std::string> all = {CliPath().string()};
        all.insert(all.end(), args.begin(), args.end());
        std::vector<char*> argv;
        for (auto& a : all) argv.push_back(a.data());
        argv.push_back(nullptr);
        execv(argv[0], argv.data());
        _exit(127);
    }
    return pid;
}

// Ends a run as a service manager does (SIGTERM); its exit code, -1 when it did not exit.
int terminateRun(pid_t pid) {
    kill(pid, SIGTERM);
    int status = 0;
    waitpid(pid, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string fastLoggingFile(Folder& f) {
    auto st = std::make_unique<Station>();
    setTag(*st, 1, "A1", "AI-1");
    st->tags[1].Log = 1;
    st->periods = {50, kUnitMs, 50, kUnitMs, 0};
    st->logging.LogFileName = (f.dir / "log.CSV").string();
    st->logging.OverwriteFile = 1;
    return f.save(*st);
}

TEST(CliRun, KilledMidRunKeepsEveryCompletedRecord) {
    Folder f;
    const std::string file = fastLoggingFile(f);
    const pid_t pid = startRun(f.dir.path(), {"run", file, "--poll", "--log"});
    ASSERT_GT(pid, 0);
    std::this_thread::sleep_for(std::chrono::milliseconds(800));
    kill(pid, SIGKILL);
    int status = 0;
    waitpid(pid, &status, 0);
    const std::string log = ReadFileBytes(f.dir / "log.CSV");
    ASSERT_GE(log.size(), 2u);
    EXPECT_EQ(log.substr(log.size() - 2), "\r\n");  // no half-written record
    std::size_t records = 0;
    for (std::size_t p = log.find("\r\n"); p != std::string::npos; p = log.find("\r\n", p + 2))
        ++records;
    EXPECT_GE(records, 4u);  // the header and at least three records in 0.8 s at 50 ms
}

TEST(CliRun, TerminatedRunClosesTheLogAndExitsCleanly) {
    Folder f;
    const std::string file = fastLoggingFile(f);
    const pid_t pid = startRun(f.dir.path(), {"run", file, "--poll", "--log"});
    ASSERT_GT(pid, 0);
    std::this_thread::sleep_for(std::chrono::milliseconds(400));
    EXPECT_EQ(terminateRun(pid), 0);
    const std::string log = ReadFileBytes(f.dir / "log.CSV");
    EXPECT_EQ(log.rfind("LOG PERIOD,A1 label\r\n", 0), 0u);
    EXPECT_EQ(log.substr(log.size() - 2), "\r\n");
}

// Waits until the file holds at least `lines` lines, at most five seconds.
bool hasLines(const std::filesystem::path& p, std::size_t lines) {
    for (int i = 0; i < 500; ++i) {
        std::error_code ec;
        if (std::filesystem::exists(p, ec)) {
            const std::string s = ReadFileBytes(p);
            if (static_cast<std::size_t>(std::count(s.begin(), s.end(), '\n')) >= lines)
                return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
}

TEST(CliRun, ALogFileRenamedOrDeletedMidRunIsStartedAgainAndSaidOnce) {
    Folder f;
    const std::string file = fastLoggingFile(f);
    const pid_t pid = startRun(f.dir.path(), {"run", file, "--poll", "--log"}, f.dir / "stderr");
    ASSERT_GT(pid, 0);
    const auto log = f.dir / "log.CSV";
    ASSERT_TRUE(hasLines(log, 3));
    std::filesystem::rename(log, f.dir / "log-1.CSV");
    ASSERT_TRUE(hasLines(log, 3));
    std::filesystem::remove(log);
    ASSERT_TRUE(hasLines(log, 3));
    EXPECT_EQ(terminateRun(pid), 0);
    const std::string said = ReadFileBytes(f.dir / "stderr");
    const std::string line = "kova-cli: run: Log file \"" + log.string() +
                             "\" was renamed or deleted while logging: it was started again with "
                             "its header, and logging goes on\n";
    EXPECT_EQ(said, line + line);
    // The renamed part and the file now at the path both start with the header, and the
    // records run on from one into the other.
    const std::string first = ReadFileBytes(f.dir / "log-1.CSV");
    const std::string now = ReadFileBytes(log);
    EXPECT_EQ(first.rfind("LOG PERIOD,A1 label\r\n", 0), 0u);
    EXPECT_EQ(now.rfind("LOG PERIOD,A1 label\r\n", 0), 0u);
    EXPECT_EQ(now.substr(now.size() - 2), "\r\n");
}

}  // namespace
}  // namespace kova::test
