// The readings-screen and trend windows' models while the tag table changes under them, and
// where the keyboard goes after they refuse an entry.
#include <gtest/gtest.h>

#include "core/configuration.h"
#include "displays/readings_setup.h"
#include "displays/readings_view.h"
#include "displays/trend_setup.h"
#include "screen_rig.h"
#include "tags/tag_editor.h"

namespace kova {

using test::ScreenRig;

namespace {
// Renames tag n in the tag editor, as a user would.
void rename(Station& st, int n, const std::string& name) {
    TagForm f = OpenTagForm(st);
    f.LblTag = n;
    ShowTag(st, f);
    f.TxtTagName = name;
    ASSERT_TRUE(AcceptTag(st, f));
}
}  // namespace

TEST(ScreenSetupFollow, RowsNotTypedInFollowARenameAndTypedOnesAreKept) {
    ScreenRig r;
    ScreenSetupForm f = OpenSetupScreens(r.st);
    f.CboAnTag[2] = "SET";  // the user is typing in row 3
    rename(r.st, test::kLevel, "TANK");
    r.prompt.messages.clear();
    ScreenSetupTablesChanged(r.st, f, TableChange::Tags);
    EXPECT_EQ(f.CboAnTag[0], "TANK");
    EXPECT_EQ(f.LblAn[0], "TANK LEVEL");  // the editor stores labels upper-cased
    EXPECT_EQ(f.CboAnTag[2], "SET");
    EXPECT_EQ(f.AnalogChoices.front(), "TANK");
    // The screen is stored as shown, without a refusal.
    f.CboAnTag[2] = "SETPT";
    EXPECT_TRUE(NextSetupScreen(r.st, f));
    EXPECT_TRUE(r.prompt.messages.empty());
    EXPECT_EQ(r.st.screens.Lines(1, 1).TagName, "TANK");
}

TEST(ScreenSetupFollow, ANewConfigurationShowsTheScreenAfresh) {
    ScreenRig r;
    ScreenSetupForm f = OpenSetupScreens(r.st);
    f.TxtScreen = "typed";
    ApplyFileNewDefaults(r.st);
    ScreenSetupTablesChanged(r.st, f, TableChange::Configuration);
    EXPECT_EQ(f.LblScrNo, 1);
    EXPECT_EQ(f.TxtScreen, "");
    EXPECT_EQ(f.CboAnTag[0], "");
}

TEST(ScreenSetupFollow, ARefusedScreenNamesTheBoxAtFault) {
    ScreenRig r;
    ScreenSetupForm f = OpenSetupScreens(r.st);
    f.TxtJump = "11";
    EXPECT_FALSE(NextSetupScreen(r.st, f));
    EXPECT_EQ(f.FailedBox, "TxtJump");
    f.TxtJump = "";
    f.CboAnTag[3] = "NOPE";
    EXPECT_FALSE(NextSetupScreen(r.st, f));
    EXPECT_EQ(f.FailedBox, "CboAnTag3");
    f.CboAnTag[3] = "";
    f.CboDigTag[1] = "LEVEL";  // an analog tag in a digital row
    EXPECT_FALSE(NextSetupScreen(r.st, f));
    EXPECT_EQ(f.FailedBox, "CboDigTag1");
}

TEST(ScreenSetupFollow, LeavingWithABadEntryDefaultsToNo) {
    ScreenRig r;
    ScreenSetupForm f = OpenSetupScreens(r.st);
    f.CboAnTag[0] = "NOPE";
    EXPECT_FALSE(ExitSetupScreens(r.st, f));
    ASSERT_EQ(r.prompt.questions.size(), 1u);
    EXPECT_EQ(r.prompt.questions[0], (test::Shown{"Do You Wish To Exit", "ERROR"}));
    EXPECT_EQ(r.prompt.questionDefaults, std::vector<DefaultAnswer>{DefaultAnswer::No});
}

TEST(ScreenSetupFollow, OpeningAScreenWithoutTargetIsNoChangeToSave) {
    ScreenRig r;
    r.st.screens.Headers[1].JumpTo = 0;
    RememberConfigurationAsSaved(r.st);
    ScreenSetupForm f = OpenSetupScreens(r.st);
    EXPECT_EQ(r.st.screens.Headers[1].JumpTo, 1);  // reads as 1 while shown
    EXPECT_FALSE(ConfigurationChanged(r.st));
    EXPECT_TRUE(ExitSetupScreens(r.st, f));
    EXPECT_EQ(r.st.screens.Headers[1].JumpTo, 0);
    EXPECT_FALSE(ConfigurationChanged(r.st));
}

TEST(TrendSetupFollow, PensNotTypedInFollowARename) {
    ScreenRig r;
    r.st.trends.TrendTable(1, 1) = test::kLevel;
    r.st.trends.TrendTable(1, 2) = test::kSetpt;
    SetTrendForm f = OpenSetTrend(r.st);
    f.CboTagNo[1] = "VAL";  // typed
    rename(r.st, test::kLevel, "TANK");
    SetTrendTablesChanged(r.st, f, TableChange::Tags);
    EXPECT_EQ(f.CboTagNo[0], "TANK");
    EXPECT_EQ(f.CboTagNo[1], "VAL");
    EXPECT_EQ(f.TagList.front(), "TANK");
}

TEST(TrendSetupFollow, ARefusedTrendNamesThePenAtFault) {
    ScreenRig r;
    SetTrendForm f = OpenSetTrend(r.st);
    f.CboTagNo[0] = "LEVEL";
    f.CboTagNo[2] = "NOPE";
    EXPECT_FALSE(SetTrendNext(r.st, f));
    EXPECT_EQ(f.FailedPen, 3);
    EXPECT_EQ(f.LblTrendNo, "1");
    f.CboTagNo[2] = "";
    EXPECT_TRUE(SetTrendNext(r.st, f));
    EXPECT_EQ(f.FailedPen, 0);
    EXPECT_EQ(f.LblTrendNo, "2");
}

TEST(ReadingsViewFollow, OnlyOutputsAndVariablesTakeTheOperatorsWrites) {
    ScreenRig r;
    ReadingsViewForm f = OpenReadingsView(r.st);
    EXPECT_FALSE(f.AnalogWritable[0]);   // LEVEL, an input
    EXPECT_TRUE(f.AnalogWritable[1]);    // VALVE, an output
    EXPECT_TRUE(f.AnalogWritable[2]);    // SETPT, a variable
    EXPECT_FALSE(f.AnalogWritable[5]);   // an empty line
    EXPECT_FALSE(f.DigitalWritable[0]);  // DOOR, an input
    EXPECT_TRUE(f.DigitalWritable[1]);   // PUMP, an output
    EXPECT_TRUE(f.DigitalWritable[3]);   // LAMP, a variable
}

TEST(ReadingsViewFollow, LabelsFollowTheTagsAndATypedValueStays) {
    ScreenRig r;
    ReadingsViewForm f = OpenReadingsView(r.st);
    AnalogValueFocused(r.st, f, 2);  // the operator types in SETPT's box
    f.Analog[2].TxtAn = "12";
    r.st.tags[test::kLevel].Label = "Vessel Level";
    r.st.tags[test::kDoor].Label = "Front Door";
    ReadingsViewTablesChanged(r.st, f, TableChange::Tags);
    EXPECT_EQ(f.Analog[0].TxtLabel, "I-Vessel Level");
    EXPECT_EQ(f.Digital[0].LblDIP, "I-Front Door");
    EXPECT_EQ(f.Analog[2].TxtAn, "12");
    EXPECT_TRUE(AnalogRowEditing(r.st, f, 2));
}

}  // namespace kova
