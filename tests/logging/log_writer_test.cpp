#include "logging/log_writer.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <functional>

#include "core/fault.h"
#include "log_rig.h"
#include "logging/log_conditions.h"
#include "logging/log_switch.h"

namespace kova {

namespace fs = std::filesystem;
using test::At;
using test::ReadFileBytes;
using test::WriteFileBytes;

namespace {
// A rig logging two tags every 500 ms with time and date, I/O every 500 ms.
struct Writer : test::LogRig {
    Writer() {
        st.periods = {500, kUnitMs, 500, kUnitMs, 0};
        st.logging.LogTimeColumn = Variant::integer(1);
        st.logging.LogDateColumn = Variant::integer(1);
        tag(1, "TANK", "Tank Level", true, 12.5f);
        tag(2, "PUMP", "Pump", true, 0.0f);
        st.logging.LogMode = 0;  // continuous
    }
    void fileMode(const std::string& name, bool overwrite) {
        st.logging.LogFileName = path(name);
        st.logging.LogDirectory = folder.path().string() + "/";
        st.logging.OverwriteFile = overwrite ? 1 : 0;
    }
    void dailyMode(bool us = false) {
        st.logging.DailyFiles = 1;
        st.logging.DateFormatUS = us ? -1 : 0;
        st.logging.LogDirectory = folder.path().string() + "/";
        st.logging.LogFileName = st.logging.LogDirectory + "CHOSEN.CSV";
    }
};
}  // namespace

TEST(LogWriter, OverwriteModeStartsAFreshFileWithAHeader) {
    Writer w;
    w.fileMode("PLANT.CSV", true);
    WriteFileBytes(w.folder / "PLANT.CSV", "old contents\r\n");
    ASSERT_TRUE(ToggleLogging(w.st));
    EXPECT_EQ(ReadFileBytes(w.folder / "PLANT.CSV"), "LOG PERIOD,TIME,DATE,Tank Level,Pump\r\n");
}

TEST(LogWriter, TheExampleRecordComesOutByteForByte) {
    Writer w;
    w.fileMode("PLANT.CSV", true);
    w.clock.set(At(2026, 11, 15, 10, 15, 0, 0));
    ASSERT_TRUE(ToggleLogging(w.st));
    w.scans(3);
    EXPECT_EQ(ReadFileBytes(w.folder / "PLANT.CSV"),
              "LOG PERIOD,TIME,DATE,Tank Level,Pump\r\n"
              "0.500,10:15:00.500,15/11/26, 12.5 , 0 \r\n"
              "1.000,10:15:01.000,15/11/26, 12.5 , 0 \r\n"
              "1.500,10:15:01.500,15/11/26, 12.5 , 0 \r\n");
}

TEST(LogWriter, AppendModeKeepsTheFileAndWritesNoHeader) {
    Writer w;
    w.fileMode("PLANT.CSV", false);
    WriteFileBytes(w.folder / "PLANT.CSV", "earlier\r\n");
    ASSERT_TRUE(ToggleLogging(w.st));
    w.scans(1);
    EXPECT_EQ(ReadFileBytes(w.folder / "PLANT.CSV"),
              "earlier\r\n0.500,10:15:00.500,15/11/26, 12.5 , 0 \r\n");
}

TEST(LogWriter, AppendModeCreatesAMissingFile) {
    Writer w;
    w.fileMode("NEW.CSV", false);
    ASSERT_TRUE(ToggleLogging(w.st));
    w.scans(1);
    EXPECT_EQ(ReadFileBytes(w.folder / "NEW.CSV"), "0.500,10:15:00.500,15/11/26, 12.5 , 0 \r\n");
}

TEST(LogWriter, LoggingPeriodOfOneSecondCountsWholeSeconds) {
    Writer w;
    w.st.periods = {1, kUnitSeconds, 1, kUnitSeconds, 0};
    w.st.logging.LogTimeColumn = Variant::integer(0);
    w.st.logging.LogDateColumn = Variant::integer(0);
    w.fileMode("SECS.CSV", true);
    ASSERT_TRUE(ToggleLogging(w.st));
    w.scans(3);
    EXPECT_EQ(ReadFileBytes(w.folder / "SECS.CSV"),
              "LOG PERIOD,Tank Level,Pump\r\n"
              "1, 12.5 , 0 \r\n"
              "2, 12.5 , 0 \r\n"
              "3, 12.5 , 0 \r\n");
}

TEST(LogWriter, NoLoggedTagWritesOnlyTheTimeFields) {
    Writer w;
    w.st.tag(1).Log = 0;
    w.st.tag(2).Log = 0;
    w.fileMode("TIMES.CSV", true);
    ASSERT_TRUE(ToggleLogging(w.st));
    w.scans(2);
    EXPECT_EQ(ReadFileBytes(w.folder / "TIMES.CSV"),
              "LOG PERIOD,TIME,DATE\r\n"
              "0.500,10:15:00.500,15/11/26,\r\n"
              "1.000,10:15:01.000,15/11/26,\r\n");
}

TEST(LogWriter, ThreeHundredMillisecondScansWithASecondPeriodStampEvery1200Ms) {
    Writer w;
    w.st.periods = {300, kUnitMs, 1000, kUnitMs, 0};
    w.st.logging.LogDateColumn = Variant::integer(0);
    w.st.tag(2).Log = 0;
    w.fileMode("P.CSV", true);
    ASSERT_TRUE(ToggleLogging(w.st));
    w.scans(12);
    EXPECT_EQ(ReadFileBytes(w.folder / "P.CSV"),
              "LOG PERIOD,TIME,Tank Level\r\n"
              "1.000,10:15:01.200, 12.5 \r\n"
              "2.000,10:15:02.400, 12.5 \r\n"
              "3.000,10:15:03.600, 12.5 \r\n");
}

TEST(LogWriter, LabelsAreWrittenAsWindows1252) {
    Writer w;
    w.st.tag(1).Label = "Temp\xC3\xA9rature";
    w.fileMode("ENC.CSV", true);
    ASSERT_TRUE(ToggleLogging(w.st));
    EXPECT_EQ(ReadFileBytes(w.folder / "ENC.CSV"), "LOG PERIOD,TIME,DATE,Temp\xE9rature,Pump\r\n");
}

TEST(LogWriter, NothingIsWrittenWhileLoggingIsOff) {
    Writer w;
    w.fileMode("OFF.CSV", true);
    w.scans(4);
    EXPECT_FALSE(fs::exists(w.folder / "OFF.CSV"));
    EXPECT_EQ(w.st.logRun.SampleNumber, 0);
}

TEST(LogWriter, EveryRecordIsOnDiskAsSoonAsItIsWritten) {
    Writer w;
    w.fileMode("NOW.CSV", false);
    ASSERT_TRUE(ToggleLogging(w.st));
    w.scans(1);
    EXPECT_EQ(ReadFileBytes(w.folder / "NOW.CSV"), "0.500,10:15:00.500,15/11/26, 12.5 , 0 \r\n");
    w.scans(1);
    EXPECT_EQ(
        ReadFileBytes(w.folder / "NOW.CSV"),
        "0.500,10:15:00.500,15/11/26, 12.5 , 0 \r\n1.000,10:15:01.000,15/11/26, 12.5 , 0 \r\n");
    EXPECT_TRUE(LogFileIsOpen(w.st));
}

TEST(LogWriter, CmdLogOffClosesTheFile) {
    Writer w;
    w.fileMode("C.CSV", true);
    ASSERT_TRUE(ToggleLogging(w.st));
    EXPECT_TRUE(LogFileIsOpen(w.st));
    EXPECT_FALSE(ToggleLogging(w.st));
    EXPECT_FALSE(LogFileIsOpen(w.st));
    EXPECT_FALSE(w.st.switches.LoggingEnabled.isOn());
    w.scans(2);
    EXPECT_EQ(ReadFileBytes(w.folder / "C.CSV"), "LOG PERIOD,TIME,DATE,Tank Level,Pump\r\n");
}

TEST(LogWriter, StartingAgainCountsSamplesFromOne) {
    Writer w;
    w.fileMode("AGAIN.CSV", false);
    ASSERT_TRUE(ToggleLogging(w.st));
    w.scans(2);
    ToggleLogging(w.st);
    ASSERT_TRUE(ToggleLogging(w.st));
    w.scans(1);
    const std::string text = ReadFileBytes(w.folder / "AGAIN.CSV");
    EXPECT_EQ(text.substr(text.rfind("\r\n", text.size() - 3) + 2),
              "0.500,10:15:01.500,15/11/26, 12.5 , 0 \r\n");
}

TEST(LogWriter, LoggingSwitchedOnWithoutItsFileOpensItAtTheNextRecord) {
    Writer w;
    w.fileMode("LOADED.CSV", true);
    w.st.switches.LoggingEnabled = Variant::integer(1);  // as a setup file saved with logging on
    w.scans(1);
    EXPECT_TRUE(LogFileIsOpen(w.st));
    EXPECT_EQ(ReadFileBytes(w.folder / "LOADED.CSV"),
              "LOG PERIOD,TIME,DATE,Tank Level,Pump\r\n0.500,10:15:00.000,15/11/26, 12.5 , 0 \r\n");
}

// Daily files

TEST(LogWriterDaily, StartingAppendsToTheDaysFileWithoutAHeader) {
    Writer w;
    w.dailyMode();
    WriteFileBytes(w.folder / "DA151126.CSV",
                   "LOG PERIOD,TIME,DATE,Tank Level,Pump\r\nmorning\r\n");
    ASSERT_TRUE(ToggleLogging(w.st));
    EXPECT_EQ(w.st.logging.LogFileName, w.path("DA151126.CSV"));
    w.scans(2);
    EXPECT_EQ(ReadFileBytes(w.folder / "DA151126.CSV"),
              "LOG PERIOD,TIME,DATE,Tank Level,Pump\r\nmorning\r\n"
              "0.500,10:15:00.500,15/11/26, 12.5 , 0 \r\n"
              "1.000,10:15:01.000,15/11/26, 12.5 , 0 \r\n");
    EXPECT_FALSE(fs::exists(w.folder / "CHOSEN.CSV"));
}

TEST(LogWriterDaily, StartingOnADayWithoutAFileBeginsItWithoutAHeader) {
    Writer w;
    w.dailyMode();
    ASSERT_TRUE(ToggleLogging(w.st));
    w.scans(1);
    EXPECT_EQ(ReadFileBytes(w.folder / "DA151126.CSV"),
              "0.500,10:15:00.500,15/11/26, 12.5 , 0 \r\n");
}

TEST(LogWriterDaily, UsDateFormatNamesTheFileMonthFirst) {
    Writer w;
    w.dailyMode(true);
    ASSERT_TRUE(ToggleLogging(w.st));
    w.scans(1);
    EXPECT_EQ(ReadFileBytes(w.folder / "DA111526.CSV"),
              "0.500,10:15:00.500,11/15/26, 12.5 , 0 \r\n");
    EXPECT_FALSE(fs::exists(w.folder / "DA151126.CSV"));
}

TEST(LogWriterDaily, PassingMidnightStartsTheNextDaysFileWithAHeader) {
    Writer w;
    w.dailyMode();
    w.clock.set(At(2026, 11, 15, 23, 59, 59, 300));
    ASSERT_TRUE(ToggleLogging(w.st));  // logging clock 23:59:59.000
    w.st.logRun.LogMillisecond = 300;  // so that the record after the next is 23:59:59.800
    w.scans(1);                        // 23:59:59.800
    WriteFileBytes(w.folder / "DA161126.CSV", "stale file of an earlier month\r\n");
    w.scans(1);  // + 500 ms: 00:00:00.300 on the 16th
    EXPECT_EQ(ReadFileBytes(w.folder / "DA151126.CSV"),
              "0.500,23:59:59.800,15/11/26, 12.5 , 0 \r\n");
    EXPECT_EQ(ReadFileBytes(w.folder / "DA161126.CSV"),
              "LOG PERIOD,TIME,DATE,Tank Level,Pump\r\n"
              "1.000,00:00:00.300,16/11/26, 12.5 , 0 \r\n");
    EXPECT_EQ(w.st.logging.LogFileName, w.path("DA161126.CSV"));
    EXPECT_EQ(w.st.logRun.FileDate, dateSerial(2026, 11, 16));
    w.scans(1);
    EXPECT_EQ(ReadFileBytes(w.folder / "DA161126.CSV"),
              "LOG PERIOD,TIME,DATE,Tank Level,Pump\r\n"
              "1.000,00:00:00.300,16/11/26, 12.5 , 0 \r\n"
              "1.500,00:00:00.800,16/11/26, 12.5 , 0 \r\n");
}

TEST(LogWriterDaily, UsNextDayFileIsMonthFirst) {
    Writer w;
    w.dailyMode(true);
    w.clock.set(At(2026, 12, 31, 23, 59, 59, 600));
    ASSERT_TRUE(ToggleLogging(w.st));
    w.scans(2);  // 23:59:59.500, then 00:00:00.000 on 1 January
    EXPECT_EQ(ReadFileBytes(w.folder / "DA123126.CSV"),
              "0.500,23:59:59.500,12/31/26, 12.5 , 0 \r\n");
    EXPECT_EQ(ReadFileBytes(w.folder / "DA010127.CSV"),
              "LOG PERIOD,TIME,DATE,Tank Level,Pump\r\n1.000,00:00:00.000,01/01/27, 12.5 , 0 \r\n");
}

TEST(LogWriterDaily, BackslashFolderOfAWindowsPathIsAFolderHereToo) {
    Writer w;
    fs::create_directories(w.folder / "LOG");
    w.st.logging.DailyFiles = 1;
    w.st.logging.LogDirectory = w.folder.path().string() + "\\LOG\\";
    w.st.logging.LogFileName = w.st.logging.LogDirectory + "X.CSV";
    ASSERT_TRUE(ToggleLogging(w.st));
    w.scans(1);
    EXPECT_EQ(w.st.logging.LogFileName, w.folder.path().string() + "\\LOG\\DA151126.CSV");
    EXPECT_EQ(ReadFileBytes(w.folder / "LOG" / "DA151126.CSV"),
              "0.500,10:15:00.500,15/11/26, 12.5 , 0 \r\n");
}

// Files that cannot be opened or written

namespace {
void ExpectFileFault(test::LogRig& w, const std::function<void()>& action, const std::string& file,
                     const std::string& reason) {
    try {
        action();
        FAIL() << "no fault";
    } catch (const Fault& f) {
        EXPECT_EQ(f.kind(), FaultKind::File);
        const std::string text = f.what();
        EXPECT_NE(text.find(file), std::string::npos) << text;
        EXPECT_NE(text.find(reason), std::string::npos) << text;
    }
    EXPECT_FALSE(w.st.switches.LoggingEnabled.isOn());
    EXPECT_FALSE(LogFileIsOpen(w.st));
    EXPECT_FALSE(LoggingActive(w.st));
}
}  // namespace

TEST(LogWriterFailure, MissingFolderSwitchesLoggingOffAndNamesTheFile) {
    Writer w;
    w.st.logging.LogFileName = w.path("absent") + "/PLANT.CSV";
    w.st.logging.OverwriteFile = 1;
    ExpectFileFault(
        w, [&] { ToggleLogging(w.st); }, w.path("absent") + "/PLANT.CSV",
        "No such file or directory");
    w.scans(3);  // the scan goes on quietly with logging off
    EXPECT_FALSE(fs::exists(w.folder / "absent"));
}

TEST(LogWriterFailure, FolderThatIsAFileCannotHoldTheLog) {
    Writer w;
    WriteFileBytes(w.folder / "plain", "not a folder");
    w.st.logging.LogFileName = w.path("plain") + "/PLANT.CSV";
    ExpectFileFault(
        w, [&] { ToggleLogging(w.st); }, "plain/PLANT.CSV", "Not a directory");
}

TEST(LogWriterFailure, AFolderAsTheFileNameIsRefused) {
    Writer w;
    w.st.logging.LogFileName = w.folder.path().string();
    ExpectFileFault(
        w, [&] { ToggleLogging(w.st); }, w.folder.path().string(), "Is a directory");
}

TEST(LogWriterFailure, ReadOnlyFolderIsRefused) {
    if (geteuid() == 0) GTEST_SKIP() << "root may write anywhere; the other refusals cover this";
    Writer w;
    fs::create_directories(w.folder / "ro");
    fs::permissions(w.folder / "ro", fs::perms::owner_read | fs::perms::owner_exec);
    w.st.logging.LogFileName = w.path("ro") + "/PLANT.CSV";
    ExpectFileFault(
        w, [&] { ToggleLogging(w.st); }, "ro/PLANT.CSV", "Permission denied");
    fs::permissions(w.folder / "ro", fs::perms::owner_all);
}

TEST(LogWriterFailure, FullDiskWhileWritingTheHeader) {
    if (!fs::exists("/dev/full")) GTEST_SKIP() << "no /dev/full";
    Writer w;
    w.st.logging.LogFileName = "/dev/full";
    w.st.logging.OverwriteFile = 1;
    ExpectFileFault(
        w, [&] { ToggleLogging(w.st); }, "/dev/full", "No space left on device");
}

TEST(LogWriterFailure, FullDiskWhileWritingARecord) {
    if (!fs::exists("/dev/full")) GTEST_SKIP() << "no /dev/full";
    Writer w;
    w.st.logging.LogFileName = "/dev/full";
    w.st.logging.OverwriteFile = 0;
    ASSERT_TRUE(ToggleLogging(w.st));  // appending writes nothing yet
    ExpectFileFault(
        w, [&] { w.scans(1); }, "/dev/full", "No space left on device");
    w.scans(2);
}

TEST(LogWriterFailure, NextDaysFolderGoneSwitchesLoggingOff) {
    Writer w;
    fs::create_directories(w.folder / "days");
    w.st.logging.DailyFiles = 1;
    w.st.logging.LogDirectory = w.path("days") + "/";
    w.st.logging.LogFileName = w.st.logging.LogDirectory + "X.CSV";
    w.clock.set(At(2026, 11, 15, 23, 59, 59, 0));
    ASSERT_TRUE(ToggleLogging(w.st));
    w.scans(1);
    fs::remove_all(w.folder / "days");
    ExpectFileFault(
        w, [&] { w.scans(2); }, "days/DA161126.CSV", "No such file or directory");
}

TEST(LogWriterFailure, LoggingOnWithoutAFileNameIsSwitchedOffAtTheNextRecord) {
    Writer w;
    w.st.switches.LoggingEnabled = Variant::integer(1);  // as a setup file saved with logging on
    ExpectFileFault(
        w, [&] { w.scans(1); }, "Log file \"\"", "no file name has been entered");
    w.scans(2);
}

}  // namespace kova
