#include "core/configuration.h"

#include <gtest/gtest.h>

#include <memory>

#include "core/setup_file.h"
#include "core/trend_sampling.h"
#include "platform/recording_port_io.h"
#include "platform/simulated_bus.h"
#include "support/test_support.h"
#include "tags/tag_table.h"

namespace kova {
namespace {

std::unique_ptr<Station> configuredStation() {
    auto st = std::make_unique<Station>();
    Tag& t = st->tags[1];
    t.TagName = "LEVEL";
    t.IOName = "AI-1";
    t.Kind = kAnalog;
    t.Direction = kInput;
    t.Address = 1;
    t.IONumber = 1;
    t.RawValue2 = 4095;
    t.EngValue2 = 100;  // Slope and Offset left at 0: a load derives them
    st->screens.Headers[1].Title = "Main";
    st->trends.TrendTable(1, 1) = 1;
    st->alarms.Alarms[1].TagName = "LEVEL";
    st->alarms.Alarms[1].TagNo = 1;
    st->control.Lines[1].ThenText = "@LEVEL = 1";
    st->control.Lines[1].ThenCode = "@LEVEL,1,!";
    st->control.Lines[2].ElseText = "@LEVEL = 2";
    st->periods = {200, kUnitMs, 2, kUnitSeconds, -1};
    st->switches.AlarmsEnabled = 1;
    st->switches.ControlsEnabled = 1;
    st->logging.LogFileName = "x.CSV";
    st->logging.DailyFiles = 1;
    st->daq.PrinterPortNumber = 2;
    BuildIOList(st->profile, kDaqQrt110);
    return st;
}

TEST(Configuration, FileNewClearsTheTablesAndResetsThePeriods) {
    auto st = configuredStation();
    st->trends.TrendSamples(5, 1) = 3;
    st->minMax.TagMaximum[1] = 42;
    ApplyFileNewDefaults(*st);
    EXPECT_EQ(st->tags[1], Tag{});
    EXPECT_EQ(st->tags[33].TagName, "TS");  // system variables stay
    EXPECT_EQ(st->screens.Headers[1].Title, "");
    EXPECT_EQ(st->trends.TrendTable(1, 1), 1);  // the trend table is not cleared
    EXPECT_EQ(st->alarms.Alarms[1].TagNo, 0);
    EXPECT_EQ(st->control.Lines[1].ThenText, "");
    EXPECT_EQ(st->periods, Periods{});
    EXPECT_EQ(st->periods.IOUnits, kUnitSeconds);
    EXPECT_EQ(st->trends.NewestSample, 200);
    EXPECT_EQ(st->trends.OldestSample, 1);
    EXPECT_EQ(st->trends.TrendSamples(5, 1), 0.0f);
    EXPECT_EQ(st->switches.AlarmsEnabled, 0);
    EXPECT_EQ(st->switches.ControlsEnabled, 0);
    EXPECT_EQ(st->minMax.TagMaximum[1], 42.0f);  // extremes are not part of a configuration
    EXPECT_EQ(FindTag(st->nameIndex, "LEVEL"), 0);
}

TEST(Configuration, FileNewLeavesTheTrendTableAndItsPensSampleTheClearedTags) {
    auto st = configuredStation();
    st->trends.TrendTable(3, 2) = 7;
    st->tags[1].Value = 55;
    ApplyFileNewDefaults(*st);
    EXPECT_EQ(st->trends.TrendTable(1, 1), 1);
    EXPECT_EQ(st->trends.TrendTable(3, 2), 7);
    SampleTrends(*st);
    EXPECT_EQ(st->trends.TrendSamples(1, 1), 0.0f);  // tag 1 was cleared with the tag table
}

TEST(Configuration, StartupDefaultsLeaveNoTrendPens) {
    auto st = configuredStation();
    ApplyStartupDefaults(*st);
    EXPECT_EQ(st->trends.TrendTable(1, 1), 0);
}

TEST(Configuration, StartupWithoutADefaultFileUsesTheDefaultsSilently) {
    test::TempFolder dir;
    auto st = std::make_unique<Station>();
    st->workingFolder = dir.path();
    test::ScriptedPrompter prompt;
    st->platform.prompter = &prompt;
    const LoadOutcome r = StartStation(*st);
    EXPECT_FALSE(r.ok);
    EXPECT_TRUE(prompt.messages.empty());
    EXPECT_EQ(st->setupFileName, (dir / "Default.Suf").string());
    EXPECT_EQ(st->profile.TypeCode, kDaqTest);
    EXPECT_EQ(st->daq.PrinterPortNumber, 1);
    EXPECT_EQ(st->calibration, CalibrationData{});
    EXPECT_EQ(test::ReadFileBytes(dir / "KOVA_P.CAL"), " 4000  4000  0 \r\n");
    EXPECT_EQ(st->tags[38].TagName, "SU");
}

TEST(Configuration, StartupLoadsDefaultSufAndDerivesWhatTheFileDoesNotHold) {
    test::TempFolder dir;
    auto saved = configuredStation();
    SaveConfiguration(*saved, dir / "Default.Suf");
    auto st = std::make_unique<Station>();
    st->workingFolder = dir.path();
    SimulatedBus bus;
    RecordingPortIo rec(bus);
    st->platform.port = &rec;
    const LoadOutcome r = StartStation(*st);
    ASSERT_TRUE(r.ok) << r.error;
    EXPECT_EQ(st->tags[1].Slope, 100.0f / 4095.0f);  // recomputed on load
    EXPECT_EQ(FindTag(st->nameIndex, "LEVEL"), 1);
    EXPECT_EQ(st->profile.TypeString, "QRT110");
    EXPECT_EQ(st->profile.RawMax, 4095);
    EXPECT_EQ(st->control.ControlCount, 3);  // line 3 is the first without THEN and ELSE
    EXPECT_EQ(st->daq.Summary.InUse, -1);
    EXPECT_EQ(st->daq.Port.DataPort, 0x278);  // LPT 2 from the file
    ASSERT_FALSE(rec.log().empty());
    EXPECT_EQ(rec.log().back(),
              (PortAccess{PortAccess::Write, 0x27A, 0x0A}));  // polling off: no output write
}

TEST(Configuration, BadFileGivesAnErrorNamingItAndTheDefaults) {
    test::TempFolder dir;
    test::WriteFileBytes(dir / "bad.SUF", std::string(1000, 'x'));
    auto st = configuredStation();
    const LoadOutcome r = LoadConfiguration(*st, dir / "bad.SUF");
    EXPECT_FALSE(r.ok);
    EXPECT_NE(r.error.find("bad.SUF"), std::string::npos);
    EXPECT_EQ(st->tags[1], Tag{});
    EXPECT_EQ(st->logging.LogFileName, "");
    EXPECT_EQ(st->logging.DailyFiles, 0);
    EXPECT_EQ(st->profile.TypeCode, kDaqTest);
    EXPECT_EQ(st->daq.PrinterPortNumber, 1);
}

TEST(Configuration, ScalingThatOverflowsMakesTheFileUnusable) {
    test::TempFolder dir;
    auto saved = std::make_unique<Station>();
    saved->tags[1].TagName = "X";
    saved->tags[1].RawValue1 = -32768;
    saved->tags[1].RawValue2 = 32767;  // the 16-bit raw difference overflows
    SaveConfiguration(*saved, dir / "o.SUF");
    auto st = std::make_unique<Station>();
    const LoadOutcome r = LoadConfiguration(*st, dir / "o.SUF");
    EXPECT_FALSE(r.ok);
    EXPECT_NE(r.error.find("o.SUF"), std::string::npos);
    EXPECT_NE(r.error.find("Overflow"), std::string::npos);
    EXPECT_EQ(st->tags[1].TagName, "");
}

TEST(Configuration, SaveThenLoadRoundTrips) {
    test::TempFolder dir;
    auto saved = configuredStation();
    SaveConfiguration(*saved, dir / "a.SUF");
    auto st = std::make_unique<Station>();
    ASSERT_TRUE(LoadConfiguration(*st, dir / "a.SUF").ok);
    SaveConfiguration(*st, dir / "b.SUF");
    auto again = std::make_unique<Station>();
    ASSERT_TRUE(LoadConfiguration(*again, dir / "b.SUF").ok);
    EXPECT_EQ(test::ReadFileBytes(dir / "b.SUF").size(), 46464u);
    EXPECT_EQ(again->periods, saved->periods);
    EXPECT_EQ(again->logging.LogFileName, "x.CSV");
    EXPECT_EQ(again->screens.Headers[1].Title, "Main");
    // Loading derived the slope, so the second file differs from the first only there.
    EXPECT_EQ(test::ReadFileBytes(dir / "b.SUF"), EncodeSetupFile(*st));
}

}  // namespace
}  // namespace kova
