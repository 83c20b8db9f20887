#pragma once
// What the station's outward links see of it: an immutable copy of the station after a
// tick. The scan builds one after every tick and hands it to the hub; links read it on
// their own threads and never touch the Station itself. The parts that change only with
// the configuration (names, labels, screens, trend pens), the alarm texts and the trend
// ring are shared between snapshots until they change, so building one costs a copy of
// the values and a few comparisons.
#include <array>
#include <cstdint>
#include <memory>
#include <string>

#include "alarms/alarm_table.h"
#include "core/grid.h"
#include "core/one_based.h"
#include "displays/min_max.h"
#include "displays/screen_table.h"
#include "displays/trend_table.h"
#include "platform/clock.h"
#include "tags/tag.h"

namespace kova {

struct Station;

namespace links {

// A tag as the readings screens describe it (its value lives in StationSnapshot::values).
struct TagInfo {
    std::string TagName;  // "" = unused
    std::string Label;
    std::string Units;
    std::string IOName;
    std::string EngText1;  // state text of a digital 0
    std::string EngText2;  // state text of a digital 1
    std::int16_t Kind = kAnalog;
    std::int16_t Direction = kInput;
    bool operator==(const TagInfo&) const = default;
};

// One readings screen: title, jump target and the tag number of each of its 20 lines
// (1..10 analog, 11..20 digital; 0 = empty line).
struct ScreenInfo {
    std::string Title;
    std::int16_t JumpTo = 0;
    std::array<std::int16_t, 20> TagNumbers{};
    bool operator==(const ScreenInfo&) const = default;
};

// What changes only when the configuration changes.
struct StationLayout {
    Table<TagInfo, kTableTags> tags;
    Table<ScreenInfo, 10> screens;
    Grid<std::int16_t, 10, 4> trendTable;  // (trend, pen) -> tag number, 0 = none
    std::string trendPeriodText;           // "Sample Period 500mS", as the trend window says
    double trendPeriodSeconds = 0;         // seconds between trend samples
    std::string setupFileName;
    std::string logFileName;   // the file logging writes to
    std::string logDirectory;  // the folder of the log files
    bool operator==(const StationLayout&) const = default;
};

// The alarm list window's two views: the latest line and state of each alarm, and the
// history slots 0..50.
struct AlarmView {
    Table<std::string, kAlarmCount> lastText;
    Table<std::int16_t, kAlarmCount> state;  // 0 quiet, 1 high, 2 low, 3 acknowledged, 4 normal
    Table<std::string, 51, 0> history;
    std::int16_t historyCount = 0;
    bool operator==(const AlarmView&) const = default;
};

// The trend sample ring: 200 rows x 40 columns, column (trend - 1) x 4 + pen.
struct TrendRing {
    Grid<float, kTrendRows, 40> samples;
    std::int16_t newestSample = kTrendRows;
    std::int16_t oldestSample = 1;
    bool operator==(const TrendRing&) const = default;
};

struct StationSnapshot {
    std::uint64_t sequence = 0;  // 1 for the first snapshot, +1 for each one after
    LocalDateTime time;          // the station clock when the snapshot was taken
    Table<float, kTableTags> values;
    Table<float, kMinMaxTags> tagMaximum;
    Table<float, kMinMaxTags> tagMinimum;
    bool pollEnabled = false;
    bool loggingEnabled = false;
    bool loggingActive = false;  // logging on and writing records
    std::int16_t alarmsEnabled = 0;
    std::int16_t controlsEnabled = 0;
    double scanTime = 0;      // seconds per scan, as measured over 200 scans
    long long lateTicks = 0;  // ticks that began more than a period late, so far

    // Shared with earlier snapshots until they change; each version number goes up by one
    // whenever its part does, so a reader can tell a change without comparing.
    std::shared_ptr<const StationLayout> layout;
    std::uint64_t layoutVersion = 0;
    std::shared_ptr<const AlarmView> alarms;
    std::uint64_t alarmsVersion = 0;
    std::shared_ptr<const TrendRing> trend;
    std::uint64_t trendVersion = 0;
};

// Builds the snapshots of one station, reusing the shared parts of the previous one that
// did not change. Used by the scan's thread only.
class SnapshotBuilder {
  public:
    std::shared_ptr<const StationSnapshot> build(const Station& st, long long lateTicks);

  private:
    std::uint64_t sequence_ = 0;
    std::shared_ptr<const StationSnapshot> previous_;
};

}  // namespace links
}  // namespace kova
