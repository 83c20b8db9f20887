// The "Set Up Screens" model: load, save with its checks in order, navigation and exit.
#include "displays/readings_setup.h"

#include <gtest/gtest.h>

#include "screen_rig.h"

namespace kova {

namespace {
using test::ScreenRig;
using test::Shown;

const std::string kJumpMessage = "ERROR - Jump to must be a number between 1 and 10";
}  // namespace

TEST(SetupScreens, OpensOnScreen1WithItsTitleTargetAndLines) {
    ScreenRig r;
    const ScreenSetupForm f = OpenSetupScreens(r.st);
    EXPECT_EQ(f.LblScrNo, 1);
    EXPECT_EQ(f.TxtScreen, "Plant");
    EXPECT_EQ(f.TxtJump, "3");
    EXPECT_EQ(f.CboAnTag[0], "LEVEL");
    EXPECT_EQ(f.LblAn[0], "Tank Level");
    EXPECT_EQ(f.CboAnTag[3], "TS");
    EXPECT_EQ(f.LblAn[3], "Time In Secs");
    EXPECT_EQ(f.CboAnTag[9], "");
    EXPECT_EQ(f.LblAn[9], "");
    EXPECT_EQ(f.CboDigTag[1], "PUMP");
    EXPECT_EQ(f.LblDig[1], "Feed Pump");
    EXPECT_EQ(f.CboDigTag[4], "");
}

TEST(SetupScreens, ListsOfferUserTagsOfTheirKindInTagOrderWithoutSystemVariables) {
    ScreenRig r;
    const ScreenSetupForm f = OpenSetupScreens(r.st);
    ASSERT_GE(f.AnalogChoices.size(), 4u);
    EXPECT_EQ(f.AnalogChoices[0], "LEVEL");
    EXPECT_EQ(f.AnalogChoices[1], "VALVE");
    EXPECT_EQ(f.AnalogChoices[2], "SETPT");
    EXPECT_EQ(f.AnalogChoices[3], "VALVE2");
    // The unused tags 9..32 are analog and offer empty entries; no system variable.
    EXPECT_EQ(f.AnalogChoices.size(), 4u + 24u);
    for (const auto& name : f.AnalogChoices) EXPECT_NE(name, "TS");
    EXPECT_EQ(f.DigitalChoices, (std::vector<std::string>{"DOOR", "PUMP", "HEATER", "LAMP"}));
}

TEST(SetupScreens, AnEmptyTargetShowsAnEmptyBoxButReadsAs1InTheTableUntilSaved) {
    ScreenRig r;
    r.st.screens.Headers[2].JumpTo = 0;
    ScreenSetupForm f = OpenSetupScreens(r.st);
    LoadSetupScreen(r.st, f, 2);
    EXPECT_EQ(f.TxtJump, "");
    EXPECT_EQ(r.st.screens.Headers[2].JumpTo, 1);
    EXPECT_EQ(SaveSetupScreen(r.st, f), 0);
    EXPECT_EQ(r.st.screens.Headers[2].JumpTo, 0);
}

TEST(SetupScreens, ATargetOutside0To10IsResetTo1WhenShown) {
    ScreenRig r;
    r.st.screens.Headers[4].JumpTo = 11;
    r.st.screens.Headers[5].JumpTo = -2;
    ScreenSetupForm f = OpenSetupScreens(r.st);
    LoadSetupScreen(r.st, f, 4);
    EXPECT_EQ(f.TxtJump, "1");
    EXPECT_EQ(r.st.screens.Headers[4].JumpTo, 1);
    LoadSetupScreen(r.st, f, 5);
    EXPECT_EQ(f.TxtJump, "1");
    EXPECT_EQ(r.st.screens.Headers[5].JumpTo, 1);
}

TEST(SetupScreens, Jump0IsAcceptedAndStoredAs0) {
    ScreenRig r;
    ScreenSetupForm f = OpenSetupScreens(r.st);
    f.TxtJump = "0";
    EXPECT_EQ(SaveSetupScreen(r.st, f), 0);
    EXPECT_EQ(r.st.screens.Headers[1].JumpTo, 0);
    EXPECT_TRUE(r.prompt.messages.empty());
}

TEST(SetupScreens, Jump10IsStored) {
    ScreenRig r;
    ScreenSetupForm f = OpenSetupScreens(r.st);
    f.TxtJump = "10";
    EXPECT_EQ(SaveSetupScreen(r.st, f), 0);
    EXPECT_EQ(r.st.screens.Headers[1].JumpTo, 10);
}

TEST(SetupScreens, JumpsOutOfRangeAreRefusedAndLeaveTheTargetAsItWas) {
    for (const char* text : {"11", "-1", "99999"}) {
        ScreenRig r;
        ScreenSetupForm f = OpenSetupScreens(r.st);
        f.TxtJump = text;
        EXPECT_EQ(SaveSetupScreen(r.st, f), 1) << text;
        ASSERT_EQ(r.prompt.messages.size(), 1u) << text;
        EXPECT_EQ(r.prompt.messages[0], (Shown{kJumpMessage, kAppTitle})) << text;
        EXPECT_EQ(r.st.screens.Headers[1].JumpTo, 3) << text;
    }
}

TEST(SetupScreens, AJumpThatIsNoNumberIsRefusedAndStores0) {
    ScreenRig r;
    ScreenSetupForm f = OpenSetupScreens(r.st);
    f.TxtJump = "abc";
    f.CboAnTag[0] = "VALVE";
    EXPECT_EQ(SaveSetupScreen(r.st, f), 1);
    ASSERT_EQ(r.prompt.messages.size(), 1u);
    EXPECT_EQ(r.prompt.messages[0], (Shown{kJumpMessage, kAppTitle}));
    EXPECT_EQ(r.st.screens.Headers[1].JumpTo, 0);
    // The lines come after the jump check and are not stored.
    EXPECT_EQ(r.st.screens.Lines(1, 1).TagName, "LEVEL");
}

TEST(SetupScreens, TheTitleIsStoredEvenWhenALaterCheckFails) {
    ScreenRig r;
    ScreenSetupForm f = OpenSetupScreens(r.st);
    f.TxtScreen = "New Title";
    f.TxtJump = "abc";
    EXPECT_EQ(SaveSetupScreen(r.st, f), 1);
    EXPECT_EQ(r.st.screens.Headers[1].Title, "New Title");
}

TEST(SetupScreens, LowerCaseTsInAnAnalogRowStoresTSAsTag33) {
    ScreenRig r;
    ScreenSetupForm f = OpenSetupScreens(r.st);
    f.CboAnTag[6] = "ts";
    EXPECT_EQ(SaveSetupScreen(r.st, f), 0);
    EXPECT_EQ(r.st.screens.Lines(1, 7).TagName, "TS");
    EXPECT_EQ(r.st.screens.Lines(1, 7).TagNumber, 33);
}

TEST(SetupScreens, NamesAreUpperCasedAndLookedUp) {
    ScreenRig r;
    ScreenSetupForm f = OpenSetupScreens(r.st);
    f.CboAnTag[0] = "setpt";
    f.CboDigTag[0] = "Lamp";
    EXPECT_EQ(SaveSetupScreen(r.st, f), 0);
    EXPECT_EQ(r.st.screens.Lines(1, 1).TagName, "SETPT");
    EXPECT_EQ(r.st.screens.Lines(1, 1).TagNumber, test::kSetpt);
    EXPECT_EQ(r.st.screens.Lines(1, 11).TagName, "LAMP");
    EXPECT_EQ(r.st.screens.Lines(1, 11).TagNumber, test::kLamp);
}

TEST(SetupScreens, TsInADigitalRowIsAnAnalogVariable) {
    ScreenRig r;
    ScreenSetupForm f = OpenSetupScreens(r.st);
    f.CboDigTag[5] = "ts";
    EXPECT_EQ(SaveSetupScreen(r.st, f), 1);
    ASSERT_EQ(r.prompt.messages.size(), 1u);
    EXPECT_EQ(r.prompt.messages[0], (Shown{"ERROR TS is an analog variable", kAppTitle}));
    EXPECT_EQ(r.st.screens.Lines(1, 16).TagNumber, 0);
}

TEST(SetupScreens, ADigitalTagInAnAnalogRowIsRefused) {
    ScreenRig r;
    ScreenSetupForm f = OpenSetupScreens(r.st);
    f.CboAnTag[1] = "pump";
    EXPECT_EQ(SaveSetupScreen(r.st, f), 1);
    ASSERT_EQ(r.prompt.messages.size(), 1u);
    EXPECT_EQ(r.prompt.messages[0], (Shown{"Error PUMP is a digital variable", kAppTitle}));
    EXPECT_EQ(r.st.screens.Lines(1, 2).TagName, "VALVE");
}

TEST(SetupScreens, AnUnknownNameIsNotInTheVariableDatabase) {
    ScreenRig r;
    ScreenSetupForm f = OpenSetupScreens(r.st);
    f.CboDigTag[0] = "nothing";
    EXPECT_EQ(SaveSetupScreen(r.st, f), 1);
    ASSERT_EQ(r.prompt.messages.size(), 1u);
    EXPECT_EQ(r.prompt.messages[0],
              (Shown{"Error NOTHING is not in Variable Database", kAppTitle}));
}

TEST(SetupScreens, LinesBeforeTheFailingOneKeepWhatWasStored) {
    ScreenRig r;
    ScreenSetupForm f = OpenSetupScreens(r.st);
    f.CboAnTag[0] = "setpt";
    f.CboAnTag[1] = "";
    f.CboAnTag[2] = "DOOR";  // refused
    f.CboAnTag[3] = "LEVEL";
    EXPECT_EQ(SaveSetupScreen(r.st, f), 1);
    EXPECT_EQ(r.st.screens.Lines(1, 1).TagName, "SETPT");
    EXPECT_EQ(r.st.screens.Lines(1, 2).TagName, "");
    EXPECT_EQ(r.st.screens.Lines(1, 2).TagNumber, 0);
    EXPECT_EQ(r.st.screens.Lines(1, 3).TagName, "SETPT");  // as before
    EXPECT_EQ(r.st.screens.Lines(1, 4).TagName, "TS");     // not reached
}

TEST(SetupScreens, TheFirstRefusalEndsTheSaveWithOneMessage) {
    ScreenRig r;
    ScreenSetupForm f = OpenSetupScreens(r.st);
    f.CboAnTag[0] = "PUMP";
    f.CboDigTag[0] = "LEVEL";
    EXPECT_EQ(SaveSetupScreen(r.st, f), 1);
    ASSERT_EQ(r.prompt.messages.size(), 1u);
    EXPECT_EQ(r.prompt.messages[0].text, "Error PUMP is a digital variable");
}

TEST(SetupScreens, AnAnalogTagInADigitalRowIsRefusedWithCapitalError) {
    ScreenRig r;
    ScreenSetupForm f = OpenSetupScreens(r.st);
    f.CboDigTag[9] = "level";
    EXPECT_EQ(SaveSetupScreen(r.st, f), 1);
    ASSERT_EQ(r.prompt.messages.size(), 1u);
    EXPECT_EQ(r.prompt.messages[0], (Shown{"ERROR LEVEL is an analog variable", kAppTitle}));
}

TEST(SetupScreens, NextOnScreen10ShowsScreen1AndPreviousOnScreen1ShowsScreen10) {
    ScreenRig r;
    ScreenSetupForm f = OpenSetupScreens(r.st);
    EXPECT_TRUE(PrevSetupScreen(r.st, f));
    EXPECT_EQ(f.LblScrNo, 10);
    EXPECT_TRUE(NextSetupScreen(r.st, f));
    EXPECT_EQ(f.LblScrNo, 1);
    EXPECT_EQ(f.TxtScreen, "Plant");
    for (int i = 2; i <= 10; ++i) {
        EXPECT_TRUE(NextSetupScreen(r.st, f));
        EXPECT_EQ(f.LblScrNo, i);
    }
}

TEST(SetupScreens, NextStoresTheScreenFirst) {
    ScreenRig r;
    ScreenSetupForm f = OpenSetupScreens(r.st);
    f.TxtScreen = "Renamed";
    f.CboDigTag[5] = "lamp";
    EXPECT_TRUE(NextSetupScreen(r.st, f));
    EXPECT_EQ(f.LblScrNo, 2);
    EXPECT_EQ(r.st.screens.Headers[1].Title, "Renamed");
    EXPECT_EQ(r.st.screens.Lines(1, 16).TagNumber, test::kLamp);
    EXPECT_TRUE(PrevSetupScreen(r.st, f));
    EXPECT_EQ(f.TxtScreen, "Renamed");
    EXPECT_EQ(f.CboDigTag[5], "LAMP");
    EXPECT_EQ(f.LblDig[5], "Alarm Lamp");
}

TEST(SetupScreens, ARefusedSaveStaysOnTheScreen) {
    ScreenRig r;
    ScreenSetupForm f = OpenSetupScreens(r.st);
    f.CboAnTag[0] = "NOSUCH";
    EXPECT_FALSE(NextSetupScreen(r.st, f));
    EXPECT_EQ(f.LblScrNo, 1);
    EXPECT_EQ(f.CboAnTag[0], "NOSUCH");
    EXPECT_FALSE(PrevSetupScreen(r.st, f));
    EXPECT_EQ(f.LblScrNo, 1);
    EXPECT_EQ(r.prompt.messages.size(), 2u);
}

TEST(SetupScreens, ExitWithoutErrorClosesWithoutAsking) {
    ScreenRig r;
    ScreenSetupForm f = OpenSetupScreens(r.st);
    f.TxtScreen = "Saved";
    EXPECT_TRUE(ExitSetupScreens(r.st, f));
    EXPECT_TRUE(r.prompt.questions.empty());
    EXPECT_EQ(r.st.screens.Headers[1].Title, "Saved");
}

TEST(SetupScreens, ExitAfterARefusalAsksAndClosesOnlyOnYes) {
    ScreenRig r;
    ScreenSetupForm f = OpenSetupScreens(r.st);
    f.TxtJump = "11";
    r.prompt.yesNoAnswers = {false};
    EXPECT_FALSE(ExitSetupScreens(r.st, f));
    ASSERT_EQ(r.prompt.questions.size(), 1u);
    EXPECT_EQ(r.prompt.questions[0], (Shown{"Do You Wish To Exit", "ERROR"}));
    r.prompt.yesNoAnswers = {true};
    EXPECT_TRUE(ExitSetupScreens(r.st, f));
    EXPECT_EQ(r.prompt.messages.size(), 2u);
}

TEST(SetupScreens, APickedTagFillsTheRowThatAskedForIt) {
    ScreenRig r;
    ScreenSetupForm f = OpenSetupScreens(r.st);
    AskPickerFromRow(f, 7);
    TakePickedTag(f, "SETPT");
    EXPECT_EQ(f.CboAnTag[7], "SETPT");
    // Without an asking row a name goes nowhere.
    TakePickedTag(f, "SETPT2");
    for (const auto& text : f.CboAnTag) EXPECT_NE(text, "SETPT2");
}

TEST(SetupScreens, ALineWhoseTagNumberIsOutOfRangeShowsNoDescription) {
    ScreenRig r;
    r.st.screens.Lines(3, 1) = ScreenLine{"GHOST", 77, 0};
    ScreenSetupForm f = OpenSetupScreens(r.st);
    LoadSetupScreen(r.st, f, 3);
    EXPECT_EQ(f.CboAnTag[0], "GHOST");
    EXPECT_EQ(f.LblAn[0], "");
}

}  // namespace kova
