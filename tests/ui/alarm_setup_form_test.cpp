#include "alarms/forms/alarm_setup_form.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <sstream>

#include "alarms/alarm_check.h"
#include "alarms/alarm_rig.h"
#include "ui/ui_support.h"

namespace kova {

using test::Shown;

namespace {

struct Rig : test::AlarmRig {
    std::ostringstream errors;
    ErrorReport report{st.platform, errors};
    std::unique_ptr<AlarmSetupWindow> w;
    Rig() { st.switches.AlarmsEnabled = 0; }
    void open() {
        w = std::make_unique<AlarmSetupWindow>(st, report);
        test::ShowActive(w.get());
    }
    QLineEdit* box(const char* n) { return test::child<QLineEdit>(w.get(), n); }
    QComboBox* cboTag() { return test::child<QComboBox>(w.get(), "CboTag"); }
    QCheckBox* chk() { return test::child<QCheckBox>(w.get(), "ChkEnableAlm"); }
    QPushButton* cmd(const char* n) { return test::child<QPushButton>(w.get(), n); }
    QString number() { return test::child<QLabel>(w.get(), "LblAlmNo")->text(); }
    void fill(const QString& tag, const QString& hi, const QString& lo) {
        cboTag()->setEditText(tag);
        box("TxtHiVal")->setText(hi);
        box("TxtHiMsg")->setText("Tank too high");
        box("TxtLoVal")->setText(lo);
        box("TxtLoMsg")->setText("Tank too low");
        box("TxtNormMsg")->setText("Tank normal");
    }
    void expectOne(const Shown& shown) {
        ASSERT_EQ(prompt.messages.size(), 1u);
        EXPECT_EQ(prompt.messages[0], shown);
        prompt.messages.clear();
    }
};

}  // namespace

TEST(AlarmSetupWindow, ControlsCaptionsNamesAndAccessibleNames) {
    Rig r;
    r.open();
    EXPECT_EQ(r.w->objectName(), "FrmAlmSetUp");
    EXPECT_EQ(r.w->windowTitle(), "Alarm Set Up");
    EXPECT_EQ(r.chk()->text(), "Enable Alarms");
    const std::vector<std::pair<const char*, const char*>> buttons = {
        {"Prev", "&Prev"}, {"Next", "&Next"}, {"CmdDelete", "&Delete"}, {"Exit", "E&xit"}};
    for (const auto& [name, caption] : buttons) EXPECT_EQ(r.cmd(name)->text(), caption) << name;
    const std::vector<std::pair<const char*, const char*>> boxes = {
        {"TxtHiVal", "High Alarm Value"},
        {"TxtHiMsg", "High Alarm Message"},
        {"TxtLoVal", "Low Alarm Value"},
        {"TxtLoMsg", "Low Alarm Message"},
        {"TxtNormMsg", "Normal Message"}};
    for (const auto& [name, label] : boxes) EXPECT_EQ(r.box(name)->accessibleName(), label) << name;
    EXPECT_EQ(r.cboTag()->accessibleName(), "Tag Name");
    for (auto* label : r.w->findChildren<QLabel*>()) {
        if (label->buddy()) {
            EXPECT_EQ(label->text().remove('&'), label->buddy()->accessibleName());
        }
    }
    const std::vector<QWidget*> order = {
        r.cboTag(),        r.box("TxtHiVal"),   r.box("TxtHiMsg"), r.box("TxtLoVal"),
        r.box("TxtLoMsg"), r.box("TxtNormMsg"), r.chk(),           r.cmd("Prev"),
        r.cmd("Next"),     r.cmd("CmdDelete"),  r.cmd("Exit")};
    EXPECT_EQ(test::TabChain(r.w.get(), r.cboTag()), order);
}

TEST(AlarmSetupWindow, OpensOnAlarmOneWithTheNamedUserTagsAndTheSwitch) {
    Rig r;
    r.watch(1, 1, 80, 20);
    r.st.switches.AlarmsEnabled = 1;
    r.open();
    EXPECT_EQ(r.number(), "1");
    QStringList names;
    for (int i = 0; i < r.cboTag()->count(); ++i) names << r.cboTag()->itemText(i);
    EXPECT_EQ(names, (QStringList{"", "TANK", "PUMP", "FLOW"}));  // "" is no alarm
    EXPECT_EQ(r.cboTag()->currentText(), "TANK");
    EXPECT_EQ(r.box("TxtHiVal")->text(), "80");
    EXPECT_EQ(r.box("TxtLoVal")->text(), "20");
    EXPECT_EQ(r.box("TxtHiMsg")->text(), "TANK high");
    EXPECT_EQ(r.box("TxtNormMsg")->text(), "TANK normal");
    EXPECT_TRUE(r.chk()->isChecked());
}

TEST(AlarmSetupWindow, NextStoresTheAlarmAndAnAlarmRaisedByTheScanUsesIt) {
    Rig r;
    r.open();
    r.fill("tank", "80", "20");
    r.cmd("Next")->click();
    EXPECT_TRUE(r.prompt.messages.empty());
    EXPECT_EQ(r.number(), "2");
    const AlarmDef& a = r.st.alarms.Alarms[1];
    EXPECT_EQ(a.TagName, "TANK");
    EXPECT_EQ(a.TagNo, 1);
    EXPECT_EQ(a.HiVal, 80.0f);
    EXPECT_EQ(a.LoMsg, "Tank too low");
    EXPECT_EQ(r.cboTag()->currentText(), "");  // alarm 2 is empty
    r.st.switches.AlarmsEnabled = 1;
    r.set(1, 85);
    CheckAlarms(r.st);
    EXPECT_EQ(r.status.texts.back(), "ALARM 11-15-2026 14:05:09 Tank too high");
}

TEST(AlarmSetupWindow, EqualLimitsAreRefusedAndTheAlarmStaysAsTyped) {
    Rig r;
    r.open();
    r.fill("TANK", "10", "10");
    r.cmd("Next")->click();
    r.expectOne({"High Alarm Value must be greater than Low Alarm Value", "Error"});
    EXPECT_EQ(r.number(), "1");
    EXPECT_EQ(r.box("TxtHiVal")->text(), "10");
    EXPECT_EQ(r.box("TxtHiMsg")->text(), "Tank too high");
    EXPECT_EQ(r.st.alarms.Alarms[1], AlarmDef{});
}

TEST(AlarmSetupWindow, AWordForAValueIsRefusedBeforeTheComparison) {
    Rig r;
    r.open();
    r.fill("TANK", "ten", "90");
    r.cmd("Prev")->click();
    r.expectOne({"High and Low Alarm Values must be numbers", "Error"});
    EXPECT_EQ(r.number(), "1");
}

TEST(AlarmSetupWindow, AnUnknownTagNameIsRefusedWithItsTitle) {
    Rig r;
    r.open();
    r.fill("NOSUCH", "80", "20");
    r.cmd("Next")->click();
    r.expectOne({"Tag Name Not Found", "ERROR"});
    EXPECT_EQ(r.cboTag()->currentText(), "NOSUCH");
}

TEST(AlarmSetupWindow, NoTagClearsTheAlarmAndMovesOn) {
    Rig r;
    r.watch(1, 1, 80, 20).LastText = "ALARM x";
    r.open();
    r.cboTag()->setCurrentIndex(0);
    r.cmd("Next")->click();
    EXPECT_TRUE(r.prompt.messages.empty());
    EXPECT_EQ(r.st.alarms.Alarms[1], AlarmDef{});
    EXPECT_EQ(r.number(), "2");
}

TEST(AlarmSetupWindow, NextOnAlarmTwentyShowsAlarmOneAndPrevGoesBackToTwenty) {
    Rig r;
    r.watch(1, 5, 50, 5);
    r.open();
    r.cmd("Prev")->click();
    EXPECT_EQ(r.number(), "20");
    EXPECT_TRUE(r.prompt.messages.empty());
    r.cmd("Next")->click();
    EXPECT_EQ(r.number(), "1");
    EXPECT_EQ(r.cboTag()->currentText(), "FLOW");
}

TEST(AlarmSetupWindow, DeleteMovesTheLaterAlarmsUpWithoutAsking) {
    Rig r;
    r.watch(1, 1, 80, 20);
    r.watch(2, 5, 50, 5);
    r.open();
    r.cmd("CmdDelete")->click();
    EXPECT_TRUE(r.prompt.questions.empty());
    EXPECT_EQ(r.number(), "1");
    EXPECT_EQ(r.cboTag()->currentText(), "FLOW");
    EXPECT_EQ(r.box("TxtHiVal")->text(), "50");
    EXPECT_EQ(r.st.alarms.Alarms[2], AlarmDef{});
}

TEST(AlarmSetupWindow, ExitStoresTheSwitchAndSignalsSoTheMainWindowFollows) {
    Rig r;
    r.open();
    QSignalSpy stored(r.w.get(), &AlarmSetupWindow::alarmsStored);
    r.chk()->setChecked(true);
    r.cmd("Exit")->click();
    EXPECT_EQ(r.st.switches.AlarmsEnabled, 1);
    EXPECT_EQ(stored.count(), 1);
    EXPECT_FALSE(r.w->isVisible());
}

TEST(AlarmSetupWindow, ExitWithABadAlarmAsksAndStaysOnNo) {
    Rig r;
    r.open();
    r.fill("TANK", "1", "2");
    r.chk()->setChecked(true);
    r.cmd("Exit")->click();  // the scripted answer is No
    r.expectOne({"High Alarm Value must be greater than Low Alarm Value", "Error"});
    ASSERT_EQ(r.prompt.questions.size(), 1u);
    EXPECT_EQ(r.prompt.questions[0].text, "Do You wish to exit without saving this alarm");
    EXPECT_TRUE(r.w->isVisible());
    EXPECT_EQ(r.st.switches.AlarmsEnabled, 0);
    r.prompt.yesNoAnswers = {true};
    r.cmd("Exit")->click();
    EXPECT_FALSE(r.w->isVisible());
    EXPECT_EQ(r.st.switches.AlarmsEnabled, 1);
    EXPECT_EQ(r.st.alarms.Alarms[1], AlarmDef{});
}

TEST(AlarmSetupWindow, WorksFromTheKeyboardAlone) {
    Rig r;
    r.open();
    ASSERT_TRUE(r.cboTag()->hasFocus());
    QTest::keyClicks(r.cboTag(), "flow");
    QTest::keyClick(r.cboTag(), Qt::Key_Tab);
    QTest::keyClicks(QApplication::focusWidget(), "60");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QTest::keyClicks(QApplication::focusWidget(), "Flow high");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QTest::keyClicks(QApplication::focusWidget(), "5");
    test::AltKey(r.w.get(), Qt::Key_N);
    EXPECT_TRUE(r.prompt.messages.empty());
    EXPECT_EQ(r.number(), "2");
    EXPECT_EQ(r.st.alarms.Alarms[1].TagName, "FLOW");
    EXPECT_EQ(r.st.alarms.Alarms[1].HiVal, 60.0f);
    EXPECT_EQ(r.st.alarms.Alarms[1].HiMsg, "Flow high");
    EXPECT_EQ(r.st.alarms.Alarms[1].LoVal, 5.0f);
    test::AltKey(r.w.get(), Qt::Key_X);
    EXPECT_FALSE(r.w->isVisible());
}

}  // namespace kova
