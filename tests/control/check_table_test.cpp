#include <gtest/gtest.h>

#include "control/compiler.h"
#include "control/line_check.h"
#include "control_rig.h"

namespace kova {

namespace {
void storeChecked(test::Rig& r, int n, const std::string& ifText, const std::string& thenText,
                  const std::string& elseText = "") {
    const LineCheck c = CheckLineTexts(r.st, nullptr, ifText, thenText, elseText);
    ASSERT_TRUE(c.ok) << c.message;
    ControlLine& l = r.st.control.Lines[n];
    l.IfText = ifText;
    l.ThenText = thenText;
    l.ElseText = elseText;
    l.IfCode = c.ifCode;
    l.ThenCode = c.thenCode;
    l.ElseCode = c.elseCode;
}
}  // namespace

TEST(CheckControlTable, AGoodTableHasNoProblems) {
    test::Rig r;
    storeChecked(r, 1, "@A>1", "@DO1 = 1\r\n@X = SIN(@A)", "@DO1 = 0");
    storeChecked(r, 2, "", "@AO1 = 50");
    EXPECT_TRUE(CheckControlTable(r.st).empty());
}

TEST(CheckControlTable, ReportsEachBadPartWithItsLineNumber) {
    test::Rig r;
    storeChecked(r, 1, "@A>1", "@X = 1");
    ControlLine& l3 = r.st.control.Lines[3];
    l3.IfText = "@NOSUCH > 1";
    l3.ThenText = "@X = 1 +";
    l3.ElseText = "@X = 1";
    r.st.control.Lines[5].ElseText = "@X = FOO(1)";
    const std::vector<std::string> expected = {
        "Control line 3: Unknown Token @NOSUCH in If Statement",
        "Control line 3: Syntax Error in Then Statement",
        "Control line 5: Unknown Token FOO in Else Statement",
    };
    EXPECT_EQ(CheckControlTable(r.st), expected);
}

TEST(CheckControlTable, ChangesNoTagAndNoOutput) {
    test::Rig r;
    storeChecked(r, 1, "", "@DO1 = 1\r\n@AO1 = 50\r\n@X = 3");
    r.st.control.Lines[2].ThenText =
        "@DO1 = 2";  // would be refused when executed: not executed here
    r.st.control.Lines[2].IfCode = ",";
    r.st.control.Lines[2].ThenCode = "@DO1,2,!";
    const TagTable tags = r.st.tags;
    EXPECT_TRUE(CheckControlTable(r.st).empty());
    EXPECT_EQ(r.st.tags, tags);
    EXPECT_EQ(r.st.daq.DigitalOutputImage, 0);
    EXPECT_EQ(r.st.daq.AnalogOutputValues[1], 0);
    EXPECT_EQ(r.st.daq.Summary.DigitalOutputsPending, 0);
}

TEST(CheckControlTable, AnIfThatIsNoTruthValueIsASyntaxError) {
    test::Rig r;
    storeChecked(r, 1, "@A>1", "@X = 1");
    r.st.control.Lines[1].IfText = "@A";
    EXPECT_EQ(CheckControlTable(r.st),
              std::vector<std::string>{"Control line 1: Syntax Error in If Statement"});
}

TEST(CheckControlTable, CodesThatNoLongerMatchTheirTextsAreReported) {
    test::Rig r;
    storeChecked(r, 2, "@A>1", "@X = 1");
    // The tag editor renames A to ALPHA and rewrites the texts, not the codes.
    r.st.tags[test::kA].TagName = "ALPHA";
    RebuildTagNameIndex(r.st.tags, r.st.nameIndex);
    r.st.control.Lines[2].IfText = "@ALPHA>1";
    EXPECT_EQ(CheckControlTable(r.st),
              std::vector<std::string>{"Control line 2: Stored Code Does Not Match The Statement "
                                       "Text. Check The Line In The Editor"});
}

TEST(CheckControlTable, ALineTooLongForItsRecordIsReported) {
    test::Rig r;
    ControlLine& l = r.st.control.Lines[4];
    l.IfText = "@A>1";
    l.IfCode = "@A,1,>,";
    l.ThenText = std::string(60, ' ') + "@X = 1";
    l.ThenCode = "@X,1,!";
    l.ElseText = std::string(40, ' ') + "@X = 2";
    l.ElseCode = "@X,2,!";
    EXPECT_EQ(CheckControlTable(r.st),
              std::vector<std::string>{
                  "Control line 4: Control Line Too Long. The If, Then and Else texts with "
                  "their compiled codes must fit in 128 bytes; shorten them"});
}

TEST(FindControlLineProblems, ExecutesOnTheScratchStationOnly) {
    test::Rig r;
    test::Rig scratch;  // the same tags
    storeChecked(r, 1, "", "@DO1 = 1");
    r.st.control.Lines[2].ThenText = "@DO1 = 2";  // compiles; executing it is refused
    r.st.control.Lines[2].ThenCode = "@DO1,2,!";
    const TagTable tags = r.st.tags;
    const std::vector<ControlLineProblem> problems = FindControlLineProblems(r.st, &scratch.st);
    ASSERT_EQ(problems.size(), 1u);
    EXPECT_EQ(problems[0].line, 2);
    EXPECT_EQ(problems[0].message, "Syntax Error in Then Statement");
    EXPECT_TRUE(problems[0].editorRefuses);
    EXPECT_EQ(r.st.tags, tags);
    EXPECT_EQ(r.st.daq.DigitalOutputImage, 0);
    EXPECT_NE(scratch.st.daq.DigitalOutputImage, 0);  // line 1 ran there
}

TEST(ControlRecordBytes, SixTextsWithLengthsAndTwoIntegers) {
    ControlLine l;
    EXPECT_EQ(ControlRecordBytes(l), 16u);
    l.IfText = "\xC3\xA9";  // one byte in Windows-1252
    l.ThenCode = "@X,1,!";
    EXPECT_EQ(ControlRecordBytes(l), 23u);
    l.ElseText = "\xE2\x9C\x93";
    EXPECT_EQ(ControlRecordBytes(l), std::nullopt);
}

}  // namespace kova
