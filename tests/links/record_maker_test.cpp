// The station's records for the links: made at each logging period with the logged tags,
// exactly the CSV line's values and time stamp when the log writes one, and made all the
// same with logging off; UTC times right across daylight-saving changes; the scan's quality.
#include "links/records/record_maker.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdlib>
#include <ctime>
#include <fstream>
#include <sstream>

#include "core/scan_cycle.h"
#include "links/records/scan_quality.h"
#include "links/records/utc_time.h"
#include "support/test_support.h"
#include "tags/tag_name_index.h"

namespace kova::links {

namespace {

// The station's time zone for one test.
class TimeZone {
  public:
    explicit TimeZone(const char* tz) {
        if (const char* old = std::getenv("TZ")) old_ = old;
        setenv("TZ", tz, 1);
        tzset();
    }
    ~TimeZone() {
        if (old_)
            setenv("TZ", old_->c_str(), 1);
        else
            unsetenv("TZ");
        tzset();
    }

  private:
    std::optional<std::string> old_;
};

LocalDateTime At(int y, int mo, int d, int h, int mi, int s, int ms = 0) {
    return LocalDateTime{y, mo, d, h, mi, s, ms};
}

// The TEST module scanned every 500 ms, logging every second, two logged tags.
struct Rig {
    Station st;
    SimulatedClock clock{At(2026, 3, 14, 10, 0, 0)};
    test::RecordingTimer timer;
    test::RecordingStatus status;
    test::TempFolder folder;
    int ticks = 0;
    Rig() {
        st.platform.clock = &clock;
        st.platform.timer = &timer;
        st.platform.status = &status;
        st.switches.PollEnabled = true;
        st.periods = {500, kUnitMs, 1, kUnitSeconds, 0};
        tag(1, "LEVEL", 12.5f, true);
        tag(2, "SETPT", 60, false);
        tag(3, "FLOW", -3, true);
    }
    void tag(int n, const std::string& name, float value, bool logged) {
        Tag& t = st.tags[n];
        t.TagName = name;
        t.Label = name;
        t.Kind = kAnalog;
        t.Direction = kVariable;
        t.Value = value;
        t.Log = logged ? 1 : 0;
        RebuildTagNameIndex(st.tags, st.nameIndex);
    }
    // One tick; the record it ended with, if any.
    std::optional<MadeRecord> tick() {
        if (ticks++ > 0) clock.advance(500);
        Tick(st);
        return RecordAfterTick(st);
    }
};

nlohmann::json Parse(const MadeRecord& r) {
    return nlohmann::json::parse(r.body);
}

}  // namespace

TEST(Records, WithLoggingOffARecordIsMadeEachLoggingPeriodStampedWithTheScan) {
    TimeZone tz("Europe/Berlin");
    Rig r;
    std::vector<int> made;
    std::optional<MadeRecord> last;
    for (int i = 1; i <= 6; ++i)
        if (auto rec = r.tick()) {
            made.push_back(i);
            last = rec;
        }
    EXPECT_EQ(made, (std::vector<int>{2, 4, 6}));
    ASSERT_TRUE(last);
    const auto j = Parse(*last);
    // 10:00:02.500 in Berlin in March (UTC+1).
    EXPECT_EQ(j["time"], "2026-03-14T10:00:02.500");
    EXPECT_EQ(last->timeMs, 1773478802500);
    EXPECT_EQ(j["ts"], 1773478802500);
    EXPECT_EQ(j["q"], "good");
    EXPECT_FALSE(j.contains("sample"));
    EXPECT_EQ(j["values"].size(), 2u) << "only the logged tags";
    EXPECT_EQ(j["values"]["LEVEL"], 12.5);
    EXPECT_EQ(j["values"]["FLOW"], -3);
}

TEST(Records, WithTheCsvLogTheRecordHoldsExactlyTheLinesValuesTimeAndSample) {
    TimeZone tz("UTC");
    Rig r;
    r.st.logging.LogFileName = (r.folder / "LOG.CSV").string();
    r.st.logging.OverwriteFile = 1;
    r.st.logging.LogTimeColumn = Variant::integer(1);
    r.st.switches.LoggingEnabled = Variant::integer(1);
    r.tag(1, "LEVEL", 1.234568e7f, true);
    std::optional<MadeRecord> last;
    for (int i = 1; i <= 6; ++i)
        if (auto rec = r.tick()) last = rec;
    ASSERT_TRUE(last);
    r.st.logRun.File.close();
    std::ifstream in(r.folder / "LOG.CSV", std::ios::binary);
    std::string line, lastLine;
    while (std::getline(in, line)) lastLine = line;
    // "3, 10:00:03.000, 1.234568E+07 ,-3 \r"
    std::vector<std::string> fields;
    std::stringstream ss(lastLine);
    for (std::string f; std::getline(ss, f, ',');) {
        while (!f.empty() && (f.back() == ' ' || f.back() == '\r')) f.pop_back();
        while (!f.empty() && f.front() == ' ') f.erase(0, 1);
        fields.push_back(f);
    }
    ASSERT_EQ(fields.size(), 4u) << lastLine;
    const auto j = Parse(*last);
    EXPECT_EQ(fields[0], "3") << "three records of a second: " << lastLine;
    EXPECT_EQ(j["sample"], 3);
    EXPECT_EQ(j["time"].get<std::string>().substr(11), fields[1]) << "the logging clock's time";
    // The values as the line writes them, character for character.
    EXPECT_NE(last->body.find("\"LEVEL\":" + fields[2]), std::string::npos) << last->body;
    EXPECT_NE(last->body.find("\"FLOW\":" + fields[3]), std::string::npos) << last->body;
}

TEST(Records, LoggingHeldBackByItsStartConditionMakesNoRecord) {
    Rig r;
    r.st.logging.LogFileName = (r.folder / "LOG.CSV").string();
    r.st.switches.LoggingEnabled = Variant::integer(1);
    // Logging starts once SETPT (60) rises above 100.
    r.st.logging.LogMode = 1;
    r.st.logging.ConditionTag = 2;
    r.st.logging.StartValue = Variant::real(100);
    r.st.logging.StartAbove = 1;
    int made = 0;
    for (int i = 1; i <= 6; ++i) made += r.tick().has_value();
    EXPECT_EQ(made, 0);
}

TEST(Records, UtcTimesAreRightAcrossBothDaylightSavingChanges) {
    TimeZone tz("Europe/Berlin");
    // Before and after the spring change (02:00 CET -> 03:00 CEST on 29 March 2026).
    EXPECT_EQ(LocalToUtcMs(At(2026, 3, 29, 1, 59, 59, 500)), 1774745999500);  // 00:59:59.5Z
    EXPECT_EQ(LocalToUtcMs(At(2026, 3, 29, 3, 0, 0)), 1774746000000);         // 01:00Z
    // The hour repeated in autumn (25 October 2026): the first, summer-time reading.
    EXPECT_EQ(LocalToUtcMs(At(2026, 10, 25, 2, 30, 0)), 1792888200000);  // 00:30Z
    EXPECT_EQ(LocalToUtcMs(At(2026, 10, 25, 3, 30, 0)), 1792895400000);  // 02:30Z
    // Summer and winter days.
    EXPECT_EQ(LocalToUtcMs(At(2026, 7, 1, 12, 0, 0)), 1782900000000);  // 10:00Z
    EXPECT_EQ(LocalToUtcMs(At(2026, 1, 1, 12, 0, 0)), 1767265200000);  // 11:00Z
}

TEST(Records, UtcTimesInAZoneWithoutDaylightSaving) {
    TimeZone tz("UTC");
    EXPECT_EQ(LocalToUtcMs(At(2025, 11, 23, 10, 0, 0, 500)), 1763892000500);
}

TEST(Records, AValueNoJsonNumberHoldsIsNull) {
    EXPECT_EQ(JsonNumber(std::numeric_limits<double>::infinity()), "null");
    EXPECT_EQ(JsonNumber(12.5), "12.5");
    EXPECT_EQ(JsonString("a\"b\\c\n"), "\"a\\\"b\\\\c\\u000a\"");
}

TEST(ScanQuality, TheTestModuleIsGoodAndASilentModuleOrAPortErrorIsBad) {
    Rig r;
    r.tick();
    EXPECT_TRUE(QualityOfScan(r.st).good);
    r.st.daq.Port.NotAnswering = 1;
    EXPECT_FALSE(QualityOfScan(r.st).good);
    r.st.daq.Port.NotAnswering = 0;
    r.st.daq.Port.PortError = 1;
    EXPECT_FALSE(QualityOfScan(r.st).good);
}

TEST(ScanQuality, APortThatCannotBeReachedIsBadForAModuleOnIt) {
    struct Unreachable final : PortIo {
        std::uint8_t read(std::uint16_t) override { return 0xFF; }
        void write(std::uint16_t, std::uint8_t) override {}
        std::uint16_t lptBase(int) override { return 0; }
        std::string problem() const override { return "no /dev/parport0"; }
    } port;
    Rig r;
    r.st.profile.TypeCode = kDaqQrt105;
    r.st.platform.port = &port;
    const ScanQuality q = QualityOfScan(r.st);
    EXPECT_FALSE(q.good);
    EXPECT_NE(q.why.find("no /dev/parport0"), std::string::npos);
}

TEST(ScanQuality, OnlyReadingsCarryTheScansQuality) {
    Rig r;
    Tag& in = r.st.tags[5];
    in.TagName = "AI";
    in.Direction = kInput;
    in.IONumber = 1;
    EXPECT_TRUE(TagIsReading(r.st, 5));
    EXPECT_FALSE(TagIsReading(r.st, 1)) << "a variable is the station's own value";
}

}  // namespace kova::links
