// What counts as a change of the configuration, the question asked before one is lost,
// and the change notice the open windows follow.
#include <gtest/gtest.h>

#include <vector>

#include "core/change_notice.h"
#include "core/configuration.h"
#include "core/main_window_model.h"
#include "support/test_support.h"
#include "tags/daq_type_model.h"
#include "tags/tag_table.h"

namespace kova {

namespace {

struct Rig {
    test::TempFolder folder;
    Station st;
    test::ScriptedPrompter prompt;
    Rig() {
        st.platform.prompter = &prompt;
        st.tags[1].TagName = "LEVEL";
        BindIOName(st.tags[1], "AI-1");
        st.tags[1].Address = 1;
        st.alarms.Alarms[1].TagName = "LEVEL";
        st.alarms.Alarms[1].TagNo = 1;
        st.alarms.Alarms[1].HiVal = 80;
        st.control.Lines[1].IfText = "@LEVEL > 5";
        st.setupFileName = (folder / "PLANT.SUF").string();
        SaveConfiguration(st, st.setupFileName);
        LoadConfiguration(st, st.setupFileName);
    }
};

}  // namespace

TEST(ConfigurationChanges, AConfigurationJustLoadedHasNoChanges) {
    Rig r;
    EXPECT_FALSE(ConfigurationChanged(r.st));
}

TEST(ConfigurationChanges, ANewStationHasNothingToSave) {
    Station st;
    EXPECT_FALSE(ConfigurationChanged(st));
}

TEST(ConfigurationChanges, AnythingFileSaveWouldWriteDifferentlyIsAChange) {
    {
        Rig r;
        r.st.tags[1].Label = "Tank Level";
        EXPECT_TRUE(ConfigurationChanged(r.st));
    }
    {
        Rig r;
        r.st.periods.IOPeriod = 2;
        EXPECT_TRUE(ConfigurationChanged(r.st));
    }
    {
        Rig r;
        r.st.switches.AlarmsEnabled = 1;  // a switch the file keeps
        EXPECT_TRUE(ConfigurationChanged(r.st));
    }
    {
        Rig r;
        r.st.trends.TrendTable(3, 2) = 1;
        EXPECT_TRUE(ConfigurationChanged(r.st));
    }
    {
        Rig r;
        r.st.alarms.Alarms[1].HiMsg = "Tank too high";
        EXPECT_TRUE(ConfigurationChanged(r.st));
    }
}

TEST(ConfigurationChanges, ValuesThatMoveWhileRunningAreNoChange) {
    Rig r;
    r.st.tags[1].Value = 42.5f;                           // every scan
    r.st.alarms.Alarms[1].State = 1;                      // every alarm check
    r.st.alarms.Alarms[1].LastText = "ALARM 11-15-2026";  // and its line
    r.st.control.Lines[1].LastResult = 1;                 // every control pass
    r.st.screens.Lines(1, 1).Editing = -1;                // the cursor in a readings screen
    EXPECT_FALSE(ConfigurationChanged(r.st));
}

TEST(ConfigurationChanges, ControlCodesCompiledAgainFromTheSameTextsAreNoChange) {
    Rig r;
    r.st.control.Lines[2].IfCode = ",";  // an empty IF, checked in the control window
    r.st.control.Lines[1].IfCode = "@LEVEL,5,>,";
    EXPECT_FALSE(ConfigurationChanged(r.st));
    r.st.control.Lines[1].IfText = "@LEVEL > 6";
    EXPECT_TRUE(ConfigurationChanged(r.st));
}

TEST(ConfigurationChanges, ANumberStoredUnderAnotherTypeIsNoChange) {
    Rig r;
    ASSERT_EQ(r.st.logging.StopSampleCount.type, kVarInteger);
    // The start/stop window stores the 0 it showed as a double.
    r.st.logging.StopSampleCount = Variant::real(0);
    EXPECT_FALSE(ConfigurationChanged(r.st));
    r.st.logging.StopSampleCount = Variant::real(100);
    EXPECT_TRUE(ConfigurationChanged(r.st));
}

TEST(ConfigurationChanges, AJumpTargetShownAsAnEmptyBoxIsNoChange) {
    Rig r;
    // The screen set-up window shows screen 1 (target 0): the table reads 1 meanwhile.
    r.st.screens.Headers[1].JumpTo = 1;
    r.st.screens.JumpShownEmpty = 1;
    EXPECT_FALSE(ConfigurationChanged(r.st));
    r.st.screens.JumpShownEmpty = 0;  // the window stored it: now 1 is meant
    EXPECT_TRUE(ConfigurationChanged(r.st));
}

TEST(ConfigurationChanges, SavingOrLoadingMakesTheConfigurationTheSavedOne) {
    Rig r;
    r.st.tags[1].Units = "%";
    ASSERT_TRUE(ConfigurationChanged(r.st));
    RememberConfigurationAsSaved(r.st);
    EXPECT_FALSE(ConfigurationChanged(r.st));
    r.st.tags[1].Units = "m";
    LoadConfiguration(r.st, r.st.setupFileName);
    EXPECT_FALSE(ConfigurationChanged(r.st));
    EXPECT_EQ(r.st.tags[1].Units, "");
}

TEST(ConfigurationChanges, FileNewIsAChangeFromWhatWasLoaded) {
    Rig r;
    ApplyFileNewDefaults(r.st);
    EXPECT_TRUE(ConfigurationChanged(r.st));
}

TEST(SaveChangesQuestion, NothingIsAskedWhenNothingChanged) {
    Rig r;
    int saves = 0;
    EXPECT_TRUE(MayReplaceConfiguration(r.st, [&] { return ++saves > 0; }));
    EXPECT_TRUE(r.prompt.saveQuestions.empty());
    EXPECT_EQ(saves, 0);
}

TEST(SaveChangesQuestion, ItNamesTheSetupFile) {
    Rig r;
    r.st.tags[1].Label = "Tank";
    MayReplaceConfiguration(r.st, [] { return true; });
    EXPECT_EQ(r.prompt.saveQuestions,
              (std::vector<test::Shown>{{"Save changes to PLANT.SUF?", "KOVA"}}));
    // A name from Windows, with backslashes.
    r.st.setupFileName = "C:\\KOVA\\OVEN.SUF";
    EXPECT_EQ(SaveChangesQuestion(r.st), "Save changes to OVEN.SUF?");
}

TEST(SaveChangesQuestion, CancelStopsTheCommandAndSavesNothing) {
    Rig r;
    r.st.tags[1].Label = "Tank";
    r.prompt.saveAnswers = {SaveChoice::Cancel};
    int saves = 0;
    EXPECT_FALSE(MayReplaceConfiguration(r.st, [&] { return ++saves > 0; }));
    EXPECT_EQ(saves, 0);
    EXPECT_EQ(r.st.tags[1].Label, "Tank");
    EXPECT_TRUE(ConfigurationChanged(r.st));
}

TEST(SaveChangesQuestion, DiscardGoesOnWithoutSaving) {
    Rig r;
    r.st.tags[1].Label = "Tank";
    r.prompt.saveAnswers = {SaveChoice::Discard};
    int saves = 0;
    EXPECT_TRUE(MayReplaceConfiguration(r.st, [&] { return ++saves > 0; }));
    EXPECT_EQ(saves, 0);
}

TEST(SaveChangesQuestion, SaveGoesOnOnlyWhenTheSaveHappened) {
    Rig r;
    r.st.tags[1].Label = "Tank";
    r.prompt.saveAnswers = {SaveChoice::Save, SaveChoice::Save};
    int saves = 0;
    EXPECT_TRUE(MayReplaceConfiguration(r.st, [&] {
        ++saves;
        return true;
    }));
    EXPECT_FALSE(MayReplaceConfiguration(r.st, [&] {
        ++saves;
        return false;  // the save dialog was cancelled, or the file could not be written
    }));
    EXPECT_EQ(saves, 2);
}

TEST(ChangeNotice, EveryListenerIsToldInTheOrderItSubscribed) {
    ChangeNotice notice;
    std::vector<std::pair<int, TableChange>> heard;
    auto a = notice.subscribe([&](TableChange c) { heard.emplace_back(1, c); });
    auto b = notice.subscribe([&](TableChange c) { heard.emplace_back(2, c); });
    notice.raise(TableChange::DaqType);
    EXPECT_EQ(heard, (std::vector<std::pair<int, TableChange>>{{1, TableChange::DaqType},
                                                               {2, TableChange::DaqType}}));
    EXPECT_EQ(notice.count(TableChange::DaqType), 1);
    EXPECT_EQ(notice.count(TableChange::Tags), 0);
}

TEST(ChangeNotice, AListenerWhoseSubscriptionEndedIsNotTold) {
    ChangeNotice notice;
    int heard = 0;
    {
        auto s = notice.subscribe([&](TableChange) { ++heard; });
        notice.raise(TableChange::Tags);
    }
    notice.raise(TableChange::Tags);
    EXPECT_EQ(heard, 1);
    // A subscription moved elsewhere keeps listening; the one it left does not end it.
    ChangeNotice::Subscription kept;
    {
        auto s = notice.subscribe([&](TableChange) { ++heard; });
        kept = std::move(s);
    }
    notice.raise(TableChange::Tags);
    EXPECT_EQ(heard, 2);
}

TEST(ChangeNotice, AListenerMayEndAnotherWhileBeingTold) {
    ChangeNotice notice;
    ChangeNotice::Subscription second;
    int firstHeard = 0, secondHeard = 0;
    auto first = notice.subscribe([&](TableChange) {
        ++firstHeard;
        second = ChangeNotice::Subscription();  // the other window closes
    });
    second = notice.subscribe([&](TableChange) { ++secondHeard; });
    notice.raise(TableChange::Configuration);
    EXPECT_EQ(firstHeard, 1);
    EXPECT_EQ(secondHeard, 0);
}

TEST(ChangeNotice, ASubscriptionMayOutliveItsNotice) {
    ChangeNotice::Subscription s;
    {
        ChangeNotice notice;
        s = notice.subscribe([](TableChange) {});
    }
    SUCCEED();  // ending `s` now touches nothing that is gone (the sanitizer build checks)
}

TEST(ChangeNotice, NewAndLoadTellTheWindowsOnce) {
    Rig r;
    const int before = r.st.changes.count(TableChange::Configuration);
    ApplyFileNewDefaults(r.st);
    EXPECT_EQ(r.st.changes.count(TableChange::Configuration), before + 1);
    LoadConfiguration(r.st, r.st.setupFileName);
    EXPECT_EQ(r.st.changes.count(TableChange::Configuration), before + 2);
    // A file that cannot be loaded leaves the defaults: also told once.
    LoadConfiguration(r.st, r.folder / "MISSING.SUF");
    EXPECT_EQ(r.st.changes.count(TableChange::Configuration), before + 3);
}

TEST(ChangeNotice, AnotherModuleTypeIsTold) {
    Station st;
    DaqTypeForm form = OpenDaqTypeForm(st);
    ExitDaqTypeForm(st, form);  // the same type again
    EXPECT_EQ(st.changes.count(TableChange::DaqType), 0);
    form.OptDaqType.fill(false);
    form.OptDaqType[kDaqQrt115] = true;
    ExitDaqTypeForm(st, form);
    EXPECT_EQ(st.changes.count(TableChange::DaqType), 1);
}

}  // namespace kova
