#include "control/control_editor.h"

#include <gtest/gtest.h>

#include "control/run_controls.h"
#include "control_rig.h"

namespace kova {

using test::kA;
using test::kB;
using test::kX;
using test::Shown;

namespace {

Shown error(const std::string& text) {
    return {text, "Error"};
}

struct EditorRig : test::Rig {
    ControlForm form;
    EditorRig() { form = OpenControlForm(st); }

    // Types a line into the boxes and presses Next.
    void enterAndNext(const std::string& ifText, const std::string& thenText,
                      const std::string& elseText = "") {
        form.TxtIf = ifText;
        form.TxtThen = thenText;
        form.TxtElse = elseText;
        ControlFormNext(st, form);
    }

    // Checks the boxes as typed and expects exactly one message, titled "Error".
    void expectRefused(const std::string& message) {
        const ControlLine before = st.control.Lines[form.LblLineNo];
        const int shown = form.LblLineNo;
        prompt.messages.clear();
        ControlFormNext(st, form);
        ASSERT_EQ(prompt.messages.size(), 1u);
        EXPECT_EQ(prompt.messages[0], error(message));
        EXPECT_EQ(form.LblLineNo, shown);
        EXPECT_EQ(st.control.Lines[shown], before);  // nothing stored
    }
};

}  // namespace

TEST(ControlEditor, OpensOnLineOneWithTheUsedTagNamesInTagOrder) {
    test::Rig r;
    r.st.tags[3].TagName = "";  // an unused slot is not listed
    r.st.control.Lines[1].IfText = "@A>1";
    r.st.control.Lines[1].ThenText = "@B = 1";
    r.st.control.Lines[1].ThenOnRise = 1;
    r.st.switches.ControlsEnabled = 1;
    const ControlForm f = OpenControlForm(r.st);
    EXPECT_EQ(f.LblLineNo, 1);
    EXPECT_EQ(f.CboTag, (std::vector<std::string>{"A", "B", "TANK1", "AO1", "DO1", "PUMP", "DI1",
                                                  "FLAG", "AO2"}));
    EXPECT_EQ(f.TxtIf, "@A>1");
    EXPECT_EQ(f.TxtThen, "@B = 1");
    EXPECT_EQ(f.TxtElse, "");
    EXPECT_TRUE(f.ChkIf);
    EXPECT_TRUE(f.ChkEnableControl);
}

TEST(ControlEditor, CaptionsOfTheCheckBoxes) {
    EXPECT_STREQ(kChkIfCaption, "Carry out Then statement only when If goes False to True");
    EXPECT_STREQ(kChkEnableControlCaption, "Enable Control Language");
}

TEST(ControlEditor, NextChecksStoresAndShowsTheNextLine) {
    EditorRig r;
    r.st.control.Lines[2].IfText = "@B<1";
    r.form.ChkIf = true;
    r.form.ChkEnableControl = true;
    r.enterAndNext("@a > 1", "@x = 5", "@X = 6");
    EXPECT_TRUE(r.prompt.messages.empty());
    const ControlLine& line = r.st.control.Lines[1];
    EXPECT_EQ(line.IfText, "@a > 1");   // texts are stored as typed
    EXPECT_EQ(line.IfCode, "@A,1,>,");  // and compiled upper-cased
    EXPECT_EQ(line.ThenText, "@x = 5");
    EXPECT_EQ(line.ThenCode, "@X,5,!");
    EXPECT_EQ(line.ElseCode, "@X,6,!");
    EXPECT_EQ(line.ThenOnRise, 1);
    EXPECT_EQ(r.st.switches.ControlsEnabled, 1);
    EXPECT_EQ(r.form.LblLineNo, 2);
    EXPECT_EQ(r.form.TxtIf, "@B<1");
    EXPECT_FALSE(r.form.ChkIf);
}

TEST(ControlEditor, CheckExecutesTheAssignmentsOnceAndReallyWrites) {
    EditorRig r;
    r.set(kA, 0);  // the IF is false, still both parts are executed by the check
    r.enterAndNext("@A>1", "@DO1 = 1\r\n@X = 5", "@B = 7");
    EXPECT_EQ(r.value(kX), 5.0f);
    EXPECT_EQ(r.value(kB), 7.0f);
    EXPECT_EQ(r.st.daq.DigitalOutputImage, 0x0001);
    EXPECT_EQ(r.st.daq.Summary.DigitalOutputsPending, -1);  // sent by the next pass
    r.st.switches.ControlsEnabled = 1;
    r.st.control.ControlCount = 1;
    RunControls(r.st);
    EXPECT_EQ(r.st.daq.Summary.DigitalOutputsPending, 0);
}

TEST(ControlEditor, TwoThenLinesGiveTwoCodesAndBothTakeEffectAtOnce) {
    EditorRig r;
    r.enterAndNext("", "@A = 1\r\n@B = 2");
    EXPECT_EQ(r.st.control.Lines[1].ThenCode, "@A,1,!@B,2,!");
    EXPECT_EQ(r.value(kA), 1.0f);
    EXPECT_EQ(r.value(kB), 2.0f);
}

TEST(ControlEditor, ABareLineFeedSeparatesLinesTooAndBlankLinesAreSkipped) {
    EditorRig r;
    r.enterAndNext("", "@A = 1\n\r\n  \n@B = 2\r\n");
    EXPECT_EQ(r.st.control.Lines[1].ThenCode, "@A,1,!@B,2,!");
}

TEST(ControlEditor, EmptyIfPassesAndIsAlwaysTrue) {
    EditorRig r;
    r.enterAndNext("", "@X = @X + 1");
    EXPECT_TRUE(r.prompt.messages.empty());
    EXPECT_EQ(r.st.control.Lines[1].IfCode, ",");
    r.st.switches.ControlsEnabled = 1;
    r.st.control.ControlCount = 1;
    RunControls(r.st);
    RunControls(r.st);
    EXPECT_EQ(r.value(kX), 3.0f);  // once by the check, twice by the passes
}

TEST(ControlEditor, EmptyThenAndElseGiveEmptyCodes) {
    EditorRig r;
    r.enterAndNext("@A>1", "  ", "");
    EXPECT_EQ(r.st.control.Lines[1].ThenCode, "");
    EXPECT_EQ(r.st.control.Lines[1].ElseCode, "");
}

TEST(ControlEditor, IfMessages) {
    EditorRig r;
    r.form.TxtIf = "@A >";
    r.expectRefused("Syntax Error in If Statement");
    r.form.TxtIf = "@NOSUCH > 1";
    r.expectRefused("Unknown Token @NOSUCH in If Statement");
    r.form.TxtIf = "@a > 1 and @b < 2";
    r.expectRefused("Unknown Token AND in If Statement");
    r.form.TxtIf = "(@A>1";
    r.expectRefused("Syntax Error in If Statement");
    r.form.TxtIf = "@A>1)";
    r.expectRefused("Syntax Error in If Statement");
    r.form.TxtIf = "@TANK1";  // compiles, but its value is no truth value
    r.expectRefused("Syntax Error in If Statement");
}

TEST(ControlEditor, ThenMessages) {
    EditorRig r;
    r.form.TxtThen = "@X = 1 +";
    r.expectRefused("Syntax Error in Then Statement");
    r.form.TxtThen = "@X = 1\r\n@NOSUCH = 2";
    r.expectRefused("Unknown Token @NOSUCH in Then Statement");
    r.form.TxtThen = "@X = -1";
    r.expectRefused("Syntax Error in Then Statement");
    r.form.TxtThen = "@DO1 = 2";  // refused by the target when executed
    r.expectRefused("Syntax Error in Then Statement");
    EXPECT_EQ(r.st.daq.DigitalOutputImage, 0);
    r.form.TxtThen = "= 1";  // no target: an unknown (empty) token, hence two blanks
    r.expectRefused("Unknown Token  in Then Statement");
}

TEST(ControlEditor, ElseMessages) {
    EditorRig r;
    r.form.TxtElse = "@X 1";
    r.expectRefused("Syntax Error in Else Statement");
    r.form.TxtElse = "@X = FOO(1)";
    r.expectRefused("Unknown Token FOO in Else Statement");
    r.form.TxtElse = "@FLAG = 3";
    r.expectRefused("Syntax Error in Else Statement");
}

TEST(ControlEditor, TheCheckStopsAtTheFirstProblem) {
    EditorRig r;
    r.form.TxtIf = "@A >";
    r.form.TxtThen = "@NOSUCH = 1";
    r.form.TxtElse = "@X = ";
    r.expectRefused("Syntax Error in If Statement");
    // A THEN that executes before the ELSE fails has written already.
    r.form.TxtIf = "";
    r.form.TxtThen = "@X = 4";
    r.form.TxtElse = "@Y = 1";
    r.expectRefused("Unknown Token @Y in Else Statement");
    EXPECT_EQ(r.value(kX), 4.0f);
}

TEST(ControlEditor, NextOnLineThirtyStoresItShowsTheMessageAndStays) {
    EditorRig r;
    r.form.LblLineNo = 30;
    ShowControlLine(r.st, r.form);
    r.enterAndNext("", "@X = 30");
    ASSERT_EQ(r.prompt.messages.size(), 1u);
    EXPECT_EQ(r.prompt.messages[0], error("Maximum number of Controls Entered"));
    EXPECT_EQ(r.form.LblLineNo, 30);
    EXPECT_EQ(r.st.control.Lines[30].ThenText, "@X = 30");
    EXPECT_EQ(r.st.control.Lines[30].ThenCode, "@X,30,!");
    EXPECT_EQ(r.form.TxtThen, "@X = 30");
}

TEST(ControlEditor, PrevStoresAndGoesBackStoppingAtOneWithoutAMessage) {
    EditorRig r;
    r.form.LblLineNo = 2;
    r.form.TxtThen = "@X = 2";
    ControlFormPrev(r.st, r.form);
    EXPECT_EQ(r.form.LblLineNo, 1);
    EXPECT_EQ(r.st.control.Lines[2].ThenText, "@X = 2");
    ControlFormPrev(r.st, r.form);
    EXPECT_EQ(r.form.LblLineNo, 1);
    EXPECT_TRUE(r.prompt.messages.empty());
}

TEST(ControlEditor, PrevDoesNothingMoreWhenTheCheckFails) {
    EditorRig r;
    r.form.LblLineNo = 2;
    r.form.TxtIf = "@A >";
    ControlFormPrev(r.st, r.form);
    EXPECT_EQ(r.form.LblLineNo, 2);
    EXPECT_EQ(r.st.control.Lines[2].IfText, "");
}

TEST(ControlEditor, InsertOnLineThirtyIsRefused) {
    EditorRig r;
    r.st.control.Lines[30].ThenText = "@X = 1";
    r.form.LblLineNo = 30;
    ShowControlLine(r.st, r.form);
    ControlFormInsert(r.st, r.form);
    ASSERT_EQ(r.prompt.messages.size(), 1u);
    EXPECT_EQ(r.prompt.messages[0], error("Cannot Insert Line on Last line No."));
    EXPECT_EQ(r.st.control.Lines[30].ThenText, "@X = 1");
    EXPECT_EQ(r.form.TxtThen, "@X = 1");
}

TEST(ControlEditor, InsertMovesWholeLinesDownAndLosesLineThirty) {
    EditorRig r;
    for (int i = 1; i <= 30; ++i) {
        ControlLine& l = r.st.control.Lines[i];
        l.IfText = "IF" + std::to_string(i);
        l.IfCode = "CODE" + std::to_string(i);
        l.ThenText = "THEN" + std::to_string(i);
        l.LastResult = static_cast<std::int16_t>(i);
        l.ThenOnRise = 1;
    }
    r.form.LblLineNo = 2;
    ShowControlLine(r.st, r.form);
    ControlFormInsert(r.st, r.form);
    EXPECT_TRUE(r.prompt.messages.empty());
    const ControlLine& inserted = r.st.control.Lines[2];
    EXPECT_EQ(inserted.IfText, "");
    EXPECT_EQ(inserted.ThenText, "");
    EXPECT_EQ(inserted.ElseText, "");
    EXPECT_EQ(inserted.ThenOnRise, 0);
    EXPECT_EQ(r.st.control.Lines[1].IfText, "IF1");
    EXPECT_EQ(r.st.control.Lines[3].IfText, "IF2");
    EXPECT_EQ(r.st.control.Lines[3].IfCode, "CODE2");
    EXPECT_EQ(r.st.control.Lines[3].LastResult, 2);
    EXPECT_EQ(r.st.control.Lines[30].IfText, "IF29");
    EXPECT_EQ(r.form.TxtIf, "");
    EXPECT_EQ(r.form.TxtThen, "");
    EXPECT_EQ(r.form.TxtElse, "");
    EXPECT_EQ(r.form.LblLineNo, 2);
}

TEST(ControlEditor, DeleteAsksAndOnNoChangesNothing) {
    EditorRig r;
    r.st.control.Lines[1].ThenText = "@X = 1";
    r.form.TxtThen = "@X = 1";
    ControlFormDelete(r.st, r.form);
    ASSERT_EQ(r.prompt.questions.size(), 1u);
    EXPECT_EQ(r.prompt.questions[0], (Shown{"Do You Wish to Delete This Line", "Option"}));
    EXPECT_EQ(r.st.control.Lines[1].ThenText, "@X = 1");
}

TEST(ControlEditor, DeleteOnYesMovesLinesUpAndClearsOnlyTheTextsOfLineThirty) {
    EditorRig r;
    for (int i = 1; i <= 30; ++i) {
        ControlLine& l = r.st.control.Lines[i];
        l.IfText = "IF" + std::to_string(i);
        l.ThenText = "THEN" + std::to_string(i);
        l.ElseText = "ELSE" + std::to_string(i);
        l.ThenCode = "CODE" + std::to_string(i);
        l.ThenOnRise = 1;
    }
    r.form.LblLineNo = 5;
    ShowControlLine(r.st, r.form);
    r.prompt.yesNoAnswers = {true};
    ControlFormDelete(r.st, r.form);
    EXPECT_EQ(r.st.control.Lines[4].IfText, "IF4");
    EXPECT_EQ(r.st.control.Lines[5].IfText, "IF6");
    EXPECT_EQ(r.st.control.Lines[5].ThenCode, "CODE6");
    EXPECT_EQ(r.st.control.Lines[29].IfText, "IF30");
    const ControlLine& last = r.st.control.Lines[30];
    EXPECT_EQ(last.IfText, "");
    EXPECT_EQ(last.ThenText, "");
    EXPECT_EQ(last.ElseText, "");
    EXPECT_EQ(last.ThenOnRise, 0);
    EXPECT_EQ(last.ThenCode, "CODE30");  // stale, never run without its text
    EXPECT_EQ(r.form.TxtIf, "IF6");
    EXPECT_EQ(r.form.LblLineNo, 5);
}

TEST(ControlEditor, ExitChecksStoresAndSetsControlCountAndTheSwitch) {
    EditorRig r;
    r.enterAndNext("", "@X = 1");
    r.enterAndNext("", "@B = 1");
    r.form.TxtIf = "@A>1";  // line 3: IF only, the end of the program
    r.form.ChkEnableControl = true;
    r.st.control.Lines[4].ThenText = "@A = 1";  // kept, never run
    EXPECT_TRUE(ControlFormExit(r.st, r.form));
    EXPECT_EQ(r.st.control.Lines[3].IfText, "@A>1");
    EXPECT_EQ(r.st.control.ControlCount, 3);
    EXPECT_EQ(r.st.switches.ControlsEnabled, 1);
    r.set(kA, 0);
    RunControls(r.st);
    EXPECT_EQ(r.value(kA), 0.0f);
}

TEST(ControlEditor, ExitStaysOpenWhenTheCheckFails) {
    EditorRig r;
    r.form.TxtThen = "@X = ";
    r.form.ChkEnableControl = true;
    EXPECT_FALSE(ControlFormExit(r.st, r.form));
    EXPECT_EQ(r.prompt.messages.size(), 1u);
    EXPECT_EQ(r.st.switches.ControlsEnabled, 0);
    EXPECT_EQ(r.st.control.ControlCount, 0);
}

TEST(ControlEditor, ExitWithEveryLineUsedRunsThirty) {
    EditorRig r;
    for (int i = 1; i <= 30; ++i) r.st.control.Lines[i].ElseText = "@X = 1";
    r.form.TxtElse = "@X = 1";
    EXPECT_TRUE(ControlFormExit(r.st, r.form));
    EXPECT_EQ(r.st.control.ControlCount, 30);
}

TEST(ControlEditor, ChoosingATagAppendsItToTheBoxThatLastHadTheFocus) {
    EditorRig r;
    r.form.TxtIf = "";
    ControlFormChooseTag(r.form, "TANK1");  // TxtIf has the focus when the window opens
    EXPECT_EQ(r.form.TxtIf, "@TANK1");
    ControlFormFocus(r.form, kFocusThen);
    r.form.TxtThen = "@PUMP = ";
    ControlFormChooseTag(r.form, "A");
    EXPECT_EQ(r.form.TxtThen, "@PUMP = @A");
    ControlFormFocus(r.form, kFocusElse);
    ControlFormChooseTag(r.form, "B");
    EXPECT_EQ(r.form.TxtElse, "@B");
    EXPECT_EQ(r.form.TxtIf, "@TANK1");
}

TEST(ControlEditor, ALineThatWouldNotFitItsRecordIsRefusedBeforeAnythingRuns) {
    EditorRig r;
    // IF "" with its code ",", ELSE "" and "", the two integers: 13 bytes. THEN: five lines
    // of 11 characters with CR LF after each (2 + 65) and five codes "@X,@X,1,+,!" (2 + 55).
    std::string then;
    for (int i = 0; i < 5; ++i) then += "@X = @X + 1\r\n";  // 13 + 67 + 57 = 137
    r.form.TxtThen = then;
    r.expectRefused(
        "Control Line Too Long. The If, Then and Else texts with their compiled codes must fit in "
        "128 bytes; "
        "shorten them");
    EXPECT_EQ(r.value(kX), 0.0f);  // nothing executed
    // The same line one assignment shorter fits.
    r.form.TxtThen = "@X = @X + 1\r\n@X = @X + 1\r\n@X = @X + 1\r\n@X = @X + 1";  // 13 + 52 + 46
    r.prompt.messages.clear();
    ControlFormNext(r.st, r.form);
    EXPECT_TRUE(r.prompt.messages.empty());
    EXPECT_EQ(r.value(kX), 4.0f);
}

TEST(ControlEditor, ExactlyOneHundredAndTwentyEightBytesFit) {
    EditorRig r;
    // IF "" and its code ",": 2 + 0 + 2 + 1; ELSE "" twice: 4; the two integers: 4.
    // THEN "@X =  " + n digits: 2 + 6 + n; its code "@X," + n digits + ",!": 2 + 5 + n.
    // 13 + 15 + 2n = 128 for n = 50.
    const std::string digits = std::string(49, '0') + "1";
    r.form.TxtThen = "@X =  " + digits;
    ControlFormNext(r.st, r.form);
    EXPECT_TRUE(r.prompt.messages.empty());
    EXPECT_EQ(r.form.LblLineNo, 2);
    EXPECT_EQ(r.st.control.Lines[1].ThenCode, "@X," + digits + ",!");
    // One blank more is one byte too many.
    r.form.TxtThen = "@X =   " + digits;
    r.expectRefused(
        "Control Line Too Long. The If, Then and Else texts with their compiled codes must fit in "
        "128 bytes; "
        "shorten them");
}

TEST(ControlEditor, TextThatWindows1252CannotHoldIsRefused) {
    EditorRig r;
    r.form.TxtElse = "@X = 1 \xE2\x9C\x93";  // a check mark
    r.expectRefused(
        "Control Line Contains Characters That Cannot Be Saved. Use only characters of the Western "
        "(Windows-1252) character set");
    // A Windows-1252 character is merely an unknown token.
    r.form.TxtElse = "@X = 1 \xC2\xA7";
    r.expectRefused("Unknown Token \xC2\xA7 in Else Statement");
}

TEST(ControlEditor, LowerCaseTextCompilesLikeUpperCase) {
    EditorRig r;
    r.enterAndNext("@tank1 >= 80 & @di1 = 1", "@pump = 1\r\n@x = sqr(@a)");
    EXPECT_TRUE(r.prompt.messages.empty());
    EXPECT_EQ(r.st.control.Lines[1].IfCode, "@TANK1,80,>=,@DI1,1,=,&,");
    EXPECT_EQ(r.st.control.Lines[1].ThenCode, "@PUMP,1,!@X,1,@A,SQR,!");
}

TEST(ControlEditor, AFailedCheckNamesTheBoxTheTokenAndTheTextLine) {
    EditorRig r;
    r.form.TxtIf = "@a > 1 & @nosuch < 2";
    r.expectRefused("Unknown Token @NOSUCH in If Statement");
    EXPECT_EQ(r.form.FailedBox, "IF");
    EXPECT_EQ(r.form.FailedToken, "@NOSUCH");
    EXPECT_EQ(r.form.FailedLine, 0);

    r.form.TxtIf = "";
    r.form.TxtThen = "@X = 1\r\n\r\n  @X = 1 +";  // a blank line still counts as a text line
    r.expectRefused("Syntax Error in Then Statement");
    EXPECT_EQ(r.form.FailedBox, "THEN");
    EXPECT_EQ(r.form.FailedToken, "");
    EXPECT_EQ(r.form.FailedLine, 2);

    r.form.TxtThen = "";
    r.form.TxtElse = "@X = 2\n@X = foo(1)";
    r.expectRefused("Unknown Token FOO in Else Statement");
    EXPECT_EQ(r.form.FailedBox, "ELSE");
    EXPECT_EQ(r.form.FailedToken, "FOO");
    EXPECT_EQ(r.form.FailedLine, 1);

    r.form.TxtElse = "@X = 1 \xE2\x9C\x93";  // no Windows-1252 byte: the box, no token
    r.expectRefused(
        "Control Line Contains Characters That Cannot Be Saved. Use only characters of the Western "
        "(Windows-1252) character set");
    EXPECT_EQ(r.form.FailedBox, "ELSE");
    EXPECT_EQ(r.form.FailedToken, "");

    r.form.TxtElse = "@X = 3";
    ControlFormNext(r.st, r.form);
    EXPECT_EQ(r.form.LblLineNo, 2);
    EXPECT_EQ(r.form.FailedBox, "");
}

TEST(ControlEditor, AnAssignmentWithoutATargetIsAnUnknownToken) {
    EditorRig r;
    r.form.TxtThen = "@X = 1\r\n = 1";
    r.expectRefused("Unknown Token  in Then Statement");
    EXPECT_EQ(r.form.FailedBox, "THEN");
    EXPECT_EQ(r.form.FailedToken, "");
    EXPECT_EQ(r.form.FailedLine, 1);
}

TEST(ControlEditor, DeletingALineDefaultsToNo) {
    EditorRig r;
    ControlFormDelete(r.st, r.form);
    EXPECT_EQ(r.prompt.questionDefaults, std::vector<DefaultAnswer>{DefaultAnswer::No});
}

TEST(ControlEditor, AnOpenWindowFollowsTheTagTable) {
    EditorRig r;
    r.st.control.Lines[1].IfText = "@A > 1";
    ShowControlLine(r.st, r.form);
    // A rename rewrote line 1 behind the window's back; the boxes were not typed in.
    r.st.control.Lines[1].IfText = "@AA > 1";
    r.st.tags[kA].TagName = "AA";
    ControlFormTablesChanged(r.st, r.form, TableChange::Tags);
    EXPECT_EQ(r.form.TxtIf, "@AA > 1");
    EXPECT_EQ(r.form.CboTag.front(), "AA");
    // Typed text is kept.
    r.form.TxtThen = "@B = 2";
    r.st.control.Lines[1].IfText = "@A > 1";
    ControlFormTablesChanged(r.st, r.form, TableChange::Tags);
    EXPECT_EQ(r.form.TxtIf, "@AA > 1");
    EXPECT_EQ(r.form.TxtThen, "@B = 2");
}

TEST(ControlEditor, ANewConfigurationShowsTheLineAfresh) {
    EditorRig r;
    r.form.TxtIf = "@A > 1";
    r.st.switches.ControlsEnabled = 1;
    ControlFormTablesChanged(r.st, r.form, TableChange::Configuration);
    EXPECT_EQ(r.form.TxtIf, "");
    EXPECT_TRUE(r.form.ChkEnableControl);
}

}  // namespace kova
