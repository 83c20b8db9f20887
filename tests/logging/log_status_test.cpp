#include "logging/log_status.h"

#include <gtest/gtest.h>

#include <sys/resource.h>

#include <csignal>
#include <filesystem>

#include "core/fault.h"
#include "log_rig.h"
#include "logging/log_conditions.h"
#include "logging/log_switch.h"
#include "logging/log_writer.h"

namespace kova {

namespace fs = std::filesystem;
using test::ReadFileBytes;

namespace {
// A rig logging one tag every second to S.CSV, with a header.
struct Status : test::LogRig {
    Status() {
        st.periods = {1, kUnitSeconds, 1, kUnitSeconds, 0};
        tag(1, "LEVEL", "Level", true, 20.0f);
        st.logging.LogFileName = path("S.CSV");
        st.logging.OverwriteFile = 1;
    }
    std::string text() const { return LoggingStatusText(st); }
    std::string file() const { return path("S.CSV"); }
    int lines() const {
        const std::string bytes = ReadFileBytes(folder / "S.CSV");
        int n = 0;
        for (std::size_t p = 0; (p = bytes.find("\r\n", p)) != std::string::npos; p += 2) ++n;
        return n;
    }
    // Mode 1: start below 10, stop above 50.
    void tagCondition() {
        st.logging.LogMode = 1;
        st.logging.ConditionTag = 1;
        st.logging.StartValue = Variant::real(10);
        st.logging.StartAbove = 0;
        st.logging.StopValue = 50.0f;
        st.logging.StopAbove = -1;
    }
};
}  // namespace

TEST(LoggingStatus, OffWhenLoggingIsOff) {
    Status s;
    EXPECT_EQ(s.text(), "Logging off");
}

TEST(LoggingStatus, CountsTheRecordsAsTheyAreWritten) {
    Status s;
    ASSERT_TRUE(ToggleLogging(s.st));
    // Counting samples has no start condition: the count shows from the start.
    EXPECT_EQ(s.text(), "Logging: 0 records to S.CSV");
    s.scans(1);
    EXPECT_EQ(s.text(), "Logging: 1 record to S.CSV");
    s.scans(2);
    EXPECT_EQ(s.text(), "Logging: 3 records to S.CSV");
    EXPECT_EQ(LoggingStatusText(s.st, true), "Logging: 3 records to " + s.file());
    EXPECT_EQ(s.lines(), 4);  // the header and the three records counted
}

TEST(LoggingStatus, AWindowsPathShowsItsBareFileName) {
    Status s;
    s.st.logging.LogFileName = "C:\\LOG\\PLANT.CSV";
    s.st.switches.LoggingEnabled = Variant::integer(1);  // as loaded: opened at the next record
    EXPECT_EQ(s.text(), "Logging: 0 records to PLANT.CSV");
    EXPECT_EQ(LoggingStatusText(s.st, true), "Logging: 0 records to C:\\LOG\\PLANT.CSV");
}

TEST(LoggingStatus, WaitingForTheStartConditionSaysSo) {
    Status s;
    s.tagCondition();
    ASSERT_TRUE(ToggleLogging(s.st));
    s.scans(2);  // 20 is not below 10
    EXPECT_EQ(s.st.logRun.LogState, 0);
    EXPECT_EQ(s.text(), "Logging: waiting for start condition, 0 records to S.CSV");
    s.st.tag(1).Value = 9.9f;
    s.scans(3);
    EXPECT_EQ(s.text(), "Logging: 3 records to S.CSV");
    s.st.tag(1).Value = 50.1f;
    s.scans(1);
    EXPECT_EQ(s.st.logRun.LogState, 0);
    EXPECT_EQ(s.text(), "Logging: waiting for start condition, 3 records to S.CSV");
}

TEST(LoggingStatus, ASampleCountThatRanOutSaysHowManyRecordsWereWrittenWhere) {
    Status s;
    s.st.logging.StopSampleCount = Variant::integer(5);
    ASSERT_TRUE(ToggleLogging(s.st));
    s.scans(9);
    EXPECT_FALSE(s.st.switches.LoggingEnabled.isOn());
    EXPECT_EQ(s.lines(), 6);
    EXPECT_EQ(s.text(), "Logging finished: 5 records to S.CSV");
    EXPECT_EQ(LoggingStatusText(s.st, true), "Logging finished: 5 records to " + s.file());
    // The user starting again: the old ending is no longer shown.
    ASSERT_TRUE(ToggleLogging(s.st));
    EXPECT_EQ(s.text(), "Logging: 0 records to S.CSV");
    ToggleLogging(s.st);
    EXPECT_EQ(s.text(), "Logging off");
}

TEST(LoggingStatus, AFileThatCannotBeOpenedIsNamedWithTheReason) {
    Status s;
    s.st.logging.LogFileName = s.path("gone") + "/S.CSV";
    EXPECT_THROW(ToggleLogging(s.st), Fault);
    EXPECT_EQ(s.text(), "Logging stopped: S.CSV cannot be opened: No such file or directory");
    EXPECT_EQ(LoggingStatusText(s.st, true),
              "Logging stopped: " + s.path("gone") +
                  "/S.CSV cannot be opened: No such file or directory");
}

TEST(LoggingStatus, AFullDiskIsNamedWithTheReason) {
    if (!fs::exists("/dev/full")) GTEST_SKIP() << "no /dev/full";
    Status s;
    s.st.logging.LogFileName = "/dev/full";
    s.st.logging.OverwriteFile = 0;
    ASSERT_TRUE(ToggleLogging(s.st));
    EXPECT_THROW(s.scans(1), Fault);
    const std::string told =
        "Logging stopped: /dev/full cannot be written: No space left on device";
    EXPECT_EQ(LoggingStatusText(s.st, true), told);
    EXPECT_EQ(s.text(), "Logging stopped: full cannot be written: No space left on device");
    s.scans(3);  // logging is off: no second report
    EXPECT_EQ(LoggingStatusText(s.st, true), told);
}

// The file stops growing part-way through a record (a full disk, a quota): the records
// already written stay in the file, the broken one does not, and logging is switched off
// with the reason.
TEST(LoggingStatus, RecordsWrittenBeforeAWriteFailureAreKept) {
    Status s;
    ASSERT_TRUE(ToggleLogging(s.st));
    s.scans(3);
    const std::string before = ReadFileBytes(s.folder / "S.CSV");
    ASSERT_EQ(s.lines(), 4);

    struct rlimit old {};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &old), 0);
    const auto previousHandler = std::signal(SIGXFSZ, SIG_IGN);
    struct rlimit limit = old;
    limit.rlim_cur = before.size() + 4;  // room for half of the next record only
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    std::string what;
    try {
        s.scans(1);
    } catch (const Fault& f) {
        what = f.what();
    }
    setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, previousHandler);

    EXPECT_NE(what.find(s.file()), std::string::npos) << what;
    EXPECT_NE(what.find("File too large"), std::string::npos) << what;
    EXPECT_FALSE(s.st.switches.LoggingEnabled.isOn());
    EXPECT_FALSE(LogFileIsOpen(s.st));
    EXPECT_EQ(ReadFileBytes(s.folder / "S.CSV"), before);
    EXPECT_EQ(s.text(), "Logging stopped: S.CSV cannot be written: File too large");
    s.scans(2);
    EXPECT_EQ(ReadFileBytes(s.folder / "S.CSV"), before);
}

// What the readings screens and trends show in their "Logging Data" boxes.
TEST(LoggingStatus, TheLoggingDataBoxFollowsTheSwitchAndTheStartCondition) {
    Status s;
    s.tagCondition();
    EXPECT_FALSE(LoggingActive(s.st));
    ASSERT_TRUE(ToggleLogging(s.st));
    s.scans(1);
    EXPECT_FALSE(LoggingActive(s.st));  // waiting for the value to fall below 10
    s.st.tag(1).Value = 5.0f;
    s.scans(1);
    EXPECT_TRUE(LoggingActive(s.st));
    ToggleLogging(s.st);
    EXPECT_FALSE(LoggingActive(s.st));
}

}  // namespace kova
