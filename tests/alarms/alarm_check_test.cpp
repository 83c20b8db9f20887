#include "alarms/alarm_check.h"

#include <gtest/gtest.h>

#include "alarm_rig.h"
#include "alarms/alarm_text.h"
#include "core/fault.h"

namespace kova {

using test::AlarmRig;

namespace {
const std::string kAt = "11-15-2026 14:05:09 ";
}

TEST(AlarmCheck, ValueEqualToHighLimitRaisesTheHighAlarm) {
    AlarmRig r;
    r.watch(1, 1, 80, 20);
    r.set(1, 80);
    CheckAlarms(r.st);
    const AlarmDef& a = r.st.alarms.Alarms[1];
    EXPECT_EQ(a.State, 1);
    EXPECT_EQ(a.LastText, "ALARM " + kAt + "TANK high");
    EXPECT_EQ(r.beeper.count, 1);
    ASSERT_EQ(r.status.texts.size(), 1u);
    EXPECT_EQ(r.status.texts[0], "ALARM 11-15-2026 14:05:09 TANK high");
    EXPECT_EQ(r.st.alarms.HistoryCount, 1);
    EXPECT_EQ(r.st.alarms.History[0], "ALARM 11-15-2026 14:05:09 TANK high");
}

TEST(AlarmCheck, ValueEqualToLowLimitRaisesTheLowAlarm) {
    AlarmRig r;
    r.watch(1, 1, 80, 20);
    r.set(1, 20);
    CheckAlarms(r.st);
    EXPECT_EQ(r.st.alarms.Alarms[1].State, 2);
    EXPECT_EQ(r.st.alarms.Alarms[1].LastText, "ALARM " + kAt + "TANK low");
    EXPECT_EQ(r.beeper.count, 1);
}

TEST(AlarmCheck, BetweenTheLimitsNothingHappensUntilAnAlarmExisted) {
    AlarmRig r;
    r.watch(1, 1, 80, 20);
    r.set(1, 50);
    CheckAlarms(r.st);
    EXPECT_EQ(r.st.alarms.Alarms[1].State, 0);
    EXPECT_EQ(r.st.alarms.Alarms[1].LastText, "");
    EXPECT_EQ(r.st.alarms.HistoryCount, 0);
    EXPECT_EQ(r.beeper.count, 0);
    EXPECT_EQ(r.status.texts, std::vector<std::string>{""});  // no alarm active: bar emptied

    r.set(1, 90);
    CheckAlarms(r.st);
    r.clock.advance(1000);
    r.set(1, 50);
    CheckAlarms(r.st);
    EXPECT_EQ(r.st.alarms.Alarms[1].State, 4);
    EXPECT_EQ(r.st.alarms.Alarms[1].LastText, "NORML 11-15-2026 14:05:10 TANK normal");
    EXPECT_EQ(r.st.alarms.History[1], "NORML 11-15-2026 14:05:10 TANK normal");
    EXPECT_EQ(r.beeper.count, 2);
}

TEST(AlarmCheck, AHighAlarmThatStaysHighGivesOneLine) {
    AlarmRig r;
    r.watch(1, 1, 80, 20);
    r.set(1, 95);
    for (int i = 0; i < 5; ++i) {
        CheckAlarms(r.st);
        r.clock.advance(1000);
    }
    EXPECT_EQ(r.st.alarms.HistoryCount, 1);
    EXPECT_EQ(r.beeper.count, 1);
    EXPECT_EQ(r.status.texts, std::vector<std::string>{"ALARM " + kAt + "TANK high"});
}

TEST(AlarmCheck, AnAnalogAlarmPassesStraightFromHighToLow) {
    AlarmRig r;
    r.watch(1, 1, 80, 20);
    r.set(1, 95);
    CheckAlarms(r.st);
    r.set(1, 5);
    CheckAlarms(r.st);
    EXPECT_EQ(r.st.alarms.Alarms[1].State, 2);
    EXPECT_EQ(r.st.alarms.HistoryCount, 2);
    EXPECT_EQ(r.st.alarms.History[1], "ALARM " + kAt + "TANK low");
    r.set(1, 95);
    CheckAlarms(r.st);
    EXPECT_EQ(r.st.alarms.Alarms[1].State, 1);
    EXPECT_EQ(r.beeper.count, 3);
}

TEST(AlarmCheck, ADigitalAlarmCannotGoStraightFromHighToLow) {
    AlarmRig r;
    r.watch(1, 2, 1, 0);  // PUMP, digital
    r.set(2, 1);
    CheckAlarms(r.st);
    EXPECT_EQ(r.st.alarms.Alarms[1].State, 1);
    r.set(2, 0);
    CheckAlarms(r.st);
    EXPECT_EQ(r.st.alarms.Alarms[1].State, 1);  // no low alarm from high
    EXPECT_EQ(r.st.alarms.HistoryCount, 1);
    EXPECT_EQ(r.beeper.count, 1);
}

TEST(AlarmCheck, ADigitalAlarmReachesLowAfterComingBackToNormal) {
    AlarmRig r;
    r.watch(1, 2, 0.8f, 0.2f);
    r.set(2, 1);
    CheckAlarms(r.st);
    r.set(2, 0.5f);
    CheckAlarms(r.st);
    EXPECT_EQ(r.st.alarms.Alarms[1].State, 4);
    r.set(2, 0);
    CheckAlarms(r.st);
    EXPECT_EQ(r.st.alarms.Alarms[1].State, 2);
    EXPECT_EQ(r.st.alarms.Alarms[1].LastText, "ALARM " + kAt + "PUMP low");
    r.set(2, 1);
    CheckAlarms(r.st);
    EXPECT_EQ(r.st.alarms.Alarms[1].State, 2);  // and not from low to high either
    EXPECT_EQ(r.st.alarms.HistoryCount, 3);
}

TEST(AlarmCheck, AnAcknowledgedAlarmStaysSilentUntilTheValueIsBackBetweenTheLimits) {
    AlarmRig r;
    AlarmDef& a = r.watch(1, 1, 80, 20);
    a.State = 3;
    r.set(1, 95);
    CheckAlarms(r.st);
    r.set(1, 5);
    CheckAlarms(r.st);
    EXPECT_EQ(a.State, 3);
    EXPECT_EQ(r.st.alarms.HistoryCount, 0);
    EXPECT_EQ(r.beeper.count, 0);
    r.set(1, 50);
    CheckAlarms(r.st);
    EXPECT_EQ(a.State, 4);
    EXPECT_EQ(a.LastText, "NORML " + kAt + "TANK normal");
}

TEST(AlarmCheck, BackToNormalCanRiseAgain) {
    AlarmRig r;
    AlarmDef& a = r.watch(1, 1, 80, 20);
    a.State = 4;
    r.set(1, 50);
    CheckAlarms(r.st);
    EXPECT_EQ(a.State, 4);  // already normal: no second line
    EXPECT_EQ(r.st.alarms.HistoryCount, 0);
    r.set(1, 81);
    CheckAlarms(r.st);
    EXPECT_EQ(a.State, 1);
}

TEST(AlarmCheck, TheTestsUseTheStateBeforeTheStep) {
    // Limits the set-up would refuse (high below low): from state 0 a value at both limits
    // passes the high test and then the low test, which still sees state 0.
    AlarmRig r;
    AlarmDef& a = r.watch(1, 1, 10, 30);
    r.set(1, 20);
    CheckAlarms(r.st);
    EXPECT_EQ(a.State, 2);
    EXPECT_EQ(a.LastText, "ALARM " + kAt + "TANK low");
    EXPECT_EQ(r.beeper.count, 2);
    EXPECT_EQ(r.st.alarms.HistoryCount, 1);  // one line per alarm and pass
    // From state 2 the high test fires; the low test still sees 2, not the new 1, so
    // it stays quiet.
    CheckAlarms(r.st);
    EXPECT_EQ(a.State, 1);
    EXPECT_EQ(a.LastText, "ALARM " + kAt + "TANK high");
}

TEST(AlarmCheck, AnAlarmWithoutATagNeverChangesState) {
    AlarmRig r;
    AlarmDef& a = r.watch(1, 1, 80, 20);
    a.TagNo = 0;
    a.State = 0;
    r.set(1, 1000);
    CheckAlarms(r.st);
    EXPECT_EQ(a.State, 0);
    a.State = 3;
    r.set(1, 50);
    CheckAlarms(r.st);
    EXPECT_EQ(a.State, 3);
    EXPECT_EQ(r.st.alarms.HistoryCount, 0);
    EXPECT_EQ(r.beeper.count, 0);
}

TEST(AlarmCheck, AStateOutsideZeroToFourBecomesZero) {
    AlarmRig r;
    AlarmDef& a = r.watch(1, 1, 80, 20);
    a.State = 9;
    r.set(1, 50);
    CheckAlarms(r.st);
    EXPECT_EQ(a.State, 0);
    a.State = -1;
    r.set(1, 90);
    CheckAlarms(r.st);
    EXPECT_EQ(a.State, 1);  // reset first, then raised from 0
}

TEST(AlarmCheck, WithAlarmsSwitchedOffNothingChangesAndTheStatusBarKeepsItsText) {
    AlarmRig r;
    AlarmDef& a = r.watch(1, 1, 80, 20);
    r.set(1, 90);
    CheckAlarms(r.st);
    const AlarmState before = r.st.alarms;
    r.st.switches.AlarmsEnabled = 0;
    r.set(1, 5);
    r.clock.advance(1000);
    CheckAlarms(r.st);
    r.set(1, 50);
    CheckAlarms(r.st);
    EXPECT_EQ(a.State, 1);
    EXPECT_EQ(r.st.alarms.Alarms, before.Alarms);
    EXPECT_EQ(r.st.alarms.History, before.History);
    EXPECT_EQ(r.st.alarms.HistoryCount, 1);
    EXPECT_EQ(r.beeper.count, 1);
    EXPECT_EQ(r.status.texts, std::vector<std::string>{"ALARM " + kAt + "TANK high"});
}

TEST(AlarmCheck, TheFiftySecondHistoryLineDropsTheOldest) {
    AlarmRig r;
    r.watch(1, 1, 80, 20);
    for (int i = 0; i < 51; ++i) {
        r.set(1, i % 2 == 0 ? 90.0f : 10.0f);
        CheckAlarms(r.st);
        r.clock.advance(1000);
    }
    EXPECT_EQ(r.st.alarms.HistoryCount, 51);
    EXPECT_EQ(r.st.alarms.History[0], "ALARM 11-15-2026 14:05:09 TANK high");
    EXPECT_EQ(r.st.alarms.History[1], "ALARM 11-15-2026 14:05:10 TANK low");
    EXPECT_EQ(r.st.alarms.History[50], "ALARM 11-15-2026 14:05:59 TANK high");

    r.set(1, 10);
    CheckAlarms(r.st);  // the 52nd line, at 14:06:00
    EXPECT_EQ(r.st.alarms.HistoryCount, 51);
    EXPECT_EQ(r.st.alarms.History[0], "ALARM 11-15-2026 14:05:10 TANK low");
    EXPECT_EQ(r.st.alarms.History[49], "ALARM 11-15-2026 14:05:59 TANK high");
    EXPECT_EQ(r.st.alarms.History[50], "ALARM 11-15-2026 14:06:00 TANK low");

    r.clock.advance(1000);
    r.set(1, 90);
    CheckAlarms(r.st);
    EXPECT_EQ(r.st.alarms.HistoryCount, 51);
    EXPECT_EQ(r.st.alarms.History[0], "ALARM 11-15-2026 14:05:11 TANK high");
    EXPECT_EQ(r.st.alarms.History[50], "ALARM 11-15-2026 14:06:01 TANK high");
}

namespace {
// A clock that moves on one second each time it is read.
class RunningClock final : public Clock {
  public:
    LocalDateTime now() const override {
        const LocalDateTime t = t_;
        t_ = addMilliseconds(t_, 1000);
        return t;
    }
    mutable LocalDateTime t_{2027, 1, 2, 3, 4, 5, 0};
};
}  // namespace

TEST(AlarmCheck, BothPrefixesAreBuiltOnceAtTheStartOfThePass) {
    AlarmRig r;
    RunningClock clock;
    r.st.platform.clock = &clock;
    r.watch(1, 1, 80, 20);
    r.watch(2, 5, 80, 20).State = 1;
    r.watch(7, 1, 40, 30);
    r.set(1, 90);
    r.set(5, 50);
    CheckAlarms(r.st);
    EXPECT_EQ(r.st.alarms.Alarms[1].LastText, "ALARM 01-02-2027 03:04:05 TANK high");
    EXPECT_EQ(r.st.alarms.Alarms[2].LastText, "NORML 01-02-2027 03:04:05 FLOW normal");
    EXPECT_EQ(r.st.alarms.Alarms[7].LastText, "ALARM 01-02-2027 03:04:05 TANK high");
    // the newest line, of the highest-numbered alarm, is what the status bar shows last
    EXPECT_EQ(r.status.texts.back(), "ALARM 01-02-2027 03:04:05 TANK high");
    EXPECT_EQ(r.status.texts.size(), 3u);
    EXPECT_EQ(r.st.alarms.History[0], "ALARM 01-02-2027 03:04:05 TANK high");
    EXPECT_EQ(r.st.alarms.History[1], "NORML 01-02-2027 03:04:05 FLOW normal");
    EXPECT_EQ(r.beeper.count, 3);
}

TEST(AlarmCheck, ThePrefixIsAlwaysMonthDayFourDigitYearAndTwentyFourHourTime) {
    EXPECT_EQ(AlarmLinePrefix(kAlarmWord, {2026, 11, 15, 14, 5, 9, 999}),
              "ALARM 11-15-2026 14:05:09 ");
    EXPECT_EQ(AlarmLinePrefix(kNormalWord, {987, 1, 2, 23, 59, 0, 0}),
              "NORML 01-02-0987 23:59:00 ");
    EXPECT_EQ(AlarmLinePrefix(kAlarmWord, {2026, 11, 15, 0, 0, 0, 0}).size(), kAlarmPrefixLength);
}

TEST(AlarmCheck, AnEmptyMessageStillGivesALine) {
    AlarmRig r;
    AlarmDef& a = r.watch(1, 1, 80, 20);
    a.HiMsg = "";
    r.set(1, 90);
    CheckAlarms(r.st);
    EXPECT_EQ(a.LastText, "ALARM " + kAt);
    EXPECT_EQ(r.st.alarms.HistoryCount, 1);
}

TEST(AlarmCheck, TheStatusBarIsEmptiedOnlyWhenNoAlarmIsActive) {
    AlarmRig r;
    AlarmDef& a = r.watch(1, 1, 80, 20);
    r.set(1, 90);
    CheckAlarms(r.st);
    a.State = 3;  // acknowledged still counts as active
    CheckAlarms(r.st);
    a.State = 4;
    r.set(1, 50);
    CheckAlarms(r.st);
    EXPECT_EQ(r.status.texts.size(), 1u);
    a.State = 0;
    CheckAlarms(r.st);
    EXPECT_EQ(r.status.texts.back(), "");
    // an active state on an alarm without a tag also keeps the bar
    r.status.texts.clear();
    r.st.alarms.Alarms[20].State = 2;
    CheckAlarms(r.st);
    EXPECT_TRUE(r.status.texts.empty());
}

TEST(AlarmCheck, ATagOfAnotherKindIsNotTested) {
    AlarmRig r;
    AlarmDef& a = r.watch(1, 1, 80, 20);
    r.st.tags[1].Kind = 2;
    r.set(1, 90);
    CheckAlarms(r.st);
    EXPECT_EQ(a.State, 0);
}

TEST(AlarmCheck, ATagNumberBeyondTheTableIsARunTimeFault) {
    AlarmRig r;
    r.watch(1, 1, 80, 20).TagNo = 43;
    EXPECT_THROW(CheckAlarms(r.st), Fault);
}

TEST(AlarmCheck, ClearAlarmsEmptiesTheTableAndHistorySlotsOneToFiftyAndSwitchesOff) {
    AlarmRig r;
    r.watch(1, 1, 80, 20);
    r.watch(20, 5, 3, 1);
    r.set(1, 90);
    r.set(5, 0);
    CheckAlarms(r.st);
    ASSERT_EQ(r.st.alarms.HistoryCount, 2);
    ClearAlarms(r.st);
    for (int n = 1; n <= kAlarmCount; ++n) {
        const AlarmDef& a = r.st.alarms.Alarms[n];
        EXPECT_EQ(a.TagName, "");
        EXPECT_EQ(a.HiMsg, "");
        EXPECT_EQ(a.LoMsg, "");
        EXPECT_EQ(a.NormMsg, "");
        EXPECT_EQ(a.LastText, "");
        EXPECT_EQ(a.TagNo, 0);
        EXPECT_EQ(a.HiVal, 0);
        EXPECT_EQ(a.LoVal, 0);
    }
    EXPECT_EQ(r.st.alarms.Alarms[1].State, 1);  // states are left as they are
    EXPECT_EQ(r.st.alarms.Alarms[20].State, 2);
    EXPECT_EQ(r.st.alarms.History[0], "ALARM " + kAt + "TANK high");  // slot 0 kept
    for (int s = 1; s <= 50; ++s) EXPECT_EQ(r.st.alarms.History[s], "");
    EXPECT_EQ(r.st.alarms.HistoryCount, 2);
    EXPECT_EQ(r.st.switches.AlarmsEnabled, 0);
}

}  // namespace kova
