// kova-cli run with real module types: the PC's speed is measured and printed, the
// simulated modules read on every tick at that pace, a port that cannot be reached is told
// once with what the module reads, and SIGTERM ends the run within a second whatever it
// is doing.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <thread>

#include "cli_runner.h"
#include "core/configuration.h"
#include "core/setup_file.h"
#include "support/test_support.h"
#include "tags/tag_table.h"

namespace kova::test {
namespace {

constexpr const char* kStart = "2026-11-15 10:00:00.000";

void setTag(Station& st, int n, const std::string& name, const std::string& io) {
    Tag& t = st.tags[n];
    t.TagName = name;
    t.Label = name + " label";
    BindIOName(t, io);
    t.Address = 1;
    t.RawValue1 = 0;
    t.EngValue1 = 0;
    t.RawValue2 = 1;
    t.EngValue2 = 1;
}

// A setup file of the given module type with AI-1..AI-n as tags 1..n.
std::string saveModule(const TempFolder& dir, int type, int analogInputs) {
    auto st = std::make_unique<Station>();
    st->profile.TypeCode = static_cast<std::int16_t>(type);
    for (int n = 1; n <= analogInputs; ++n)
        setTag(*st, n, "IN" + std::to_string(n), "AI-" + std::to_string(n));
    st->periods = {100, kUnitMs, 1, kUnitSeconds, 0};
    const auto path = dir / "run.SUF";
    SaveConfiguration(*st, path);
    return path.string();
}

// The Delay printed on the speed line, -1 when there is none.
int printedDelay(const std::string& out) {
    if (out.rfind("PC SPEED=", 0) != 0) return -1;
    const auto at = out.find("  Delay=");
    return at == std::string::npos ? -1 : std::atoi(out.c_str() + at + 8);
}

// kova-cli run on the real clock in the background, its output in files of `dir`.
struct Background {
    pid_t pid = -1;
    std::filesystem::path out, err;
    Background(const TempFolder& dir, const std::vector<std::string>& args)
        : out(dir / "stdout"), err(dir / "stderr") {
        pid = fork();
        if (pid == 0) {
            const int o = open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
            const int e = open(err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
            dup2(o, 1);
            dup2(e, 2);
            if (chdir(dir.path().c_str()) != 0) _exit(127);
            std::vector<std::string> all = {CliPath().string()};
            all.insert(all.end(), args.begin(), args.end());
            std::vector<char*> argv;
            for (auto& a : all) argv.push_back(a.data());
            argv.push_back(nullptr);
            execv(argv[0], argv.data());
            _exit(127);
        }
    }
    // Sends the signal and waits for the end; the time it took.
    std::chrono::milliseconds terminate(int& status, int signal = SIGTERM) {
        const auto t0 = std::chrono::steady_clock::now();
        kill(pid, signal);
        waitpid(pid, &status, 0);
        pid = -1;
        return std::chrono::duration_cast<std::chrono::milliseconds>(
            std::chrono::steady_clock::now() - t0);
    }
    ~Background() {
        if (pid > 0) {
            kill(pid, SIGKILL);
            waitpid(pid, nullptr, 0);
        }
    }
};

// Whether the process has installed its own SIGINT and SIGTERM handlers (Linux's table of
// caught signals), so a signal sent now tests the run's handling, not the default action.
bool catchesStopSignals(pid_t pid) {
    const std::string status = ReadFileBytes("/proc/" + std::to_string(pid) + "/status");
    const auto at = status.find("SigCgt:");
    if (at == std::string::npos) return false;
    const unsigned long long caught = std::strtoull(status.c_str() + at + 7, nullptr, 16);
    const unsigned long long wanted = (1ULL << (SIGINT - 1)) | (1ULL << (SIGTERM - 1));
    return (caught & wanted) == wanted;
}

void waitForStopSignals(pid_t pid) {
    const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    while (!catchesStopSignals(pid) && std::chrono::steady_clock::now() < until)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
}

bool portReachable() {
    return std::filesystem::exists("/dev/parport0");
}

}  // namespace

TEST(CliRunModules, Qrt110OnTheSimulatedPortReadsEveryTickAtTheMeasuredPace) {
    TempFolder dir;
    const std::string file = saveModule(dir, kDaqQrt110, 8);
    const CliResult r = RunCliIn(dir.path(), {"run", file, "--start", kStart, "--ticks", "4",
                                              "--poll", "--port", "sim", "--save", "out.SUF"});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    EXPECT_GT(printedDelay(r.out), 0) << r.out;
    EXPECT_EQ(r.err, "");  // no fault on any tick
    auto out = std::make_unique<Station>();
    ASSERT_TRUE(LoadSetupFile(*out, dir / "out.SUF").ok);
    for (int n = 1; n <= 8; ++n) EXPECT_EQ(out->tags[n].Value, n * 450.0f + 50) << n;
}

TEST(CliRunModules, TheTestModuleNeedsNoMeasurement) {
    TempFolder dir;
    const std::string file = saveModule(dir, kDaqTest, 1);
    const CliResult r =
        RunCliIn(dir.path(), {"run", file, "--start", kStart, "--ticks", "2", "--poll"});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(r.out.find("PC SPEED="), std::string::npos);
}

TEST(CliRunModules, AQrtuOnAPortThatCannotBeReachedStopsWithinASecondOfSigterm) {
    TempFolder dir;
    const std::string file = saveModule(dir, kDaqQrtu, 4);
    Background run(dir, {"run", file, "--poll"});
    ASSERT_GT(run.pid, 0);
    // Past the measurement (about two seconds) and a few scans.
    const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (printedDelay(ReadFileBytes(run.out)) < 0 && std::chrono::steady_clock::now() < until)
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    std::this_thread::sleep_for(std::chrono::milliseconds(400));
    int status = 0;
    const auto took = run.terminate(status);
    EXPECT_LT(took, std::chrono::milliseconds(1000));
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
    EXPECT_GT(printedDelay(ReadFileBytes(run.out)), 0);
    if (portReachable()) GTEST_SKIP() << "this machine has a printer port";
    const std::string err = ReadFileBytes(run.err);
    const std::string told =
        "kova-cli: run: Printer port LPT 1 cannot be reached, the modules will read every line "
        "high, as with nothing connected.";
    EXPECT_EQ(err.find(told), 0u) << err;
    EXPECT_EQ(err.find(told, 1), std::string::npos) << "told once";
    EXPECT_NE(err.find("The QRTU will read 1023 on every analog input and 32767 on its digital "
                       "inputs.\n"),
              std::string::npos)
        << err;
}

TEST(CliRunModules, SigtermOrSigintDuringTheSpeedMeasurementEndsTheRunAtOnce) {
    for (const int signal : {SIGTERM, SIGINT}) {
        TempFolder dir;
        const std::string file = saveModule(dir, kDaqQrt105, 1);
        Background run(dir, {"run", file, "--poll", "--port", "sim"});
        ASSERT_GT(run.pid, 0);
        waitForStopSignals(run.pid);
        ASSERT_TRUE(catchesStopSignals(run.pid));
        std::this_thread::sleep_for(std::chrono::milliseconds(100));  // into the measurement
        int status = 0;
        const auto took = run.terminate(status, signal);
        EXPECT_LT(took, std::chrono::milliseconds(1000)) << signal;
        ASSERT_TRUE(WIFEXITED(status)) << signal;
        EXPECT_EQ(WEXITSTATUS(status), 0);
        EXPECT_EQ(printedDelay(ReadFileBytes(run.out)), -1);  // stopped before it was known
    }
}

}  // namespace kova::test
