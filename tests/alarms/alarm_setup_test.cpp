#include "alarms/alarm_setup.h"

#include <gtest/gtest.h>

#include "alarm_rig.h"
#include "alarms/alarm_check.h"
#include "alarms/alarm_list.h"
#include "core/configuration.h"
#include "core/fault.h"
#include "core/text_encoding.h"

namespace kova {

using test::AlarmRig;
using test::Shown;

namespace {

AlarmSetupForm filled(AlarmRig& r, int number, const std::string& tag, const std::string& hi,
                      const std::string& lo) {
    AlarmSetupForm f = OpenAlarmSetup(r.st);
    ShowAlarm(r.st, f, number);
    f.CboTag = tag;
    f.TxtHiVal = hi;
    f.TxtLoVal = lo;
    f.TxtHiMsg = "Too high";
    f.TxtLoMsg = "Too low";
    f.TxtNormMsg = "Normal";
    return f;
}

// The bytes an alarm takes in its record of the setup file, field by field.
std::size_t recordBytes(const AlarmDef& a) {
    auto str = [](const std::string& s) { return 2 + *Cp1252Length(s); };
    return str(a.TagName) + 2 + 4 + str(a.HiMsg) + 4 + str(a.LoMsg) + str(a.NormMsg) +
           str(a.LastText) + 2;
}

}  // namespace

TEST(AlarmSetup, OpensOnAlarmOneWithTheSwitchAndTheNamedUserTags) {
    AlarmRig r;
    r.st.switches.AlarmsEnabled = 1;
    AlarmDef& a = r.watch(1, 5, 80.5f, -3);
    a.HiMsg = "Flow high";
    const AlarmSetupForm f = OpenAlarmSetup(r.st);
    EXPECT_EQ(f.LblAlmNo, 1);
    EXPECT_TRUE(f.ChkEnableAlm);
    EXPECT_EQ(f.CboTagList, (std::vector<std::string>{"TANK", "PUMP", "FLOW"}));  // tag order
    EXPECT_EQ(f.CboTag, "FLOW");
    EXPECT_EQ(f.TxtHiVal, "80.5");
    EXPECT_EQ(f.TxtLoVal, "-3");
    EXPECT_EQ(f.TxtHiMsg, "Flow high");
    EXPECT_EQ(f.TxtLoMsg, "FLOW low");
    EXPECT_EQ(f.TxtNormMsg, "FLOW normal");
    r.st.switches.AlarmsEnabled = 0;
    EXPECT_FALSE(OpenAlarmSetup(r.st).ChkEnableAlm);
    EXPECT_STREQ(kEnableAlarmsCaption, "Enable Alarms");
}

TEST(AlarmSetup, AValidAlarmIsStoredAndKeepsItsStateAndLastText) {
    AlarmRig r;
    AlarmDef& a = r.st.alarms.Alarms[3];
    a.State = 3;
    a.LastText = "ACKN  11-15-2026 14:05:09 old";
    AlarmSetupForm f = filled(r, 3, "flow ", " 90", "1.5e1");
    EXPECT_TRUE(SaveAlarm(r.st, f));
    EXPECT_TRUE(r.prompt.messages.empty());
    EXPECT_EQ(a.TagName, "FLOW");
    EXPECT_EQ(a.TagNo, 5);
    EXPECT_EQ(a.HiVal, 90.0f);
    EXPECT_EQ(a.LoVal, 15.0f);
    EXPECT_EQ(a.HiMsg, "Too high");
    EXPECT_EQ(a.LoMsg, "Too low");
    EXPECT_EQ(a.NormMsg, "Normal");
    EXPECT_EQ(a.State, 3);
    EXPECT_EQ(a.LastText, "ACKN  11-15-2026 14:05:09 old");
}

TEST(AlarmSetup, HighEqualToLowIsRefused) {
    AlarmRig r;
    AlarmSetupForm f = filled(r, 1, "TANK", "10", "10");
    EXPECT_FALSE(SaveAlarm(r.st, f));
    EXPECT_EQ(
        r.prompt.messages,
        (std::vector<Shown>{{"High Alarm Value must be greater than Low Alarm Value", "Error"}}));
    EXPECT_EQ(r.st.alarms.Alarms[1], AlarmDef{});
    f.TxtHiVal = "9";
    EXPECT_FALSE(SaveAlarm(r.st, f));
    EXPECT_EQ(r.prompt.messages.size(), 2u);
}

TEST(AlarmSetup, AHighValueOfTenInWordsIsRefusedBeforeTheComparison) {
    AlarmRig r;
    AlarmSetupForm f = filled(r, 1, "TANK", "ten", "20");
    EXPECT_FALSE(SaveAlarm(r.st, f));
    EXPECT_EQ(r.prompt.messages,
              (std::vector<Shown>{{"High and Low Alarm Values must be numbers", "Error"}}));
    f = filled(r, 1, "TANK", "90", "");
    r.prompt.messages.clear();
    EXPECT_FALSE(SaveAlarm(r.st, f));
    EXPECT_EQ(r.prompt.messages,
              (std::vector<Shown>{{"High and Low Alarm Values must be numbers", "Error"}}));
    EXPECT_EQ(r.st.alarms.Alarms[1], AlarmDef{});
}

TEST(AlarmSetup, AnUnknownTagNameIsRefusedWithItsUpperCaseTitle) {
    AlarmRig r;
    AlarmSetupForm f = filled(r, 1, "TANKS", "ten", "10");
    EXPECT_FALSE(SaveAlarm(r.st, f));
    EXPECT_EQ(r.prompt.messages, (std::vector<Shown>{{"Tag Name Not Found", "ERROR"}}));
    EXPECT_EQ(r.st.alarms.Alarms[1], AlarmDef{});
}

TEST(AlarmSetup, NamesAreLookedUpInUpperCase) {
    AlarmRig r;
    AlarmSetupForm f = filled(r, 1, "Tank", "90", "10");
    EXPECT_TRUE(SaveAlarm(r.st, f));
    EXPECT_EQ(r.st.alarms.Alarms[1].TagNo, 1);
    EXPECT_EQ(r.st.alarms.Alarms[1].TagName, "TANK");
    f.CboTag = "ts";  // a system variable the user typed
    EXPECT_TRUE(SaveAlarm(r.st, f));
    EXPECT_EQ(r.st.alarms.Alarms[1].TagNo, 33);
}

TEST(AlarmSetup, NoTagAndNextClearsTheAlarmAndMovesOn) {
    AlarmRig r;
    AlarmDef& a = r.watch(4, 1, 80, 20);
    a.State = 1;
    a.LastText = "ALARM 11-15-2026 14:05:09 TANK high";
    AlarmSetupForm f = OpenAlarmSetup(r.st);
    ShowAlarm(r.st, f, 4);
    f.CboTag = "";
    f.TxtHiVal = "not even a number";
    EXPECT_TRUE(NextAlarm(r.st, f));
    EXPECT_TRUE(r.prompt.messages.empty());
    EXPECT_EQ(a, AlarmDef{});  // texts "", numbers 0, state 0
    EXPECT_EQ(f.LblAlmNo, 5);
}

TEST(AlarmSetup, NextOnAlarmTwentyShowsAlarmOne) {
    AlarmRig r;
    r.watch(1, 1, 80, 20);
    AlarmSetupForm f = filled(r, 20, "PUMP", "1", "0");
    EXPECT_TRUE(NextAlarm(r.st, f));
    EXPECT_EQ(f.LblAlmNo, 1);
    EXPECT_EQ(f.CboTag, "TANK");
    EXPECT_EQ(f.TxtHiVal, "80");
    EXPECT_EQ(r.st.alarms.Alarms[20].TagNo, 2);
}

TEST(AlarmSetup, PrevOnAlarmOneShowsAlarmTwenty) {
    AlarmRig r;
    r.watch(20, 5, 7, 3);
    AlarmSetupForm f = OpenAlarmSetup(r.st);
    EXPECT_TRUE(PrevAlarm(r.st, f));
    EXPECT_EQ(f.LblAlmNo, 20);
    EXPECT_EQ(f.CboTag, "FLOW");
    EXPECT_TRUE(PrevAlarm(r.st, f));
    EXPECT_EQ(f.LblAlmNo, 19);
    EXPECT_TRUE(r.prompt.messages.empty());
}

TEST(AlarmSetup, AFailedSaveStaysOnTheAlarmWithTheTextAsTyped) {
    AlarmRig r;
    AlarmSetupForm f = filled(r, 7, "TANK", "5", "10");
    const AlarmSetupForm typed = f;
    EXPECT_FALSE(NextAlarm(r.st, f));
    EXPECT_FALSE(PrevAlarm(r.st, f));
    EXPECT_EQ(f.LblAlmNo, 7);
    EXPECT_EQ(f.TxtHiVal, typed.TxtHiVal);
    EXPECT_EQ(f.CboTag, typed.CboTag);
    EXPECT_EQ(r.prompt.messages.size(), 2u);
}

TEST(AlarmSetup, DeleteMovesTheLaterAlarmsUpWithoutAsking) {
    AlarmRig r;
    r.watch(3, 1, 80, 20);
    AlarmDef& fourth = r.watch(4, 5, 9, 1);
    fourth.State = 2;
    fourth.LastText = "ALARM 11-15-2026 14:05:09 FLOW low";
    r.watch(20, 2, 1, 0);
    const AlarmDef wasFourth = fourth;
    const AlarmDef wasTwentieth = r.st.alarms.Alarms[20];
    AlarmSetupForm f = filled(r, 3, "TANK", "nonsense", "");  // unsaved edits are dropped
    DeleteAlarm(r.st, f);
    EXPECT_TRUE(r.prompt.questions.empty());
    EXPECT_TRUE(r.prompt.messages.empty());
    EXPECT_EQ(r.st.alarms.Alarms[3], wasFourth);  // whole records move
    EXPECT_EQ(r.st.alarms.Alarms[19], wasTwentieth);
    EXPECT_EQ(r.st.alarms.Alarms[20], AlarmDef{});
    EXPECT_EQ(f.LblAlmNo, 3);
    EXPECT_EQ(f.CboTag, "FLOW");
    EXPECT_EQ(f.TxtHiVal, "9");
}

TEST(AlarmSetup, DeletingAlarmTwentyEmptiesIt) {
    AlarmRig r;
    r.watch(20, 1, 80, 20);
    r.watch(19, 5, 8, 2);
    AlarmSetupForm f = OpenAlarmSetup(r.st);
    ShowAlarm(r.st, f, 20);
    DeleteAlarm(r.st, f);
    EXPECT_EQ(r.st.alarms.Alarms[20], AlarmDef{});
    EXPECT_EQ(r.st.alarms.Alarms[19].TagName, "FLOW");
    EXPECT_EQ(f.LblAlmNo, 20);
    EXPECT_EQ(f.CboTag, "");
}

TEST(AlarmSetup, ExitSavesAndStoresTheSwitch) {
    AlarmRig r;
    r.st.switches.AlarmsEnabled = 0;
    AlarmSetupForm f = filled(r, 2, "TANK", "90", "10");
    f.ChkEnableAlm = true;
    EXPECT_TRUE(ExitAlarmSetup(r.st, f));
    EXPECT_TRUE(r.prompt.questions.empty());
    EXPECT_EQ(r.st.alarms.Alarms[2].TagNo, 1);
    EXPECT_EQ(r.st.switches.AlarmsEnabled, 1);
    f.ChkEnableAlm = false;
    EXPECT_TRUE(ExitAlarmSetup(r.st, f));
    EXPECT_EQ(r.st.switches.AlarmsEnabled, 0);
}

TEST(AlarmSetup, ExitWithAFailedSaveAsksAndStaysOnNo) {
    AlarmRig r;
    r.st.switches.AlarmsEnabled = 1;
    AlarmSetupForm f = filled(r, 2, "TANK", "10", "10");
    f.ChkEnableAlm = false;
    r.prompt.yesNoAnswers = {false};
    EXPECT_FALSE(ExitAlarmSetup(r.st, f));
    EXPECT_EQ(r.prompt.messages.at(0).text,
              "High Alarm Value must be greater than Low Alarm Value");
    EXPECT_EQ(r.prompt.questions,
              (std::vector<Shown>{{"Do You wish to exit without saving this alarm", kAppTitle}}));
    EXPECT_EQ(r.st.switches.AlarmsEnabled, 1);
    EXPECT_EQ(f.LblAlmNo, 2);
}

TEST(AlarmSetup, ExitWithAFailedSaveLeavesOnYesWithoutStoringTheAlarm) {
    AlarmRig r;
    r.st.switches.AlarmsEnabled = 0;
    AlarmSetupForm f = filled(r, 2, "NOSUCH", "90", "10");
    f.ChkEnableAlm = true;
    r.prompt.yesNoAnswers = {true};
    EXPECT_TRUE(ExitAlarmSetup(r.st, f));
    EXPECT_EQ(r.prompt.messages, (std::vector<Shown>{{"Tag Name Not Found", "ERROR"}}));
    EXPECT_EQ(r.prompt.questions.size(), 1u);
    EXPECT_EQ(r.st.alarms.Alarms[2], AlarmDef{});
    EXPECT_EQ(r.st.switches.AlarmsEnabled, 1);
}

TEST(AlarmSetup, AValueBeyondSinglePrecisionIsARunTimeFault) {
    AlarmRig r;
    AlarmSetupForm f = filled(r, 1, "TANK", "1e40", "0");
    EXPECT_THROW(SaveAlarm(r.st, f), Fault);
    EXPECT_EQ(r.st.alarms.Alarms[1], AlarmDef{});
}

TEST(AlarmSetup, MessagesThatFillTheRecordExactlyAreAcceptedAndTheLinesStillFit) {
    AlarmRig r;
    // TANK (4) + three messages of 19 + the longest again (19) = 80 text bytes: 128 in all.
    AlarmSetupForm f = filled(r, 1, "TANK", "80", "20");
    f.TxtHiMsg = std::string(19, 'H');
    f.TxtLoMsg = std::string(19, 'L');
    f.TxtNormMsg = std::string(18, 'N') + "\xE2\x82\xAC";  // the euro sign is one byte on file
    EXPECT_EQ(AlarmRecordBudget("TANK", f.TxtHiMsg, f.TxtLoMsg, f.TxtNormMsg), 128u);
    EXPECT_TRUE(SaveAlarm(r.st, f));
    EXPECT_TRUE(r.prompt.messages.empty());

    AlarmDef& a = r.st.alarms.Alarms[1];
    for (float v : {90.0f, 50.0f, 10.0f}) {
        r.set(1, v);
        CheckAlarms(r.st);
        EXPECT_EQ(recordBytes(a), 128u);
        AcknowledgeAlarms(r.st);
        EXPECT_EQ(recordBytes(a), 128u);
    }
}

TEST(AlarmSetup, MessagesOneByteTooLongAreRefusedBeforeStoring) {
    AlarmRig r;
    AlarmSetupForm f = filled(r, 1, "TANK", "80", "20");
    f.TxtHiMsg = std::string(20, 'H');
    f.TxtLoMsg = std::string(19, 'L');
    f.TxtNormMsg = std::string(19, 'N');
    EXPECT_FALSE(SaveAlarm(r.st, f));
    EXPECT_EQ(r.prompt.messages,
              (std::vector<Shown>{
                  {"Alarm messages too long to save: the tag name and the three messages, with the "
                   "longest message counted twice, may have at most 80 characters together; "
                   "these have 82",
                   "Error"}}));
    EXPECT_EQ(r.st.alarms.Alarms[1], AlarmDef{});
}

TEST(AlarmSetup, TheRecordCheckComesAfterTheValueChecks) {
    AlarmRig r;
    AlarmSetupForm f = filled(r, 1, "TANK", "10", "80");
    f.TxtHiMsg = std::string(200, 'H');
    EXPECT_FALSE(SaveAlarm(r.st, f));
    EXPECT_EQ(r.prompt.messages.size(), 1u);
    EXPECT_EQ(r.prompt.messages[0].text, "High Alarm Value must be greater than Low Alarm Value");
}

TEST(AlarmSetup, TextTheSetupFileCannotHoldIsRefused) {
    AlarmRig r;
    AlarmSetupForm f = filled(r, 1, "TANK", "80", "20");
    f.TxtLoMsg = "Level \xE2\x9C\x93";  // a check mark has no Windows-1252 byte
    EXPECT_FALSE(SaveAlarm(r.st, f));
    EXPECT_EQ(r.prompt.messages,
              (std::vector<Shown>{{"The Low Alarm Message contains a character that cannot be "
                                   "stored in the setup file",
                                   "Error"}}));
    EXPECT_EQ(r.st.alarms.Alarms[1], AlarmDef{});
    EXPECT_EQ(AlarmRecordBudget("TANK", "", f.TxtLoMsg, ""), std::nullopt);
}

TEST(AlarmSetup, ClearingAnAlarmNeedsNoValidTexts) {
    AlarmRig r;
    r.watch(1, 1, 80, 20);
    AlarmSetupForm f = filled(r, 1, "   ", "x", "y");
    f.TxtHiMsg = std::string(300, 'H') + "\xE2\x9C\x93";
    EXPECT_TRUE(SaveAlarm(r.st, f));
    EXPECT_TRUE(r.prompt.messages.empty());
    EXPECT_EQ(r.st.alarms.Alarms[1], AlarmDef{});
}

// Saving keeps the alarm's LastText, so the record must hold it next to the new messages:
// otherwise a re-save that the form accepted would make File Save fail later.
TEST(AlarmSetup, TheKeptLatestLineCountsInTheRecordSoFileSaveNeverFailsLater) {
    AlarmRig r;
    test::TempFolder folder;
    AlarmSetupForm f = filled(r, 1, "TANK", "80", "20");
    f.TxtHiMsg = std::string(38, 'H');
    f.TxtLoMsg = "";
    f.TxtNormMsg = "";
    ASSERT_TRUE(SaveAlarm(r.st, f));  // 22 + 4 + 38 + (26 + 38) = 128 bytes
    r.set(1, 90);
    CheckAlarms(r.st);
    AlarmDef& a = r.st.alarms.Alarms[1];
    ASSERT_EQ(a.LastText.size(), 64u);
    ASSERT_EQ(a.State, 1);

    f.TxtHiMsg = std::string(25, 'H');
    f.TxtLoMsg = std::string(25, 'L');
    EXPECT_EQ(AlarmRecordBudget("TANK", f.TxtHiMsg, f.TxtLoMsg, "", a.LastText), 140u);
    EXPECT_FALSE(SaveAlarm(r.st, f));
    EXPECT_EQ(r.prompt.messages,
              (std::vector<Shown>{
                  {"Alarm messages too long to save: the alarm keeps its latest line of 64 "
                   "characters, so the tag name and the three messages may have at most 42 "
                   "characters together; these have 54",
                   "Error"}}));
    EXPECT_EQ(a.HiMsg, std::string(38, 'H'));  // nothing stored
    EXPECT_EQ(recordBytes(a), 128u);
    EXPECT_NO_THROW(SaveConfiguration(r.st, folder / "A.SUF"));

    // Messages that fit next to the kept line are accepted, and the file still saves.
    r.prompt.messages.clear();
    f.TxtHiMsg = std::string(19, 'H');
    f.TxtLoMsg = std::string(19, 'L');
    EXPECT_TRUE(SaveAlarm(r.st, f));
    EXPECT_TRUE(r.prompt.messages.empty());
    EXPECT_EQ(recordBytes(a), 128u);
    EXPECT_NO_THROW(SaveConfiguration(r.st, folder / "B.SUF"));
    // And every line the new messages make fits as well.
    for (float v : {50.0f, 10.0f, 90.0f}) {
        r.set(1, v);
        CheckAlarms(r.st);
        EXPECT_LE(recordBytes(a), 128u);
    }
}

TEST(AlarmSetup, ClearingTheAlarmDropsItsLatestLineAndMakesRoomAgain) {
    AlarmRig r;
    AlarmSetupForm f = filled(r, 1, "TANK", "80", "20");
    f.TxtHiMsg = std::string(38, 'H');
    f.TxtLoMsg = "";
    f.TxtNormMsg = "";
    ASSERT_TRUE(SaveAlarm(r.st, f));
    r.set(1, 90);
    CheckAlarms(r.st);
    AlarmSetupForm none = filled(r, 1, "", "", "");
    ASSERT_TRUE(SaveAlarm(r.st, none));
    f.TxtHiMsg = std::string(25, 'H');
    f.TxtLoMsg = std::string(25, 'L');
    EXPECT_TRUE(SaveAlarm(r.st, f));
    EXPECT_TRUE(r.prompt.messages.empty());
}

}  // namespace kova
