#include "logging/forms/start_log_form.h"

#include <gtest/gtest.h>

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <filesystem>
#include <sstream>

#include "logging/log_conditions.h"
#include "logging/log_writer.h"
#include "platform/clock.h"
#include "support/test_support.h"
#include "tags/tag_name_index.h"
#include "ui/ui_support.h"

namespace kova {

using test::Shown;

namespace {
const Shown kSampleRange{
    "Sample Number must be between 0 and 32000\nEnter 0 for continuous sampling", "ERROR"};
const Shown kStartTime{"Start Time must be in 24 Hour Time in the format HH:MM", "ERROR"};
const Shown kStopTime{"Stop Time must be in 24 Hour Time in the format HH:MM", "ERROR"};

LocalDateTime At(int h, int m, int s) {
    LocalDateTime t;
    t.year = 2026, t.month = 11, t.day = 15, t.hour = h, t.minute = m, t.second = s;
    return t;
}

struct Rig {
    test::TempFolder folder;
    Station st;
    test::ScriptedPrompter prompt;
    SimulatedClock clock{At(10, 0, 0)};
    test::RecordingStatus status;
    std::ostringstream errors;
    ErrorReport report{st.platform, errors};
    std::unique_ptr<StartLogWindow> w;
    Rig() {
        st.platform.prompter = &prompt;
        st.platform.status = &status;
        st.platform.clock = &clock;
        tag(1, "TANK");
        tag(2, "PUMP");
        tag(5, "FLOW");
    }
    void tag(int n, const char* name) {
        st.tag(n).TagName = name;
        RebuildTagNameIndex(st.tags, st.nameIndex);
    }
    void open() {
        w = std::make_unique<StartLogWindow>(st, report);
        w->show();
    }
    QLineEdit* box(const char* n) { return test::child<QLineEdit>(w.get(), n); }
    QRadioButton* opt(const char* n) { return test::child<QRadioButton>(w.get(), n); }
    QComboBox* combo() { return test::child<QComboBox>(w.get(), "CboTag"); }
    QCheckBox* logging() { return test::child<QCheckBox>(w.get(), "ChkLogging"); }
    void mode(int m) {
        opt(QString("OptLogMode%1").arg(m).toLatin1().constData())->setChecked(true);
    }
    void exit() { test::child<QPushButton>(w.get(), "Exit")->click(); }
    // Fills the boxes so that every check passes; a test then spoils one.
    void valid() {
        box("TxtSampleNo")->setText("10");
        combo()->setEditText("");
        box("TxtStartTime")->setText("");
        box("TxtStopTime")->setText("");
    }
    std::vector<Shown>& messages() { return prompt.messages; }
};

QStringList tabOrder(QWidget* window, QWidget* first) {
    QStringList names;
    QWidget* w = first;
    do {
        if ((w->focusPolicy() & Qt::TabFocus) && w->isVisible() && w->isEnabled() &&
            !w->objectName().isEmpty() && w->window() == window)
            names << w->objectName();
        w = w->nextInFocusChain();
    } while (w && w != first);
    return names;
}
}  // namespace

TEST(StartLogWindow, ControlsHaveTheirNamesAndCaptions) {
    Rig r;
    r.open();
    EXPECT_EQ(r.w->objectName(), "StartLog");
    EXPECT_EQ(r.w->windowTitle(), "Logging Start/Stop");
    auto* group = r.w->findChild<QButtonGroup*>("OptLogMode");
    ASSERT_NE(group, nullptr);
    EXPECT_EQ(group->buttons().size(), 3);
    EXPECT_EQ(group->button(0), r.opt("OptLogMode0"));
    EXPECT_EQ(group->button(1), r.opt("OptLogMode1"));
    EXPECT_EQ(group->button(2), r.opt("OptLogMode2"));
    EXPECT_EQ(r.opt("OptLogMode0")->text(), "By number of &samples");
    EXPECT_EQ(r.opt("OptLogMode1")->text(), "By a &tag's value");
    EXPECT_EQ(r.opt("OptLogMode2")->text(), "By &clock times");
    EXPECT_EQ(r.opt("OptStartAbove")->text(), "Start when the value is a&bove");
    EXPECT_EQ(r.opt("OptStartBelow")->text(), "Start when the value is be&low");
    EXPECT_EQ(r.opt("OptStopAbove")->text(), "Stop when the value is abo&ve");
    EXPECT_EQ(r.opt("OptStopBelow")->text(), "Stop when the value is bel&ow");
    EXPECT_EQ(r.logging()->text(), "Lo&gging switched on");
    EXPECT_EQ(test::child<QPushButton>(r.w.get(), "Exit")->text(), "E&xit");
}

TEST(StartLogWindow, EveryBoxCarriesItsLabelAsItsName) {
    Rig r;
    r.open();
    const std::vector<std::pair<QWidget*, QString>> boxes = {
        {r.box("TxtSampleNo"), "Stop after &N samples (0 = never):"},
        {r.combo(), "Condition t&ag:"},
        {r.box("TxtStartValue"), "Start&ing value:"},
        {r.box("TxtStopValue"), "Sto&pping value:"},
        {r.box("TxtStartTime"), "Start ti&me (HH:MM):"},
        {r.box("TxtStopTime"), "Stop tim&e (HH:MM):"}};
    for (const auto& [box, caption] : boxes) {
        QLabel* label = nullptr;
        for (QLabel* l : r.w->findChildren<QLabel*>())
            if (l->buddy() == box) label = l;
        ASSERT_NE(label, nullptr) << box->objectName().toStdString();
        EXPECT_EQ(label->text(), caption);
        QString name = caption;
        name.remove('&').chop(1);
        EXPECT_EQ(box->accessibleName(), name);
    }
}

TEST(StartLogWindow, TabFollowsTheLayout) {
    Rig r;
    r.open();
    // Of each group of options Tab stops at the chosen one; the arrows move within it.
    EXPECT_EQ(tabOrder(r.w.get(), r.opt("OptLogMode0")),
              (QStringList{"OptLogMode0", "OptLogMode1", "OptLogMode2", "TxtSampleNo", "CboTag",
                           "TxtStartValue", "OptStartAbove", "OptStartBelow", "TxtStopValue",
                           "OptStopAbove", "OptStopBelow", "TxtStartTime", "TxtStopTime",
                           "ChkLogging", "Exit"}));
}

TEST(StartLogWindow, OffersTheNamedUserTagsInOrder) {
    Rig r;
    r.open();
    QStringList names;
    for (int i = 0; i < r.combo()->count(); ++i) names << r.combo()->itemText(i);
    EXPECT_EQ(names, (QStringList{"TANK", "PUMP", "FLOW"}));
    EXPECT_TRUE(r.combo()->isEditable());
}

TEST(StartLogWindow, OpensWithTheStoredConditions) {
    Rig r;
    LogSettings& l = r.st.logging;
    l.LogMode = 1;
    l.StopSampleCount = Variant::integer(250);
    l.ConditionTag = 2;
    l.StartValue = Variant::real(12.5);
    l.StartAbove = -1;
    l.StopValue = 3.0f;
    l.StopAbove = 0;
    l.StartHour = Variant::integer(22);
    l.StartMinute = Variant::integer(0);
    l.StopHour = Variant::integer(6);
    l.StopMinute = Variant::integer(5);
    r.open();
    EXPECT_TRUE(r.opt("OptLogMode1")->isChecked());
    EXPECT_EQ(r.box("TxtSampleNo")->text(), "250");
    EXPECT_EQ(r.combo()->currentText(), "PUMP");
    EXPECT_EQ(r.box("TxtStartValue")->text(), "12.5");
    EXPECT_TRUE(r.opt("OptStartAbove")->isChecked());
    EXPECT_EQ(r.box("TxtStopValue")->text(), "3");
    EXPECT_TRUE(r.opt("OptStopBelow")->isChecked());
    EXPECT_EQ(r.box("TxtStartTime")->text(), "22:00");
    EXPECT_EQ(r.box("TxtStopTime")->text(), "6:05");
    EXPECT_FALSE(r.logging()->isChecked());
}

TEST(StartLogWindow, ExitUnchangedClosesAndKeepsEverything) {
    Rig r;
    r.open();
    r.exit();
    EXPECT_TRUE(r.messages().empty());
    EXPECT_FALSE(r.w->isVisible());
    EXPECT_EQ(r.st.logging.LogMode, 0);
    EXPECT_FALSE(r.st.switches.LoggingEnabled.isOn());
}

TEST(StartLogWindow, ASampleCountOfZeroIsAcceptedAndLogsWithoutEnd) {
    Rig r;
    r.st.logging.LogFileName = (r.folder / "Z.CSV").string();
    r.open();
    r.box("TxtSampleNo")->setText("0");
    r.logging()->setChecked(true);
    r.exit();
    EXPECT_TRUE(r.messages().empty());
    EXPECT_EQ(r.st.logging.StopSampleCount.asNumber(), 0);
    for (int i = 0; i < 40000; ++i) {
        r.st.logRun.SampleNumber = i;
        CheckLogConditions(r.st);
        ASSERT_EQ(r.st.logRun.LogState, 1) << i;
    }
    EXPECT_TRUE(r.st.switches.LoggingEnabled.isOn());
}

TEST(StartLogWindow, ThirtyTwoThousandSamplesAreAccepted) {
    Rig r;
    r.open();
    r.box("TxtSampleNo")->setText("32000");
    r.exit();
    EXPECT_TRUE(r.messages().empty());
    EXPECT_EQ(r.st.logging.StopSampleCount.asNumber(), 32000);
    EXPECT_FALSE(r.w->isVisible());
}

TEST(StartLogWindow, SampleCountsOutsideTheRangeAreRefusedWithTheTwoLineMessage) {
    for (const char* text : {"-1", "32001", "ten"}) {
        Rig r;
        r.open();
        r.box("TxtSampleNo")->setText(text);
        r.exit();
        ASSERT_EQ(r.messages().size(), 1u) << text;
        EXPECT_EQ(r.messages()[0], kSampleRange) << text;
        EXPECT_TRUE(r.w->isVisible()) << text;
    }
}

TEST(StartLogWindow, AnEmptySampleCountInSampleModeAsksForIt) {
    Rig r;
    r.open();
    r.mode(0);
    r.box("TxtSampleNo")->setText("");
    r.exit();
    ASSERT_EQ(r.messages().size(), 1u);
    EXPECT_EQ(r.messages()[0], (Shown{"Enter Number of Samples", "ERROR"}));
    EXPECT_TRUE(r.w->isVisible());
}

TEST(StartLogWindow, AnEmptySampleCountInClockModeKeepsTheStoredCount) {
    Rig r;
    r.st.logging.StopSampleCount = Variant::integer(77);
    r.open();
    r.mode(2);
    r.box("TxtSampleNo")->setText("");
    r.exit();
    EXPECT_TRUE(r.messages().empty());
    EXPECT_EQ(r.st.logging.StopSampleCount.asNumber(), 77);
    EXPECT_EQ(r.st.logging.LogMode, 2);
}

TEST(StartLogWindow, TagModeWithoutATagNeedsAnEntry) {
    Rig r;
    r.open();
    r.mode(1);
    r.combo()->setEditText("");
    r.exit();
    ASSERT_EQ(r.messages().size(), 1u);
    EXPECT_EQ(r.messages()[0], (Shown{"Tag Name must have an Entry", "KOVA"}));
    EXPECT_TRUE(r.w->isVisible());
}

TEST(StartLogWindow, AnUnknownTagIsNotFound) {
    Rig r;
    r.open();
    r.mode(1);
    r.combo()->setEditText("LEVEL");
    r.exit();
    ASSERT_EQ(r.messages().size(), 1u);
    EXPECT_EQ(r.messages()[0], (Shown{"Tag Name Could not be found", "Error"}));
    EXPECT_TRUE(r.w->isVisible());
}

TEST(StartLogWindow, ASystemVariableIsNoConditionTag) {
    Rig r;
    r.open();
    r.combo()->setEditText("TS");
    r.exit();
    ASSERT_EQ(r.messages().size(), 1u);
    EXPECT_EQ(r.messages()[0], (Shown{"Tag Name Could not be found", "Error"}));
}

TEST(StartLogWindow, TheStartingValueMustBeANumber) {
    Rig r;
    r.open();
    r.mode(1);
    r.combo()->setEditText("tank");
    r.box("TxtStartValue")->setText("low");
    r.box("TxtStopValue")->setText("50");
    r.exit();
    ASSERT_EQ(r.messages().size(), 1u);
    EXPECT_EQ(r.messages()[0], (Shown{"Starting Value Must Be a Number", "Error"}));
}

TEST(StartLogWindow, TheStoppingValueMustBeANumber) {
    Rig r;
    r.open();
    r.mode(1);
    r.combo()->setEditText("TANK");
    r.box("TxtStartValue")->setText("10");
    r.box("TxtStopValue")->setText("");
    r.exit();
    ASSERT_EQ(r.messages().size(), 1u);
    EXPECT_EQ(r.messages()[0], (Shown{"Stopping Value Must Be a Value", "Error"}));
}

TEST(StartLogWindow, APassingTagConditionIsStoredInUpperCase) {
    Rig r;
    r.open();
    r.mode(1);
    r.combo()->setEditText("flow");
    r.box("TxtStartValue")->setText("10");
    r.opt("OptStartBelow")->setChecked(true);
    r.box("TxtStopValue")->setText("50");
    r.opt("OptStopAbove")->setChecked(true);
    r.exit();
    EXPECT_TRUE(r.messages().empty());
    const LogSettings& l = r.st.logging;
    EXPECT_EQ(l.LogMode, 1);
    EXPECT_EQ(l.ConditionTag, 5);
    EXPECT_EQ(l.StartValue.asNumber(), 10);
    EXPECT_EQ(l.StartAbove, 0);
    EXPECT_EQ(l.StopValue, 50.0f);
    EXPECT_EQ(l.StopAbove, -1);
    EXPECT_FALSE(r.w->isVisible());
}

TEST(StartLogWindow, ATagChosenFromTheListIsTaken) {
    Rig r;
    r.open();
    r.mode(1);
    r.combo()->setCurrentIndex(1);
    r.box("TxtStartValue")->setText("1");
    r.box("TxtStopValue")->setText("2");
    r.exit();
    EXPECT_TRUE(r.messages().empty());
    EXPECT_EQ(r.st.logging.ConditionTag, 2);
}

// Start below 10, stop above 50: on at 9.9, still on at 30, off at 50.1, still off at 30.
TEST(StartLogWindow, ATagConditionSetHereStartsAndStopsWithItsThresholds) {
    Rig r;
    r.open();
    r.mode(1);
    r.combo()->setEditText("TANK");
    r.box("TxtStartValue")->setText("10");
    r.opt("OptStartBelow")->setChecked(true);
    r.box("TxtStopValue")->setText("50");
    r.opt("OptStopAbove")->setChecked(true);
    r.exit();
    ASSERT_TRUE(r.messages().empty());
    auto stateAt = [&](float v) {
        r.st.tag(1).Value = v;
        CheckLogConditions(r.st);
        return r.st.logRun.LogState;
    };
    EXPECT_EQ(stateAt(9.9f), 1);
    EXPECT_EQ(stateAt(30.0f), 1);
    EXPECT_EQ(stateAt(50.1f), 0);
    EXPECT_EQ(stateAt(30.0f), 0);
    EXPECT_EQ(stateAt(10.0f), 0);  // equality passes neither test
}

TEST(StartLogWindow, RefusedStartTimes) {
    for (const char* text : {"24:00", "7:60", "0730", ":30", "7:", "ab:cd", "-1:00"}) {
        Rig r;
        r.open();
        r.box("TxtStartTime")->setText(text);
        r.exit();
        ASSERT_EQ(r.messages().size(), 1u) << text;
        EXPECT_EQ(r.messages()[0], kStartTime) << text;
        EXPECT_TRUE(r.w->isVisible()) << text;
    }
}

TEST(StartLogWindow, RefusedStopTimes) {
    for (const char* text : {"24:00", "7:60", "0730"}) {
        Rig r;
        r.open();
        r.box("TxtStopTime")->setText(text);
        r.exit();
        ASSERT_EQ(r.messages().size(), 1u) << text;
        EXPECT_EQ(r.messages()[0], kStopTime) << text;
        EXPECT_TRUE(r.w->isVisible()) << text;
    }
}

TEST(StartLogWindow, MidnightAndOneMinuteToAreAccepted) {
    Rig r;
    r.open();
    r.mode(2);
    r.box("TxtStartTime")->setText("0:00");
    r.box("TxtStopTime")->setText("23:59");
    r.exit();
    EXPECT_TRUE(r.messages().empty());
    const LogSettings& l = r.st.logging;
    EXPECT_EQ(l.StartTimeSecs.asNumber(), 0);
    EXPECT_EQ(l.StopHour.asNumber(), 23);
    EXPECT_EQ(l.StopMinute.asNumber(), 59);
    EXPECT_EQ(l.StopTimeSecs, 23 * 3600 + 59 * 60);
    EXPECT_FALSE(r.w->isVisible());
}

// 22:00 to 06:00 logs from 22:00 through midnight to 06:00, both ends included.
TEST(StartLogWindow, AClockWindowOverMidnightSetHereLogsThroughTheNight) {
    Rig r;
    r.open();
    r.mode(2);
    r.box("TxtStartTime")->setText("22:00");
    r.box("TxtStopTime")->setText("06:00");
    r.exit();
    ASSERT_TRUE(r.messages().empty());
    auto stateAt = [&](int h, int m, int s) {
        r.clock.set(At(h, m, s));
        CheckLogConditions(r.st);
        return r.st.logRun.LogState;
    };
    EXPECT_EQ(stateAt(21, 59, 59), 0);
    EXPECT_EQ(stateAt(22, 0, 0), 1);
    EXPECT_EQ(stateAt(23, 59, 59), 1);
    EXPECT_EQ(stateAt(0, 0, 0), 1);
    EXPECT_EQ(stateAt(6, 0, 0), 1);
    EXPECT_EQ(stateAt(6, 0, 1), 0);
    EXPECT_EQ(stateAt(12, 0, 0), 0);
}

TEST(StartLogWindow, EqualStartAndStopTimesLogAllDay) {
    Rig r;
    r.open();
    r.mode(2);
    r.box("TxtStartTime")->setText("8:30");
    r.box("TxtStopTime")->setText("8:30");
    r.exit();
    ASSERT_TRUE(r.messages().empty());
    for (int h = 0; h < 24; ++h) {
        r.clock.set(At(h, 17, 0));
        CheckLogConditions(r.st);
        EXPECT_EQ(r.st.logRun.LogState, 1) << h;
    }
}

// The checks run in order and stop at the first failure; what earlier steps stored stays.
TEST(StartLogWindow, ValuesStoredBeforeAFailedCheckAreNotRolledBack) {
    Rig r;
    r.open();
    r.mode(2);
    r.box("TxtSampleNo")->setText("12");
    r.combo()->setEditText("PUMP");
    r.box("TxtStartValue")->setText("4");
    r.box("TxtStopValue")->setText("8");
    r.box("TxtStartTime")->setText("7:15");
    r.box("TxtStopTime")->setText("25:00");
    r.exit();
    ASSERT_EQ(r.messages().size(), 1u);
    EXPECT_EQ(r.messages()[0], kStopTime);
    EXPECT_TRUE(r.w->isVisible());
    const LogSettings& l = r.st.logging;
    EXPECT_EQ(l.LogMode, 2);
    EXPECT_EQ(l.StopSampleCount.asNumber(), 12);
    EXPECT_EQ(l.ConditionTag, 2);
    EXPECT_EQ(l.StartTimeSecs.asNumber(), 7 * 3600 + 15 * 60);
    EXPECT_EQ(l.StopTimeSecs, 0);  // the failing step stored nothing
    // The sample count is stored even when it is refused.
    r.box("TxtSampleNo")->setText("40000");
    r.exit();
    EXPECT_EQ(r.messages().back(), kSampleRange);
    EXPECT_EQ(l.StopSampleCount.asNumber(), 40000);
}

TEST(StartLogWindow, TheFirstFailureIsTheOnlyMessage) {
    Rig r;
    r.open();
    r.box("TxtSampleNo")->setText("-5");
    r.combo()->setEditText("NOSUCH");
    r.box("TxtStartTime")->setText("99:99");
    r.exit();
    ASSERT_EQ(r.messages().size(), 1u);
    EXPECT_EQ(r.messages()[0], kSampleRange);
}

TEST(StartLogWindow, TickingLoggingWithoutAFileNameSaysSoClearsTheBoxAndCloses) {
    Rig r;
    r.open();
    r.logging()->setChecked(true);
    r.exit();
    ASSERT_EQ(r.messages().size(), 1u);
    EXPECT_EQ(r.messages()[0], (Shown{"Error No Log File Name Has Been Entered", "KOVA"}));
    EXPECT_FALSE(r.logging()->isChecked());
    EXPECT_FALSE(r.st.switches.LoggingEnabled.isOn());
    EXPECT_FALSE(r.w->isVisible());
}

TEST(StartLogWindow, TickingLoggingStartsItAndTellsWhoeverShowsTheSwitch) {
    Rig r;
    r.st.logging.LogFileName = (r.folder / "RUN.CSV").string();
    r.st.logging.OverwriteFile = 1;
    r.open();
    QSignalSpy switched(r.w.get(), &StartLogWindow::loggingSwitched);
    r.logging()->setChecked(true);
    r.exit();
    EXPECT_TRUE(r.messages().empty());
    EXPECT_TRUE(r.st.switches.LoggingEnabled.isOn());
    EXPECT_TRUE(LogFileIsOpen(r.st));
    EXPECT_TRUE(std::filesystem::exists(r.folder / "RUN.CSV"));
    EXPECT_EQ(switched.count(), 1);
}

TEST(StartLogWindow, ClearingTheBoxStopsLogging) {
    Rig r;
    r.st.logging.LogFileName = (r.folder / "RUN.CSV").string();
    r.open();
    r.logging()->setChecked(true);
    r.exit();
    ASSERT_TRUE(r.st.switches.LoggingEnabled.isOn());
    r.open();
    EXPECT_TRUE(r.logging()->isChecked());
    r.logging()->setChecked(false);
    r.exit();
    EXPECT_FALSE(r.st.switches.LoggingEnabled.isOn());
    EXPECT_FALSE(LogFileIsOpen(r.st));
}

TEST(StartLogWindow, AFailedCheckLeavesLoggingAndTheTickedBoxAsTheyWere) {
    Rig r;
    r.st.logging.LogFileName = (r.folder / "RUN.CSV").string();
    r.open();
    r.logging()->setChecked(true);
    r.box("TxtStartTime")->setText("7:60");
    r.exit();
    EXPECT_FALSE(r.st.switches.LoggingEnabled.isOn());
    EXPECT_TRUE(r.logging()->isChecked());  // the user's tick is still there to try again
    r.box("TxtStartTime")->setText("7:59");
    r.exit();
    EXPECT_TRUE(r.st.switches.LoggingEnabled.isOn());
}

TEST(StartLogWindow, ALogFileThatCannotBeOpenedIsReportedAndTheWindowStaysWithTheBoxCleared) {
    Rig r;
    r.st.logging.LogFileName = (r.folder / "gone" / "RUN.CSV").string();
    r.open();
    r.logging()->setChecked(true);
    r.exit();
    ASSERT_EQ(r.messages().size(), 1u);
    const std::string& text = r.messages()[0].text;
    EXPECT_NE(text.find((r.folder / "gone" / "RUN.CSV").string()), std::string::npos) << text;
    EXPECT_NE(text.find("No such file or directory"), std::string::npos) << text;
    EXPECT_FALSE(r.st.switches.LoggingEnabled.isOn());
    EXPECT_FALSE(r.logging()->isChecked());
    EXPECT_TRUE(r.w->isVisible());
}

TEST(StartLogWindow, ClosingWithoutExitAppliesNothing) {
    Rig r;
    r.open();
    r.mode(2);
    r.box("TxtSampleNo")->setText("9");
    r.w->close();
    EXPECT_EQ(r.st.logging.LogMode, 0);
    EXPECT_EQ(r.st.logging.StopSampleCount.asNumber(), 0);
}

}  // namespace kova
