// Files that are no log files, chosen in the history window: each is refused at once,
// without ever waiting on it or reading it to its end, with a message naming what it is.
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <chrono>
#include <cstring>
#include <filesystem>
#include <string>

#include "core/fault.h"
#include "displays/history_file.h"
#include "displays/history_view.h"
#include "support/fake_chart_plot.h"
#include "support/test_support.h"

namespace kova {
namespace {

namespace fs = std::filesystem;

struct Rig {
    test::TempFolder folder;
    Station st;
    test::ScriptedPrompter prompt;
    test::FakeChartPlot chart;
    HistoryView view{st, chart};
    Rig() { st.platform.prompter = &prompt; }
    std::string path(const std::string& name) const { return (folder / name).string(); }

    // The fault openFile raises for the file, "" when there is none.
    std::string refusal(const std::string& name) {
        try {
            view.openFile(path(name));
        } catch (const Fault& f) {
            EXPECT_EQ(f.kind(), FaultKind::File);
            return f.what();
        }
        return {};
    }
    std::string expected(const std::string& name, const std::string& why) const {
        return "The log file " + path(name) + " cannot be read: " + why;
    }
};

TEST(HistoryHostileFiles, AFifoIsRefusedWithoutWaitingForAWriter) {
    Rig r;
    ASSERT_EQ(::mkfifo(r.path("PIPE.CSV").c_str(), 0600), 0);
    fs::create_symlink(r.path("PIPE.CSV"), r.folder / "TOPIPE.CSV");
    EXPECT_EQ(r.refusal("PIPE.CSV"),
              r.expected("PIPE.CSV", "it is a FIFO (named pipe), not a log file"));
    EXPECT_EQ(r.refusal("TOPIPE.CSV"),
              r.expected("TOPIPE.CSV", "it is a FIFO (named pipe), not a log file"));
    EXPECT_EQ(r.view.fileName(), "");
}

TEST(HistoryHostileFiles, ALinkToADeviceIsRefusedAndTheDeviceNeverRead) {
    Rig r;
    fs::create_symlink("/dev/zero", r.folder / "ZERO.CSV");
    fs::create_symlink("/dev/null", r.folder / "NULL.CSV");
    EXPECT_EQ(r.refusal("ZERO.CSV"), r.expected("ZERO.CSV", "it is a device, not a log file"));
    EXPECT_EQ(r.refusal("NULL.CSV"), r.expected("NULL.CSV", "it is a device, not a log file"));
}

TEST(HistoryHostileFiles, AFolderAndASocketAreRefused) {
    Rig r;
    fs::create_directory(r.folder / "LOGS.CSV");
    EXPECT_EQ(r.refusal("LOGS.CSV"), r.expected("LOGS.CSV", "it is a folder, not a log file"));
    const int s = ::socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_GE(s, 0);
    sockaddr_un addr{};
    addr.sun_family = AF_UNIX;
    const std::string where = r.path("SOCK.CSV");
    ASSERT_LT(where.size(), sizeof addr.sun_path);
    std::memcpy(addr.sun_path, where.c_str(), where.size() + 1);
    ASSERT_EQ(::bind(s, reinterpret_cast<sockaddr*>(&addr), sizeof addr), 0);
    EXPECT_EQ(r.refusal("SOCK.CSV"), r.expected("SOCK.CSV", "it is a socket, not a log file"));
    ::close(s);
}

TEST(HistoryHostileFiles, ALinkThatLeadsNowhereGivesTheSystemsReason) {
    Rig r;
    fs::create_symlink(r.path("LOOP2.CSV"), r.folder / "LOOP1.CSV");
    fs::create_symlink(r.path("LOOP1.CSV"), r.folder / "LOOP2.CSV");
    const std::string loop = r.refusal("LOOP1.CSV");
    EXPECT_EQ(loop.rfind(r.expected("LOOP1.CSV", ""), 0), 0u) << loop;
    EXPECT_GT(loop.size(), r.expected("LOOP1.CSV", "").size());
}

TEST(HistoryHostileFiles, AHugeSparseFileIsNamedNoLogFileAtOnce) {
    Rig r;
    {
        std::FILE* f = std::fopen(r.path("SPARSE.CSV").c_str(), "wb");
        ASSERT_NE(f, nullptr);
        std::fclose(f);
        fs::resize_file(r.path("SPARSE.CSV"), 5ull << 30);  // 5 GB of NUL bytes, none on disk
    }
    const auto t0 = std::chrono::steady_clock::now();
    EXPECT_EQ(r.refusal("SPARSE.CSV"),
              r.expected("SPARSE.CSV", "its first line holds NUL bytes: not a log file"));
    EXPECT_LT(std::chrono::steady_clock::now() - t0, std::chrono::seconds(1));
}

TEST(HistoryHostileFiles, AHugeFileOfNoLinesAfterAHeaderEndsTheChartAtOnceSayingWhy) {
    Rig r;
    {
        std::FILE* f = std::fopen(r.path("TAIL.CSV").c_str(), "wb");
        ASSERT_NE(f, nullptr);
        std::fputs("LOG PERIOD,A\r\n1, 5 \r\n", f);
        std::fclose(f);
        fs::resize_file(r.path("TAIL.CSV"), 5ull << 30);  // a crash left gigabytes of NULs
    }
    r.view.openFile(r.path("TAIL.CSV"));
    ASSERT_TRUE(r.view.selectItems({1}));
    EXPECT_EQ(r.chart.curves.at(0).y[0], 5.0f);
    ASSERT_EQ(r.prompt.messages.size(), 1u);
    EXPECT_EQ(r.prompt.messages[0].text,
              "Line 3 of " + r.path("TAIL.CSV") +
                  " is longer than 65536 bytes: it is not a log line, and the chart ends before "
                  "it");
    r.view.forward();
    ASSERT_EQ(r.prompt.messages.size(), 2u);
    EXPECT_EQ(r.prompt.messages[1].text, "No More Points To Plot");
    EXPECT_LE(r.view.file()->bytesFetched(), 256u * 1024);
}

}  // namespace
}  // namespace kova
