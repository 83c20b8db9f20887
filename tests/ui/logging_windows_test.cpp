// The two logging windows in the main window: opened from their menu items, the "Log Data"
// box and the logging field of the status bar following them, and a configuration made in
// them saved, loaded and logging what it says.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QStatusBar>
#include <QTest>
#include <filesystem>
#include <sstream>

#include "app/main_window.h"
#include "logging/forms/set_logging_form.h"
#include "logging/forms/start_log_form.h"
#include "logging/log_conditions.h"
#include "platform/clock.h"
#include "support/test_support.h"
#include "tags/tag_name_index.h"
#include "ui/ui_support.h"

namespace kova::app {

namespace fs = std::filesystem;

namespace {
LocalDateTime At(int h, int m, int s) {
    LocalDateTime t;
    t.year = 2026, t.month = 11, t.day = 15, t.hour = h, t.minute = m, t.second = s;
    return t;
}

struct Rig {
    test::TempFolder& folder;
    Station st;
    test::ScriptedPrompter prompt;
    SimulatedClock clock{At(10, 15, 0)};
    std::ostringstream errors;
    std::unique_ptr<MainWindow> w;
    explicit Rig(test::TempFolder& f) : folder(f) {
        st.workingFolder = folder.path();
        st.platform.clock = &clock;
        w = std::make_unique<MainWindow>(st, &prompt, &errors);
        w->startUp();
        st.periods = {500, kUnitMs, 500, kUnitMs, 0};
    }
    QAction* action(const char* name) { return test::child<QAction>(w.get(), name); }
    QCheckBox* optLog() { return test::child<QCheckBox>(w.get(), "OptLog"); }
    QString logField() { return test::child<QLabel>(w.get(), "LogStatus")->text(); }
    QString logTip() { return test::child<QLabel>(w.get(), "LogStatus")->toolTip(); }
    QWidget* open(const char* item, const char* kind) {
        action(item)->trigger();
        return w->windows().find(kind);
    }
    template <typename T>
    T* in(QWidget* window, const char* name) {
        return test::child<T>(window, name);
    }
    // One scan of the I/O period: the clock moves on and the main window's timer fires.
    void ticks(int n) {
        for (int i = 0; i < n; ++i) {
            clock.advance(500);
            w->tick();
        }
    }
    void tag(int n, const char* name, const char* label) {
        st.tag(n).TagName = name;
        st.tag(n).Label = label;
        st.tag(n).Log = 1;
        RebuildTagNameIndex(st.tags, st.nameIndex);
    }
};

int lineCount(const std::string& text) {
    int n = 0;
    for (std::size_t p = 0; (p = text.find("\r\n", p)) != std::string::npos; p += 2) ++n;
    return n;
}
}  // namespace

TEST(LoggingWindows, TheMenuItemsOpenEachWindowOnce) {
    test::TempFolder folder;
    Rig r(folder);
    QWidget* params = r.open("Parameters", "LogParameters");
    ASSERT_NE(qobject_cast<SetLoggingWindow*>(params), nullptr);
    EXPECT_EQ(params->windowTitle(), "Logging Parameters");
    EXPECT_FALSE(params->isModal());
    QWidget* startStop = r.open("StartStop", "LogStartStop");
    ASSERT_NE(qobject_cast<StartLogWindow*>(startStop), nullptr);
    EXPECT_EQ(startStop->windowTitle(), "Logging Start/Stop");
    EXPECT_EQ(r.open("Parameters", "LogParameters"), params);
    EXPECT_EQ(r.open("StartStop", "LogStartStop"), startStop);
    EXPECT_EQ(r.w->windows().openCount(), 2);
    EXPECT_TRUE(r.prompt.messages.empty());
}

TEST(LoggingWindows, TheLoggingFieldIsApartFromTheAlarmField) {
    test::TempFolder folder;
    Rig r(folder);
    auto* field = test::child<QLabel>(r.w.get(), "LogStatus");
    ASSERT_NE(field, nullptr);
    EXPECT_NE(field, test::child<QLabel>(r.w.get(), "StatusBar1"));
    EXPECT_EQ(field->accessibleDescription(), "Logging status");
    EXPECT_EQ(r.logField(), "Logging off");
    r.st.platform.status->setStatusText("ALARM TANK HIGH");
    EXPECT_EQ(r.w->statusText(), "ALARM TANK HIGH");
    EXPECT_EQ(r.logField(), "Logging off");
    EXPECT_TRUE(field->isVisibleTo(r.w.get()));
}

TEST(LoggingWindows, ANarrowWindowWrapsTheLoggingFieldAndTheAlarmAndKeepsBothWhole) {
    test::TempFolder folder;
    Rig r(folder);
    r.st.logging.LogFileName = (folder / "A LOG FILE WITH A VERY LONG NAME INDEED.CSV").string();
    test::child<QPushButton>(r.w.get(), "CmdLog")->click();
    const QString alarm = "ALARM 11-23-2026 00:06:34 Oven too cold";
    r.st.platform.status->setStatusText(alarm.toStdString());
    r.w->resize(440, 300);
    r.w->show();
    QApplication::processEvents();
    auto* field = test::child<QLabel>(r.w.get(), "LogStatus");
    auto* alarmField = test::child<QLabel>(r.w.get(), "StatusBar1");
    // Too long for one line: the field takes two, and shows every word.
    EXPECT_LT(field->width(), field->fontMetrics().horizontalAdvance(field->text()));
    EXPECT_TRUE(field->wordWrap());
    EXPECT_GE(field->height(), field->heightForWidth(field->width()));
    EXPECT_GE(alarmField->height(), alarmField->heightForWidth(alarmField->width()));
    EXPECT_EQ(field->text(), "Logging: 0 records to A LOG FILE WITH A VERY LONG NAME INDEED.CSV");
}

TEST(LoggingWindows, TheLogDataBoxAndTheFieldFollowTheStartStopWindowAtOnce) {
    test::TempFolder folder;
    Rig r(folder);
    const std::string file = (folder / "RUN.CSV").string();
    r.st.logging.LogFileName = file;
    QWidget* w = r.open("StartStop", "LogStartStop");
    r.in<QCheckBox>(w, "ChkLogging")->setChecked(true);
    r.in<QPushButton>(w, "Exit")->click();
    // No tick has run: the window told the main window.
    EXPECT_TRUE(r.optLog()->isChecked());
    EXPECT_EQ(r.logField(), "Logging: 0 records to RUN.CSV");
    EXPECT_EQ(r.logTip().toStdString(), "Logging: 0 records to " + file);

    w = r.open("StartStop", "LogStartStop");
    EXPECT_TRUE(r.in<QCheckBox>(w, "ChkLogging")->isChecked());
    r.in<QCheckBox>(w, "ChkLogging")->setChecked(false);
    r.in<QPushButton>(w, "Exit")->click();
    EXPECT_FALSE(r.optLog()->isChecked());
    EXPECT_EQ(r.logField(), "Logging off");
}

TEST(LoggingWindows, TheFieldCountsRecordsAndSaysWhenItWaitsForTheStartCondition) {
    test::TempFolder folder;
    Rig r(folder);
    r.tag(1, "TANK", "Tank");
    r.st.tag(1).Value = 30;
    const std::string file = (folder / "RUN.CSV").string();
    r.st.logging.LogFileName = file;
    QWidget* w = r.open("StartStop", "LogStartStop");
    r.in<QRadioButton>(w, "OptLogMode1")->setChecked(true);
    r.in<QComboBox>(w, "CboTag")->setEditText("TANK");
    r.in<QLineEdit>(w, "TxtStartValue")->setText("10");
    r.in<QRadioButton>(w, "OptStartBelow")->setChecked(true);
    r.in<QLineEdit>(w, "TxtStopValue")->setText("50");
    r.in<QRadioButton>(w, "OptStopAbove")->setChecked(true);
    r.in<QCheckBox>(w, "ChkLogging")->setChecked(true);
    r.in<QPushButton>(w, "Exit")->click();
    ASSERT_TRUE(r.prompt.messages.empty());

    r.ticks(2);
    EXPECT_TRUE(r.optLog()->isChecked());
    EXPECT_FALSE(LoggingActive(r.st));  // what a "Logging Data" box shows
    EXPECT_EQ(r.logField(), "Logging: waiting for start condition, 0 records to RUN.CSV");
    r.st.tag(1).Value = 9.9f;
    r.ticks(1);
    EXPECT_TRUE(LoggingActive(r.st));
    EXPECT_EQ(r.logField(), "Logging: 1 record to RUN.CSV");
    r.ticks(3);
    EXPECT_EQ(r.logField(), "Logging: 4 records to RUN.CSV");
    r.st.tag(1).Value = 50.1f;
    r.ticks(1);
    EXPECT_FALSE(LoggingActive(r.st));
    EXPECT_TRUE(r.optLog()->isChecked());
    EXPECT_EQ(r.logField(), "Logging: waiting for start condition, 4 records to RUN.CSV");
    EXPECT_EQ(r.logTip().toStdString(),
              "Logging: waiting for start condition, 4 records to " + file);
}

TEST(LoggingWindows, AFileThatCannotBeWrittenIsToldOnceAndLoggingGoesOff) {
    if (!fs::exists("/dev/full")) GTEST_SKIP() << "no /dev/full";
    test::TempFolder folder;
    Rig r(folder);
    r.st.logging.LogFileName = "/dev/full";  // a disk that is always full
    r.st.logging.OverwriteFile = 0;          // appending writes nothing when logging starts
    test::child<QPushButton>(r.w.get(), "CmdLog")->click();
    ASSERT_TRUE(r.optLog()->isChecked());
    r.ticks(1);
    r.ticks(5);
    QTest::qWait(30);  // the message box opens from the event loop
    ASSERT_EQ(r.prompt.messages.size(), 1u);
    const std::string& text = r.prompt.messages[0].text;
    EXPECT_NE(text.find("/dev/full"), std::string::npos) << text;
    EXPECT_NE(text.find("No space left on device"), std::string::npos) << text;
    EXPECT_FALSE(r.st.switches.LoggingEnabled.isOn());
    EXPECT_FALSE(r.optLog()->isChecked());
    EXPECT_EQ(r.logTip(), "Logging stopped: /dev/full cannot be written: No space left on device");
    EXPECT_TRUE(r.w->statusText().contains("No space left on device"));
}

TEST(LoggingWindows, AFolderThatIsGoneWhenLoggingStartsIsToldWithTheFileName) {
    test::TempFolder folder;
    Rig r(folder);
    const std::string file = (folder / "gone" / "RUN.CSV").string();
    r.st.logging.LogFileName = file;
    test::child<QPushButton>(r.w.get(), "CmdLog")->click();
    ASSERT_EQ(r.prompt.messages.size(), 1u);
    EXPECT_NE(r.prompt.messages[0].text.find(file), std::string::npos);
    EXPECT_FALSE(r.optLog()->isChecked());
    EXPECT_EQ(r.logField(), "Logging stopped: RUN.CSV cannot be opened: No such file or directory");
    EXPECT_EQ(r.logTip().toStdString(),
              "Logging stopped: " + file + " cannot be opened: No such file or directory");
}

// Set in the windows, saved, loaded into a fresh program: by number of samples, 5 samples,
// writes exactly 5 records and switches itself off.
TEST(LoggingWindows, AConfigurationSetInTheWindowsSavedAndLoadedLogsWhatItSays) {
    test::TempFolder folder;
    const std::string logFile = (folder / "PLANT.CSV").string();
    const std::string setupFile = (folder / "PLANT.SUF").string();
    {
        Rig r(folder);
        r.tag(1, "TANK", "Tank Level");
        QWidget* params = r.open("Parameters", "LogParameters");
        r.prompt.fileAnswers.push_back(logFile);
        r.in<QPushButton>(params, "ComFile")->click();
        r.in<QCheckBox>(params, "ChkTime")->click();
        r.in<QCheckBox>(params, "NewFile")->click();
        r.in<QPushButton>(params, "ComExit")->click();
        QWidget* conditions = r.open("StartStop", "LogStartStop");
        r.in<QRadioButton>(conditions, "OptLogMode0")->setChecked(true);
        r.in<QLineEdit>(conditions, "TxtSampleNo")->setText("5");
        r.in<QPushButton>(conditions, "Exit")->click();
        ASSERT_TRUE(r.prompt.messages.empty());
        r.prompt.fileAnswers.push_back(setupFile);
        r.action("FileSaveAs")->trigger();
        ASSERT_TRUE(fs::exists(setupFile));
    }
    Rig r(folder);
    r.prompt.fileAnswers.push_back(setupFile);
    r.prompt.saveAnswers = {SaveChoice::Discard};  // the rig's own periods are not kept
    r.action("FileLoad")->trigger();
    ASSERT_TRUE(r.prompt.messages.empty());
    EXPECT_EQ(r.st.logging.LogFileName, logFile);
    EXPECT_EQ(r.st.logging.LogMode, 0);
    EXPECT_EQ(r.st.logging.StopSampleCount.asNumber(), 5);

    // The windows show what was loaded.
    QWidget* params = r.open("Parameters", "LogParameters");
    EXPECT_EQ(r.in<QLineEdit>(params, "TxtFileName")->text().toStdString(), logFile);
    EXPECT_TRUE(r.in<QCheckBox>(params, "ChkTime")->isChecked());
    EXPECT_FALSE(r.in<QCheckBox>(params, "ChkDate")->isChecked());
    EXPECT_TRUE(r.in<QCheckBox>(params, "NewFile")->isChecked());
    params->close();
    QWidget* conditions = r.open("StartStop", "LogStartStop");
    EXPECT_TRUE(r.in<QRadioButton>(conditions, "OptLogMode0")->isChecked());
    EXPECT_EQ(r.in<QLineEdit>(conditions, "TxtSampleNo")->text(), "5");
    conditions->close();

    r.st.tag(1).Value = 12.5f;
    test::child<QPushButton>(r.w.get(), "CmdLog")->click();
    r.ticks(3);
    EXPECT_EQ(r.logField(), "Logging: 3 records to PLANT.CSV");
    r.ticks(9);
    EXPECT_FALSE(r.st.switches.LoggingEnabled.isOn());
    EXPECT_FALSE(r.optLog()->isChecked());
    EXPECT_EQ(r.logField(), "Logging finished: 5 records to PLANT.CSV");

    const std::string text = test::ReadFileBytes(logFile);
    EXPECT_EQ(lineCount(text), 6) << text;
    EXPECT_EQ(text.substr(0, text.find("\r\n")), "LOG PERIOD,TIME,Tank Level");
    EXPECT_NE(text.find("\r\n2.500,10:15:02.500, 12.5 \r\n"), std::string::npos) << text;
    EXPECT_EQ(text.find("3.000,"), std::string::npos) << text;
    EXPECT_TRUE(r.prompt.messages.empty());
}

}  // namespace kova::app

