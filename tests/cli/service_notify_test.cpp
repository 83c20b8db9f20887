// kova-cli run as a systemd service (Type=notify), seen from a notify socket the test makes
// itself, as systemd would (CliRunNotify: Linux only, the Windows build has no systemd): READY=1
// after the first tick, WATCHDOG=1 from the scan at least twice per WATCHDOG_USEC, none while the
// scan is stalled (--stall-scan), STOPPING=1 at the end.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "cli_runner.h"
#include "core/configuration.h"
#include "support/test_support.h"

namespace kova::test {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

struct Notice {
    Clock::time_point at;
    std::string text;  // one assignment, such as "WATCHDOG=1"
};

// A datagram socket bound in a folder of its own, read on a thread of its own; every
// assignment that arrives is kept with the time it came.
class NotifySocket {
  public:
    NotifySocket() : path_(dir_ / "notify") {
        fd_ = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
        sockaddr_un addr{};
        addr.sun_family = AF_UNIX;
        std::strncpy(addr.sun_path, path_.c_str(), sizeof(addr.sun_path) - 1);
        if (fd_ < 0 || bind(fd_, reinterpret_cast<sockaddr*>(&addr), sizeof(addr)) != 0)
            ADD_FAILURE() << "cannot make the notify socket " << path_;
        reader_ = std::thread([this] { read(); });
    }
    ~NotifySocket() {
        stop_ = true;
        reader_.join();
        close(fd_);
    }
    std::string path() const { return path_.string(); }
    std::vector<Notice> notices() {
        std::lock_guard lock(mutex_);
        return notices_;
    }
    bool waitFor(const std::string& text, milliseconds limit) {
        for (const auto end = Clock::now() + limit; Clock::now() < end;) {
            for (const Notice& n : notices())
                if (n.text == text) return true;
            std::this_thread::sleep_for(milliseconds(10));
        }
        return false;
    }

  private:
    void read() {
        char buffer[4096];
        while (!stop_) {
            pollfd p{fd_, POLLIN, 0};
            if (poll(&p, 1, 20) <= 0) continue;
            const ssize_t n = recv(fd_, buffer, sizeof(buffer), 0);
            if (n <= 0) continue;
            const auto at = Clock::now();
            std::string datagram(buffer, static_cast<std::size_t>(n));
            std::lock_guard lock(mutex_);
            for (std::size_t start = 0; start < datagram.size();) {
                const std::size_t end = std::min(datagram.find('\n', start), datagram.size());
                if (end > start) notices_.push_back({at, datagram.substr(start, end - start)});
                start = end + 1;
            }
        }
    }

    TempFolder dir_;
    std::filesystem::path path_;
    int fd_ = -1;
    std::atomic<bool> stop_{false};
    std::mutex mutex_;
    std::vector<Notice> notices_;
    std::thread reader_;
};

// Sets an environment variable for the life of the object (the children inherit it).
class ScopedEnv {
  public:
    ScopedEnv(const char* name, const char* value) : name_(name) {
        if (const char* old = std::getenv(name)) old_ = old;
        value ? setenv(name, value, 1) : unsetenv(name);
    }
    ~ScopedEnv() { old_.empty() ? unsetenv(name_) : setenv(name_, old_.c_str(), 1); }

  private:
    const char* name_;
    std::string old_;
};

// A TEST-module setup file scanning every `ioMs` milliseconds.
std::string testModuleFile(const TempFolder& dir, int ioMs) {
    auto st = std::make_unique<Station>();
    st->periods = {static_cast<std::int16_t>(ioMs), kUnitMs, 30000, kUnitMs, 0};
    SaveConfiguration(*st, dir / "Station.SUF");
    return (dir / "Station.SUF").string();
}

std::vector<Clock::time_point> times(const std::vector<Notice>& notices, const std::string& text) {
    std::vector<Clock::time_point> at;
    for (const Notice& n : notices)
        if (n.text == text) at.push_back(n.at);
    return at;
}

long long ms(Clock::duration d) {
    return std::chrono::duration_cast<milliseconds>(d).count();
}

// The gaps between one WATCHDOG=1 and the next, and from READY=1 to the first and from
// the last to STOPPING=1: every stretch the service manager waits for a ping.
std::vector<long long> watchdogGaps(const std::vector<Notice>& notices) {
    std::vector<Clock::time_point> at = times(notices, "READY=1");
    const auto pings = times(notices, "WATCHDOG=1");
    at.insert(at.end(), pings.begin(), pings.end());
    const auto stop = times(notices, "STOPPING=1");
    at.insert(at.end(), stop.begin(), stop.end());
    std::vector<long long> gaps;
    for (std::size_t i = 1; i < at.size(); ++i) gaps.push_back(ms(at[i] - at[i - 1]));
    return gaps;
}

struct Service {
    NotifySocket socket;
    TempFolder dir;
    ScopedEnv notify{"NOTIFY_SOCKET", socket.path().c_str()};
    ScopedEnv pid{"WATCHDOG_PID", nullptr};
    std::unique_ptr<ScopedEnv> watchdog;
    Clock::time_point started;

