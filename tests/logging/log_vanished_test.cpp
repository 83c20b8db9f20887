// A log file renamed or deleted while logging (by a user, a clean-up job, log rotation) is
// noticed at the next record: the path is started again with its header, the record goes
// there, and the user hears it once. (Linux only: an open file cannot be renamed or deleted
// on Windows.)
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "core/fault.h"
#include "log_rig.h"
#include "logging/log_switch.h"
#include "logging/log_writer.h"

namespace kova {
namespace {

namespace fs = std::filesystem;
using test::ReadFileBytes;
using test::WriteFileBytes;

// Logs TANK every second, with no time or date column, to PLANT.CSV.
struct Vanishing : test::LogRig {
    Vanishing() {
        st.periods = {1, kUnitSeconds, 1, kUnitSeconds, 0};
        tag(1, "TANK", "Tank Level", true, 12.5f);
        st.logging.LogMode = 0;
        st.logging.LogFileName = path("PLANT.CSV");
        st.logging.LogDirectory = folder.path().string() + "/";
        st.logging.OverwriteFile = 1;
    }
    std::string told() { return LogRestartToTell(st); }
};

const char* kHeader = "LOG PERIOD,Tank Level\r\n";

TEST(LogVanished, ARenamedFileIsStartedAgainWithItsHeaderAndNoRecordIsLost) {
    Vanishing v;
    ASSERT_TRUE(ToggleLogging(v.st));
    v.scans(2);
    fs::rename(v.folder / "PLANT.CSV", v.folder / "PLANT-1.CSV");
    v.scan();
    v.scan();
    EXPECT_EQ(ReadFileBytes(v.folder / "PLANT-1.CSV"),
              std::string(kHeader) + "1, 12.5 \r\n2, 12.5 \r\n");
    EXPECT_EQ(ReadFileBytes(v.folder / "PLANT.CSV"),
              std::string(kHeader) + "3, 12.5 \r\n4, 12.5 \r\n");
    EXPECT_EQ(v.told(), "Log file \"" + v.path("PLANT.CSV") +
                            "\" was renamed or deleted while logging: it was started again with "
                            "its header, and logging goes on");
    EXPECT_EQ(v.told(), "");  // once
    EXPECT_TRUE(v.st.switches.LoggingEnabled.isOn());
}

TEST(LogVanished, ADeletedFileIsStartedAgainEachTimeAndToldEachTime) {
    Vanishing v;
    ASSERT_TRUE(ToggleLogging(v.st));
    v.scan();
    fs::remove(v.folder / "PLANT.CSV");
    v.scan();
    EXPECT_NE(v.told(), "");
    v.scan();
    EXPECT_EQ(v.told(), "");
    fs::remove(v.folder / "PLANT.CSV");
    v.scan();
    EXPECT_NE(v.told(), "");
    EXPECT_EQ(ReadFileBytes(v.folder / "PLANT.CSV"), std::string(kHeader) + "4, 12.5 \r\n");
}

TEST(LogVanished, AFilePutInItsPlaceIsAppendedToAndKept) {
    Vanishing v;
    ASSERT_TRUE(ToggleLogging(v.st));
    v.scan();
    fs::remove(v.folder / "PLANT.CSV");
    WriteFileBytes(v.folder / "PLANT.CSV", "kept\r\n");
    v.scan();
    EXPECT_EQ(ReadFileBytes(v.folder / "PLANT.CSV"), "kept\r\n2, 12.5 \r\n");
    EXPECT_EQ(v.told(), "Log file \"" + v.path("PLANT.CSV") +
                            "\" was renamed or deleted while logging: the file now at its path "
                            "is appended to, and logging goes on");
}

TEST(LogVanished, AnUntouchedFileIsNeverStartedAgain) {
    Vanishing v;
    ASSERT_TRUE(ToggleLogging(v.st));
    v.scans(5);
    EXPECT_EQ(v.told(), "");
    // A hard link to the file is still the same file.
    fs::create_hard_link(v.folder / "PLANT.CSV", v.folder / "LINK.CSV");
    v.scan();
    EXPECT_EQ(v.told(), "");
    EXPECT_EQ(ReadFileBytes(v.folder / "LINK.CSV"), ReadFileBytes(v.folder / "PLANT.CSV"));
}

TEST(LogVanished, TheDaysFileDeletedIsStartedAgainWithItsHeader) {
    Vanishing v;
    v.st.logging.DailyFiles = 1;
    ASSERT_TRUE(ToggleLogging(v.st));
    v.scan();
    const std::string day = v.st.logRun.File.path();
    EXPECT_EQ(fs::path(day).filename(), "DA151126.CSV");
    fs::remove(day);
    v.scan();
    EXPECT_EQ(ReadFileBytes(day), std::string(kHeader) + "2, 12.5 \r\n");
    EXPECT_NE(v.told().find("DA151126.CSV"), std::string::npos);
}

TEST(LogVanished, AFolderThatWentAwayStopsLoggingNamingTheFile) {
    Vanishing v;
    fs::create_directory(v.folder / "sub");
    v.st.logging.LogFileName = (v.folder / "sub" / "PLANT.CSV").string();
    ASSERT_TRUE(ToggleLogging(v.st));
    v.scan();
    fs::remove_all(v.folder / "sub");
    try {
        v.scan();
        FAIL() << "no fault";
    } catch (const Fault& f) {
        EXPECT_EQ(f.kind(), FaultKind::File);
        EXPECT_NE(std::string(f.what()).find("sub/PLANT.CSV\" cannot be opened again"),
                  std::string::npos)
            << f.what();
    }
    EXPECT_FALSE(v.st.switches.LoggingEnabled.isOn());
}

}  // namespace
}  // namespace kova
