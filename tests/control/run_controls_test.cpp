#include "control/run_controls.h"

#include <gtest/gtest.h>

#include "control/compiler.h"
#include "control/evaluator.h"
#include "control_rig.h"

namespace kova {

using test::kA;
using test::kB;
using test::kDo1;
using test::kX;

namespace {

// Stores a line as the editor would after a successful check: texts and their codes.
void setLine(test::Rig& r, int n, const std::string& ifText, const std::string& thenText,
             const std::string& elseText = "", bool onRise = false) {
    ControlLine& line = r.st.control.Lines[n];
    std::string token;
    line.IfText = ifText;
    EXPECT_EQ(CompileIf(r.st, ifText, line.IfCode, token), 1) << ifText;
    auto part = [&](const std::string& text, std::string& code) {
        code.clear();
        std::size_t pos = 0;
        while (pos < text.size()) {
            std::size_t nl = text.find('\n', pos);
            if (nl == std::string::npos) nl = text.size();
            std::string c;
            EXPECT_EQ(CompileAssignment(r.st, text.substr(pos, nl - pos), c, token), 1) << text;
            code += c + "!";
            pos = nl + 1;
        }
    };
    line.ThenText = thenText;
    part(thenText, line.ThenCode);
    line.ElseText = elseText;
    part(elseText, line.ElseCode);
    line.ThenOnRise = onRise ? 1 : 0;
}

void enable(test::Rig& r) {
    r.st.switches.ControlsEnabled = 1;
    r.st.control.ControlCount = ComputeControlCount(r.st.control);
}

}  // namespace

TEST(RunControls, DisabledRunsNothingWritesNothingAndKeepsStartUpFlag) {
    test::Rig r;
    setLine(r, 1, "", "@X = 5\n@DO1 = 1");
    r.st.control.ControlCount = ComputeControlCount(r.st.control);
    r.st.switches.ControlsEnabled = 0;
    r.st.daq.Summary.AnalogOutputsPending = -1;  // an operator write waiting
    RunControls(r.st);
    EXPECT_EQ(r.value(kX), 0.0f);
    EXPECT_EQ(r.st.daq.DigitalOutputImage, 0);
    EXPECT_EQ(r.st.control.StartUpFlag, 0);
    EXPECT_EQ(r.st.daq.Summary.AnalogOutputsPending, -1);  // nothing sent
    EXPECT_EQ(r.st.control.Lines[1].LastResult, 0);
}

TEST(RunControls, ZeroControlCountRunsNothing) {
    test::Rig r;
    setLine(r, 1, "", "@X = 5");
    r.st.switches.ControlsEnabled = 1;
    r.st.control.ControlCount = 0;
    RunControls(r.st);
    EXPECT_EQ(r.value(kX), 0.0f);
    EXPECT_EQ(r.st.control.StartUpFlag, 0);
}

TEST(RunControls, FirstPassSetsStartUpFlag) {
    test::Rig r;
    setLine(r, 1, "@SU=0", "@X = @X + 1");
    enable(r);
    r.st.tags[kTagSU].Value = r.st.control.StartUpFlag;  // as the scan does before the call
    RunControls(r.st);
    EXPECT_EQ(r.st.control.StartUpFlag, 1);
    r.st.tags[kTagSU].Value = r.st.control.StartUpFlag;
    RunControls(r.st);
    EXPECT_EQ(r.value(kX), 1.0f);  // only on the start-up pass
}

TEST(RunControls, TrueIfRunsThenOnEveryPass) {
    test::Rig r;
    setLine(r, 1, "@A>1", "@X = @X + 1", "@B = @B + 1");
    enable(r);
    r.set(kA, 2);
    for (int i = 0; i < 3; ++i) RunControls(r.st);
    EXPECT_EQ(r.value(kX), 3.0f);
    EXPECT_EQ(r.value(kB), 0.0f);
    EXPECT_EQ(r.st.control.Lines[1].LastResult, 1);
}

TEST(RunControls, FalseIfRunsElseOnEveryPassEvenWithThenOnRise) {
    test::Rig r;
    setLine(r, 1, "@A>1", "@X = @X + 1", "@B = @B + 1", true);
    enable(r);
    for (int i = 0; i < 3; ++i) RunControls(r.st);
    EXPECT_EQ(r.value(kB), 3.0f);
    EXPECT_EQ(r.value(kX), 0.0f);
    EXPECT_EQ(r.st.control.Lines[1].LastResult, 0);
}

TEST(RunControls, ThenOnRiseRunsOnlyWhenTheIfGoesFromFalseToTrue) {
    test::Rig r;
    setLine(r, 1, "@A>1", "@X = @X + 1", "", true);
    enable(r);
    r.set(kA, 2);
    RunControls(r.st);  // LastResult starts at 0: the first true pass runs THEN
    RunControls(r.st);
    RunControls(r.st);
    EXPECT_EQ(r.value(kX), 1.0f);
    r.set(kA, 0);
    RunControls(r.st);
    EXPECT_EQ(r.value(kX), 1.0f);
    r.set(kA, 2);
    RunControls(r.st);
    RunControls(r.st);
    EXPECT_EQ(r.value(kX), 2.0f);
}

TEST(RunControls, ThenOnRiseAfterAnErrorPassRunsAgain) {
    test::Rig r;
    setLine(r, 1, "@A", "@X = @X + 1", "", true);
    enable(r);
    r.st.control.Lines[1].LastResult = 1;
    RunControls(r.st);  // "@A" is no truth value
    EXPECT_EQ(r.st.control.Lines[1].LastResult, -1);
    EXPECT_EQ(r.value(kX), 0.0f);
}

TEST(RunControls, IfErrorRunsNeitherPart) {
    test::Rig r;
    setLine(r, 1, "@A", "@X = 1", "@B = 1");
    enable(r);
    r.set(kA, 5);
    RunControls(r.st);
    EXPECT_EQ(r.st.control.Lines[1].LastResult, -1);
    EXPECT_EQ(r.value(kX), 0.0f);
    EXPECT_EQ(r.value(kB), 0.0f);
}

TEST(RunControls, UnknownTagInIfGivesMinusTwoAndRunsNothing) {
    test::Rig r;
    setLine(r, 1, "@A>1", "@X = 1", "@B = 1");
    enable(r);
    r.st.tags[kA].TagName = "ALPHA";  // renamed after the line was checked
    RebuildTagNameIndex(r.st.tags, r.st.nameIndex);
    RunControls(r.st);
    EXPECT_EQ(r.st.control.Lines[1].LastResult, -2);
    EXPECT_EQ(r.value(kX), 0.0f);
    EXPECT_EQ(r.value(kB), 0.0f);
}

TEST(RunControls, DigitalOutputBitIsSetOnceAndSentAfterTheLastLine) {
    test::Rig r;
    setLine(r, 1, "", "@DO1 = 2\n@X = 7");  // the failing assignment does not stop the line
    setLine(r, 2, "", "@DO1 = 1");
    setLine(r, 3, "@DO1=1", "@B = 1");  // the bit is already in the image for later lines
    enable(r);
    RunControls(r.st);
    EXPECT_EQ(r.value(kX), 7.0f);
    EXPECT_EQ(r.value(kB), 1.0f);
    EXPECT_EQ(r.st.daq.DigitalOutputImage, 0x0001);
    EXPECT_EQ(r.value(kDo1), 1.0f);
    EXPECT_EQ(r.st.daq.Summary.DigitalOutputsPending, 0);  // sent and cleared
    RunControls(r.st);
    EXPECT_EQ(r.st.daq.Summary.DigitalOutputsPending, 0);
}

TEST(RunControls, TheLastWriteOfAPassIsTheOneSent) {
    test::Rig r;
    setLine(r, 1, "", "@AO2 = 100");
    setLine(r, 2, "", "@AO2 = 200");
    enable(r);
    RunControls(r.st);
    EXPECT_EQ(r.st.daq.AnalogOutputValues[2], 200);
    EXPECT_EQ(r.st.daq.Summary.AnalogOutputsPending, 0);
}

TEST(RunControls, PendingOperatorWritesAreSentToo) {
    test::Rig r;
    setLine(r, 1, "", "@X = 1");
    enable(r);
    r.st.daq.Summary.AnalogOutputsPending = -1;
    r.st.daq.Summary.DigitalOutputsPending = -1;
    RunControls(r.st);
    EXPECT_EQ(r.st.daq.Summary.AnalogOutputsPending, 0);
    EXPECT_EQ(r.st.daq.Summary.DigitalOutputsPending, 0);
}

TEST(RunControls, AnalogOutputOfAMillionWritesRawMax) {
    test::Rig r;
    setLine(r, 1, "", "@AO1 = 1000000");
    enable(r);
    RunControls(r.st);
    EXPECT_EQ(r.st.daq.AnalogOutputValues[1], r.st.profile.RawMax);
    EXPECT_EQ(r.st.daq.AnalogOutputValues[1], 4095);
}

TEST(RunControls, DivisionByZeroAndLogOfZeroGiveZero) {
    test::Rig r;
    setLine(r, 1, "", "@X = 5/@A\n@B = LOG(@A)");
    enable(r);
    r.set(kX, 3);
    r.set(kB, 3);
    RunControls(r.st);
    EXPECT_EQ(r.value(kX), 0.0f);
    EXPECT_EQ(r.value(kB), 0.0f);
}

TEST(RunControls, FailingArithmeticDoesNotStopThePass) {
    test::Rig r;
    setLine(r, 1, "", "@X = SQR(0-1)\n@A = 1");
    setLine(r, 2, "", "@B = 10^39");
    setLine(r, 3, "", "@X = 2");
    enable(r);
    RunControls(r.st);
    EXPECT_EQ(r.value(kA), 1.0f);
    EXPECT_EQ(r.value(kB), 0.0f);
    EXPECT_EQ(r.value(kX), 2.0f);
    EXPECT_EQ(r.st.control.StartUpFlag, 1);
}

TEST(RunControls, LinesAfterTheFirstEmptyLineNeverRun) {
    test::Rig r;
    setLine(r, 1, "", "@X = 1");
    setLine(r, 2, "", "");
    setLine(r, 3, "", "@B = 1");
    enable(r);
    EXPECT_EQ(r.st.control.ControlCount, 2);
    RunControls(r.st);
    EXPECT_EQ(r.value(kX), 1.0f);
    EXPECT_EQ(r.value(kB), 0.0f);
    EXPECT_EQ(r.st.control.Lines[3].ThenText, "@B = 1");  // kept in the table
}

TEST(RunControls, APartWithEmptyTextDoesNotRunItsStaleCode) {
    test::Rig r;
    setLine(r, 1, "", "@X = 1", "@B = 1");
    r.st.control.Lines[1].ThenText = "";  // as after a delete moved texts but not codes
    enable(r);
    r.st.control.ControlCount = 1;
    RunControls(r.st);
    EXPECT_EQ(r.value(kX), 0.0f);
}

TEST(RunControls, ChangedCodeTakesEffectOnTheNextPass) {
    test::Rig r;
    setLine(r, 1, "@A>1", "@X = 1", "@X = 2");
    enable(r);
    RunControls(r.st);
    EXPECT_EQ(r.value(kX), 2.0f);
    setLine(r, 1, "@A<1", "@X = 3", "@X = 4");
    RunControls(r.st);
    EXPECT_EQ(r.value(kX), 3.0f);
    EXPECT_EQ(r.st.control.Compiled[1].ifSource, "@A,1,<,");
    EXPECT_EQ(r.st.control.Compiled[1].thenSource, "@X,3,!");
    // A code replaced wholesale (a setup file loaded) is picked up as well.
    r.st.control.Lines[1].ThenCode = "@X,9,!";
    RunControls(r.st);
    EXPECT_EQ(r.value(kX), 9.0f);
}

TEST(RunControls, TagNamesAreResolvedOnEveryPass) {
    test::Rig r;
    setLine(r, 1, "", "@X = @A");
    enable(r);
    r.set(kA, 5);
    RunControls(r.st);
    EXPECT_EQ(r.value(kX), 5.0f);
    // Another tag takes the name A: the cached line follows the index, as the text would.
    r.st.tags[kA].TagName = "OLD";
    r.st.tags[kB].TagName = "A";
    RebuildTagNameIndex(r.st.tags, r.st.nameIndex);
    r.set(kB, 8);
    RunControls(r.st);
    EXPECT_EQ(r.value(kX), 8.0f);
}

TEST(RunControls, CachedPassGivesTheSameResultsAsTheTextEvaluators) {
    // Two stations with the same table: one runs the scan's pass, the other evaluates the
    // code texts line by line with EvaluateIf and ExecuteAssignment.
    test::Rig cached;
    test::Rig text;
    for (test::Rig* r : {&cached, &text}) {
        setLine(*r, 1, "@A<10", "@A = @A + 1.5\n@X = SIN(@A)*100", "@A = 0");
        setLine(*r, 2, "@X>50|@A=0", "@DO1 = 1\n@AO2 = @X*40", "@DO1 = 0");
        setLine(*r, 3, "@A>3&@A<8", "@B = @B^1.01 + LOG(@A)", "@B = ABS(@B - 1)");
        enable(*r);
    }
    for (int pass = 0; pass < 40; ++pass) {
        RunControls(cached.st);
        for (int i = 1; i <= text.st.control.ControlCount; ++i) {
            ControlLine& line = text.st.control.Lines[i];
            const std::int16_t res = EvaluateIf(text.st, line.IfCode);
            line.LastResult = res;
            const std::string& part = res > 0    ? line.ThenCode
                                      : res == 0 ? line.ElseCode
                                                 : std::string();
            std::size_t pos = 0;
            while (pos < part.size()) {
                const std::size_t bang = part.find('!', pos);
                ExecuteAssignment(text.st, part.substr(pos, bang - pos));
                pos = bang + 1;
            }
        }
        text.st.daq.Summary = cached.st.daq.Summary;  // both sent
        ASSERT_EQ(cached.st.tags, text.st.tags) << "pass " << pass;
        ASSERT_EQ(cached.st.daq.AnalogOutputValues, text.st.daq.AnalogOutputValues);
        ASSERT_EQ(cached.st.daq.DigitalOutputImage, text.st.daq.DigitalOutputImage);
    }
}

TEST(ClearControls, EmptiesEveryLineAndSwitchesControlOff) {
    test::Rig r;
    setLine(r, 1, "@A>1", "@X = 1", "@X = 2", true);
    setLine(r, 30, "", "@B = 1");
    r.st.control.Lines[1].LastResult = 1;
    enable(r);
    RunControls(r.st);
    ClearControls(r.st);
    for (int i = 1; i <= kControlLines; ++i) EXPECT_EQ(r.st.control.Lines[i], ControlLine{}) << i;
    EXPECT_EQ(r.st.switches.ControlsEnabled, 0);
    EXPECT_EQ(r.st.control.ControlCount, 0);
    EXPECT_EQ(r.st.control.StartUpFlag, 1);  // once per program run, never back
}

TEST(ComputeControlCount, FirstLineWithNeitherThenNorElse) {
    ControlState c;
    EXPECT_EQ(ComputeControlCount(c), 1);
    c.Lines[1].ThenText = "@A = 1";
    c.Lines[2].ElseText = "@A = 2";  // an ELSE alone keeps the line in the program
    c.Lines[3].IfText = "@A>1";      // an IF alone does not
    EXPECT_EQ(ComputeControlCount(c), 3);
    for (int i = 1; i <= kControlLines; ++i) c.Lines[i].ThenText = "@A = 1";
    EXPECT_EQ(ComputeControlCount(c), 30);
}

}  // namespace kova