namespace kova::app {

TEST(LoggingWindows, ACountMovingEveryScanIsShownFourTimesASecondAndOtherChangesAtOnce) {
    test::TempFolder folder;
    Rig r(folder);
    r.tag(1, "TANK", "Tank");
    r.st.periods = {50, kUnitMs, 50, kUnitMs, 0};
    r.st.logging.LogFileName = (folder / "FAST.CSV").string();
    test::child<QPushButton>(r.w.get(), "CmdLog")->click();
    EXPECT_EQ(r.logField(), "Logging: 0 records to FAST.CSV");
    auto tick50 = [&] {
        r.clock.advance(50);
        r.w->tick();
    };
    tick50();
    EXPECT_EQ(r.logField(), "Logging: 1 record to FAST.CSV");  // other words: at once
    tick50();
    EXPECT_EQ(r.logField(), "Logging: 2 records to FAST.CSV");  // "records": at once
    tick50();
    tick50();
    EXPECT_EQ(r.logField(), "Logging: 2 records to FAST.CSV");  // only the count, 100 ms on
    tick50();
    tick50();
    tick50();
    EXPECT_EQ(r.logField(), "Logging: 7 records to FAST.CSV");  // 250 ms on
    tick50();
    test::child<QPushButton>(r.w.get(), "CmdLog")->click();  // logging off: at once
    EXPECT_EQ(r.logField(), "Logging off");
}

}  // namespace kova::app
