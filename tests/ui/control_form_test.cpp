#include "control/forms/control_form.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <array>
#include <sstream>

#include "control/control_rig.h"
#include "core/scan_cycle.h"
#include "ui/ui_support.h"

namespace kova {

using test::kA;
using test::kB;
using test::kX;
using test::Shown;

namespace {

struct Rig : test::Rig {
    std::ostringstream errors;
    ErrorReport report{st.platform, errors};
    std::unique_ptr<ControlWindow> w;
    Rig() { open(); }
    void open() {
        w = std::make_unique<ControlWindow>(st, report);
        test::ShowActive(w.get());
    }
    QLineEdit* txtIf() { return test::child<QLineEdit>(w.get(), "TxtIf"); }
    QPlainTextEdit* txtThen() { return test::child<QPlainTextEdit>(w.get(), "TxtThen"); }
    QPlainTextEdit* txtElse() { return test::child<QPlainTextEdit>(w.get(), "TxtElse"); }
    QCheckBox* chk(const char* n) { return test::child<QCheckBox>(w.get(), n); }
    QComboBox* cboTag() { return test::child<QComboBox>(w.get(), "CboTag"); }
    QPushButton* cmd(const char* n) { return test::child<QPushButton>(w.get(), n); }
    QString lineNo() { return test::child<QLabel>(w.get(), "LblLineNo")->text(); }
    void type(const QString& ifText, const QString& thenText, const QString& elseText = "") {
        txtIf()->setText(ifText);
        txtThen()->setPlainText(thenText);
        txtElse()->setPlainText(elseText);
    }
    void expectOneError(const std::string& text) {
        ASSERT_EQ(prompt.messages.size(), 1u);
        EXPECT_EQ(prompt.messages[0], (Shown{text, "Error"}));
        prompt.messages.clear();
    }
};

}  // namespace

TEST(ControlWindow, ControlsCaptionsAndNames) {
    Rig r;
    EXPECT_EQ(r.w->objectName(), "FrmControl");
    EXPECT_EQ(r.w->windowTitle(), "Control Language");
    EXPECT_EQ(r.chk("ChkIf")->text(), "Carry out Then statement only when If goes False to True");
    EXPECT_EQ(r.chk("ChkEnableControl")->text(), "Enable Control Language");
    const std::vector<std::pair<const char*, const char*>> buttons = {{"CmdPrev", "&Prev"},
                                                                      {"CmdNext", "&Next"},
                                                                      {"CmdInsert", "&Insert"},
                                                                      {"CmdDelete", "&Delete"},
                                                                      {"CmdExit", "E&xit"}};
    for (const auto& [name, caption] : buttons) EXPECT_EQ(r.cmd(name)->text(), caption) << name;
    EXPECT_EQ(r.lineNo(), "1");
}

TEST(ControlWindow, EveryBoxCarriesItsLabelAsItsNameAndTheTabOrderFollowsTheLayout) {
    Rig r;
    EXPECT_EQ(r.txtIf()->accessibleName(), "IF");
    EXPECT_EQ(r.txtThen()->accessibleName(), "THEN");
    EXPECT_EQ(r.txtElse()->accessibleName(), "ELSE");
    EXPECT_EQ(r.cboTag()->accessibleName(), "Tag");
    for (auto* label : r.w->findChildren<QLabel*>()) {
        if (label->buddy()) {
            EXPECT_EQ(label->text().remove('&'), label->buddy()->accessibleName());
        }
    }
    std::vector<QWidget*> order = {r.txtIf(),          r.txtThen(),      r.txtElse(),
                                   r.cboTag(),         r.chk("ChkIf"),   r.chk("ChkEnableControl"),
                                   r.cmd("CmdPrev"),   r.cmd("CmdNext"), r.cmd("CmdInsert"),
                                   r.cmd("CmdDelete"), r.cmd("CmdExit")};
    EXPECT_EQ(test::TabChain(r.w.get(), r.txtIf()), order);
    // Tab leaves the THEN box instead of typing a tab into it.
    EXPECT_TRUE(r.txtThen()->tabChangesFocus());
    EXPECT_TRUE(r.txtElse()->tabChangesFocus());
}

TEST(ControlWindow, OpensOnLineOneWithTheTableTheSwitchAndTheNamedTags) {
    Rig r;
    r.st.control.Lines[1].IfText = "@A>1";
    r.st.control.Lines[1].ThenText = "@B = 1\r\n@X = 2";
    r.st.control.Lines[1].ThenOnRise = 1;
    r.st.switches.ControlsEnabled = 1;
    r.st.tags[2].TagName = "";  // an unused slot is not offered
    r.open();
    EXPECT_EQ(r.txtIf()->text(), "@A>1");
    EXPECT_EQ(r.txtThen()->toPlainText(), "@B = 1\n@X = 2");
    EXPECT_TRUE(r.chk("ChkIf")->isChecked());
    EXPECT_TRUE(r.chk("ChkEnableControl")->isChecked());
    QStringList names;
    for (int i = 0; i < r.cboTag()->count(); ++i) names << r.cboTag()->itemText(i);
    EXPECT_EQ(names, (QStringList{"A", "X", "TANK1", "AO1", "DO1", "PUMP", "DI1", "FLAG", "AO2"}));
    EXPECT_EQ(r.cboTag()->currentIndex(), -1);
}

TEST(ControlWindow, ATwoLineThenIsStoredWithCrLfCompiledIntoTwoCodesAndRunAtOnce) {
    Rig r;
    r.type("", "@A = 1\n@B = 2");
    r.cmd("CmdNext")->click();
    EXPECT_TRUE(r.prompt.messages.empty());
    const ControlLine& line = r.st.control.Lines[1];
    EXPECT_EQ(line.ThenText, "@A = 1\r\n@B = 2");
    EXPECT_EQ(line.ThenCode, "@A,1,!@B,2,!");
    EXPECT_EQ(line.IfCode, ",");  // an empty IF passes and is always true
    EXPECT_EQ(r.value(kA), 1.0f);
    EXPECT_EQ(r.value(kB), 2.0f);
    EXPECT_EQ(r.lineNo(), "2");
    EXPECT_EQ(r.txtThen()->toPlainText(), "");
}

TEST(ControlWindow, AStatementTypedInTheWindowRunsOnTheNextTickOfTheScan) {
    Rig r;
    r.type("@A > 1", "@PUMP = 1\n@AO2 = 7", "@PUMP = 0");
    r.chk("ChkEnableControl")->setChecked(true);
    r.cmd("CmdExit")->click();
    EXPECT_TRUE(r.prompt.messages.empty());
    EXPECT_FALSE(r.w->isVisible());
    EXPECT_EQ(r.st.control.ControlCount, 2);  // line 2 is the first without THEN and ELSE
    EXPECT_EQ(r.st.switches.ControlsEnabled, 1);

    r.set(kA, 0);
    Tick(r.st);  // the IF is false: the ELSE clears the pump
    EXPECT_EQ(r.value(test::kPump), 0.0f);
    EXPECT_EQ(r.st.daq.DigitalOutputImage & 0x4, 0);

    r.set(kA, 5);
    r.st.daq.AnalogOutputValues[2] = 0;
    Tick(r.st);
    EXPECT_EQ(r.value(test::kPump), 1.0f);
    EXPECT_EQ(r.st.daq.DigitalOutputImage & 0x4, 0x4);     // DO-3
    EXPECT_EQ(r.st.daq.AnalogOutputValues[2], 7);          // AO-2 takes the raw value
    EXPECT_EQ(r.st.daq.Summary.DigitalOutputsPending, 0);  // sent at the end of the pass
}

TEST(ControlWindow, ExitSignalsSoTheMainWindowFollowsAtOnce) {
    Rig r;
    QSignalSpy stored(r.w.get(), &ControlWindow::controlsStored);
    r.chk("ChkEnableControl")->setChecked(true);
    r.cmd("CmdNext")->click();
    EXPECT_EQ(r.st.switches.ControlsEnabled, 1);  // Next stores the switch too
    EXPECT_EQ(stored.count(), 1);
    r.chk("ChkEnableControl")->setChecked(false);
    r.cmd("CmdExit")->click();
    EXPECT_EQ(r.st.switches.ControlsEnabled, 0);
    EXPECT_EQ(stored.count(), 2);
}

TEST(ControlWindow, ARefusedLineStaysAsTypedAndItsBoxGetsTheFocusWithTheTokenSelected) {
    Rig r;
    QSignalSpy stored(r.w.get(), &ControlWindow::controlsStored);
    r.type("@a > 1 & @nosuch < 2", "@X = 1");
    r.cmd("CmdNext")->click();
    r.expectOneError("Unknown Token @NOSUCH in If Statement");
    EXPECT_EQ(r.lineNo(), "1");
    EXPECT_EQ(r.txtIf()->text(), "@a > 1 & @nosuch < 2");
    EXPECT_EQ(r.txtThen()->toPlainText(), "@X = 1");
    EXPECT_TRUE(r.txtIf()->hasFocus());
    EXPECT_EQ(r.txtIf()->selectedText(), "@nosuch");
    EXPECT_EQ(r.st.control.Lines[1], ControlLine{});
    EXPECT_EQ(stored.count(), 0);

    r.type("", "@X = 1\n@X = foo(2)");
    r.cmd("CmdExit")->click();
    r.expectOneError("Unknown Token FOO in Then Statement");
    EXPECT_TRUE(r.w->isVisible());
    EXPECT_TRUE(r.txtThen()->hasFocus());
    EXPECT_EQ(r.txtThen()->textCursor().selectedText(), "foo");
    EXPECT_EQ(r.txtThen()->textCursor().blockNumber(), 1);

    r.type("", "", "@X = 1\n\n@X = 1 +");
    r.cmd("CmdPrev")->click();
    r.expectOneError("Syntax Error in Else Statement");
    EXPECT_TRUE(r.txtElse()->hasFocus());
    EXPECT_FALSE(r.txtElse()->textCursor().hasSelection());
    EXPECT_EQ(r.txtElse()->textCursor().blockNumber(), 2);  // the cursor on the failing line
    EXPECT_EQ(r.txtElse()->toPlainText(), "@X = 1\n\n@X = 1 +");
}

TEST(ControlWindow, AnAssignmentWithoutATargetIsAnUnknownToken) {
    Rig r;
    r.type("", "= 1");
    r.cmd("CmdNext")->click();
    r.expectOneError("Unknown Token  in Then Statement");
    EXPECT_TRUE(r.txtThen()->hasFocus());
}

TEST(ControlWindow, TheMessagesOfEachPart) {
    Rig r;
    r.set(kA, 5);  // "@A" alone is then no truth value
    const std::vector<std::array<const char*, 4>> cases = {
        {"(@A>1", "", "", "Syntax Error in If Statement"},
        {"@A", "", "", "Syntax Error in If Statement"},
        {"@NOSUCH > 1", "", "", "Unknown Token @NOSUCH in If Statement"},
        {"", "@X = 1 +", "", "Syntax Error in Then Statement"},
        {"", "@NOSUCH = 1", "", "Unknown Token @NOSUCH in Then Statement"},
        {"", "@DO1 = 2", "", "Syntax Error in Then Statement"},
        {"", "", "@X 1", "Syntax Error in Else Statement"},
        {"", "", "@X = @Y", "Unknown Token @Y in Else Statement"},
    };
    for (const auto& c : cases) {
        r.type(c[0], c[1], c[2]);
        r.cmd("CmdNext")->click();
        r.expectOneError(c[3]);
        EXPECT_EQ(r.lineNo(), "1") << c[3];
    }
    EXPECT_EQ(r.st.daq.DigitalOutputImage, 0);
}

TEST(ControlWindow, NextOnLineThirtyStoresSaysSoAndStays) {
    Rig r;
    for (int i = 1; i < 30; ++i) r.cmd("CmdNext")->click();
    EXPECT_EQ(r.lineNo(), "30");
    r.type("", "@X = 3");
    r.cmd("CmdNext")->click();
    r.expectOneError("Maximum number of Controls Entered");
    EXPECT_EQ(r.lineNo(), "30");
    EXPECT_EQ(r.st.control.Lines[30].ThenText, "@X = 3");
    EXPECT_EQ(r.txtThen()->toPlainText(), "@X = 3");
}

TEST(ControlWindow, PrevStopsAtLineOneWithoutAMessage) {
    Rig r;
    r.type("", "@X = 1");
    r.cmd("CmdPrev")->click();
    EXPECT_TRUE(r.prompt.messages.empty());
    EXPECT_EQ(r.lineNo(), "1");
    EXPECT_EQ(r.st.control.Lines[1].ThenText, "@X = 1");
}

TEST(ControlWindow, InsertOnLineThirtyIsRefused) {
    Rig r;
    for (int i = 1; i < 30; ++i) r.cmd("CmdNext")->click();
    r.st.control.Lines[30].ThenText = "@X = 1";
    r.type("", "@X = 1");
    r.cmd("CmdInsert")->click();
    r.expectOneError("Cannot Insert Line on Last line No.");
    EXPECT_EQ(r.txtThen()->toPlainText(), "@X = 1");
    EXPECT_EQ(r.st.control.Lines[30].ThenText, "@X = 1");
}

TEST(ControlWindow, InsertMovesLinesDownAndEmptiesTheBoxes) {
    Rig r;
    r.type("", "@X = 1");
    r.cmd("CmdNext")->click();
    r.cmd("CmdPrev")->click();
    r.chk("ChkIf")->setChecked(true);
    r.cmd("CmdInsert")->click();
    EXPECT_TRUE(r.prompt.messages.empty());
    EXPECT_EQ(r.txtThen()->toPlainText(), "");
    EXPECT_TRUE(r.chk("ChkIf")->isChecked());  // the check box is not one of the boxes emptied
    EXPECT_EQ(r.st.control.Lines[1].ThenOnRise, 0);
    EXPECT_EQ(r.st.control.Lines[2].ThenText, "@X = 1");
    EXPECT_EQ(r.st.control.Lines[1].ThenText, "");
}

TEST(ControlWindow, DeleteAsksWithOptionAndOnYesShowsTheNextLineInItsPlace) {
    Rig r;
    r.type("", "@X = 1");
    r.cmd("CmdNext")->click();
    r.type("", "@B = 2");
    r.cmd("CmdPrev")->click();
    r.cmd("CmdDelete")->click();  // No: nothing changes
    ASSERT_EQ(r.prompt.questions.size(), 1u);
    EXPECT_EQ(r.prompt.questions[0], (Shown{"Do You Wish to Delete This Line", "Option"}));
    EXPECT_EQ(r.txtThen()->toPlainText(), "@X = 1");
    r.prompt.yesNoAnswers = {true};
    r.cmd("CmdDelete")->click();
    EXPECT_EQ(r.txtThen()->toPlainText(), "@B = 2");
    EXPECT_EQ(r.st.control.Lines[1].ThenText, "@B = 2");
    EXPECT_EQ(r.st.control.Lines[2].ThenText, "");
}

TEST(ControlWindow, LinesAfterTheFirstGapAreKeptButNeverRun) {
    Rig r;
    r.type("", "@X = 1");
    r.cmd("CmdNext")->click();
    r.cmd("CmdNext")->click();  // line 2 left empty
    r.type("", "@B = 9");
    r.chk("ChkEnableControl")->setChecked(true);
    r.cmd("CmdExit")->click();
    EXPECT_EQ(r.st.control.ControlCount, 2);
    EXPECT_EQ(r.st.control.Lines[3].ThenText, "@B = 9");
    r.set(kB, 0);
    r.set(kX, 0);
    Tick(r.st);
    EXPECT_EQ(r.value(kX), 1.0f);
    EXPECT_EQ(r.value(kB), 0.0f);
}

TEST(ControlWindow, ChoosingATagAppendsItToTheBoxThatLastHadTheFocus) {
    Rig r;
    r.txtIf()->setText("@A > ");
    r.txtThen()->setFocus();
    QTest::keyClicks(r.txtThen(), "@X = ");
    r.cboTag()->setFocus();  // the list itself is no text box
    const int tank = r.cboTag()->findText("TANK1");
    ASSERT_GE(tank, 0);
    r.cboTag()->setCurrentIndex(tank);
    emit r.cboTag()->activated(tank);
    EXPECT_EQ(r.txtThen()->toPlainText(), "@X = @TANK1");
    EXPECT_EQ(r.txtIf()->text(), "@A > ");
    EXPECT_TRUE(r.txtThen()->hasFocus());  // the box gets the focus back

    r.txtIf()->setFocus();
    emit r.cboTag()->activated(r.cboTag()->findText("B"));
    EXPECT_EQ(r.txtIf()->text(), "@A > @B");
}

TEST(ControlWindow, TheArrowKeysOpenTheTagListInsteadOfChoosing) {
    Rig r;
    r.txtIf()->setFocus();
    r.cboTag()->setFocus();
    QTest::keyClick(r.cboTag(), Qt::Key_Down);
    EXPECT_EQ(r.txtIf()->text(), "");
    r.cboTag()->hidePopup();
}

TEST(ControlWindow, WorksFromTheKeyboardAlone) {
    Rig r;
    r.txtIf()->setFocus();
    QTest::keyClicks(r.txtIf(), "@a > 1");
    QTest::keyClick(r.txtIf(), Qt::Key_Tab);
    ASSERT_TRUE(r.txtThen()->hasFocus());
    QTest::keyClicks(r.txtThen(), "@b = 3");
    QTest::keyClick(r.txtThen(), Qt::Key_Return);
    QTest::keyClicks(r.txtThen(), "@x = 4");
    test::AltKey(r.w.get(), Qt::Key_N);
    EXPECT_TRUE(r.prompt.messages.empty());
    EXPECT_EQ(r.lineNo(), "2");
    EXPECT_EQ(r.st.control.Lines[1].ThenText, "@b = 3\r\n@x = 4");
    EXPECT_EQ(r.value(kB), 3.0f);
    test::AltKey(r.w.get(), Qt::Key_X);
    EXPECT_FALSE(r.w->isVisible());
    EXPECT_EQ(r.st.control.ControlCount, 2);
}

}  // namespace kova
