// The windows in everyday use: where the keyboard lands after a page change or a refusal,
// boxes that take no typing and look so, and open windows that follow the tag table and the
// module type without being reopened.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <sstream>

#include "alarms/forms/alarm_setup_form.h"
#include "app/main_window.h"
#include "control/forms/control_form.h"
#include "core/configuration.h"
#include "displays/forms/readings_setup_form.h"
#include "displays/forms/readings_view_form.h"
#include "displays/forms/trend_setup_form.h"
#include "logging/forms/set_logging_form.h"
#include "logging/forms/start_log_form.h"
#include "support/test_support.h"
#include "tags/daq_type_model.h"
#include "tags/forms/tag_editor_form.h"
#include "tags/tag_table.h"
#include "ui/ui_support.h"

namespace kova {

namespace {

// The program with its tags, and the windows opened from its menus.
struct Program {
    test::TempFolder folder;
    Station st;
    test::ScriptedPrompter prompt;
    std::ostringstream errors;
    std::unique_ptr<app::MainWindow> w;
    Program() {
        st.workingFolder = folder.path();
        w = std::make_unique<app::MainWindow>(st, &prompt, &errors);
        const char* names[] = {"LEVEL", "TEMP", "DOOR"};
        const char* io[] = {"AI-1", "AI-2", "DI-1"};
        for (int n = 1; n <= kUserTags; ++n) {
            Tag& t = st.tags[n];
            t.TagName = n <= 3 ? names[n - 1] : "V" + std::to_string(n);
            BindIOName(t, n <= 3 ? io[n - 1] : "Analog Variable");
            t.Address = 1;
            t.RawValue2 = 4095;
            t.EngValue2 = 100;
            ComputeScaling(t);
        }
        st.tags[3].EngText1 = "OPEN";
        st.tags[3].EngText2 = "SHUT";
        RebuildTagNameIndex(st.tags, st.nameIndex);
        st.alarms.Alarms[1].TagName = "LEVEL";
        st.alarms.Alarms[1].TagNo = 1;
        st.alarms.Alarms[1].HiVal = 80;
        st.alarms.Alarms[1].LoVal = 10;
        st.screens.Lines(1, 1).TagName = "LEVEL";
        st.screens.Lines(1, 1).TagNumber = 1;
        st.trends.TrendTable(1, 1) = 1;
        w->show();
    }
    template <typename W>
    W* open(app::WindowKind kind, const char* name) {
        w->openWindow(kind);
        auto* window = qobject_cast<W*>(w->windows().find(name));
        EXPECT_NE(window, nullptr) << name;
        if (window) test::ShowActive(window);
        return window;
    }
    // Renames tag n in an open tag editor and stores it with Next.
    void rename(TagEditorWindow* tags, const QString& from, const QString& to) {
        auto* name = test::child<QLineEdit>(tags, "TxtTagName");
        while (name->text() != from) tags->nextClicked();
        name->setText(to);
        tags->nextClicked();
    }
};

// The caption beside a box: the label whose buddy it is.
QString captionOf(QWidget* window, QWidget* box) {
    for (QLabel* l : window->findChildren<QLabel*>())
        if (l->buddy() == box) return l->text();
    return {};
}

}  // namespace

TEST(WindowsInUse, AfterNextTheKeyboardIsOnTheFirstBoxOfTheNewRecord) {
    Program p;
    auto* tags = p.open<TagEditorWindow>(app::WindowKind::Tags, "Tags");
    auto* next = test::child<QPushButton>(tags, "ComNext");
    next->setFocus();
    QTest::keyClick(next, Qt::Key_Space);
    auto* first = test::child<QLineEdit>(tags, "TxtLabel");
    EXPECT_EQ(test::child<QLabel>(tags, "LblTag")->text(), "2");
    EXPECT_EQ(QApplication::focusWidget(), first);
    // Typing goes into the record, not to a button.
    QTest::keyClicks(QApplication::focusWidget(), "Oven");
    EXPECT_EQ(first->text(), "Oven");
}

TEST(WindowsInUse, AfterARefusalTheKeyboardIsOnTheBoxAtFaultWithItsTextSelected) {
    Program p;
    auto* tags = p.open<TagEditorWindow>(app::WindowKind::Tags, "Tags");
    auto* raw2 = test::child<QLineEdit>(tags, "TxtRawValue2");
    raw2->setText("0");  // equal to Raw Value1
    auto* next = test::child<QPushButton>(tags, "ComNext");
    next->setFocus();
    QTest::keyClick(next, Qt::Key_Space);
    ASSERT_EQ(p.prompt.messages.size(), 1u);
    EXPECT_EQ(p.prompt.messages[0].text, "Error RawValue1 cannot equal RawValue2");
    EXPECT_EQ(QApplication::focusWidget(), raw2);
    EXPECT_EQ(raw2->selectedText(), "0");
}

TEST(WindowsInUse, TheOtherSetUpWindowsPutTheKeyboardAtTheFault) {
    Program p;
    auto* alarms = p.open<AlarmSetupWindow>(app::WindowKind::AlarmSetup, "AlarmSetup");
    auto* hi = test::child<QLineEdit>(alarms, "TxtHiVal");
    hi->setText("5");  // below the low limit
    alarms->nextClicked();
    EXPECT_EQ(QApplication::focusWidget(), hi);
    EXPECT_EQ(hi->selectedText(), "5");
    hi->setText("90");
    alarms->nextClicked();
    EXPECT_EQ(QApplication::focusWidget(), test::child<QComboBox>(alarms, "CboTag"));

    auto* screens = p.open<ReadingsSetupWindow>(app::WindowKind::Screens, "Screens");
    auto* row = test::child<QComboBox>(screens, "CboAnTag4");
    row->setEditText("NOPE");
    screens->nextClicked();
    EXPECT_EQ(QApplication::focusWidget(), row);
    EXPECT_EQ(row->lineEdit()->selectedText(), "NOPE");
    row->setEditText("");
    screens->nextClicked();
    EXPECT_EQ(QApplication::focusWidget(), test::child<QLineEdit>(screens, "TxtScreen"));

    auto* trends = p.open<SetTrendWindow>(app::WindowKind::TrendSetup, "TrendSetup");
    auto* pen3 = test::child<QComboBox>(trends, "CboTagNo3");
    pen3->setEditText("NOPE");
    trends->nextClicked();
    EXPECT_EQ(QApplication::focusWidget(), pen3);

    auto* control = p.open<ControlWindow>(app::WindowKind::ControlLanguage, "ControlLanguage");
    test::child<QPushButton>(control, "CmdNext")->click();
    EXPECT_EQ(QApplication::focusWidget(), test::child<QLineEdit>(control, "TxtIf"));
}

TEST(WindowsInUse, ADigitalTagsScalingBoxesSayTheyHoldStateTexts) {
    Program p;
    auto* tags = p.open<TagEditorWindow>(app::WindowKind::Tags, "Tags");
    while (test::child<QLabel>(tags, "LblTag")->text() != "3") tags->nextClicked();
    auto* eng1 = test::child<QLineEdit>(tags, "TxtEngValue1");
    auto* raw1 = test::child<QLineEdit>(tags, "TxtRawValue1");
    EXPECT_EQ(captionOf(tags, eng1), "State 0 Text (EngValue1)");
    EXPECT_EQ(eng1->accessibleName(), "State 0 Text (EngValue1)");
    EXPECT_EQ(test::child<QLineEdit>(tags, "TxtEngValue2")->accessibleName(),
              "State 1 Text (EngValue2)");
    EXPECT_EQ(eng1->text(), "OPEN");
    EXPECT_TRUE(raw1->isReadOnly());  // always 0 and 1 for a digital tag
    EXPECT_EQ(raw1->palette().color(QPalette::Base), raw1->palette().color(QPalette::Window));
    // An analog name makes them the scaling points again.
    auto* io = test::child<QComboBox>(tags, "CboIOName");
    const int ai = io->findText("AI-3");
    io->setCurrentIndex(ai);
    emit io->activated(ai);
    EXPECT_EQ(captionOf(tags, eng1), "Engineering Value1");
    EXPECT_EQ(eng1->accessibleName(), "Engineering Value1");
    EXPECT_FALSE(raw1->isReadOnly());
    EXPECT_NE(raw1->palette().color(QPalette::Base), raw1->palette().color(QPalette::Window));
}

TEST(WindowsInUse, TheTagEditorFollowsTheModuleTypeAndKeepsWhatIsTyped) {
    Program p;
    auto* tags = p.open<TagEditorWindow>(app::WindowKind::Tags, "Tags");
    auto* io = test::child<QComboBox>(tags, "CboIOName");
    EXPECT_GE(io->findText("AI-1"), 0);
    io->setEditText("DI-");  // the user is typing
    DaqTypeForm f = OpenDaqTypeForm(p.st);
    f.OptDaqType.fill(false);
    f.OptDaqType[kDaqQrt115] = true;
    ExitDaqTypeForm(p.st, f);  // the DAQ type window's Exit
    EXPECT_LT(io->findText("AI-1"), 0);
    EXPECT_GE(io->findText("DI-8"), 0);
    EXPECT_EQ(io->currentText(), "DI-");
}

TEST(WindowsInUse, OpenWindowsFollowARenameInTheTagEditor) {
    Program p;
    auto* alarms = p.open<AlarmSetupWindow>(app::WindowKind::AlarmSetup, "AlarmSetup");
    auto* screens = p.open<ReadingsSetupWindow>(app::WindowKind::Screens, "Screens");
    auto* trends = p.open<SetTrendWindow>(app::WindowKind::TrendSetup, "TrendSetup");
    auto* control = p.open<ControlWindow>(app::WindowKind::ControlLanguage, "ControlLanguage");
    auto* start = p.open<StartLogWindow>(app::WindowKind::LogStartStop, "LogStartStop");
    auto* view = p.open<ReadingsViewWindow>(app::WindowKind::Readings, "Readings");
    auto* tags = p.open<TagEditorWindow>(app::WindowKind::Tags, "Tags");
    p.rename(tags, "LEVEL", "TANK");
    EXPECT_EQ(test::child<QComboBox>(alarms, "CboTag")->currentText(), "TANK");
    EXPECT_EQ(test::child<QComboBox>(screens, "CboAnTag0")->currentText(), "TANK");
    EXPECT_GE(test::child<QComboBox>(screens, "CboAnTag1")->findText("TANK"), 0);
    EXPECT_EQ(test::child<QComboBox>(trends, "CboTagNo1")->currentText(), "TANK");
    EXPECT_GE(test::child<QComboBox>(control, "CboTag")->findText("TANK"), 0);
    EXPECT_LT(test::child<QComboBox>(control, "CboTag")->findText("LEVEL"), 0);
    EXPECT_GE(test::child<QComboBox>(start, "CboTag")->findText("TANK"), 0);
    // The windows store what they show without a refusal.
    p.prompt.messages.clear();
    alarms->nextClicked();
    screens->nextClicked();
    trends->nextClicked();
    EXPECT_TRUE(p.prompt.messages.empty());
    EXPECT_EQ(p.st.alarms.Alarms[1].TagName, "TANK");
    EXPECT_EQ(p.st.trends.TrendTable(1, 1), 1);
    (void)view;
}

TEST(WindowsInUse, OpenWindowsKeepWhatTheUserIsTyping) {
    Program p;
    auto* alarms = p.open<AlarmSetupWindow>(app::WindowKind::AlarmSetup, "AlarmSetup");
    auto* tag = test::child<QComboBox>(alarms, "CboTag");
    tag->setEditText("TE");
    tag->lineEdit()->setCursorPosition(1);
    auto* tags = p.open<TagEditorWindow>(app::WindowKind::Tags, "Tags");
    p.rename(tags, "LEVEL", "TANK");
    EXPECT_EQ(tag->currentText(), "TE");
    EXPECT_EQ(tag->lineEdit()->cursorPosition(), 1);
    EXPECT_GE(tag->findText("TANK"), 0);
}

TEST(WindowsInUse, OpenWindowsFollowADeleteInTheTagEditor) {
    Program p;
    p.st.alarms.Alarms[2].TagName = "DOOR";
    p.st.alarms.Alarms[2].TagNo = 3;
    auto* trends = p.open<SetTrendWindow>(app::WindowKind::TrendSetup, "TrendSetup");
    auto* tags = p.open<TagEditorWindow>(app::WindowKind::Tags, "Tags");
    tags->nextClicked();  // TEMP, used by nothing
    p.prompt.yesNoAnswers = {true};
    tags->deleteClicked();
    EXPECT_EQ(p.st.alarms.Alarms[2].TagNo, 2);
    EXPECT_EQ(p.st.tags[2].TagName, "DOOR");
    EXPECT_LT(test::child<QComboBox>(trends, "CboTagNo1")->findText("TEMP"), 0);
    EXPECT_EQ(test::child<QComboBox>(trends, "CboTagNo1")->currentText(), "LEVEL");
}

TEST(WindowsInUse, TheLogFileBoxTakesNoTypingAndSaysHowToChooseTheFile) {
    Program p;
    p.st.logging.LogFileName = "/data/PLANT.CSV";
    auto* params = p.open<SetLoggingWindow>(app::WindowKind::LogParameters, "LogParameters");
    auto* box = test::child<QLineEdit>(params, "TxtFileName");
    EXPECT_TRUE(box->isReadOnly());
    // It looks so: the window's colour, not the white of a box that takes typing.
    EXPECT_EQ(box->palette().color(QPalette::Base), box->palette().color(QPalette::Window));
    EXPECT_NE(box->palette().color(QPalette::Base),
              test::child<QPushButton>(params, "ComExit")->palette().color(QPalette::Base));
    EXPECT_TRUE(box->toolTip().contains("\"Choose File...\""));
    EXPECT_EQ(box->accessibleDescription(), box->toolTip());
    EXPECT_EQ(box->accessibleName(), "Log file");
    EXPECT_TRUE(box->focusPolicy() & Qt::TabFocus);  // reachable, to be read
    box->setFocus();
    QTest::keyClicks(box, "ovenlab.CSV");
    EXPECT_EQ(box->text(), "/data/PLANT.CSV");
    test::child<QPushButton>(params, "ComExit")->click();
    EXPECT_EQ(p.st.logging.LogFileName, "/data/PLANT.CSV");
}

TEST(WindowsInUse, AnInputsValueBoxOnAReadingsScreenTakesNoTyping) {
    Program p;
    p.st.screens.Lines(1, 2).TagName = "V4";  // an analog variable
    p.st.screens.Lines(1, 2).TagNumber = 4;
    p.st.screens.Lines(1, 11).TagName = "DOOR";
    p.st.screens.Lines(1, 11).TagNumber = 3;
    auto* view = p.open<ReadingsViewWindow>(app::WindowKind::Readings, "Readings");
    auto* input = test::child<QLineEdit>(view, "TxtAn0");
    auto* variable = test::child<QLineEdit>(view, "TxtAn1");
    EXPECT_TRUE(input->isReadOnly());
    EXPECT_EQ(input->focusPolicy(), Qt::NoFocus);
    EXPECT_FALSE(variable->isReadOnly());
    EXPECT_FALSE(test::child<QCheckBox>(view, "ChkDig0")->isEnabled());  // DOOR, an input
}

TEST(WindowsInUse, OpeningAndLeavingEverySetUpWindowLeavesNothingToSave) {
    Program p;
    RememberConfigurationAsSaved(p.st);
    const struct {
        app::WindowKind kind;
        const char* name;
        const char* exit;
    } windows[] = {
        {app::WindowKind::Tags, "Tags", "Exit"},
        {app::WindowKind::Periods, "Periods", "CmdExit"},
        {app::WindowKind::Screens, "Screens", "ComExit"},
        {app::WindowKind::TrendSetup, "TrendSetup", "ComExit"},
        {app::WindowKind::LogParameters, "LogParameters", "ComExit"},
        {app::WindowKind::LogStartStop, "LogStartStop", "Exit"},
        {app::WindowKind::AlarmSetup, "AlarmSetup", "Exit"},
        {app::WindowKind::ControlLanguage, "ControlLanguage", "CmdExit"},
        {app::WindowKind::DaqType, "DaqType", "CmdExit"},
        {app::WindowKind::PrinterAddress, "PrinterAddress", "Exit"},
    };
    for (const auto& w : windows) {
        QWidget* window = p.open<QWidget>(w.kind, w.name);
        ASSERT_NE(window, nullptr) << w.name;
        test::child<QPushButton>(window, w.exit)->click();
        EXPECT_FALSE(window->isVisible()) << w.name;
        EXPECT_FALSE(ConfigurationChanged(p.st)) << w.name;
    }
    EXPECT_TRUE(p.prompt.messages.empty());
    p.w->close();  // File Exit asks nothing
    EXPECT_TRUE(p.prompt.saveQuestions.empty());
}

}  // namespace kova
