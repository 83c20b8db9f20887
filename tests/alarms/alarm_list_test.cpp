#include "alarms/alarm_list.h"

#include <gtest/gtest.h>

#include "alarm_rig.h"
#include "alarms/alarm_check.h"
#include "support/test_support.h"

namespace kova {

using test::AlarmRig;
using test::Shown;

namespace {
const std::string kAt = "11-15-2026 14:05:09 ";

class RecordingPrinter final : public Printer {
  public:
    bool printText(const std::string& name, const std::string& text) override {
        printed.push_back({text, name});
        return answer;
    }
    std::vector<Shown> printed;  // text, document name
    bool answer = true;
};

std::string crlfLines(const std::vector<std::string>& lines) {
    std::string s;
    for (const auto& l : lines) s += l + "\r\n";
    return s;
}
}  // namespace

TEST(AlarmAcknowledge, RaisedAlarmsBecomeAcknowledgedAndTheirTextSaysAckn) {
    AlarmRig r;
    r.watch(1, 1, 80, 20);
    r.watch(2, 5, 80, 20);
    r.set(1, 90);
    r.set(5, 10);
    CheckAlarms(r.st);
    AcknowledgeAlarms(r.st);
    EXPECT_EQ(r.st.alarms.Alarms[1].State, 3);
    EXPECT_EQ(r.st.alarms.Alarms[2].State, 3);
    EXPECT_EQ(r.st.alarms.Alarms[1].LastText, "ACKN  " + kAt + "TANK high");
    EXPECT_EQ(r.st.alarms.Alarms[2].LastText, "ACKN  " + kAt + "FLOW low");
    EXPECT_EQ(r.st.alarms.History[0], "ACKN  " + kAt + "TANK high");
    EXPECT_EQ(r.st.alarms.History[1], "ACKN  " + kAt + "FLOW low");
    EXPECT_EQ(r.st.alarms.HistoryCount, 2);
    EXPECT_EQ(r.beeper.count, 2);
}

TEST(AlarmAcknowledge, AnAlarmBackToNormalBecomesQuietWithoutALine) {
    AlarmRig r;
    AlarmDef& a = r.watch(1, 1, 80, 20);
    r.set(1, 90);
    CheckAlarms(r.st);
    r.set(1, 50);
    CheckAlarms(r.st);
    ASSERT_EQ(a.State, 4);
    const std::size_t shown = r.status.texts.size();
    AcknowledgeAlarms(r.st);
    EXPECT_EQ(a.State, 0);
    EXPECT_EQ(a.LastText, "NORML " + kAt + "TANK normal");  // unchanged
    EXPECT_EQ(r.st.alarms.HistoryCount, 2);
    EXPECT_EQ(r.st.alarms.History[0], "ACKN  " + kAt + "TANK high");
    EXPECT_EQ(r.st.alarms.History[1], "NORML " + kAt + "TANK normal");
    EXPECT_EQ(r.status.texts.size(), shown);
    // quiet again: a value between the limits stays silent, and the bar is emptied
    CheckAlarms(r.st);
    EXPECT_EQ(a.State, 0);
    EXPECT_EQ(r.st.alarms.HistoryCount, 2);
    EXPECT_EQ(r.status.texts.back(), "");
}

TEST(AlarmAcknowledge, QuietAndAcknowledgedAlarmsAreLeftAlone) {
    AlarmRig r;
    AlarmDef& quiet = r.watch(1, 1, 80, 20);
    AlarmDef& acked = r.watch(2, 5, 80, 20);
    quiet.LastText = "NORML " + kAt + "TANK normal";
    acked.State = 3;
    acked.LastText = "ACKN  " + kAt + "FLOW high";
    AcknowledgeAlarms(r.st);
    EXPECT_EQ(quiet.State, 0);
    EXPECT_EQ(quiet.LastText, "NORML " + kAt + "TANK normal");
    EXPECT_EQ(acked.State, 3);
    EXPECT_EQ(acked.LastText, "ACKN  " + kAt + "FLOW high");
}

TEST(AlarmAcknowledge, OnlyTheLeadingWordAlarmOfAHistoryLineChanges) {
    AlarmRig r;
    r.st.alarms.History[0] = "ALARM x";
    r.st.alarms.History[1] = "ALARMED";
    r.st.alarms.History[2] = " ALARM y";
    r.st.alarms.History[3] = "NORML ALARM";
    r.st.alarms.History[50] = "ALARM";
    AcknowledgeAlarms(r.st);
    EXPECT_EQ(r.st.alarms.History[0], "ACKN  x");
    EXPECT_EQ(r.st.alarms.History[1], "ACKN ED");
    EXPECT_EQ(r.st.alarms.History[2], " ALARM y");
    EXPECT_EQ(r.st.alarms.History[3], "NORML ALARM");
    EXPECT_EQ(r.st.alarms.History[50], "ACKN ");
}

TEST(AlarmAcknowledge, AShortOrForeignLastTextIsReplacedByCharacters) {
    AlarmRig r;
    AlarmDef& a = r.watch(1, 1, 80, 20);
    a.State = 1;
    a.LastText = "ABC";
    AcknowledgeAlarms(r.st);
    EXPECT_EQ(a.LastText, "ACKN  ");
    a.State = 2;
    a.LastText = "\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9 rest";  // six e-acute
    AcknowledgeAlarms(r.st);
    EXPECT_EQ(a.LastText, "ACKN   rest");
}

TEST(AlarmList, TheCurrentViewIsTheTwentyLastTextsEachEndedByCrLf) {
    AlarmRig r;
    r.watch(2, 1, 80, 20);
    r.set(1, 90);
    CheckAlarms(r.st);
    std::vector<std::string> lines(20, "");
    lines[1] = "ALARM " + kAt + "TANK high";
    EXPECT_EQ(CurrentAlarmsText(r.st), crlfLines(lines));
    Station empty;
    EXPECT_EQ(CurrentAlarmsText(empty).size(), 40u);
    EXPECT_EQ(CurrentAlarmsText(empty), crlfLines(std::vector<std::string>(20)));
}

TEST(AlarmList, TheHistoryViewIsSlotsZeroToFiftyEachEndedByCrLf) {
    AlarmRig r;
    r.watch(1, 1, 80, 20);
    r.set(1, 90);
    CheckAlarms(r.st);
    r.set(1, 10);
    CheckAlarms(r.st);
    std::vector<std::string> lines(51, "");
    lines[0] = "ALARM " + kAt + "TANK high";
    lines[1] = "ALARM " + kAt + "TANK low";
    EXPECT_EQ(AlarmHistoryText(r.st), crlfLines(lines));
}

TEST(AlarmList, OpensOnTheCurrentViewAndSwitchesBetweenViews) {
    AlarmRig r;
    r.watch(1, 1, 80, 20);
    r.set(1, 90);
    CheckAlarms(r.st);
    AlarmListForm f = OpenAlarmList(r.st);
    EXPECT_FALSE(f.ShowingHistory);
    EXPECT_EQ(f.TxtAlarms, CurrentAlarmsText(r.st));
    ShowAlarmHistory(r.st, f);
    EXPECT_TRUE(f.ShowingHistory);
    EXPECT_EQ(f.TxtAlarms, AlarmHistoryText(r.st));
    ShowCurrentAlarms(r.st, f);
    EXPECT_FALSE(f.ShowingHistory);
    EXPECT_TRUE(f.TxtAlarms.starts_with("ALARM " + kAt + "TANK high\r\n\r\n"));
}

TEST(AlarmList, AcknowledgeRefreshesTheViewShown) {
    AlarmRig r;
    r.watch(1, 1, 80, 20);
    r.set(1, 90);
    CheckAlarms(r.st);
    AlarmListForm f = OpenAlarmList(r.st);
    ShowAlarmHistory(r.st, f);
    AcknowledgeFromList(r.st, f);
    EXPECT_TRUE(f.ShowingHistory);
    EXPECT_TRUE(f.TxtAlarms.starts_with("ACKN  " + kAt + "TANK high\r\n\r\n"));
    EXPECT_EQ(r.st.alarms.Alarms[1].State, 3);

    r.set(1, 50);
    CheckAlarms(r.st);
    ShowCurrentAlarms(r.st, f);
    AcknowledgeFromList(r.st, f);
    EXPECT_FALSE(f.ShowingHistory);
    EXPECT_TRUE(f.TxtAlarms.starts_with("NORML " + kAt + "TANK normal\r\n\r\n"));
    EXPECT_EQ(r.st.alarms.Alarms[1].State, 0);
}

TEST(AlarmList, CountsTheAlarmsThatWaitForAcknowledgement) {
    AlarmRig r;
    EXPECT_EQ(UnacknowledgedText(r.st), "No unacknowledged alarms");
    r.watch(1, 1, 80, 20);
    r.watch(2, 5, 80, 20);
    r.watch(3, 2, 0.5f, -0.5f);  // the digital PUMP
    r.set(1, 90);
    r.set(5, 10);
    r.set(2, 1);
    CheckAlarms(r.st);
    EXPECT_EQ(CountUnacknowledged(r.st).inAlarm, 3);
    EXPECT_EQ(UnacknowledgedText(r.st), "Unacknowledged alarms: 3");
    r.set(5, 50);  // FLOW back between its limits before anyone acknowledged
    r.clock.advance(1000);
    CheckAlarms(r.st);
    EXPECT_EQ(r.st.alarms.Alarms[2].State, 4);
    EXPECT_EQ(UnacknowledgedText(r.st), "Unacknowledged alarms: 3 (1 back to normal)");
    AcknowledgeAlarms(r.st);
    EXPECT_EQ(CountUnacknowledged(r.st).total(), 0);
    EXPECT_EQ(UnacknowledgedText(r.st), "No unacknowledged alarms");
}

TEST(AlarmHistoryFile, TheListingHoldsTheLinesInUseOldestFirst) {
    AlarmRig r;
    r.st.alarms.History[0] = "ALARM a";
    r.st.alarms.History[1] = "NORML b";
    r.st.alarms.History[7] = "ACKN  c";  // a gap is skipped
    EXPECT_EQ(AlarmHistoryListing(r.st), crlfLines({"ALARM a", "NORML b", "ACKN  c"}));
}

TEST(AlarmHistoryFile, SavesTheListingIntoTheChosenTextFile) {
    AlarmRig r;
    test::TempFolder folder;
    r.watch(1, 1, 80, 20);
    r.set(1, 90);
    CheckAlarms(r.st);
    const auto file = folder / "HIST.TXT";
    r.prompt.fileAnswers = {file.string()};
    EXPECT_TRUE(SaveAlarmHistory(r.st));
    ASSERT_EQ(r.prompt.fileDialogs.size(), 1u);
    EXPECT_EQ(r.prompt.fileDialogs[0],
              (Shown{"Save Alarm History", "Text Files (*.TXT)|*.TXT|All Files (*.*)|*.*|"}));
    EXPECT_EQ(test::ReadFileBytes(file), "ALARM " + kAt + "TANK high\r\n");
    EXPECT_TRUE(r.prompt.messages.empty());
}

TEST(AlarmHistoryFile, CancellingTheDialogWritesNothing) {
    AlarmRig r;
    r.st.alarms.History[0] = "ALARM a";
    EXPECT_FALSE(SaveAlarmHistory(r.st));  // the scripted dialog answers Cancel
    EXPECT_EQ(r.prompt.fileDialogs.size(), 1u);
    EXPECT_TRUE(r.prompt.messages.empty());
}

TEST(AlarmHistoryFile, AFileThatCannotBeWrittenIsNamedInTheMessage) {
    AlarmRig r;
    test::TempFolder folder;
    r.st.alarms.History[0] = "ALARM a";
    const std::string file = (folder / "no such folder" / "H.TXT").string();
    r.prompt.fileAnswers = {file};
    EXPECT_FALSE(SaveAlarmHistory(r.st));
    ASSERT_EQ(r.prompt.messages.size(), 1u);
    EXPECT_EQ(r.prompt.messages[0].title, "Error");
    EXPECT_TRUE(
        r.prompt.messages[0].text.starts_with("Cannot write the alarm history to " + file + ": "))
        << r.prompt.messages[0].text;
}

TEST(AlarmHistoryFile, AnEmptyHistoryIsNeitherSavedNorPrinted) {
    AlarmRig r;
    RecordingPrinter printer;
    EXPECT_FALSE(SaveAlarmHistory(r.st));
    EXPECT_FALSE(PrintAlarmHistory(r.st, printer));
    EXPECT_TRUE(r.prompt.fileDialogs.empty());
    EXPECT_TRUE(printer.printed.empty());
    EXPECT_EQ(r.prompt.messages, (std::vector<Shown>{{"The Alarm History Is Empty", "KOVA"},
                                                     {"The Alarm History Is Empty", "KOVA"}}));
}

TEST(AlarmHistoryFile, PrintsTheListingAsOneDocument) {
    AlarmRig r;
    RecordingPrinter printer;
    r.st.alarms.History[0] = "ALARM a";
    r.st.alarms.History[1] = "NORML b";
    EXPECT_TRUE(PrintAlarmHistory(r.st, printer));
    EXPECT_EQ(printer.printed, (std::vector<Shown>{{"ALARM a\nNORML b\n", "KOVA Alarm History"}}));
    printer.answer = false;  // the print dialog cancelled
    EXPECT_FALSE(PrintAlarmHistory(r.st, printer));
}

}  // namespace kova
