// The alarm set-up window's model: where the keyboard goes after a refusal, the default of
// its question, and how an open window follows the tag table.
#include <gtest/gtest.h>

#include "alarm_rig.h"
#include "alarms/alarm_setup.h"
#include "core/configuration.h"
#include "tags/tag_editor.h"

namespace kova {

using test::AlarmRig;

namespace {
AlarmSetupForm typed(AlarmRig& r, const std::string& tag, const std::string& hi,
                     const std::string& lo) {
    AlarmSetupForm f = OpenAlarmSetup(r.st);
    f.CboTag = tag;
    f.TxtHiVal = hi;
    f.TxtLoVal = lo;
    return f;
}
}  // namespace

TEST(AlarmSetupFollow, ARefusedAlarmNamesTheBoxAtFault) {
    AlarmRig r;
    const std::pair<AlarmSetupForm, const char*> cases[] = {
        {typed(r, "NOPE", "10", "1"), "CboTag"},
        {typed(r, "TANK", "ten", "1"), "TxtHiVal"},
        {typed(r, "TANK", "10", "one"), "TxtLoVal"},
        {typed(r, "TANK", "10", "10"), "TxtHiVal"},
    };
    for (auto [form, box] : cases) {
        EXPECT_FALSE(NextAlarm(r.st, form)) << box;
        EXPECT_EQ(form.FailedBox, box);
        EXPECT_EQ(form.LblAlmNo, 1);
    }
    AlarmSetupForm good = typed(r, "TANK", "10", "1");
    EXPECT_TRUE(NextAlarm(r.st, good));
    EXPECT_EQ(good.FailedBox, "");
}

TEST(AlarmSetupFollow, LeavingWithoutSavingDefaultsToNo) {
    AlarmRig r;
    AlarmSetupForm f = typed(r, "NOPE", "10", "1");
    EXPECT_FALSE(ExitAlarmSetup(r.st, f));
    ASSERT_EQ(r.prompt.questions.size(), 1u);
    EXPECT_EQ(r.prompt.questions[0].text, "Do You wish to exit without saving this alarm");
    EXPECT_EQ(r.prompt.questionDefaults, std::vector<DefaultAnswer>{DefaultAnswer::No});
    EXPECT_EQ(f.FailedBox, "CboTag");
}

TEST(AlarmSetupFollow, ATagBoxNotTypedInFollowsARename) {
    AlarmRig r;
    r.watch(1, 1, 80, 10);
    AlarmSetupForm f = OpenAlarmSetup(r.st);
    ASSERT_EQ(f.CboTag, "TANK");
    // Renamed in the tag editor while the window is open.
    TagForm tags = OpenTagForm(r.st);
    tags.CboIOName = "Analog Variable";
    tags.TxtRTUAddr = "1";
    tags.TxtRawValue1 = "0";
    tags.TxtRawValue2 = "1";
    tags.TxtEngValue1 = "0";
    tags.TxtEngValue2 = "1";
    tags.TxtTagName = "VESSEL";
    ASSERT_TRUE(AcceptTag(r.st, tags));
    AlarmSetupTablesChanged(r.st, f, TableChange::Tags);
    EXPECT_EQ(f.CboTag, "VESSEL");
    EXPECT_EQ(f.CboTagList, (std::vector<std::string>{"VESSEL", "PUMP", "FLOW"}));
    // Stored as shown: the alarm still watches tag 1.
    EXPECT_TRUE(NextAlarm(r.st, f));
    EXPECT_EQ(r.st.alarms.Alarms[1].TagNo, 1);
}

TEST(AlarmSetupFollow, WhatTheUserTypedIsKept) {
    AlarmRig r;
    r.watch(1, 1, 80, 10);
    AlarmSetupForm f = OpenAlarmSetup(r.st);
    f.CboTag = "FL";  // half typed
    f.TxtHiVal = "95";
    r.nameTag(1, "VESSEL", kAnalog);
    AlarmSetupTablesChanged(r.st, f, TableChange::Tags);
    EXPECT_EQ(f.CboTag, "FL");
    EXPECT_EQ(f.TxtHiVal, "95");
    EXPECT_EQ(f.CboTagList.front(), "VESSEL");
}

TEST(AlarmSetupFollow, ANewConfigurationShowsTheAlarmAfresh) {
    AlarmRig r;
    r.watch(2, 1, 80, 10);
    AlarmSetupForm f = OpenAlarmSetup(r.st);
    ShowAlarm(r.st, f, 2);
    f.TxtHiVal = "99";
    ApplyFileNewDefaults(r.st);
    AlarmSetupTablesChanged(r.st, f, TableChange::Configuration);
    EXPECT_EQ(f.LblAlmNo, 2);
    EXPECT_EQ(f.CboTag, "");
    EXPECT_EQ(f.TxtHiVal, "0");
    EXPECT_TRUE(f.CboTagList.empty());
    EXPECT_FALSE(f.ChkEnableAlm);
}

}  // namespace kova
