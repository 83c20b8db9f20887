#include "displays/history_file.h"

#include <gtest/gtest.h>

#include <string>

#include "support/test_support.h"

namespace kova {

namespace {

// "1.000, 10" ... : n data rows after a header; row r holds r in its second column.
std::string rowsFile(int n, const std::string& eol = "\r\n") {
    std::string s = "LOG PERIOD,Flow" + eol;
    for (int r = 1; r <= n; ++r) s += std::to_string(r) + ".000, " + std::to_string(r) + " " + eol;
    return s;
}

struct OpenFile {
    test::TempFolder folder;
    HistoryFile file;
    explicit OpenFile(const std::string& bytes) {
        test::WriteFileBytes(folder / "LOG.CSV", bytes);
        EXPECT_EQ(file.open((folder / "LOG.CSV").string()), "");
    }
};

BlockLayout flowLayout() {
    BlockLayout l;
    l.pens = {2, 0, 0, 0};
    l.periodColumn = 1;
    return l;
}

}  // namespace

TEST(GetField, CountsFieldsFromOneAndTrimsTheirBlanks) {
    const std::string line = "1.500,10:15:01.500,15/11/26, 12.5 , 0 ";
    EXPECT_EQ(GetField(line, 1), "1.500");
    EXPECT_EQ(GetField(line, 2), "10:15:01.500");
    EXPECT_EQ(GetField(line, 3), "15/11/26");
    EXPECT_EQ(GetField(line, 4), "12.5");
    EXPECT_EQ(GetField(line, 5), "0");
}

TEST(GetField, IsEmptyWhenTheLineHasFewerThanNMinusOneCommas) {
    EXPECT_EQ(GetField("a,b", 3), "");
    EXPECT_EQ(GetField("a,b", 9), "");
    EXPECT_EQ(GetField("", 1), "");
    EXPECT_EQ(GetField("a,b", 0), "");
    EXPECT_EQ(GetField("a,b", -2), "");
}

TEST(GetField, TheLastFieldRunsToTheEndOfTheLine) {
    EXPECT_EQ(GetField("a,b,", 3), "");
    EXPECT_EQ(GetField("a, b c  ", 2), "b c");
    EXPECT_EQ(GetField("only", 1), "only");
}

TEST(GetField, RecognisesNoQuoting) {
    const std::string line = "\"a,b\",c";
    EXPECT_EQ(GetField(line, 1), "\"a");
    EXPECT_EQ(GetField(line, 2), "b\"");
    EXPECT_EQ(GetField(line, 3), "c");
}

TEST(FieldNumber, ReadsTheNumberAtTheStartOfTheField) {
    EXPECT_FLOAT_EQ(FieldNumber("12.5"), 12.5f);
    EXPECT_FLOAT_EQ(FieldNumber(" -3.25 "), -3.25f);
    EXPECT_FLOAT_EQ(FieldNumber("+4"), 4.0f);
    EXPECT_FLOAT_EQ(FieldNumber(".5"), 0.5f);
    EXPECT_FLOAT_EQ(FieldNumber("7."), 7.0f);
    EXPECT_FLOAT_EQ(FieldNumber("1.234568E+07"), 1.234568e7f);
    EXPECT_FLOAT_EQ(FieldNumber("2e-3"), 0.002f);
    EXPECT_FLOAT_EQ(FieldNumber("12abc"), 12.0f);
    EXPECT_FLOAT_EQ(FieldNumber("5e"), 5.0f);
    EXPECT_FLOAT_EQ(FieldNumber("1.2.3"), 1.2f);
}

TEST(FieldNumber, TextThatIsNotANumberReadsAsZero) {
    EXPECT_EQ(FieldNumber(""), 0.0f);
    EXPECT_EQ(FieldNumber("abc"), 0.0f);
    EXPECT_EQ(FieldNumber("-"), 0.0f);
    EXPECT_EQ(FieldNumber("."), 0.0f);
    EXPECT_EQ(FieldNumber("inf"), 0.0f);
    EXPECT_EQ(FieldNumber("nan"), 0.0f);
    EXPECT_EQ(FieldNumber("10:15:01.500"), 10.0f);  // a time reads as its hour
}

TEST(FieldNumber, ANumberBeyondTheSingleRangeReadsAsZero) {
    EXPECT_EQ(FieldNumber("1e39"), 0.0f);
    EXPECT_EQ(FieldNumber("-1e400"), 0.0f);
    EXPECT_EQ(FieldNumber("1e-400"), 0.0f);
    EXPECT_FLOAT_EQ(FieldNumber("3.4e38"), 3.4e38f);
}

TEST(ScanHeader, ListsEveryColumnButDateAndTimeAndFindsTimeAndPeriod) {
    const HistoryColumns c = ScanHeader("LOG PERIOD,TIME,DATE,Tank Level,Pump");
    EXPECT_EQ(c.names,
              (std::vector<std::string>{"LOG PERIOD", "TIME", "DATE", "Tank Level", "Pump"}));
    EXPECT_EQ(c.listItems, (std::vector<std::string>{"LOG PERIOD", "Tank Level", "Pump"}));
    EXPECT_EQ(c.timeColumn, 2);
    EXPECT_EQ(c.periodColumn, 1);
}

TEST(ScanHeader, WithoutTimeAndDateTheirColumnsAreZero) {
    const HistoryColumns c = ScanHeader("LOG PERIOD,Tank Level,Pump");
    EXPECT_EQ(c.timeColumn, 0);
    EXPECT_EQ(c.periodColumn, 1);
    EXPECT_EQ(c.listItems.size(), 3u);
    const HistoryColumns none = ScanHeader("Tank Level");
    EXPECT_EQ(none.periodColumn, 0);
    EXPECT_EQ(none.timeColumn, 0);
}

TEST(ScanHeader, OnlyTheFirstTwentyFieldsAreRead) {
    std::string header = "LOG PERIOD,TIME,DATE";
    for (int i = 1; i <= 30; ++i) header += ",T" + std::to_string(i);
    const HistoryColumns c = ScanHeader(header);
    ASSERT_EQ(c.names.size(), 20u);
    EXPECT_EQ(c.names.back(), "T17");
    ASSERT_EQ(c.listItems.size(), 18u);  // 20 fields less DATE and TIME
    EXPECT_EQ(c.listItems.back(), "T17");
}

TEST(ScanHeader, StopsAtTheFirstEmptyField) {
    const HistoryColumns c = ScanHeader("LOG PERIOD,A,,B");
    EXPECT_EQ(c.names, (std::vector<std::string>{"LOG PERIOD", "A"}));
    EXPECT_TRUE(ScanHeader("").names.empty());
    EXPECT_TRUE(ScanHeader(",A").names.empty());
}

TEST(ScanHeader, NamesAreCaseSensitiveAndTrimmed) {
    const HistoryColumns c = ScanHeader(" time , Date ,LOG PERIOD ");
    EXPECT_EQ(c.listItems, (std::vector<std::string>{"time", "Date", "LOG PERIOD"}));
    EXPECT_EQ(c.timeColumn, 0);
    EXPECT_EQ(c.periodColumn, 3);
}

TEST(ScanHeader, WindowsLabelsComeBackInUtf8) {
    const HistoryColumns c = ScanHeader(
        "LOG PERIOD,Temp \xB0"
        "C,Caf\xE9");
    EXPECT_EQ(c.listItems[1],
              "Temp \xC2\xB0"
              "C");
    EXPECT_EQ(c.listItems[2], "Caf\xC3\xA9");
}

TEST(HistoryFile, ReadsLinesEndingInCrLfOrLf) {
    OpenFile f("H\r\none\r\ntwo\nthree");
    std::string line;
    ASSERT_TRUE(f.file.readLine(line));
    EXPECT_EQ(line, "H");
    ASSERT_TRUE(f.file.readLine(line));
    EXPECT_EQ(line, "one");
    ASSERT_TRUE(f.file.readLine(line));
    EXPECT_EQ(line, "two");
    ASSERT_TRUE(f.file.readLine(line));  // a last line cut short still reads
    EXPECT_EQ(line, "three");
    EXPECT_FALSE(f.file.readLine(line));
    EXPECT_FALSE(f.file.readLine(line));
}

TEST(HistoryFile, AnEmptyFileHasNoLines) {
    OpenFile f("");
    std::string line = "x";
    EXPECT_FALSE(f.file.readLine(line));
    EXPECT_EQ(line, "");
}

TEST(HistoryFile, AMissingFileGivesTheReason) {
    test::TempFolder folder;
    HistoryFile file;
    EXPECT_NE(file.open((folder / "NONE.CSV").string()), "");
    EXPECT_FALSE(file.isOpen());
    std::string line;
    EXPECT_FALSE(file.readLine(line));
    EXPECT_NE(file.open(""), "");
}

TEST(HistoryFile, BackslashesSeparateFolders) {
    test::TempFolder folder;
    test::WriteFileBytes(folder / "LOG.CSV", "H\r\n");
    HistoryFile file;
    EXPECT_EQ(file.open(folder.path().string() + "\\LOG.CSV"), "");
}

TEST(HistoryFile, ALineLongerThanALogLineCanBeEndsTheReadingBeforeIt) {
    std::string bytes = "H\n1\n";
    bytes += std::string(HistoryFile::kMaxLineBytes + 5000, 'x');
    bytes += "\nnext\n";
    OpenFile f(bytes);
    std::string line;
    ASSERT_TRUE(f.file.readLine(line));
    ASSERT_TRUE(f.file.readLine(line));
    EXPECT_EQ(f.file.overlongRow(), -1);
    EXPECT_FALSE(f.file.readLine(line));
    EXPECT_EQ(f.file.overlongRow(), 2);
    // It stays the end: nothing after it is read, and nothing more is fetched.
    const std::uint64_t fetched = f.file.bytesFetched();
    EXPECT_FALSE(f.file.readLine(line));
    EXPECT_FALSE(f.file.skipLine());
    EXPECT_EQ(f.file.bytesFetched(), fetched);
    EXPECT_EQ(f.file.nextRow(), 2);
    // The rows before it are still there to go back to.
    ASSERT_TRUE(f.file.seekRow(1));
    ASSERT_TRUE(f.file.readLine(line));
    EXPECT_EQ(line, "1");
    EXPECT_FALSE(f.file.readLine(line));
}

TEST(HistoryFile, AFileWithoutLineBreaksIsReadNoFurtherThanTheLongestLine) {
    // Megabytes without a line break, as a sparse file or a disk image has.
    OpenFile f("LOG PERIOD,A\n" + std::string(8u << 20, '\0'));
    std::string line;
    ASSERT_TRUE(f.file.readLine(line));
    EXPECT_FALSE(f.file.readLine(line));
    EXPECT_EQ(f.file.overlongRow(), 1);
    EXPECT_LE(f.file.bytesFetched(), HistoryFile::kMaxLineBytes + 2 * 64 * 1024);
}

TEST(HistoryFile, TheLongestLineReadsWithEitherLineEnd) {
    const std::string longest(HistoryFile::kMaxLineBytes, 'y');
    OpenFile f("H\r\n" + longest + "\r\n" + longest + "\n" + longest + "y\r\n");
    std::string line;
    ASSERT_TRUE(f.file.readLine(line));
    ASSERT_TRUE(f.file.readLine(line));
    EXPECT_EQ(line, longest);
    ASSERT_TRUE(f.file.skipLine());
    EXPECT_FALSE(f.file.readLine(line));  // one byte more
    EXPECT_EQ(f.file.overlongRow(), 3);
}

TEST(HistoryFile, AReaderGivenAShorterLongestLineStopsThere) {
    test::TempFolder folder;
    test::WriteFileBytes(folder / "LOG.CSV", "H\r\n12345\r\n123456\n1\n");
    HistoryFile file(5);
    ASSERT_EQ(file.open((folder / "LOG.CSV").string()), "");
    EXPECT_EQ(file.maxLineBytes(), 5u);
    std::string line;
    ASSERT_TRUE(file.readLine(line));
    ASSERT_TRUE(file.readLine(line));
    EXPECT_EQ(line, "12345");
    EXPECT_FALSE(file.readLine(line));
    EXPECT_EQ(file.overlongRow(), 2);
}

TEST(HistoryFile, LinesThatSpanSeveralReadsReadTheSame) {
    test::TempFolder folder;
    const std::string bytes = rowsFile(450) + "cut";
    test::WriteFileBytes(folder / "LOG.CSV", bytes);
    HistoryFile whole, bitwise(HistoryFile::kMaxLineBytes, 3);
    ASSERT_EQ(whole.open((folder / "LOG.CSV").string()), "");
    ASSERT_EQ(bitwise.open((folder / "LOG.CSV").string()), "");
    std::string a, b;
    int lines = 0;
    while (whole.readLine(a)) {
        ASSERT_TRUE(bitwise.readLine(b));
        EXPECT_EQ(a, b);
        ++lines;
    }
    EXPECT_FALSE(bitwise.readLine(b));
    EXPECT_EQ(lines, 452);
    ASSERT_TRUE(bitwise.seekRow(401));
    ASSERT_TRUE(bitwise.readLine(b));
    EXPECT_EQ(b, "401.000, 401 ");
}

TEST(HistoryFile, AHeaderIsAFirstLineOfTextOfAtMostTheLongestLine) {
    {
        OpenFile f("LOG PERIOD,TIME,A\r\n1,2,3\r\n");
        std::string header;
        EXPECT_EQ(f.file.readHeader(header), "");
        EXPECT_EQ(header, "LOG PERIOD,TIME,A");
        std::string line;
        ASSERT_TRUE(f.file.readLine(line));
        EXPECT_EQ(line, "1,2,3");
    }
    {
        OpenFile f("");  // an empty file names no columns
        std::string header = "x";
        EXPECT_EQ(f.file.readHeader(header), "");
        EXPECT_EQ(header, "");
    }
    {
        OpenFile f("LOG PERIOD,A");  // no line break: the whole file is the header
        std::string header;
        EXPECT_EQ(f.file.readHeader(header), "");
        EXPECT_EQ(header, "LOG PERIOD,A");
    }
    {
        OpenFile f(std::string(HistoryFile::kMaxLineBytes + 1, 'H'));
        std::string header;
        EXPECT_EQ(f.file.readHeader(header),
                  "its first line is longer than 65536 bytes: not a log file");
    }
    {
        OpenFile f(std::string("LOG PERIOD,A\0\0\0,B\r\n", 20));
        std::string header;
        EXPECT_EQ(f.file.readHeader(header), "its first line holds NUL bytes: not a log file");
    }
}

TEST(HistoryFile, AFolderIsNoLogFile) {
    test::TempFolder folder;
    HistoryFile file;
    EXPECT_EQ(file.open(folder.path().string()), "it is a folder, not a log file");
    EXPECT_FALSE(file.isOpen());
}

TEST(HistoryFile, KnowsEachBlockStartItHasPassed) {
    OpenFile f(rowsFile(450));
    EXPECT_EQ(f.file.knownBlockStarts(), 0u);
    f.file.skipLine();  // header
    EXPECT_EQ(f.file.nextRow(), 1);
    f.file.skipLine();
    EXPECT_EQ(f.file.knownBlockStarts(), 1u);
    while (f.file.nextRow() <= 401) f.file.skipLine();
    EXPECT_EQ(f.file.knownBlockStarts(), 3u);
    while (f.file.skipLine()) {
    }
    EXPECT_EQ(f.file.knownBlockStarts(), 3u);
    EXPECT_EQ(f.file.nextRow(), 451);
}

TEST(HistoryFile, SeekRowLandsOnTheRowFromAKnownBlockStart) {
    OpenFile f(rowsFile(1000));
    std::string line;
    while (f.file.skipLine()) {
    }
    for (int row : {1, 2, 200, 201, 399, 777, 1000, 450, 3}) {
        ASSERT_TRUE(f.file.seekRow(row)) << row;
        ASSERT_TRUE(f.file.readLine(line)) << row;
        EXPECT_EQ(GetField(line, 2), std::to_string(row)) << row;
        EXPECT_EQ(f.file.nextRow(), row + 1);
    }
    ASSERT_TRUE(f.file.seekRow(0));
    ASSERT_TRUE(f.file.readLine(line));
    EXPECT_EQ(line, "LOG PERIOD,Flow");
    EXPECT_FALSE(f.file.seekRow(1002));
    EXPECT_TRUE(f.file.seekRow(1001));  // just past the last row: nothing more to read
    EXPECT_FALSE(f.file.readLine(line));
}

TEST(HistoryFile, SeekRowBeyondWhatWasPassedReadsOnAndNotesTheStarts) {
    OpenFile f(rowsFile(1000));
    std::string line;
    ASSERT_TRUE(f.file.seekRow(650));
    EXPECT_EQ(f.file.knownBlockStarts(), 4u);
    ASSERT_TRUE(f.file.readLine(line));
    EXPECT_EQ(GetField(line, 2), "650");
    ASSERT_TRUE(f.file.seekRow(202));
    ASSERT_TRUE(f.file.readLine(line));
    EXPECT_EQ(GetField(line, 2), "202");
}

TEST(ReadBlock, TwoHundredAndFiftyRowsGiveAFullBlockThenFiftyAndZeros) {
    OpenFile f(rowsFile(250));
    f.file.skipLine();
    HistoryBlock b;
    ASSERT_EQ(ReadBlock(f.file, flowLayout(), b), 200);
    EXPECT_EQ(b.values[0][0], 1.0f);
    EXPECT_EQ(b.values[0][199], 200.0f);
    EXPECT_EQ(b.periodTexts[0], "1.000");
    EXPECT_EQ(b.periodTexts[199], "200.000");
    for (int p = 1; p < kHistoryPens; ++p) EXPECT_EQ(b.values[p][10], 0.0f);

    ASSERT_EQ(ReadBlock(f.file, flowLayout(), b), 50);
    EXPECT_EQ(b.values[0][0], 201.0f);
    EXPECT_EQ(b.values[0][49], 250.0f);
    EXPECT_EQ(b.periodTexts[49], "250.000");
    for (int r = 50; r < kHistoryBlockRows; ++r) {
        EXPECT_EQ(b.values[0][r], 0.0f) << r;
        EXPECT_EQ(b.periodTexts[r], "") << r;
        EXPECT_EQ(b.timeTexts[r], "") << r;
    }

    const HistoryBlock before = b;
    EXPECT_EQ(ReadBlock(f.file, flowLayout(), b), 0);
    EXPECT_EQ(b.values, before.values);
    EXPECT_EQ(b.periodTexts, before.periodTexts);
}

TEST(ReadBlock, AMissingColumnGivesZerosAndEmptyTexts) {
    OpenFile f("LOG PERIOD,TIME,A,B\r\n1,10:00:00.000, 5 , 6 \r\n2\r\n3,10:00:02.000, x , 8 \r\n");
    f.file.skipLine();
    BlockLayout l;
    l.pens = {3, 4, 9, 0};
    l.timeColumn = 2;
    l.periodColumn = 1;
    HistoryBlock b;
    ASSERT_EQ(ReadBlock(f.file, l, b), 3);
    EXPECT_EQ(b.values[0][0], 5.0f);
    EXPECT_EQ(b.values[1][0], 6.0f);
    EXPECT_EQ(b.values[2][0], 0.0f);  // column 9 is not there
    EXPECT_EQ(b.timeTexts[0], "10:00:00.000");
    EXPECT_EQ(b.values[0][1], 0.0f);  // row "2" has one field
    EXPECT_EQ(b.timeTexts[1], "");
    EXPECT_EQ(b.periodTexts[1], "2");
    EXPECT_EQ(b.values[0][2], 0.0f);  // "x" is not a number
    EXPECT_EQ(b.values[1][2], 8.0f);
}

TEST(ReadBlock, ABinaryFileReadsAsZerosWithoutFault) {
    std::string bytes = "LOG PERIOD,A\n";
    for (int i = 0; i < 3000; ++i) bytes += static_cast<char>((i * 37) & 0xFF);
    OpenFile f(bytes);
    f.file.skipLine();
    BlockLayout l;
    l.pens = {2, 2, 2, 2};
    l.periodColumn = 1;
    l.timeColumn = 7;
    HistoryBlock b;
    int total = 0;
    for (int n; (n = ReadBlock(f.file, l, b)) > 0;) total += n;
    EXPECT_GT(total, 0);
}

}  // namespace kova
