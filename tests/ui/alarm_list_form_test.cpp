#include "alarms/forms/alarm_list_form.h"

#include <gtest/gtest.h>

#include <QFontInfo>
#include <QFontMetricsF>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <sstream>

#include "alarms/alarm_check.h"
#include "alarms/alarm_rig.h"
#include "support/test_support.h"
#include "ui/ui_support.h"

namespace kova {

using test::Shown;

namespace {

class RecordingPrinter final : public Printer {
  public:
    bool printText(const std::string& name, const std::string& text) override {
        printed.push_back({text, name});
        return true;
    }
    std::vector<Shown> printed;
};

const QString kAt = "11-15-2026 14:05:09 ";

struct Rig : test::AlarmRig {
    std::ostringstream errors;
    ErrorReport report{st.platform, errors};
    RecordingPrinter printer;
    std::unique_ptr<AlarmListWindow> w;
    Rig() {
        watch(1, 1, 80, 20);
        watch(2, 5, 80, 20);
        set(1, 50);
        set(5, 50);
    }
    void open() {
        w = std::make_unique<AlarmListWindow>(st, report, printer);
        test::ShowActive(w.get());
    }
    QPlainTextEdit* txt() { return test::child<QPlainTextEdit>(w.get(), "TxtAlarms"); }
    QStringList lines() { return txt()->toPlainText().split('\n'); }
    QPushButton* cmd(const char* n) { return test::child<QPushButton>(w.get(), n); }
    QString unack() { return test::child<QLabel>(w.get(), "LblUnacknowledged")->text(); }
    // One scan's alarm check a second later.
    void scan() {
        clock.advance(1000);
        CheckAlarms(st);
    }
};

}  // namespace

TEST(AlarmListWindow, CaptionsButtonsAndAFixedPitchFont) {
    Rig r;
    r.open();
    EXPECT_EQ(r.w->objectName(), "FrmAlarms");
    EXPECT_EQ(r.w->windowTitle(), "Alarms");
    const std::vector<std::pair<const char*, const char*>> buttons = {
        {"CmdCurrent", "&Current"},        {"CmdHistory", "&History"},
        {"CmdAck", "&Acknowledge"},        {"CmdSave", "&Save History..."},
        {"CmdPrint", "&Print History..."}, {"CmdExit", "E&xit"}};
    for (const auto& [name, caption] : buttons) EXPECT_EQ(r.cmd(name)->text(), caption) << name;
    // Fixed-pitch as resolved on this machine, not only as asked for: the columns line up.
    EXPECT_TRUE(QFontInfo(r.txt()->font()).fixedPitch())
        << QFontInfo(r.txt()->font()).family().toStdString();
    const QFontMetricsF metrics(r.txt()->font());
    EXPECT_DOUBLE_EQ(metrics.horizontalAdvance("ACKN "), metrics.horizontalAdvance("NORML"));
    EXPECT_TRUE(r.txt()->isReadOnly());
    EXPECT_EQ(r.txt()->accessibleName(), "Current alarms");
    r.cmd("CmdHistory")->click();
    EXPECT_EQ(r.txt()->accessibleName(), "Alarm history");
    std::vector<QWidget*> order = {r.txt(),         r.cmd("CmdCurrent"), r.cmd("CmdHistory"),
                                   r.cmd("CmdAck"), r.cmd("CmdSave"),    r.cmd("CmdPrint"),
                                   r.cmd("CmdExit")};
    EXPECT_EQ(test::TabChain(r.w.get(), r.txt()), order);
}

TEST(AlarmListWindow, OpensOnTheCurrentViewOfTwentyLines) {
    Rig r;
    r.set(1, 90);
    CheckAlarms(r.st);
    r.open();
    const QStringList lines = r.lines();
    ASSERT_EQ(lines.size(), 21);  // twenty lines, each ended, and nothing after the last
    EXPECT_EQ(lines[0], "ALARM " + kAt + "TANK high");
    EXPECT_EQ(lines[1], "");
    EXPECT_EQ(r.unack(), "Unacknowledged alarms: 1");
}

TEST(AlarmListWindow, AnAlarmRaisedByTheScanAppearsInTheOpenListAndTheStatusBar) {
    Rig r;
    r.open();
    EXPECT_EQ(r.lines()[0], "");
    EXPECT_EQ(r.unack(), "No unacknowledged alarms");
    r.set(5, 10);
    r.scan();
    ASSERT_FALSE(r.status.texts.empty());
    EXPECT_EQ(r.status.texts.back(), "ALARM 11-15-2026 14:05:10 FLOW low");
    EXPECT_EQ(r.lines()[1], "");  // the view follows from the window's own timer
    EXPECT_TRUE(r.w->refreshTimer()->isActive());
    EXPECT_EQ(r.w->refreshTimer()->interval(), AlarmListWindow::kRefreshMs);
    r.w->refresh();  // the timer's tick
    EXPECT_EQ(r.lines()[1], "ALARM 11-15-2026 14:05:10 FLOW low");
    EXPECT_EQ(r.unack(), "Unacknowledged alarms: 1");

    r.cmd("CmdHistory")->click();
    ASSERT_EQ(r.lines().size(), 52);  // slots 0..50
    EXPECT_EQ(r.lines()[0], "ALARM 11-15-2026 14:05:10 FLOW low");
    r.set(1, 95);
    r.scan();
    r.w->refresh();                                                  // the timer's tick
    EXPECT_EQ(r.lines()[1], "ALARM 11-15-2026 14:05:11 TANK high");  // the history view too
}

TEST(AlarmListWindow, AcknowledgingRewritesBothViewsAndTheCount) {
    Rig r;
    r.set(1, 90);
    CheckAlarms(r.st);
    r.open();
    r.cmd("CmdAck")->click();
    EXPECT_EQ(r.lines()[0], "ACKN  " + kAt + "TANK high");
    EXPECT_EQ(r.unack(), "No unacknowledged alarms");
    r.cmd("CmdHistory")->click();
    EXPECT_EQ(r.lines()[0], "ACKN  " + kAt + "TANK high");
    EXPECT_EQ(r.st.alarms.Alarms[1].State, 3);

    r.set(1, 50);  // back to normal, then acknowledged from the history view
    r.scan();
    r.cmd("CmdHistory")->click();
    EXPECT_EQ(r.lines()[1], "NORML 11-15-2026 14:05:10 TANK normal");
    EXPECT_EQ(r.unack(), "Unacknowledged alarms: 1 (1 back to normal)");
    r.cmd("CmdAck")->click();
    EXPECT_EQ(r.lines()[1], "NORML 11-15-2026 14:05:10 TANK normal");
    EXPECT_EQ(r.st.alarms.Alarms[1].State, 0);
    EXPECT_EQ(r.unack(), "No unacknowledged alarms");
    r.cmd("CmdCurrent")->click();
    EXPECT_EQ(r.lines()[0], "NORML 11-15-2026 14:05:10 TANK normal");
}

TEST(AlarmListWindow, TheHistoryIsSavedToATextFileAndPrinted) {
    Rig r;
    test::TempFolder folder;
    r.set(1, 90);
    CheckAlarms(r.st);
    r.open();
    const auto file = folder / "ALARMS.TXT";
    r.prompt.fileAnswers = {file.string()};
    r.cmd("CmdSave")->click();
    EXPECT_EQ(test::ReadFileBytes(file), "ALARM 11-15-2026 14:05:09 TANK high\r\n");
    r.cmd("CmdPrint")->click();
    EXPECT_EQ(
        r.printer.printed,
        (std::vector<Shown>{{"ALARM 11-15-2026 14:05:09 TANK high\n", "KOVA Alarm History"}}));
    EXPECT_TRUE(r.prompt.messages.empty());
}

TEST(AlarmListWindow, WorksFromTheKeyboardAlone) {
    Rig r;
    r.set(1, 90);
    CheckAlarms(r.st);
    r.open();
    test::AltKey(r.w.get(), Qt::Key_A);
    EXPECT_EQ(r.st.alarms.Alarms[1].State, 3);
    test::AltKey(r.w.get(), Qt::Key_H);
    EXPECT_EQ(r.txt()->accessibleName(), "Alarm history");
    test::AltKey(r.w.get(), Qt::Key_X);
    EXPECT_FALSE(r.w->isVisible());
}

}  // namespace kova
