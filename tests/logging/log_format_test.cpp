#include "logging/log_format.h"

#include <gtest/gtest.h>

#include "log_rig.h"

namespace kova {

namespace {
const long kNov15 = dateSerial(2026, 11, 15);
}

TEST(LogFormat, DirectoryIsThePathUpToItsLastBackslash) {
    EXPECT_EQ(LogDirectoryOf("C:\\LOG\\DA151126.CSV"), "C:\\LOG\\");
    EXPECT_EQ(LogDirectoryOf("C:\\LOG\\SUB\\X.CSV"), "C:\\LOG\\SUB\\");
}

TEST(LogFormat, DirectoryAcceptsSlashesToo) {
    EXPECT_EQ(LogDirectoryOf("/var/log/kova/PLANT.CSV"), "/var/log/kova/");
    EXPECT_EQ(LogDirectoryOf("D:/logs\\mixed/X.CSV"), "D:/logs\\mixed/");
}

TEST(LogFormat, DirectoryOfABareNameIsEmpty) {
    EXPECT_EQ(LogDirectoryOf("PLANT.CSV"), "");
}

TEST(LogFormat, DailyNameIsDayFirstOrMonthFirst) {
    EXPECT_EQ(DailyLogFileName("C:\\LOG\\", kNov15, false), "C:\\LOG\\DA151126.CSV");
    EXPECT_EQ(DailyLogFileName("C:\\LOG\\", kNov15, true), "C:\\LOG\\DA111526.CSV");
    EXPECT_EQ(DailyLogFileName("", dateSerial(2031, 2, 3), false), "DA030231.CSV");
}

TEST(LogFormat, DateColumnIsDayFirstOrMonthFirst) {
    EXPECT_EQ(LogDateText(kNov15, false), "15/11/26");
    EXPECT_EQ(LogDateText(kNov15, true), "11/15/26");
    EXPECT_EQ(LogDateText(dateSerial(2000, 1, 2), false), "02/01/00");
}

TEST(LogFormat, TimeColumnHasMillisecondsAfterAPoint) {
    EXPECT_EQ(LogTimeText(10, 15, 1, 500), "10:15:01.500");
    EXPECT_EQ(LogTimeText(0, 0, 0, 3), "00:00:00.003");
    EXPECT_EQ(LogTimeText(11, 75, 0, 0), "11:75:00.000");  // as the clock holds it
}

TEST(LogFormat, LabelsAreWrittenInWindows1252) {
    EXPECT_EQ(LogFileText("Temp\xC3\xA9rature \xC2\xB0"
                          "C"),
              "Temp\xE9rature \xB0"
              "C");
    EXPECT_EQ(LogFileText("\xE2\x82\xAC/kWh"), "\x80/kWh");
}

TEST(LogFormat, CharactersWithoutAWindows1252ByteBecomeQuestionMarks) {
    EXPECT_EQ(LogFileText("T \xE6\xB8\xA9\xE5\xBA\xA6 \xC3\xA9"), "T ?? \xE9");
    EXPECT_EQ(LogFileText("a\xFF"
                          "b"),
              "a?b");  // a stray byte
}

TEST(LogFormat, HeaderWithTimeDateAndTwoTags) {
    test::LogRig r;
    r.st.logging.LogTimeColumn = Variant::integer(1);
    r.st.logging.LogDateColumn = Variant::integer(1);
    r.tag(1, "TANK", "Tank Level", true);
    r.tag(2, "SPARE", "Spare", false);
    r.tag(3, "PUMP", "Pump", true);
    EXPECT_EQ(LogHeaderLine(r.st), "LOG PERIOD,TIME,DATE,Tank Level,Pump\r\n");
}

TEST(LogFormat, HeaderWithoutTimeAndDateHasNoCommaAfterLogPeriod) {
    test::LogRig r;
    r.tag(1, "TANK", "Tank Level", true);
    r.tag(3, "PUMP", "Pump", true);
    EXPECT_EQ(LogHeaderLine(r.st), "LOG PERIOD,Tank Level,Pump\r\n");
}

TEST(LogFormat, HeaderWithDateOnly) {
    test::LogRig r;
    r.st.logging.LogDateColumn = Variant::boolean(true);
    r.tag(32, "LAST", "Last", true);
    EXPECT_EQ(LogHeaderLine(r.st), "LOG PERIOD,DATE,Last\r\n");
}

TEST(LogFormat, NoLoggedTagGivesOnlyTheTimeItems) {
    test::LogRig r;
    r.st.logging.LogTimeColumn = Variant::integer(1);
    r.st.logging.LogDateColumn = Variant::integer(1);
    EXPECT_EQ(LogHeaderLine(r.st), "LOG PERIOD,TIME,DATE\r\n");
    r.st.logRun = {};
    r.st.logRun.SampleNumber = 1;
    r.st.logRun.LogHour = 10, r.st.logRun.LogMinute = 15, r.st.logRun.LogSecond = 1;
    r.st.logRun.LogDate = kNov15;
    EXPECT_EQ(LogRecordLine(r.st), "1,10:15:01.000,15/11/26,\r\n");
}

TEST(LogFormat, NoLoggedTagAndNoTimeColumnsIsTheElapsedFieldAlone) {
    test::LogRig r;
    EXPECT_EQ(LogHeaderLine(r.st), "LOG PERIOD,\r\n");
    r.st.logRun.SampleNumber = 4;
    EXPECT_EQ(LogRecordLine(r.st), "4,\r\n");
}

TEST(LogFormat, TheExampleRecord) {
    test::LogRig r;
    r.st.periods.LogPeriod = 500;
    r.st.periods.LogUnits = kUnitMs;
    r.st.logging.LogTimeColumn = Variant::integer(1);
    r.st.logging.LogDateColumn = Variant::integer(1);
    r.tag(1, "TANK", "Tank Level", true, 12.5f);
    r.tag(2, "PUMP", "Pump", true, 0.0f);
    r.st.logRun.SampleNumber = 3;
    r.st.logRun.LogHour = 10, r.st.logRun.LogMinute = 15, r.st.logRun.LogSecond = 1;
    r.st.logRun.LogMillisecond = 500;
    r.st.logRun.LogDate = kNov15;
    EXPECT_EQ(LogRecordLine(r.st), "1.500,10:15:01.500,15/11/26, 12.5 , 0 \r\n");
}

TEST(LogFormat, ValuesUseTheSystemsNumberText) {
    test::LogRig r;
    r.tag(1, "A", "A", true, -3.0f);
    r.tag(2, "B", "B", true, 0.02442002f);
    r.tag(3, "C", "C", true, 12345678.0f);
    r.st.logRun.SampleNumber = 1;
    EXPECT_EQ(LogRecordLine(r.st), "1,-3 , 0.02442002 , 1.234568E+07 \r\n");
}

TEST(LogFormat, MillisecondPeriodGivesSecondsWithThreeDecimals) {
    test::LogRig r;
    r.st.periods.LogPeriod = 50;
    r.st.periods.LogUnits = kUnitMs;
    r.st.logRun.SampleNumber = 1;
    EXPECT_EQ(LogRecordLine(r.st), "0.050,\r\n");
    r.st.logRun.SampleNumber = 123;
    EXPECT_EQ(LogRecordLine(r.st), "6.150,\r\n");
}

TEST(LogFormat, SecondsPeriodGivesWholeSeconds) {
    test::LogRig r;
    r.st.periods.LogPeriod = 30;
    r.st.periods.LogUnits = kUnitSeconds;
    r.st.logRun.SampleNumber = 7;
    EXPECT_EQ(LogRecordLine(r.st), "210,\r\n");
}

TEST(LogFormat, UsDateFormatSwitchesTheDateColumn) {
    test::LogRig r;
    r.st.logging.LogDateColumn = Variant::integer(1);
    r.st.logging.DateFormatUS = -1;
    r.st.logRun.SampleNumber = 1;
    r.st.logRun.LogDate = kNov15;
    EXPECT_EQ(LogRecordLine(r.st), "1,11/15/26,\r\n");
}

}  // namespace kova