    explicit Service(const char* watchdogUsec) {
        watchdog = std::make_unique<ScopedEnv>("WATCHDOG_USEC", watchdogUsec);
    }
    CliResult run(const std::vector<std::string>& args) {
        started = Clock::now();
        return RunCliIn(dir.path(), args);
    }
};

TEST(CliRunNotify, ReadyComesOnlyAfterTheFirstTick) {
    Service s("2000000");
    const std::string file = testModuleFile(s.dir, 100);
    // The first tick stalls for 800 ms: READY=1 must wait for it.
    const CliResult r = s.run({"run", file, "--poll", "--ticks", "5", "--stall-scan", "1:800"});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    const auto notices = s.socket.notices();
    ASSERT_FALSE(notices.empty());
    EXPECT_EQ(notices.front().text, "READY=1");
    EXPECT_GE(ms(notices.front().at - s.started), 800);
    EXPECT_EQ(notices.back().text, "STOPPING=1");
    EXPECT_EQ(times(notices, "READY=1").size(), 1u);
}

TEST(CliRunNotify, TheScanSendsWatchdogAtLeastTwicePerPeriod) {
    Service s("1000000");  // 1 s: a ping at least every 500 ms
    const std::string file = testModuleFile(s.dir, 50);
    const CliResult r = s.run({"run", file, "--poll", "--ticks", "60"});  // about 3 s
    ASSERT_EQ(r.exitCode, 0) << r.err;
    const auto notices = s.socket.notices();
    EXPECT_GE(times(notices, "WATCHDOG=1").size(), 6u);
    for (long long gap : watchdogGaps(notices)) EXPECT_LE(gap, 500);
}

TEST(CliRunNotify, AStalledScanSendsNoWatchdog) {
    Service s("2000000");
    const std::string file = testModuleFile(s.dir, 100);
    // Tick 10 hangs for 3 s, longer than the watchdog period: no ping may come meanwhile,
    // although the scan's thread is the only one stalled.
    const CliResult r = s.run({"run", file, "--poll", "--ticks", "20", "--stall-scan", "10:3000"});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    EXPECT_NE(r.err.find("the scan stalls for 3000 ms after tick 10"), std::string::npos) << r.err;
    const auto gaps = watchdogGaps(s.socket.notices());
    ASSERT_FALSE(gaps.empty());
    const auto longest = std::max_element(gaps.begin(), gaps.end());
    EXPECT_GE(*longest, 3000);
    for (auto g = gaps.begin(); g != gaps.end(); ++g) {
        if (g != longest) {
            EXPECT_LE(*g, 1000);  // before and after the stall: on time
        }
    }
}

TEST(CliRunNotify, ALongIOPeriodStillFeedsTheWatchdogWhileTheScanWaits) {
    Service s("1000000");
    const std::string file = testModuleFile(s.dir, 2500);  // ticks 2.5 s apart
    const CliResult r = s.run({"run", file, "--poll", "--ticks", "2"});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    const auto notices = s.socket.notices();
    EXPECT_GE(times(notices, "WATCHDOG=1").size(), 4u);
    for (long long gap : watchdogGaps(notices)) EXPECT_LE(gap, 500);
}

TEST(CliRunNotify, WithoutAWatchdogOnlyReadyAndStopping) {
    Service s(nullptr);
    const std::string file = testModuleFile(s.dir, 50);
    const CliResult r = s.run({"run", file, "--poll", "--ticks", "10"});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    std::vector<std::string> texts;
    for (const Notice& n : s.socket.notices()) texts.push_back(n.text);
    EXPECT_EQ(texts, (std::vector<std::string>{"READY=1", "STOPPING=1"}));
}

TEST(CliRunNotify, AWatchdogMeantForAnotherProcessIsNotFed) {
    Service s("1000000");
    ScopedEnv other("WATCHDOG_PID", "1");
    const std::string file = testModuleFile(s.dir, 50);
    const CliResult r = s.run({"run", file, "--poll", "--ticks", "20"});
    ASSERT_EQ(r.exitCode, 0) << r.err;
    EXPECT_TRUE(times(s.socket.notices(), "WATCHDOG=1").empty());
    EXPECT_EQ(times(s.socket.notices(), "READY=1").size(), 1u);
}

TEST(CliRunNotify, SigtermSendsStoppingAndEndsCleanly) {
    Service s("2000000");
    const std::string file = testModuleFile(s.dir, 100);
    const std::string cli = CliPath().string();
    const pid_t pid = fork();
    if (pid == 0) {
        if (chdir(s.dir.path().c_str()) != 0) _exit(127);
        execl(cli.c_str(), cli.c_str(), "run", file.c_str(), "--poll", nullptr);
        _exit(127);
    }
    ASSERT_GT(pid, 0);
    ASSERT_TRUE(s.socket.waitFor("READY=1", milliseconds(10000)));
    kill(pid, SIGTERM);
    int status = 0;
    waitpid(pid, &status, 0);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
    EXPECT_TRUE(s.socket.waitFor("STOPPING=1", milliseconds(1000)));
    EXPECT_EQ(s.socket.notices().back().text, "STOPPING=1");
}

TEST(CliRunService, WithoutANotifySocketTheRunIsAsEver) {
    ScopedEnv none("NOTIFY_SOCKET", nullptr);
    TempFolder dir;
    const std::string file = testModuleFile(dir, 50);
    const CliResult r = RunCliIn(dir.path(), {"run", file, "--poll", "--ticks", "3"});
    EXPECT_EQ(r.exitCode, 0) << r.err;
    EXPECT_EQ(r.err, "");
}

TEST(CliRunService, TheStallHookIsHiddenAndChecked) {
    EXPECT_EQ(RunCli({"run", "--help"}).out.find("stall"), std::string::npos);
    TempFolder dir;
    const std::string file = testModuleFile(dir, 50);
    for (const char* bad : {"0:100", "1", "1:", "x:5", "1:-5", "1:3600001"}) {
        const CliResult r = RunCli({"run", file, "--ticks", "1", "--stall-scan", bad});
        EXPECT_EQ(r.exitCode, 2) << bad;
        EXPECT_NE(r.err.find("takes TICK:MS"), std::string::npos) << r.err;
    }
}

}  // namespace
}  // namespace kova::test
