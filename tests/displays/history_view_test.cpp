#include "displays/history_view.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "core/fault.h"
#include "logging/log_switch.h"
#include "logging/log_writer.h"
#include "platform/clock.h"
#include "support/fake_chart_plot.h"
#include "support/test_support.h"
#include "tags/tag_name_index.h"

namespace kova {

namespace {

// A log of n rows: period r, time 10:00:00 + r seconds, date, then A = r and B = -r.
std::string logFile(int n, bool withTime = true) {
    std::string s = withTime ? "LOG PERIOD,TIME,DATE,A,B\r\n" : "LOG PERIOD,A,B\r\n";
    for (int r = 1; r <= n; ++r) {
        char time[32];
        std::snprintf(time, sizeof time, "10:%02d:%02d.000,", (r / 60) % 60, r % 60);
        s += std::to_string(r) + ",";
        if (withTime) s += std::string(time) + "15/11/26,";
        s += " " + std::to_string(r) + " ,-" + std::to_string(r) + " \r\n";
    }
    return s;
}

struct Rig {
    Station st;
    test::ScriptedPrompter prompt;
    test::FakeChartPlot chart;
    test::TempFolder folder;
    HistoryView view{st, chart};
    Rig() { st.platform.prompter = &prompt; }

    std::string write(const std::string& name, const std::string& bytes) {
        test::WriteFileBytes(folder / name, bytes);
        return (folder / name).string();
    }
    // Chooses the file through "&Select File".
    void choose(const std::string& path) {
        prompt.fileAnswers.push_back(path);
        view.selectFile();
    }
    std::vector<std::string> labels() const {
        std::vector<std::string> t;
        for (const auto& l : chart.xLabels) t.push_back(l.text);
        return t;
    }
    const std::vector<test::Shown>& messages() const { return prompt.messages; }
};

const test::Shown kNoMore{"No More Points To Plot", "KOVA"};

}  // namespace

TEST(HistoryView, OpensWithPeriodChosenAndNothingCharted) {
    Rig r;
    EXPECT_FALSE(r.view.timeAxis());
    EXPECT_EQ(r.view.fileName(), "");
    EXPECT_TRUE(r.view.listItems().empty());
    EXPECT_EQ(r.chart.curveCount(), 0);
    r.view.forward();  // nothing chosen: nothing happens
    r.view.back();
    EXPECT_TRUE(r.messages().empty());
    EXPECT_EQ(r.chart.curveCount(), 0);
}

TEST(HistoryView, TheFileDialogKeepsItsTitleAndFilter) {
    Rig r;
    r.view.selectFile();  // cancelled
    ASSERT_EQ(r.prompt.fileDialogs.size(), 1u);
    EXPECT_EQ(r.prompt.fileDialogs[0].text, "Open SetUp File");
    EXPECT_EQ(r.prompt.fileDialogs[0].title, "All Files (*.CSV)|*.CSV|");
    EXPECT_EQ(r.view.fileName(), "");
}

TEST(HistoryView, ChoosingAFileListsItsColumnsButDateAndTime) {
    Rig r;
    const std::string path = r.write("PLANT.CSV", logFile(3));
    r.choose(path);
    EXPECT_EQ(r.view.fileName(), path);
    EXPECT_EQ(r.view.listItems(), (std::vector<std::string>{"LOG PERIOD", "A", "B"}));
    EXPECT_EQ(r.view.columns().timeColumn, 2);
    EXPECT_EQ(r.view.columns().periodColumn, 1);
    EXPECT_FALSE(r.view.fileOpen());  // read for its header, then closed
}

TEST(HistoryView, AHeaderOfMoreThanTwentyFieldsOffersOnlyTheFirstTwenty) {
    Rig r;
    std::string header = "LOG PERIOD,TIME,DATE";
    for (int i = 1; i <= 25; ++i) header += ",Tag " + std::to_string(i);
    r.choose(r.write("WIDE.CSV", header + "\r\n"));
    ASSERT_EQ(r.view.listItems().size(), 18u);
    EXPECT_EQ(r.view.listItems().front(), "LOG PERIOD");
    EXPECT_EQ(r.view.listItems().back(), "Tag 17");
}

TEST(HistoryView, TheFileBeingLoggedIsRefused) {
    Rig r;
    const std::string other = r.write("OTHER.CSV", logFile(3));
    r.choose(other);
    const std::string path = r.write("PLANT.CSV", logFile(3));
    r.st.logging.LogFileName = path;
    r.st.switches.LoggingEnabled = Variant::integer(1);
    r.choose(path);
    ASSERT_EQ(r.messages().size(), 1u);
    EXPECT_EQ(r.messages()[0], (test::Shown{"Cannot View Current Logging File " + path, "KOVA"}));
    EXPECT_EQ(r.view.fileName(), other);  // nothing changed
}

TEST(HistoryView, TheFileBeingLoggedIsRefusedUnderAnotherSpellingOfItsPath) {
    Rig r;
    const std::string path = r.write("PLANT.CSV", logFile(3));
    r.st.logging.LogFileName = path;
    r.st.switches.LoggingEnabled = Variant::integer(1);
    const std::string other = r.folder.path().string() + "/./PLANT.CSV";
    r.choose(other);
    ASSERT_EQ(r.messages().size(), 1u);
    EXPECT_EQ(r.messages()[0].text, "Cannot View Current Logging File " + other);
    EXPECT_EQ(r.view.fileName(), "");
}

TEST(HistoryView, TheLogFileCanBeViewedWhileLoggingIsOff) {
    Rig r;
    const std::string path = r.write("PLANT.CSV", logFile(3));
    r.st.logging.LogFileName = path;
    r.choose(path);
    EXPECT_TRUE(r.messages().empty());
    EXPECT_EQ(r.view.fileName(), path);
}

TEST(HistoryView, AFileThatCannotBeReadFaultsNamingIt) {
    Rig r;
    const std::string path = (r.folder / "GONE.CSV").string();
    try {
        r.choose(path);
        FAIL() << "no fault";
    } catch (const Fault& f) {
        EXPECT_EQ(f.kind(), FaultKind::File);
        EXPECT_NE(std::string(f.what()).find(path), std::string::npos) << f.what();
    }
    EXPECT_EQ(r.view.fileName(), "");
}

TEST(HistoryView, SelectedItemsBecomePensFromTheTopAndTheFirstBlockIsCharted) {
    Rig r;
    r.choose(r.write("PLANT.CSV", logFile(300)));
    ASSERT_TRUE(r.view.selectItems({2, 1}));  // B and A: A is higher in the list
    EXPECT_EQ(r.view.penLabels(), (std::array<std::string, 4>{"A", "B", "", ""}));
    EXPECT_EQ(r.view.penColumns(), (PenColumns{4, 5, 0, 0}));
    EXPECT_EQ(r.view.blockStart(), 1);
    EXPECT_EQ(r.view.previousBlockStart(), 1);
    ASSERT_EQ(r.chart.curveCount(), 4);
    for (int p = 0; p < 4; ++p) {
        EXPECT_EQ(r.chart.curves[p].name, "Curve" + std::to_string(p + 1));
        EXPECT_EQ(r.chart.curves[p].xIncrement, 1.0);
    }
    EXPECT_EQ(r.chart.curves[0].y.size(), 200u);
    EXPECT_EQ(r.chart.curves[1].y.size(), 200u);
    EXPECT_EQ(r.chart.xSpan, 199.0);
    EXPECT_EQ(r.chart.curves[0].y[0], 1.0f);
    EXPECT_EQ(r.chart.curves[0].y[199], 200.0f);
    EXPECT_EQ(r.chart.curves[1].y[199], -200.0f);
    // The pens without a column hold zeros but draw nothing.
    EXPECT_EQ(r.view.block().values[2][5], 0.0f);
    EXPECT_TRUE(r.chart.curves[2].y.empty());
    EXPECT_TRUE(r.chart.curves[3].y.empty());
    EXPECT_EQ(r.chart.curves[0].legend, "A");
    EXPECT_EQ(r.chart.curves[1].legend, "B");
    EXPECT_TRUE(r.chart.autoY);
    EXPECT_TRUE(r.messages().empty());
}

TEST(HistoryView, APenChartsTheFirstColumnOfItsName) {
    Rig r;
    r.choose(r.write("TWICE.CSV", "LOG PERIOD,X,Y,X\r\n1, 1 , 2 , 3 \r\n"));
    ASSERT_EQ(r.view.listItems().size(), 4u);
    ASSERT_TRUE(r.view.selectItems({3}));  // the second "X"
    EXPECT_EQ(r.view.penColumns()[0], 2);
    EXPECT_EQ(r.chart.curves[0].y[0], 1.0f);
}

TEST(HistoryView, TheLogPeriodColumnCanBeCharted) {
    Rig r;
    r.choose(r.write("PLANT.CSV", logFile(10)));
    ASSERT_TRUE(r.view.selectItems({0}));
    EXPECT_EQ(r.view.penColumns()[0], 1);
    EXPECT_EQ(r.chart.curves[0].y[9], 10.0f);
}

TEST(HistoryView, AFifthSelectedItemIsRefused) {
    Rig r;
    r.choose(r.write("FIVE.CSV", "LOG PERIOD,A,B,C,D,E\r\n1,1,2,3,4,5\r\n"));
    ASSERT_TRUE(r.view.selectItems({1, 2, 3, 4}));
    EXPECT_EQ(r.view.penLabels(), (std::array<std::string, 4>{"A", "B", "C", "D"}));
    const int replaced = r.chart.curves[0].replaced;
    EXPECT_FALSE(r.view.selectItems({1, 2, 3, 4, 5}));
    EXPECT_EQ(r.view.penLabels(), (std::array<std::string, 4>{"A", "B", "C", "D"}));
    EXPECT_EQ(r.chart.curves[0].replaced, replaced);
}

TEST(HistoryView, ANewSelectionClearsThePensAndStartsAtTheFirstBlock) {
    Rig r;
    r.choose(r.write("PLANT.CSV", logFile(450)));
    ASSERT_TRUE(r.view.selectItems({1, 2}));
    r.view.forward();
    ASSERT_TRUE(r.view.selectItems({2}));
    EXPECT_EQ(r.view.penLabels(), (std::array<std::string, 4>{"B", "", "", ""}));
    EXPECT_EQ(r.chart.curves[0].y[0], -1.0f);  // the file read again from its first row
    EXPECT_TRUE(r.chart.curves[1].y.empty());  // the pen given up draws nothing
    EXPECT_EQ(r.chart.curves[0].replaced, 2);  // curves are replaced, not added again
    EXPECT_EQ(r.chart.curveCount(), 4);
}

TEST(HistoryView, AShortFileWithTwoPensDrawsOnlyItsRowsOnThosePens) {
    Rig r;
    r.choose(r.write("SHORT.CSV", logFile(60)));
    ASSERT_TRUE(r.view.selectItems({1, 2}));
    ASSERT_EQ(r.chart.curves[0].y.size(), 60u);
    ASSERT_EQ(r.chart.curves[1].y.size(), 60u);
    EXPECT_EQ(r.chart.curves[0].y[59], 60.0f);
    EXPECT_EQ(r.chart.curves[1].y[59], -60.0f);
    // Nothing falls to 0 after the last row, and no flat line stands for pens 3 and 4.
    EXPECT_TRUE(r.chart.curves[2].y.empty());
    EXPECT_TRUE(r.chart.curves[3].y.empty());
    EXPECT_EQ(r.chart.xSpan, 199.0);
    // The eight labels stay, the first one at X = 0 included.
    ASSERT_EQ(r.chart.xLabels.size(), 8u);
    EXPECT_EQ(r.chart.xLabels[0].x, 0.0);
    EXPECT_EQ(r.chart.xLabels[0].text, "1");
    EXPECT_EQ(r.chart.xLabels[2].text, "51");
    EXPECT_EQ(r.chart.xLabels[3].text, "");
}

TEST(HistoryView, AxisLabelsEveryTwentyFivePointsFromThePeriodTexts) {
    Rig r;
    r.choose(r.write("PLANT.CSV", logFile(300)));
    ASSERT_TRUE(r.view.selectItems({1}));
    ASSERT_EQ(r.chart.xLabels.size(), 8u);
    for (int i = 0; i < 8; ++i) {
        EXPECT_EQ(r.chart.xLabels[i].x, i * 25.0);
        EXPECT_EQ(r.chart.xLabels[i].text, std::to_string(i * 25 + 1));
    }
    r.view.forward();
    ASSERT_EQ(r.chart.xLabels.size(), 8u);  // the eight labels are replaced, not added to
    EXPECT_EQ(r.chart.xLabels[0].text, "201");
    EXPECT_EQ(r.chart.xLabels[3].text, "276");
    EXPECT_EQ(r.chart.xLabels[4].text, "");  // row 301 is beyond the file
}

TEST(HistoryView, TimeLabelsComeFromTheTimeColumnAndTheChoiceRelabelsAtOnce) {
    Rig r;
    r.choose(r.write("PLANT.CSV", logFile(300)));
    ASSERT_TRUE(r.view.selectItems({1}));
    r.view.chooseTimeAxis(true);
    EXPECT_TRUE(r.view.timeAxis());
    ASSERT_EQ(r.chart.xLabels.size(), 8u);
    EXPECT_EQ(r.chart.xLabels[0].text, "10:00:01.000");
    EXPECT_EQ(r.chart.xLabels[1].text, "10:00:26.000");
    EXPECT_EQ(r.chart.xLabels[7].text, "10:02:56.000");
    r.view.chooseTimeAxis(false);
    EXPECT_EQ(r.chart.xLabels[7].text, "176");
    EXPECT_EQ(r.chart.xLabels.size(), 8u);
}

TEST(HistoryView, WithoutATimeColumnTimeLabelsAreEmpty) {
    Rig r;
    r.choose(r.write("NOTIME.CSV", logFile(60, false)));
    r.view.chooseTimeAxis(true);
    ASSERT_TRUE(r.view.selectItems({1}));
    EXPECT_EQ(r.labels(), std::vector<std::string>(8, ""));
    EXPECT_EQ(r.chart.curves[0].y[59], 60.0f);
}

TEST(HistoryView, TwoHundredAndFiftyRowsThenZerosThenNoMorePoints) {
    Rig r;
    r.choose(r.write("PLANT.CSV", logFile(250)));
    ASSERT_TRUE(r.view.selectItems({1}));
    const auto& y = r.chart.curves[0].y;
    EXPECT_EQ(y[0], 1.0f);
    EXPECT_EQ(y[199], 200.0f);

    r.view.forward();
    EXPECT_TRUE(r.messages().empty());
    // The block holds 150 zero points after the file's end; the chart draws the 50 rows the
    // file has, on an axis as wide as a whole block.
    const auto& block = r.view.block().values[0];
    EXPECT_EQ(block[0], 201.0f);
    EXPECT_EQ(block[49], 250.0f);
    for (int k = 50; k < 200; ++k) ASSERT_EQ(block[k], 0.0f) << k;
    EXPECT_EQ(r.view.rowsRead(), 50);
    ASSERT_EQ(y.size(), 50u);
    EXPECT_EQ(y[0], 201.0f);
    EXPECT_EQ(y[49], 250.0f);
    EXPECT_EQ(r.chart.xSpan, 199.0);

    const auto before = r.chart.curves;
    const auto labelsBefore = r.labels();
    r.view.forward();
    ASSERT_EQ(r.messages().size(), 1u);
    EXPECT_EQ(r.messages()[0], kNoMore);
    for (int p = 0; p < 4; ++p) {
        EXPECT_EQ(r.chart.curves[p].y, before[p].y);
        EXPECT_EQ(r.chart.curves[p].replaced, before[p].replaced);
    }
    EXPECT_EQ(r.labels(), labelsBefore);
    r.view.forward();
    EXPECT_EQ(r.messages().size(), 2u);
}

TEST(HistoryView, ForwardDoesNotMoveTheBlockStartSoBackStaysIdle) {
    Rig r;
    r.choose(r.write("PLANT.CSV", logFile(1000)));
    ASSERT_TRUE(r.view.selectItems({1}));
    r.view.forward();
    r.view.forward();
    EXPECT_EQ(r.view.blockStart(), 1);
    const int replaced = r.chart.curves[0].replaced;
    r.view.back();
    EXPECT_EQ(r.view.blockStart(), 1);
    EXPECT_EQ(r.view.previousBlockStart(), 1);
    EXPECT_EQ(r.chart.curves[0].replaced, replaced);
    EXPECT_EQ(r.chart.curves[0].y[0], 401.0f);
    EXPECT_TRUE(r.messages().empty());
}

TEST(HistoryView, BackShowsThe200RowsBeforeTheBlockStart) {
    Rig r;
    r.choose(r.write("PLANT.CSV", logFile(1000)));
    ASSERT_TRUE(r.view.selectItems({1}));
    r.view.setBlockStartForTesting(401);
    r.view.back();
    EXPECT_EQ(r.view.previousBlockStart(), 401);
    EXPECT_EQ(r.view.blockStart(), 201);
    EXPECT_EQ(r.chart.curves[0].y[0], 201.0f);
    EXPECT_EQ(r.chart.curves[0].y[199], 400.0f);
    EXPECT_EQ(r.chart.xLabels[0].text, "201");
    r.view.back();
    EXPECT_EQ(r.view.blockStart(), 1);
    EXPECT_EQ(r.chart.curves[0].y[0], 1.0f);
    // Forward goes on from where the step back stopped reading.
    r.view.forward();
    EXPECT_EQ(r.chart.curves[0].y[0], 201.0f);
    const int replaced = r.chart.curves[0].replaced;
    r.view.back();  // block start 1: nothing happens
    EXPECT_EQ(r.chart.curves[0].replaced, replaced);
    EXPECT_TRUE(r.messages().empty());
}

TEST(HistoryView, BackBelowTheFirstRowReadsFromTheFirstRow) {
    Rig r;
    r.choose(r.write("PLANT.CSV", logFile(500)));
    ASSERT_TRUE(r.view.selectItems({1}));
    r.view.setBlockStartForTesting(150);
    r.view.back();
    EXPECT_EQ(r.view.blockStart(), -50);
    EXPECT_EQ(r.chart.curves[0].y[0], 1.0f);
    EXPECT_EQ(r.chart.curves[0].y[199], 200.0f);
}

TEST(HistoryView, BackBeyondTheEndOfTheFileSaysNoMorePoints) {
    Rig r;
    r.choose(r.write("PLANT.CSV", logFile(250)));
    ASSERT_TRUE(r.view.selectItems({1}));
    const auto before = r.chart.curves[0].y;
    r.view.setBlockStartForTesting(1001);
    r.view.back();
    EXPECT_EQ(r.view.blockStart(), 801);
    ASSERT_EQ(r.messages().size(), 1u);
    EXPECT_EQ(r.messages()[0], kNoMore);
    EXPECT_EQ(r.chart.curves[0].y, before);
}

TEST(HistoryView, BackAfterStepsSeeksToAKnownBlockWithoutRereadingTheFile) {
    Rig r;
    r.choose(r.write("PLANT.CSV", logFile(20000)));
    ASSERT_TRUE(r.view.selectItems({1}));
    for (int i = 0; i < 80; ++i) r.view.forward();
    EXPECT_EQ(r.chart.curves[0].y[0], 16001.0f);
    const std::uint64_t fetched = r.view.file()->bytesFetched();
    r.view.setBlockStartForTesting(15801);
    r.view.back();
    EXPECT_EQ(r.chart.curves[0].y[0], 15601.0f);
    EXPECT_EQ(r.chart.curves[0].y[199], 15800.0f);
    // One read buffer or two, not the half a megabyte before the block.
    EXPECT_LE(r.view.file()->bytesFetched() - fetched, 2u * 64 * 1024);
}

TEST(HistoryView, AFileWithOnlyAHeaderHasNoPointsToPlot) {
    Rig r;
    r.choose(r.write("EMPTY.CSV", "LOG PERIOD,TIME,DATE,A\r\n"));
    ASSERT_TRUE(r.view.selectItems({1}));
    ASSERT_EQ(r.messages().size(), 1u);
    EXPECT_EQ(r.messages()[0], kNoMore);
    EXPECT_EQ(r.chart.curveCount(), 0);
}

TEST(HistoryView, AnEmptyFileListsNothing) {
    Rig r;
    r.choose(r.write("NOTHING.CSV", ""));
    EXPECT_TRUE(r.view.listItems().empty());
    EXPECT_TRUE(r.view.selectItems({}));
}

TEST(HistoryView, APartLineAndMalformedNumbersReadAsZero) {
    Rig r;
    r.choose(r.write("CUT.CSV",
                     "LOG PERIOD,TIME,DATE,A,B\r\n"
                     "1,10:00:01.000,15/11/26, 1.5 , 2 \r\n"
                     "2,10:00:02.000,15/11/26, ?? , 4e \r\n"
                     "3,10:00:03.0"));
    ASSERT_TRUE(r.view.selectItems({1, 2}));
    ASSERT_EQ(r.chart.curves[0].y.size(), 3u);
    EXPECT_EQ(r.chart.curves[0].y[0], 1.5f);
    EXPECT_EQ(r.chart.curves[0].y[1], 0.0f);
    EXPECT_EQ(r.chart.curves[1].y[1], 4.0f);
    EXPECT_EQ(r.chart.curves[0].y[2], 0.0f);  // the line the logger did not finish
    EXPECT_EQ(r.view.block().periodTexts[2], "3");
    EXPECT_EQ(r.view.block().timeTexts[2], "10:00:03.0");
}

TEST(HistoryView, AWindowsFileWithWindowsLabelsCharts) {
    Rig r;
    r.choose(r.write("WIN.CSV",
                     "LOG PERIOD,TIME,DATE,Temp \xB0"
                     "C\r\n0.500,10:15:00.500,15/11/26, 21.5 \r\n"));
    EXPECT_EQ(r.view.listItems()[1],
              "Temp \xC2\xB0"
              "C");
    ASSERT_TRUE(r.view.selectItems({1}));
    EXPECT_EQ(r.view.penColumns()[0], 4);
    EXPECT_EQ(r.chart.curves[0].y[0], 21.5f);
    EXPECT_EQ(r.chart.curves[0].legend,
              "Temp \xC2\xB0"
              "C");
}

TEST(HistoryView, ChoosingAnotherFileEndsTheStepsUntilANewSelection) {
    Rig r;
    r.choose(r.write("PLANT.CSV", logFile(450)));
    ASSERT_TRUE(r.view.selectItems({1}));
    r.choose(r.write("OTHER.CSV", logFile(10, false)));
    const int replaced = r.chart.curves[0].replaced;
    r.view.forward();
    EXPECT_EQ(r.chart.curves[0].replaced, replaced);
    EXPECT_TRUE(r.messages().empty());
    ASSERT_TRUE(r.view.selectItems({1}));
    EXPECT_EQ(r.chart.curves[0].y[9], 10.0f);
}

TEST(HistoryView, ExitClosesTheFile) {
    Rig r;
    r.choose(r.write("PLANT.CSV", logFile(10)));
    ASSERT_TRUE(r.view.selectItems({1}));
    EXPECT_TRUE(r.view.fileOpen());
    r.view.exit();
    EXPECT_FALSE(r.view.fileOpen());
}

TEST(HistoryView, AFileWrittenByTheLoggerChartsItsTagsAndTimes) {
    Rig r;
    SimulatedClock clock({2026, 11, 15, 10, 15, 0, 0});
    r.st.platform.clock = &clock;
    r.st.periods = {500, kUnitMs, 500, kUnitMs, 0};
    r.st.logging.LogTimeColumn = Variant::integer(1);
    r.st.logging.LogDateColumn = Variant::integer(1);
    r.st.logging.OverwriteFile = 1;
    r.st.logging.LogFileName = (r.folder / "PLANT.CSV").string();
    r.st.tag(1).Label = "Tank Level";
    r.st.tag(1).TagName = "TANK";
    r.st.tag(1).Log = 1;
    r.st.tag(3).Label = "Pump";
    r.st.tag(3).TagName = "PUMP";
    r.st.tag(3).Log = 1;
    RebuildTagNameIndex(r.st.tags, r.st.nameIndex);
    ASSERT_TRUE(ToggleLogging(r.st));
    for (int i = 1; i <= 230; ++i) {
        r.st.tag(1).Value = 0.25f * static_cast<float>(i);
        r.st.tag(3).Value = (i % 2) ? 1.0f : 0.0f;
        AdvanceLogClock(r.st, 500);
        WriteLogRecord(r.st);
    }
    // While it is being written the file is refused.
    r.choose(r.st.logging.LogFileName);
    ASSERT_EQ(r.messages().size(), 1u);
    EXPECT_FALSE(ToggleLogging(r.st));

    r.choose(r.st.logging.LogFileName);
    EXPECT_EQ(r.view.listItems(), (std::vector<std::string>{"LOG PERIOD", "Tank Level", "Pump"}));
    ASSERT_TRUE(r.view.selectItems({1, 2}));
    r.view.chooseTimeAxis(true);
    EXPECT_EQ(r.chart.curves[0].y[0], 0.25f);
    EXPECT_EQ(r.chart.curves[0].y[199], 50.0f);
    EXPECT_EQ(r.chart.curves[1].y[0], 1.0f);
    EXPECT_EQ(r.chart.curves[1].y[1], 0.0f);
    EXPECT_TRUE(r.chart.curves[2].y.empty());
    EXPECT_EQ(r.chart.xLabels[0].text, "10:15:00.500");
    EXPECT_EQ(r.chart.xLabels[1].text, "10:15:13.000");
    r.view.chooseTimeAxis(false);
    EXPECT_EQ(r.chart.xLabels[1].text, "13.000");
    r.view.forward();
    ASSERT_EQ(r.chart.curves[0].y.size(), 30u);
    EXPECT_EQ(r.chart.curves[0].y[29], 57.5f);
    EXPECT_EQ(r.view.block().values[0][30], 0.0f);
}

namespace {
// Background work held until the test lets it run, as a slow disk would hold it.
class HeldWork final : public BackgroundWork {
  public:
    void run(std::function<void()> work, std::function<void()> done) override {
        held.push_back({std::move(work), std::move(done)});
    }
    // Runs the oldest piece of work and its ending.
    void release() {
        auto [work, done] = std::move(held.front());
        held.erase(held.begin());
        work();
        done();
    }
    std::vector<std::pair<std::function<void()>, std::function<void()>>> held;
};

struct HeldRig : Rig {
    HeldWork work;
    HistoryView slow{st, chart, &work};
};
}  // namespace

TEST(HistoryView, AReadUnderWayHoldsNothingUpAndStepsAskedMeanwhileFollowInTurn) {
    HeldRig r;
    int changes = 0;
    r.slow.onChanged([&] { ++changes; });
    r.slow.openFile(r.write("PLANT.CSV", logFile(450)));
    EXPECT_TRUE(r.slow.busy());
    EXPECT_TRUE(r.slow.listItems().empty());  // nothing shown before the file is read
    r.work.release();
    EXPECT_FALSE(r.slow.busy());
    EXPECT_EQ(changes, 1);
    ASSERT_EQ(r.slow.listItems().size(), 3u);
    ASSERT_TRUE(r.slow.selectItems({1}));
    r.slow.forward();  // asked while the selection is read
    r.slow.forward();
    ASSERT_EQ(r.work.held.size(), 1u);
    r.work.release();
    EXPECT_EQ(r.chart.curves.at(0).y[0], 1.0f);
    ASSERT_EQ(r.work.held.size(), 1u);  // the first step began as the selection was shown
    r.work.release();
    EXPECT_EQ(r.chart.curves[0].y[0], 201.0f);
    r.work.release();
    EXPECT_EQ(r.chart.curves[0].y[0], 401.0f);
    EXPECT_TRUE(r.work.held.empty());
    EXPECT_FALSE(r.slow.busy());
    EXPECT_EQ(changes, 4);
}

TEST(HistoryView, AReadThatEndsAfterTheWindowWasLeftShowsNothing) {
    HeldRig r;
    r.slow.openFile(r.write("PLANT.CSV", logFile(10)));
    r.work.release();
    ASSERT_TRUE(r.slow.selectItems({1}));
    r.slow.forward();
    r.slow.exit();
    EXPECT_FALSE(r.slow.busy());
    r.work.release();
    EXPECT_EQ(r.chart.curveCount(), 0);
    EXPECT_TRUE(r.messages().empty());
    EXPECT_FALSE(r.slow.fileOpen());
    EXPECT_TRUE(r.work.held.empty());  // the step asked for meanwhile was dropped too
}

TEST(HistoryView, AFileThatCannotBeReadDropsTheStepsAskedBehindIt) {
    HeldRig r;
    r.slow.openFile(r.write("PLANT.CSV", logFile(10)));
    r.work.release();
    r.slow.openFile((r.folder / "GONE.CSV").string());
    r.slow.openFile(r.write("OTHER.CSV", "LOG PERIOD,X\r\n"));
    EXPECT_THROW(r.work.release(), Fault);
    EXPECT_FALSE(r.slow.busy());
    EXPECT_TRUE(r.work.held.empty());
    EXPECT_EQ(r.slow.listItems().size(), 3u);  // PLANT.CSV's columns stay
}

}  // namespace kova
