// The snapshot the scan hands to the links: a copy of the station after a tick, whose
// configuration, alarm and trend parts are shared until they change.
#include "links/station_snapshot.h"

#include <gtest/gtest.h>

#include "displays/screen_rig.h"

namespace kova::links {

namespace {
using test::ScreenRig;
}  // namespace

TEST(StationSnapshot, HoldsTheValuesExtremesSwitchesAndDescriptions) {
    ScreenRig r;
    r.st.tags[test::kLevel].Value = 42.5f;
    r.st.minMax.TagMaximum[1] = 50;
    r.st.minMax.TagMinimum[1] = -2;
    r.st.switches.AlarmsEnabled = 1;
    r.st.switches.PollEnabled = true;
    SnapshotBuilder b;
    const auto s = b.build(r.st, 3);
    EXPECT_EQ(s->sequence, 1u);
    EXPECT_EQ(s->values[test::kLevel], 42.5f);
    EXPECT_EQ(s->tagMaximum[1], 50);
    EXPECT_EQ(s->tagMinimum[1], -2);
    EXPECT_EQ(s->alarmsEnabled, 1);
    EXPECT_TRUE(s->pollEnabled);
    EXPECT_EQ(s->lateTicks, 3);
    EXPECT_EQ(s->layout->tags[test::kDoor].EngText2, "CLOSED");
    EXPECT_EQ(s->layout->tags[test::kLevel].Units, "%");
    EXPECT_EQ(s->layout->screens[1].Title, "Plant");
    EXPECT_EQ(s->layout->screens[1].TagNumbers[10], test::kDoor);  // line 11
}

TEST(StationSnapshot, LaterChangesOfTheStationLeaveASnapshotAsItWas) {
    ScreenRig r;
    SnapshotBuilder b;
    r.st.tags[test::kLevel].Value = 1;
    const auto first = b.build(r.st, 0);
    r.st.tags[test::kLevel].Value = 2;
    r.st.tags[test::kLevel].Label = "Renamed";
    const auto second = b.build(r.st, 0);
    EXPECT_EQ(first->values[test::kLevel], 1);
    EXPECT_EQ(first->layout->tags[test::kLevel].Label, "Tank Level");
    EXPECT_EQ(second->values[test::kLevel], 2);
    EXPECT_EQ(second->layout->tags[test::kLevel].Label, "Renamed");
    EXPECT_EQ(second->sequence, 2u);
}

TEST(StationSnapshot, AnUnchangedConfigurationIsSharedNotCopied) {
    ScreenRig r;
    SnapshotBuilder b;
    const auto first = b.build(r.st, 0);
    r.st.tags[test::kLevel].Value = 7;  // values change every tick; the layout did not
    const auto second = b.build(r.st, 0);
    EXPECT_EQ(first->layout.get(), second->layout.get());
    EXPECT_EQ(first->layoutVersion, second->layoutVersion);
    EXPECT_EQ(first->alarms.get(), second->alarms.get());
    EXPECT_EQ(first->trend.get(), second->trend.get());
}

TEST(StationSnapshot, AChangedScreenLineGivesANewLayoutVersion) {
    ScreenRig r;
    SnapshotBuilder b;
    const auto first = b.build(r.st, 0);
    r.put(2, 1, test::kValve);
    const auto second = b.build(r.st, 0);
    EXPECT_NE(first->layout.get(), second->layout.get());
    EXPECT_EQ(second->layoutVersion, first->layoutVersion + 1);
    EXPECT_EQ(second->layout->screens[2].TagNumbers[0], test::kValve);
}

TEST(StationSnapshot, ANewAlarmLineGivesANewAlarmView) {
    ScreenRig r;
    SnapshotBuilder b;
    const auto first = b.build(r.st, 0);
    r.st.alarms.Alarms[3].State = 1;
    r.st.alarms.Alarms[3].LastText = "ALARM 11-15-2026 14:05:09 Tank too high";
    r.st.alarms.History[0] = r.st.alarms.Alarms[3].LastText;
    r.st.alarms.HistoryCount = 1;
    const auto second = b.build(r.st, 0);
    EXPECT_EQ(second->alarmsVersion, first->alarmsVersion + 1);
    EXPECT_EQ(second->alarms->state[3], 1);
    EXPECT_EQ(second->alarms->history[0], "ALARM 11-15-2026 14:05:09 Tank too high");
    EXPECT_EQ(second->alarms->historyCount, 1);
    EXPECT_EQ(first->alarms->state[3], 0);
}

TEST(StationSnapshot, ATrendSampleGivesANewRingAndTheTrendPeriodFollowsTheSettings) {
    ScreenRig r;
    r.st.periods.IOPeriod = 500;
    r.st.periods.IOUnits = 1;
    r.st.periods.TrendAtLogPeriod = 0;
    SnapshotBuilder b;
    const auto first = b.build(r.st, 0);
    EXPECT_EQ(first->layout->trendPeriodText, "Sample Period 500mS");
    EXPECT_DOUBLE_EQ(first->layout->trendPeriodSeconds, 0.5);
    r.st.trends.NewestSample = 1;
    r.st.trends.OldestSample = 2;
    r.st.trends.TrendSamples(1, 5) = 12.5f;
    const auto second = b.build(r.st, 0);
    EXPECT_EQ(second->trendVersion, first->trendVersion + 1);
    EXPECT_EQ(second->trend->samples(1, 5), 12.5f);
    EXPECT_EQ(second->trend->newestSample, 1);
    EXPECT_EQ(first->trend->samples(1, 5), 0.0f);
}

}  // namespace kova::links
