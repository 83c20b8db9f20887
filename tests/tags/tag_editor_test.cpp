#include "tags/tag_editor.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <functional>

#include "control/compiler.h"
#include "platform/printer.h"
#include "support/test_support.h"
#include "tags/tag_name_index.h"
#include "tags/tag_table.h"

namespace kova {

namespace {

struct Rig {
    Station st;
    test::ScriptedPrompter prompt;
    TagForm form;

    explicit Rig(int daqType = kDaqTest) {
        st.platform.prompter = &prompt;
        BuildIOList(st.profile, daqType);
        form = OpenTagForm(st);
    }

    // A stored user tag, as if accepted earlier.
    Tag& tag(int n, const std::string& name, const std::string& io) {
        Tag& t = st.tags[n];
        t.TagName = name;
        BindIOName(t, io);
        t.Address = 1;
        t.RawValue1 = 0;
        t.RawValue2 = 4095;
        t.EngValue1 = 0;
        t.EngValue2 = 100;
        ComputeScaling(t);
        return t;
    }
    // Every user tag named (V1..V32, analog variables) so that the whole-table check passes.
    void nameAll() {
        for (int n = 1; n <= kUserTags; ++n) tag(n, "V" + std::to_string(n), "Analog Variable");
        RebuildTagNameIndex(st.tags, st.nameIndex);
    }
    void show(int n) {
        form.LblTag = n;
        ShowTag(st, form);
    }
    // The boxes of an analog input as a user would type them.
    void typeAnalog(const std::string& name, const std::string& io, const std::string& raw1,
                    const std::string& raw2, const std::string& eng1, const std::string& eng2) {
        form.TxtTagName = name;
        form.TxtRTUAddr = "1";
        ChooseIOName(st, form, io);
        form.TxtRawValue1 = raw1;
        form.TxtRawValue2 = raw2;
        form.TxtEngValue1 = eng1;
        form.TxtEngValue2 = eng2;
    }
    std::vector<std::string> messageTexts() const {
        std::vector<std::string> out;
        for (const auto& m : prompt.messages) out.push_back(m.text);
        return out;
    }
    // The one message shown, titled "ERROR".
    std::string onlyError() const {
        EXPECT_EQ(prompt.messages.size(), 1u);
        if (prompt.messages.empty()) return "";
        EXPECT_EQ(prompt.messages.back().title, "ERROR");
        return prompt.messages.back().text;
    }
};

class RecordingPrinter final : public Printer {
  public:
    bool printText(const std::string& name, const std::string& text) override {
        documents.push_back({name, text});
        return true;
    }
    std::vector<std::pair<std::string, std::string>> documents;
};

}  // namespace

TEST(TagEditor, OpensOnTagOneWithTheModulesIONames) {
    Rig r(kDaqQrt105);
    EXPECT_EQ(r.form.LblTag, 1);
    ASSERT_EQ(r.form.IONames.size(), 18u);
    EXPECT_EQ(r.form.IONames.front(), "Analog Variable");
    EXPECT_EQ(r.form.IONames[2], "AI-1");
    EXPECT_EQ(r.form.IONames.back(), "DO-4");
}

TEST(TagEditor, ShowsTheStoredRecord) {
    Rig r;
    Tag& t = r.tag(3, "TANK", "AI-2");
    t.Label = "TANK LEVEL";
    t.Units = "%";
    t.Log = 1;
    r.show(3);
    EXPECT_EQ(r.form.TxtLabel, "TANK LEVEL");
    EXPECT_EQ(r.form.TxtTagName, "TANK");
    EXPECT_EQ(r.form.TxtRTUAddr, "1");
    EXPECT_EQ(r.form.CboIOName, "AI-2");
    EXPECT_EQ(r.form.TxtRawValue1, "0");
    EXPECT_EQ(r.form.TxtRawValue2, "4095");
    EXPECT_EQ(r.form.TxtEngValue1, "0");
    EXPECT_EQ(r.form.TxtEngValue2, "100");
    EXPECT_EQ(r.form.TxtUnits, "%");
    EXPECT_TRUE(r.form.ChkLog);
}

TEST(TagEditor, ADigitalRecordShowsZeroOneAndItsStateTexts) {
    Rig r;
    Tag& t = r.tag(2, "PUMP", "DO-1");
    t.EngText1 = "OFF";
    t.EngText2 = "ON";
    r.show(2);
    EXPECT_EQ(r.form.TxtRawValue1, "0");
    EXPECT_EQ(r.form.TxtRawValue2, "1");
    EXPECT_EQ(r.form.TxtEngValue1, "OFF");
    EXPECT_EQ(r.form.TxtEngValue2, "ON");
}

TEST(TagEditor, ChoosingAnIONameSwitchesTheScalingBoxes) {
    Rig r;
    Tag& t = r.tag(1, "T", "AI-1");
    t.EngText1 = "LOW";
    t.EngText2 = "HIGH";
    r.show(1);
    ChooseIOName(r.st, r.form, "DI-2");
    EXPECT_EQ(r.form.CboIOName, "DI-2");
    EXPECT_EQ(r.form.TxtRawValue1, "0");
    EXPECT_EQ(r.form.TxtRawValue2, "1");
    EXPECT_EQ(r.form.TxtEngValue1, "LOW");
    EXPECT_EQ(r.form.TxtEngValue2, "HIGH");
    ChooseIOName(r.st, r.form, "Analog Variable");
    EXPECT_EQ(r.form.TxtRawValue1, "0");
    EXPECT_EQ(r.form.TxtRawValue2, "4095");
    EXPECT_EQ(r.form.TxtEngValue1, "0");
    EXPECT_EQ(r.form.TxtEngValue2, "100");
}

TEST(TagEditor, AnAnalogInputStoresItsSlopeAndOffset) {
    Rig r;
    r.form.TxtLabel = "Tank level";
    r.typeAnalog(" tank ", "AI-3", "0", "4095", "0", "100");
    r.form.TxtUnits = "%";
    r.form.ChkLog = true;
    ASSERT_TRUE(AcceptTag(r.st, r.form));
    EXPECT_TRUE(r.prompt.messages.empty());
    const Tag& t = r.st.tags[1];
    EXPECT_EQ(t.Label, "TANK LEVEL");
    EXPECT_EQ(t.TagName, "TANK");
    EXPECT_EQ(t.IOName, "AI-3");
    EXPECT_EQ(t.Kind, kAnalog);
    EXPECT_EQ(t.Direction, kInput);
    EXPECT_EQ(t.IONumber, 3);
    EXPECT_EQ(t.Address, 1);
    EXPECT_EQ(t.RawValue1, 0);
    EXPECT_EQ(t.RawValue2, 4095);
    EXPECT_EQ(t.EngValue1, 0.0f);
    EXPECT_EQ(t.EngValue2, 100.0f);
    EXPECT_EQ(t.Slope, 0.024420025f);
    EXPECT_EQ(t.Slope, static_cast<float>(100.0 / 4095.0));
    EXPECT_EQ(t.Offset, 0.0f);
    EXPECT_EQ(t.Units, "%");
    EXPECT_NE(t.Log, 0);
    // The scan finds the new tag at once.
    EXPECT_EQ(FindTag(r.st.nameIndex, "TANK"), 1);
}

TEST(TagEditor, ADigitalTagStoresZeroOneAndItsTexts) {
    Rig r;
    r.form.TxtTagName = "pump";
    r.form.TxtRTUAddr = "1";
    ChooseIOName(r.st, r.form, "DO-2");
    r.form.TxtEngValue1 = "Stopped";
    r.form.TxtEngValue2 = "Running";
    ASSERT_TRUE(AcceptTag(r.st, r.form));
    const Tag& t = r.st.tags[1];
    EXPECT_EQ(t.Kind, kDigital);
    EXPECT_EQ(t.Direction, kOutput);
    EXPECT_EQ(t.IONumber, 2);
    EXPECT_EQ(t.RawValue1, 0);
    EXPECT_EQ(t.RawValue2, 1);
    EXPECT_EQ(t.EngText1, "Stopped");
    EXPECT_EQ(t.EngText2, "Running");
}

TEST(TagEditor, ABlankNameComesFirst) {
    Rig r;
    r.typeAnalog("   ", "nonsense", "1", "1", "2", "2");
    EXPECT_FALSE(AcceptTag(r.st, r.form));
    EXPECT_EQ(r.onlyError(), "Tag Name cannot be blank. If not used name it as a variable");
}

TEST(TagEditor, ANameWithAWildcardOrASlashIsRefused) {
    for (const char* name : {"TANK+1", "LEVEL#", "LINE/2", "+"}) {
        Rig r;
        r.typeAnalog(name, "AI-1", "0", "4095", "0", "100");
        EXPECT_FALSE(AcceptTag(r.st, r.form)) << name;
        EXPECT_EQ(r.onlyError(),
                  "Tag Name cannot contain +, # or /. These characters have a meaning of their "
                  "own in the MQTT topics a station publishes its tags under")
            << name;
        EXPECT_EQ(r.st.tags[1].TagName, "") << name;
    }
    Rig r;
    r.typeAnalog("TANK-1 (A)", "AI-1", "0", "4095", "0", "100");
    EXPECT_TRUE(AcceptTag(r.st, r.form));
}

TEST(TagEditor, AnIONameNotInTheListIsRefused) {
    Rig r(kDaqQrt110);
    r.typeAnalog("X", "DI-1", "0", "1", "0", "1");  // the QRT110 has no digital inputs
    EXPECT_FALSE(AcceptTag(r.st, r.form));
    EXPECT_EQ(r.onlyError(), "I/O Name Not Selected From List ");
    EXPECT_EQ(r.st.tags[1], Tag{});
}

TEST(TagEditor, TheAddressMustBeOne) {
    Rig r;
    r.typeAnalog("X", "AI-1", "0", "1", "0", "1");
    for (const char* address : {"2", "0", "", "abc", "99999"}) {
        r.prompt.messages.clear();
        r.form.TxtRTUAddr = address;
        EXPECT_FALSE(AcceptTag(r.st, r.form)) << address;
        EXPECT_EQ(r.onlyError(), "DAQ Address must be 1 ") << address;
    }
    r.prompt.messages.clear();
    ChooseIOName(r.st, r.form, "DO-1");
    r.form.TxtEngValue1 = "OFF";
    r.form.TxtEngValue2 = "ON";
    r.form.TxtRTUAddr = "3";
    EXPECT_FALSE(AcceptTag(r.st, r.form));
    EXPECT_EQ(r.onlyError(), "DAQ Address must be between 1");
    r.prompt.messages.clear();
    r.form.TxtRTUAddr = " 1.0";
    EXPECT_TRUE(AcceptTag(r.st, r.form));
    EXPECT_EQ(r.st.tags[1].Address, 1);
}

TEST(TagEditor, OnAQrt115AnAnalogInputHasNoChannel) {
    Rig r(kDaqQrt115);
    // The QRT115 list offers no AI names; a profile left from an earlier type can.
    r.st.profile.IONameList[3] = "AI-1";
    r.typeAnalog("X", "AI-1", "0", "1", "0", "1");
    EXPECT_FALSE(AcceptTag(r.st, r.form));
    EXPECT_EQ(r.onlyError(), "The QRT115 has no Analog Inputs ");
}

TEST(TagEditor, ChannelNumbersAreCheckedAgainstTheModulesCounts) {
    struct Case {
        int type;
        const char* io;  // put into the list so that only the count check can refuse
        const char* message;
    };
    const Case cases[] = {
        {kDaqTest, "AI-9", "I/O Number of AI's must be between 1 and 8"},
        {kDaqTest, "AO-3", "I/O Number of AO's must be between 1 and 2"},
        {kDaqQrt105, "AO-1", "The QRT105 has no Analog Outputs "},
        {kDaqTest, "DI-5", "I/O Number of Digital Inputs must be between 1 and 4"},
        {kDaqQrt110, "DI-1", "The QRT110 has no Digital Inputs "},
        {kDaqTest, "DO-5", "I/O Number of Digital Outputs must be between 1 and 4"},
        {kDaqQrt110, "DO-1", "The QRT110 has no Digital Outputs "},
        {kDaqTest, "AI-X", "I/O Number of AI's must be between 1 and 8"},
    };
    for (const Case& c : cases) {
        Rig r(c.type);
        r.st.profile.IONameList[1] = c.io;
        r.typeAnalog("X", c.io, "0", "1", "0", "1");
        EXPECT_FALSE(AcceptTag(r.st, r.form)) << c.io;
        EXPECT_EQ(r.onlyError(), c.message) << c.io;
    }
}

TEST(TagEditor, AVariableNeverCarriesAChannelNumber) {
    Rig r;
    r.st.profile.IONameList[1] = "AV-3";
    r.typeAnalog("X", "AV-3", "0", "1", "0", "1");
    EXPECT_TRUE(AcceptTag(r.st, r.form));  // "V" is a variable: the number is not read
    EXPECT_EQ(r.st.tags[1].IONumber, 0);
}

TEST(TagEditor, EqualScalingTextsAreRefused) {
    Rig r;
    r.typeAnalog("X", "AI-1", "5", "5", "0", "1");
    EXPECT_FALSE(AcceptTag(r.st, r.form));
    EXPECT_EQ(r.onlyError(), "Error RawValue1 cannot equal RawValue2");
    r.prompt.messages.clear();
    r.typeAnalog("X", "AI-1", "0", "1", "7", "7");
    EXPECT_FALSE(AcceptTag(r.st, r.form));
    EXPECT_EQ(r.onlyError(), "Error EngValue1 cannot equal EngValue2");
    // A digital tag's state texts are compared in the same way.
    r.prompt.messages.clear();
    r.form.TxtTagName = "D";
    ChooseIOName(r.st, r.form, "DI-1");
    r.form.TxtEngValue1 = "ON";
    r.form.TxtEngValue2 = "ON";
    EXPECT_FALSE(AcceptTag(r.st, r.form));
    EXPECT_EQ(r.onlyError(), "Error EngValue1 cannot equal EngValue2");
}

TEST(TagEditor, EqualRawNumbersTypedDifferentlyAreRefusedNotStoredWithABadSlope) {
    Rig r;
    r.typeAnalog("X", "AI-1", "1", "01", "0", "100");
    EXPECT_FALSE(AcceptTag(r.st, r.form));
    EXPECT_EQ(r.onlyError(), "Raw Value1 and Raw Value2 must be different numbers");
    EXPECT_EQ(r.st.tags[1], Tag{});
    EXPECT_TRUE(std::isfinite(r.st.tags[1].Slope));
    // "1" and "1.0" likewise.
    r.prompt.messages.clear();
    r.typeAnalog("X", "AI-1", "1", "1.0", "0", "100");
    EXPECT_FALSE(AcceptTag(r.st, r.form));
    EXPECT_EQ(r.onlyError(), "Raw Value1 and Raw Value2 must be different numbers");
}

TEST(TagEditor, EqualEngineeringNumbersTypedDifferentlyGiveAZeroSlope) {
    Rig r;
    r.typeAnalog("X", "AI-1", "0", "10", "5", "5.0");
    EXPECT_TRUE(AcceptTag(r.st, r.form));
    EXPECT_EQ(r.st.tags[1].Slope, 0.0f);
    EXPECT_EQ(r.st.tags[1].Offset, 5.0f);
}

TEST(TagEditor, NonNumericScalingValuesAreRefused) {
    const std::vector<std::array<const char*, 5>> cases = {
        {"x", "10", "0", "1", "Raw Value1 must be a whole number between -32768 and 32767"},
        {"0", "4095.5", "0", "1", "Raw Value2 must be a whole number between -32768 and 32767"},
        {"0", "40000", "0", "1", "Raw Value2 must be a whole number between -32768 and 32767"},
        {"0", "10", "", "1", "Engineering Value1 must be a number"},
        {"0", "10", "0", "1e39", "Engineering Value2 must be a number"},
        {"0", "10", "0", "12 kg", "Engineering Value2 must be a number"},
        {"0", "1", "-3e38", "3e38", "The scaling points give a slope too large to store"},
    };
    for (const auto& c : cases) {
        Rig r;
        r.typeAnalog("X", "AI-1", c[0], c[1], c[2], c[3]);
        EXPECT_FALSE(AcceptTag(r.st, r.form)) << c[4];
        EXPECT_EQ(r.onlyError(), c[4]);
        EXPECT_EQ(r.st.tags[1], Tag{});
    }
}

TEST(TagEditor, ADescriptionWithACommaIsRefused) {
    Rig r;
    r.form.TxtLabel = "Tank, north";
    r.typeAnalog("X", "AI-1", "0", "10", "0", "1");
    EXPECT_FALSE(AcceptTag(r.st, r.form));
    EXPECT_EQ(r.onlyError(),
              "The Description cannot contain a comma: it is the heading of the tag's column in "
              "the log file");
    EXPECT_EQ(r.st.tags[1], Tag{});
}

TEST(TagEditor, ARecordThatWouldNotFitTheSetupFileIsRefused) {
    Rig r;
    // 46 bytes of numbers and lengths; "AI-1" takes 4, so 78 more bytes fit.
    r.typeAnalog("NAME", "AI-1", "0", "10", "0", "1");
    r.form.TxtUnits = "mV";
    r.form.TxtLabel = std::string(72, 'D');  // 4 + 4 + 72 + 2 = 82: the record is full
    EXPECT_TRUE(AcceptTag(r.st, r.form));
    EXPECT_EQ(TagRecordBytes(r.st.tags[1]), 128u);
    r.form.TxtLabel = std::string(73, 'D');
    EXPECT_FALSE(AcceptTag(r.st, r.form));
    EXPECT_EQ(r.onlyError(),
              "Tag Record Too Long. The Description, Tag Name, I/O Name, Engineering texts and "
              "Units must fit in 128 bytes (129 now); shorten them");
    EXPECT_EQ(r.st.tags[1].Label, std::string(72, 'D'));
    r.prompt.messages.clear();
    r.form.TxtLabel = "\xe2\x82\xac";  // the euro sign is in Windows-1252
    EXPECT_TRUE(AcceptTag(r.st, r.form));
    r.form.TxtUnits = "\xe2\x84\x83";  // the degree Celsius sign is not
    EXPECT_FALSE(AcceptTag(r.st, r.form));
    EXPECT_EQ(r.onlyError(),
              "Tag Record Contains Characters That Cannot Be Saved. Use only characters of the "
              "Western (Windows-1252) character set");
}

TEST(TagEditor, AnUnchangedRecordIsLeftAsItIs) {
    Rig r;
    Tag& t = r.tag(4, "FLOW", "AI-4");
    t.Label = "Flow";  // loaded in mixed case: compared upper-cased
    t.Slope = 99.0f;   // not recomputed when nothing changed
    t.Value = 12.5f;
    r.show(4);
    r.form.TxtLabel = "FLOW";
    const Tag before = r.st.tags[4];
    EXPECT_TRUE(AcceptTag(r.st, r.form));
    EXPECT_EQ(r.st.tags[4], before);
    // Another channel of the same kind is a change.
    ChooseIOName(r.st, r.form, "AI-5");
    EXPECT_TRUE(AcceptTag(r.st, r.form));
    EXPECT_EQ(r.st.tags[4].IOName, "AI-5");
    EXPECT_EQ(r.st.tags[4].IONumber, 5);
    EXPECT_EQ(r.st.tags[4].Slope, 0.024420025f);
}

TEST(TagEditor, ANameInUseElsewhereIsRefused) {
    Rig r;
    r.tag(7, "TANK", "AI-1");
    r.show(2);
    r.typeAnalog("tank", "AI-2", "0", "10", "0", "1");
    EXPECT_FALSE(AcceptTag(r.st, r.form));
    EXPECT_EQ(r.onlyError(), "Variable TANK already in use in Record Number 7");
    EXPECT_EQ(r.st.tags[2], Tag{});
}

TEST(TagEditor, RenamingCarriesTheNameIntoScreensAndStatements) {
    Rig r;
    r.tag(1, "TEMP1", "AI-1");
    r.tag(2, "OUT", "Analog Variable");
    r.tag(3, "TEMP10", "AI-2");
    RebuildTagNameIndex(r.st.tags, r.st.nameIndex);
    r.st.screens.Lines(2, 5) = {"TEMP1", 1, 0};
    r.st.screens.Lines(4, 1) = {"TEMP1", 1, 0};
    r.st.screens.Lines(4, 2) = {"TEMP10", 3, 0};
    ControlLine& line = r.st.control.Lines[3];
    line.IfText = "@TEMP1 > 5";
    line.ThenText = "@OUT = @TEMP1 * 2";
    std::string token;
    ASSERT_EQ(CompileIf(r.st, "@TEMP1 > 5", line.IfCode, token), kCodeOk);
    r.st.control.Lines[4].IfText = "@OUT > 1";

    r.show(1);
    r.form.TxtTagName = "temp2";
    ASSERT_TRUE(AcceptTag(r.st, r.form));
    EXPECT_EQ(r.st.tags[1].TagName, "TEMP2");
    EXPECT_EQ(r.st.screens.Lines(2, 5).TagName, "TEMP2");
    EXPECT_EQ(r.st.screens.Lines(4, 1).TagName, "TEMP2");
    EXPECT_EQ(r.st.screens.Lines(4, 2).TagName, "TEMP10");
    EXPECT_EQ(line.IfText, "@TEMP2 > 5");
    EXPECT_EQ(line.ThenText, "@OUT = @TEMP2 * 2");
    EXPECT_EQ(r.st.control.Lines[4].IfText, "@OUT > 1");
    // The running code follows the text.
    std::string ifCode, thenCode;
    ASSERT_EQ(CompileIf(r.st, "@TEMP2 > 5", ifCode, token), kCodeOk);
    ASSERT_EQ(CompileAssignment(r.st, "@OUT = @TEMP2 * 2", thenCode, token), kCodeOk);
    EXPECT_EQ(line.IfCode, ifCode);
    EXPECT_EQ(line.ThenCode, thenCode + "!");
    EXPECT_NE(line.IfCode.find("TEMP2"), std::string::npos);
    EXPECT_EQ(FindTag(r.st.nameIndex, "TEMP2"), 1);
    EXPECT_EQ(FindTag(r.st.nameIndex, "TEMP1"), 0);

    EXPECT_EQ(r.messageTexts(), (std::vector<std::string>{
                                    "Warning - Screen Record 2  has been updated",
                                    "Warning - Screen Record 4  has been updated",
                                    "Warning Control Statement 3 Has been Updated",
                                }));
}

TEST(TagEditor, ANewNameContainingTheOldOneIsReplacedOnce) {
    Rig r;
    r.tag(1, "T1", "AI-1");
    RebuildTagNameIndex(r.st.tags, r.st.nameIndex);
    r.st.control.Lines[1].IfText = "@T1 > 1 & @T1 < 9";
    r.show(1);
    r.form.TxtTagName = "T11";
    ASSERT_TRUE(AcceptTag(r.st, r.form));
    EXPECT_EQ(r.st.control.Lines[1].IfText, "@T11 > 1 & @T11 < 9");
    EXPECT_EQ(r.messageTexts(),
              (std::vector<std::string>{"Warning Control Statement 1 Has been Updated"}));
}

TEST(TagEditor, ARenameThatBreaksAStatementSaysSo) {
    // The substring rule renames TEMP10 in the text too; that text no longer compiles.
    Rig r;
    r.tag(1, "TEMP1", "AI-1");
    r.tag(2, "TEMP10", "AI-2");
    RebuildTagNameIndex(r.st.tags, r.st.nameIndex);
    r.st.control.Lines[2].IfText = "@TEMP10 > 5";
    r.show(1);
    r.form.TxtTagName = "TEMP2";
    ASSERT_TRUE(AcceptTag(r.st, r.form));
    EXPECT_EQ(r.st.control.Lines[2].IfText, "@TEMP20 > 5");
    EXPECT_EQ(r.messageTexts(),
              (std::vector<std::string>{
                  "Warning Control Statement 2 Has been Updated",
                  "Control Statement 2 must be edited: Unknown Token @TEMP20 in If Statement"}));
}

TEST(TagEditor, ARenameThatWouldOutgrowAStatementsRecordIsRefused) {
    Rig r;
    r.tag(1, "A", "AI-1");
    RebuildTagNameIndex(r.st.tags, r.st.nameIndex);
    ControlLine& line = r.st.control.Lines[5];
    line.IfText = "@A>1 & @A<2 & @A<>3 & @A>=0";
    std::string token;
    ASSERT_EQ(CompileIf(r.st, line.IfText, line.IfCode, token), kCodeOk);
    r.st.screens.Lines(1, 1) = {"A", 1, 0};
    r.show(1);
    r.form.TxtTagName = "A_VERY_LONG_NAME_FOR_A_TAG";
    EXPECT_FALSE(AcceptTag(r.st, r.form));
    EXPECT_EQ(r.onlyError(),
              "Cannot rename A to A_VERY_LONG_NAME_FOR_A_TAG: Control Statement 5 would no "
              "longer fit its record of the setup file");
    EXPECT_EQ(r.st.tags[1].TagName, "A");
    EXPECT_EQ(line.IfText, "@A>1 & @A<2 & @A<>3 & @A>=0");
    EXPECT_EQ(r.st.screens.Lines(1, 1).TagName, "A");
    EXPECT_EQ(FindTag(r.st.nameIndex, "A"), 1);
}

TEST(TagEditor, NamingAnUnusedSlotWarnsAboutNothing) {
    Rig r;
    r.st.control.Lines[1].IfText = "@X > 1";
    r.typeAnalog("X", "Analog Variable", "0", "1", "0", "1");
    ASSERT_TRUE(AcceptTag(r.st, r.form));
    EXPECT_TRUE(r.prompt.messages.empty());
    EXPECT_EQ(r.st.control.Lines[1].IfText, "@X > 1");
}

TEST(TagEditor, NextAndPreviousStepOnlyAfterAcceptingAndStayWithin1And32) {
    Rig r;
    r.nameAll();
    r.show(1);
    TagFormPrevious(r.st, r.form);
    EXPECT_EQ(r.form.LblTag, 1);
    TagFormNext(r.st, r.form);
    EXPECT_EQ(r.form.LblTag, 2);
    EXPECT_EQ(r.form.TxtTagName, "V2");
    r.show(32);
    r.form.TxtUnits = "bar";
    TagFormNext(r.st, r.form);
    EXPECT_EQ(r.form.LblTag, 32);
    EXPECT_EQ(r.st.tags[32].Units, "bar");
    EXPECT_EQ(r.form.TxtUnits, "bar");
    // A refused record keeps the window where it is, with what was typed.
    r.form.TxtTagName = "";
    TagFormPrevious(r.st, r.form);
    EXPECT_EQ(r.form.LblTag, 32);
    EXPECT_EQ(r.form.TxtTagName, "");
    EXPECT_EQ(r.onlyError(), "Tag Name cannot be blank. If not used name it as a variable");
}

TEST(TagEditor, FindShowsTheFirstTagOfThatName) {
    Rig r;
    r.tag(9, "FLOW", "AI-1");
    r.prompt.inputAnswers = {std::string(" flow ")};
    TagFormFind(r.st, r.form);
    EXPECT_EQ(r.prompt.inputs, (std::vector<test::Shown>{{"Enter Tag Name", "Find Tag"}}));
    EXPECT_EQ(r.form.LblTag, 9);
    EXPECT_EQ(r.form.TxtTagName, "FLOW");
    EXPECT_TRUE(r.prompt.messages.empty());
}

TEST(TagEditor, FindOfAnUnknownNameSaysSoAndStays) {
    Rig r;
    r.show(3);
    r.form.TxtLabel = "typed";
    r.prompt.inputAnswers = {std::string("nothing")};
    TagFormFind(r.st, r.form);
    EXPECT_EQ(r.prompt.messages,
              (std::vector<test::Shown>{{"Cannot Find TagName NOTHING", "Find Tag"}}));
    EXPECT_EQ(r.form.LblTag, 3);
    EXPECT_EQ(r.form.TxtLabel, "typed");
}

TEST(TagEditor, AnEmptyOrCancelledFindDoesNothing) {
    Rig r;
    r.show(3);
    r.prompt.inputAnswers = {std::string(""), std::nullopt, std::string("   ")};
    for (int i = 0; i < 3; ++i) TagFormFind(r.st, r.form);
    EXPECT_EQ(r.form.LblTag, 3);
    EXPECT_TRUE(r.prompt.messages.empty());
}

TEST(TagEditor, DeletingMovesTheLaterTagsUpAndLeavesAPlaceHolder) {
    Rig r;
    r.nameAll();
    r.st.tags[32].IOName = "DI-3";
    r.st.tags[32].Kind = kDigital;
    r.st.tags[32].EngText1 = "OFF";
    r.show(5);
    r.prompt.yesNoAnswers = {true};
    TagFormDelete(r.st, r.form);
    EXPECT_EQ(r.prompt.questions,
              (std::vector<test::Shown>{{"Do You Wish to Delete this Tag", "Option"}}));
    for (int n = 5; n <= 31; ++n) EXPECT_EQ(r.st.tags[n].TagName, "V" + std::to_string(n + 1));
    EXPECT_EQ(r.st.tags[4].TagName, "V4");
    const Tag& p = r.st.tags[32];
    EXPECT_EQ(p.TagName, "AVAR0");
    EXPECT_EQ(p.Label, "");
    EXPECT_EQ(p.Direction, kVariable);
    EXPECT_EQ(p.Address, 0);
    EXPECT_EQ(p.IONumber, 0);
    EXPECT_EQ(p.RawValue1, 0);
    EXPECT_EQ(p.EngValue1, 0.0f);
    EXPECT_EQ(p.RawValue2, 4000);
    EXPECT_EQ(p.EngValue2, 4000.0f);
    EXPECT_EQ(p.Slope, 1.0f);
    EXPECT_EQ(p.Offset, 0.0f);
    EXPECT_EQ(p.Units, "mV");
    EXPECT_EQ(p.Log, 0);
    EXPECT_EQ(p.Kind, kDigital);  // kind and I/O name as tag 32 had them
    EXPECT_EQ(p.IOName, "DI-3");
    // The window shows the tag that moved into the slot; the index follows the table.
    EXPECT_EQ(r.form.LblTag, 5);
    EXPECT_EQ(r.form.TxtTagName, "V6");
    EXPECT_EQ(FindTag(r.st.nameIndex, "V6"), 5);
    EXPECT_EQ(FindTag(r.st.nameIndex, "V5"), 0);
    EXPECT_EQ(FindTag(r.st.nameIndex, "AVAR0"), 32);

    // The counter goes on: the next place-holder is AVAR1.
    r.prompt.yesNoAnswers = {true};
    TagFormDelete(r.st, r.form);
    EXPECT_EQ(r.st.tags[31].TagName, "AVAR0");
    EXPECT_EQ(r.st.tags[32].TagName, "AVAR1");
    EXPECT_EQ(r.st.tagPlaceHolders, 2);
}

TEST(TagEditor, APlaceHolderNumberAlreadyInUseIsSkipped) {
    Rig r;
    r.nameAll();
    r.tag(10, "AVAR0", "Analog Variable");
    r.show(2);
    r.prompt.yesNoAnswers = {true};
    TagFormDelete(r.st, r.form);
    EXPECT_EQ(r.st.tags[32].TagName, "AVAR1");
    EXPECT_TRUE(CheckTagTable(r.st.tags).empty());
}

TEST(TagEditor, DeleteAnsweredNoChangesNothing) {
    Rig r;
    r.nameAll();
    r.show(5);
    TagFormDelete(r.st, r.form);
    EXPECT_EQ(r.st.tags[5].TagName, "V5");
    EXPECT_EQ(r.st.tagPlaceHolders, 0);
}

TEST(TagEditor, DeletingT1IsRefusedWhileAStatementMentionsT10) {
    Rig r;
    r.nameAll();
    r.tag(3, "T1", "AI-1");
    r.st.control.Lines[7].ElseText = "@T10 = 1";
    r.show(3);
    r.prompt.yesNoAnswers = {true};
    TagFormDelete(r.st, r.form);
    EXPECT_EQ(r.onlyError(),
              "Warning Control Statement line 7 uses this tag. Please Edit This Line First");
    EXPECT_EQ(r.st.tags[3].TagName, "T1");
    EXPECT_EQ(r.st.tags[32].TagName, "V32");
    EXPECT_EQ(r.st.tagPlaceHolders, 0);
}

TEST(TagEditor, TheWholeTableCheckNamesBlankAndDuplicateTags) {
    Rig r;
    r.nameAll();
    r.st.tags[3].TagName = "";
    r.st.tags[9].TagName = "V4";
    r.st.tags[20].TagName = "V4";
    EXPECT_EQ(CheckTagTable(r.st.tags),
              (std::vector<std::string>{
                  "Tag Number 3 cannot have a blank name. If not used name it as a variable",
                  "Duplicate Tag Names. See Tag Numbers 4 and 9.",
                  "Duplicate Tag Names. See Tag Numbers 4 and 20.",
                  "Duplicate Tag Names. See Tag Numbers 9 and 20.",
              }));
}

TEST(TagEditor, ExitWithAGoodTableRebuildsTheIndexAndTheModuleSummary) {
    Rig r;
    r.nameAll();
    r.tag(6, "LEVEL", "AI-2");  // stored behind the window's back: only a rebuild finds it
    r.show(1);
    EXPECT_TRUE(TagFormExit(r.st, r.form));
    EXPECT_TRUE(r.prompt.messages.empty());
    EXPECT_TRUE(r.prompt.questions.empty());
    EXPECT_EQ(FindTag(r.st.nameIndex, "LEVEL"), 6);
    EXPECT_EQ(r.st.daq.Summary.LowestAnalogInput, 2);
    EXPECT_EQ(r.st.daq.Summary.HighestAnalogInput, 2);
}

TEST(TagEditor, ExitWithErrorsAsksAndStaysOnNo) {
    Rig r;
    r.tag(1, "A", "AI-1");
    r.tag(2, "LEVEL", "AI-3");
    r.show(1);
    EXPECT_FALSE(TagFormExit(r.st, r.form));
    ASSERT_EQ(r.prompt.messages.size(), 30u);
    EXPECT_EQ(r.prompt.messages.front(),
              (test::Shown{"Tag Number 3 cannot have a blank name. If not used name it as a "
                           "variable",
                           "ERROR"}));
    EXPECT_EQ(r.prompt.questions,
              (std::vector<test::Shown>{{"Errors Found Do you wish to exit", "ERROR"}}));
    EXPECT_EQ(FindTag(r.st.nameIndex, "LEVEL"), 0);  // not rebuilt: the window stays
}

TEST(TagEditor, ExitDespiteErrorsStillRebuilds) {
    Rig r;
    r.tag(2, "LEVEL", "AI-3");
    r.show(1);  // blank: accepting it fails as well
    r.prompt.yesNoAnswers = {true};
    EXPECT_TRUE(TagFormExit(r.st, r.form));
    EXPECT_EQ(r.prompt.messages.front().text,
              "Tag Name cannot be blank. If not used name it as a variable");
    EXPECT_EQ(r.prompt.messages.size(), 1u + 31u);
    EXPECT_EQ(FindTag(r.st.nameIndex, "LEVEL"), 2);
    EXPECT_EQ(r.st.daq.Summary.LowestAnalogInput, 3);
}

TEST(TagEditor, TheListingHasFiveLinesAndABlankLinePerNamedTag) {
    Rig r;
    Tag& a = r.tag(1, "TANK", "AI-3");
    a.Label = "TANK LEVEL";
    a.Units = "%";
    a.Log = 1;
    a.EngValue2 = 12.5f;
    Tag& d = r.tag(3, "PUMP", "DO-1");
    d.Kind = kDigital;
    d.RawValue1 = 0;
    d.RawValue2 = 1;
    d.EngText1 = "OFF";
    d.EngText2 = "ON";
    EXPECT_EQ(TagListing(r.st.tags),
              "********** Record 1 **********\n"
              "TagName=TANK  Label=TANK LEVEL\n"
              "Analog IOName=AI-3  Address=1\n"
              "RawValue1=0  EngValue1=0  RawValue2=4095  EngValue2=12.5\n"
              "Units=%  Log=Yes\n"
              "  \n"
              "********** Record 3 **********\n"
              "TagName=PUMP  Label=\n"
              "DigitalIOName=DO-1  Address=1\n"
              "RawValue1=0  EngValue1=OFF  RawValue2=1  EngValue2=ON\n"
              "  Log=No\n"
              "  \n");
}

TEST(TagEditor, PrintingSendsTheListingToThePrinter) {
    Rig r;
    r.tag(2, "FLOW", "AI-1");
    RecordingPrinter printer;
    EXPECT_TRUE(PrintTagListing(r.st, printer));
    ASSERT_EQ(printer.documents.size(), 1u);
    EXPECT_EQ(printer.documents[0].first, "Tag Listing");
    EXPECT_EQ(printer.documents[0].second, TagListing(r.st.tags));
}

TEST(TagEditor, AnEmptyTableIsNotPrinted) {
    Rig r;
    RecordingPrinter printer;
    EXPECT_FALSE(PrintTagListing(r.st, printer));
    EXPECT_TRUE(printer.documents.empty());
    EXPECT_EQ(r.prompt.messages,
              (std::vector<test::Shown>{{"There are no named tags to print", "Print"}}));
}

TEST(TagEditor, QuestionsWhoseYesDiscardsWorkDefaultToNo) {
    Rig r;
    r.nameAll();
    r.show(5);
    TagFormDelete(r.st, r.form);  // answered No
    r.form.TxtTagName = "";       // a refused record
    TagFormExit(r.st, r.form);
    EXPECT_EQ(r.prompt.questions,
              (std::vector<test::Shown>{{"Do You Wish to Delete this Tag", "Option"},
                                        {"Errors Found Do you wish to exit", "ERROR"}}));
    EXPECT_EQ(r.prompt.questionDefaults,
              (std::vector<DefaultAnswer>{DefaultAnswer::No, DefaultAnswer::No}));
}

namespace {
// Tags V1..V32, with an alarm, screen lines, trend pens and the logging condition on some.
struct Users : Rig {
    Users() {
        nameAll();
        st.alarms.Alarms[3].TagName = "V6";
        st.alarms.Alarms[3].TagNo = 6;
        st.alarms.Alarms[4].TagName = "TS";
        st.alarms.Alarms[4].TagNo = 33;  // a system variable
        st.alarms.Alarms[5].TagName = "V2";
        st.alarms.Alarms[5].TagNo = 2;
        st.screens.Lines(2, 3).TagName = "V7";
        st.screens.Lines(2, 3).TagNumber = 7;
        st.screens.Lines(4, 14).TagName = "V32";
        st.screens.Lines(4, 14).TagNumber = 32;
        st.trends.TrendTable(1, 1) = 32;
        st.trends.TrendTable(1, 2) = 4;
        st.trends.TrendTable(9, 4) = 12;
        st.logging.ConditionTag = 10;
    }
};
}  // namespace

TEST(TagEditor, DeletingATagCarriesEveryLaterTagNumberAlong) {
    Users r;
    r.show(5);
    r.prompt.yesNoAnswers = {true};
    EXPECT_TRUE(TagFormDelete(r.st, r.form));
    EXPECT_TRUE(r.prompt.messages.empty());
    // Each reference still follows the tag it followed before.
    const auto& alarm = r.st.alarms.Alarms[3];
    EXPECT_EQ(alarm.TagNo, 5);
    EXPECT_EQ(r.st.tags[alarm.TagNo].TagName, "V6");
    EXPECT_EQ(r.st.alarms.Alarms[4].TagNo, 33);
    EXPECT_EQ(r.st.alarms.Alarms[5].TagNo, 2);
    EXPECT_EQ(r.st.screens.Lines(2, 3).TagNumber, 6);
    EXPECT_EQ(r.st.tags[6].TagName, "V7");
    EXPECT_EQ(r.st.screens.Lines(4, 14).TagNumber, 31);
    EXPECT_EQ(r.st.screens.Lines(4, 14).TagName, "V32");
    EXPECT_EQ(r.st.trends.TrendTable(1, 1), 31);
    EXPECT_EQ(r.st.trends.TrendTable(1, 2), 4);
    EXPECT_EQ(r.st.trends.TrendTable(9, 4), 11);
    EXPECT_EQ(r.st.logging.ConditionTag, 9);
    EXPECT_EQ(r.st.tags[9].TagName, "V10");
    // Nothing refers to the place-holder left in slot 32.
    EXPECT_EQ(TagNumberInUse(r.st, 32), "");
}

TEST(TagEditor, DeletingATagMovesTheMinMaxRowsAlongWithTheirTags) {
    Users r;
    for (int i = 1; i <= kMinMaxTags; ++i) {
        r.st.minMax.TagMaximum[i] = static_cast<float>(100 + i);
        r.st.minMax.TagMinimum[i] = static_cast<float>(-i);
    }
    r.st.tags[15].Value = 42.5f;  // moves in as the fourteenth tag
    r.show(5);
    r.prompt.yesNoAnswers = {true};
    ASSERT_TRUE(TagFormDelete(r.st, r.form));
    // Rows 1..4 stay; V6 (now tag 5) keeps the extremes it had as tag 6, and so on.
    EXPECT_EQ(r.st.minMax.TagMaximum[4], 104.0f);
    EXPECT_EQ(r.st.tags[5].TagName, "V6");
    EXPECT_EQ(r.st.minMax.TagMaximum[5], 106.0f);
    EXPECT_EQ(r.st.minMax.TagMinimum[5], -6.0f);
    EXPECT_EQ(r.st.minMax.TagMaximum[13], 114.0f);
    // The former tag 15 has no extremes kept yet: its present value starts them.
    EXPECT_EQ(r.st.tags[14].TagName, "V15");
    EXPECT_EQ(r.st.minMax.TagMaximum[14], 42.5f);
    EXPECT_EQ(r.st.minMax.TagMinimum[14], 42.5f);
}

TEST(TagEditor, DeletingATagAfterTheFourteenthLeavesTheMinMaxRowsAlone) {
    Users r;
    for (int i = 1; i <= kMinMaxTags; ++i) r.st.minMax.TagMaximum[i] = static_cast<float>(i);
    r.show(20);
    r.prompt.yesNoAnswers = {true};
    ASSERT_TRUE(TagFormDelete(r.st, r.form));
    for (int i = 1; i <= kMinMaxTags; ++i)
        EXPECT_EQ(r.st.minMax.TagMaximum[i], static_cast<float>(i)) << i;
}

namespace {
// Deleting tag n is refused with one warning; the table stays as it was.
void expectDeleteRefused(Users& r, int n, const std::string& warning) {
    const std::string name = r.st.tags[n].TagName;
    r.prompt.messages.clear();
    r.show(n);
    r.prompt.yesNoAnswers = {true};
    EXPECT_FALSE(TagFormDelete(r.st, r.form));
    EXPECT_EQ(r.onlyError(), warning);
    EXPECT_EQ(r.st.tags[n].TagName, name);
    EXPECT_EQ(r.st.tags[32].TagName, "V32");
}
}  // namespace

TEST(TagEditor, ATagAnAlarmUsesIsNotDeleted) {
    Users r;
    expectDeleteRefused(r, 6, "Warning Alarm 3 uses this tag. Please Edit This Alarm First");
    EXPECT_EQ(r.st.trends.TrendTable(1, 1), 32);
}

TEST(TagEditor, ATagAScreenLineUsesIsNotDeleted) {
    Users r;
    expectDeleteRefused(
        r, 7, "Warning Screen 2 Analog Line 3 uses this tag. Please Edit This Screen First");
    expectDeleteRefused(
        r, 32, "Warning Screen 4 Digital Line 4 uses this tag. Please Edit This Screen First");
}

TEST(TagEditor, ATagATrendPenUsesIsNotDeleted) {
    Users r;
    expectDeleteRefused(r, 12, "Warning Trend 9 Pen 4 uses this tag. Please Edit This Trend First");
}

TEST(TagEditor, TheLoggingConditionTagIsNotDeleted) {
    Users r;
    expectDeleteRefused(r, 10,
                        "Warning The Logging Start/Stop Condition uses this tag. Please Edit The "
                        "Logging Condition First");
    EXPECT_EQ(r.st.logging.ConditionTag, 10);
}

TEST(TagEditor, AControlStatementIsNamedBeforeTheOtherUsers) {
    Users r;
    r.st.control.Lines[2].IfText = "@V6 > 1";
    expectDeleteRefused(
        r, 6, "Warning Control Statement line 2 uses this tag. Please Edit This Line First");
}

TEST(TagEditor, StoringRenamingAndDeletingTellTheOpenWindows) {
    Rig r;
    r.nameAll();
    r.show(3);
    r.form.TxtLabel = "Oven";
    EXPECT_TRUE(AcceptTag(r.st, r.form));
    EXPECT_EQ(r.st.changes.count(TableChange::Tags), 1);
    r.form.TxtTagName = "OVEN";
    EXPECT_TRUE(AcceptTag(r.st, r.form));
    EXPECT_EQ(r.st.changes.count(TableChange::Tags), 2);
    EXPECT_TRUE(AcceptTag(r.st, r.form));  // unchanged: nothing to tell
    EXPECT_EQ(r.st.changes.count(TableChange::Tags), 2);
    r.prompt.yesNoAnswers = {true};
    TagFormDelete(r.st, r.form);
    EXPECT_EQ(r.st.changes.count(TableChange::Tags), 3);
}

TEST(TagEditor, ARenameCarriesIntoTheAlarmsThatNameTheTag) {
    Users r;
    r.show(6);
    r.form.TxtTagName = "OVEN";
    EXPECT_TRUE(AcceptTag(r.st, r.form));
    EXPECT_EQ(r.st.alarms.Alarms[3].TagName, "OVEN");
    EXPECT_EQ(r.st.alarms.Alarms[3].TagNo, 6);
    EXPECT_EQ(r.messageTexts(),
              (std::vector<std::string>{"Warning - Alarm Record 3  has been updated"}));
}

TEST(TagEditor, ARenameThatWouldOverfillAnAlarmRecordIsRefused) {
    Users r;
    AlarmDef& a = r.st.alarms.Alarms[3];
    a.HiMsg = std::string(20, 'H');  // 120 of the record's 128 bytes with "V6"
    a.LoMsg = std::string(20, 'L');
    a.NormMsg = std::string(10, 'N');
    r.show(6);
    r.form.TxtTagName = "A_RATHER_LONG_NAME_FOR_A_TAG";
    EXPECT_FALSE(AcceptTag(r.st, r.form));
    EXPECT_EQ(r.onlyError(),
              "Cannot rename V6 to A_RATHER_LONG_NAME_FOR_A_TAG: Alarm 3 would no longer fit "
              "its record of the setup file");
    EXPECT_EQ(r.st.tags[6].TagName, "V6");
    EXPECT_EQ(a.TagName, "V6");
    EXPECT_EQ(r.form.FailedBox, "TxtTagName");
}

TEST(TagEditor, ARefusedRecordNamesTheBoxAtFault) {
    struct Case {
        const char* box;
        std::function<void(Rig&)> type;
    };
    const Case cases[] = {
        {"TxtTagName", [](Rig& r) { r.form.TxtTagName = " "; }},
        {"CboIOName", [](Rig& r) { r.form.CboIOName = "AI-9"; }},
        {"TxtRTUAddr", [](Rig& r) { r.form.TxtRTUAddr = "2"; }},
        {"TxtRawValue2", [](Rig& r) { r.form.TxtRawValue2 = r.form.TxtRawValue1; }},
        {"TxtEngValue2", [](Rig& r) { r.form.TxtEngValue2 = r.form.TxtEngValue1; }},
        {"TxtEngValue1", [](Rig& r) { r.form.TxtEngValue1 = "ten"; }},
        {"TxtLabel", [](Rig& r) { r.form.TxtLabel = "Level, tank 1"; }},
        {"TxtTagName", [](Rig& r) { r.form.TxtTagName = "V9"; }},  // in use
    };
    for (const Case& c : cases) {
        Rig r;
        r.nameAll();
        r.tag(4, "LEVEL", "AI-1");
        r.show(4);
        c.type(r);
        EXPECT_FALSE(TagFormNext(r.st, r.form)) << c.box;
        EXPECT_EQ(r.form.LblTag, 4);
        EXPECT_EQ(r.form.FailedBox, c.box);
    }
    Rig r;
    r.nameAll();
    r.show(4);
    r.form.TxtTagName = "";
    TagFormNext(r.st, r.form);
    r.form.TxtTagName = "V4";
    EXPECT_TRUE(TagFormNext(r.st, r.form));
    EXPECT_EQ(r.form.FailedBox, "");
}

TEST(TagEditor, ADigitalIONameMakesTheEngineeringBoxesTheStateTexts) {
    Rig r;
    r.show(1);
    ChooseIOName(r.st, r.form, "AI-2");
    ScalingCaptions c = TagFormScalingCaptions(r.st, r.form);
    EXPECT_FALSE(c.Digital);
    EXPECT_EQ(c.EngValue1, "Engineering Value1");
    EXPECT_EQ(c.EngValue2, "Engineering Value2");
    EXPECT_EQ(c.RawValue1, "Raw Value1");
    ChooseIOName(r.st, r.form, "DI-2");
    c = TagFormScalingCaptions(r.st, r.form);
    EXPECT_TRUE(c.Digital);
    // The captions carry the names the refusals use.
    EXPECT_EQ(c.EngValue1, "State 0 Text (EngValue1)");
    EXPECT_EQ(c.EngValue2, "State 1 Text (EngValue2)");
    EXPECT_EQ(r.form.TxtRawValue1, "0");
    EXPECT_EQ(r.form.TxtRawValue2, "1");
    ChooseIOName(r.st, r.form, "Digital Variable");
    EXPECT_TRUE(TagFormScalingCaptions(r.st, r.form).Digital);
}

TEST(TagEditor, APlaceHolderLeftByDeletingIsKnownAsOne) {
    Rig r;
    r.nameAll();
    r.show(2);
    r.prompt.yesNoAnswers = {true};
    TagFormDelete(r.st, r.form);
    EXPECT_TRUE(IsDeletedTagPlaceHolder(r.st.tags[32]));
    EXPECT_FALSE(IsDeletedTagPlaceHolder(r.st.tags[31]));
    Tag named = r.st.tags[32];
    named.Label = "Spare";  // a user's own variable that happens to be called AVAR0
    EXPECT_FALSE(IsDeletedTagPlaceHolder(named));
}

}  // namespace kova
