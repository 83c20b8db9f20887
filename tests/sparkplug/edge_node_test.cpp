// The edge node's payloads, decoded as a host decodes them.
#include "links/sparkplug/edge_node.h"
#include "links/sparkplug/held_record.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <map>

#include "displays/screen_rig.h"
#include "links/station_snapshot.h"
#include "sparkplug_b.pb.h"

namespace kova::sparkplug {
namespace {

using test::ScreenRig;
using wire::Payload;

Payload Decoded(const std::string& bytes) {
    Payload p;
    EXPECT_TRUE(p.ParseFromString(bytes));
    return p;
}

std::map<std::string, Payload::Metric> ByName(const Payload& p) {
    std::map<std::string, Payload::Metric> out;
    for (const auto& m : p.metrics()) out[m.name()] = m;
    return out;
}

std::string Units(const Payload::Metric& m) {
    for (int i = 0; i < m.properties().keys_size(); ++i)
        if (m.properties().keys(i) == kUnitsProperty)
            return m.properties().values(i).string_value();
    return {};
}

struct NodeRig {
    ScreenRig r;
    SimulatedClock clock{LocalDateTime{2026, 3, 14, 10, 0, 0, 250}};
    links::SnapshotBuilder builder;
    EdgeNode node;
    NodeRig() { r.st.platform.clock = &clock; }
    std::shared_ptr<const links::StationSnapshot> snap() { return builder.build(r.st, 0); }
};

// The station's clock is local time: these tests read it in a zone of their own.
class InUtc : public ::testing::Environment {
  public:
    void SetUp() override {
        setenv("TZ", "UTC", 1);
        tzset();
    }
};
const auto* const kInUtc = ::testing::AddGlobalTestEnvironment(new InUtc);

TEST(SparkplugBirth, ListsEveryNamedTagWithItsTypeUnitsAndValue) {
    NodeRig n;
    n.r.st.tags[test::kLevel].Value = 42.5f;
    n.r.st.tags[test::kPump].Value = 1;
    const Payload p = Decoded(n.node.birth(*n.snap(), 7));
    EXPECT_EQ(p.seq(), 0u);
    EXPECT_GT(p.timestamp(), 0u);
    const auto m = ByName(p);
    ASSERT_TRUE(m.count("LEVEL"));
    EXPECT_EQ(m.at("LEVEL").datatype(), wire::Float);
    EXPECT_EQ(m.at("LEVEL").float_value(), 42.5f);
    EXPECT_EQ(Units(m.at("LEVEL")), "%");
    EXPECT_EQ(m.at("PUMP").datatype(), wire::Boolean);
    EXPECT_TRUE(m.at("PUMP").boolean_value());
    EXPECT_EQ(m.at("DOOR").datatype(), wire::Boolean);
    EXPECT_FALSE(m.at("DOOR").boolean_value());
    EXPECT_FALSE(m.at("DOOR").has_properties());  // no units, no property
    EXPECT_EQ(m.at("SETPT").datatype(), wire::Float);
    // The system variables are metrics too.
    for (const char* sys : {"TS", "HR", "MN", "SC", "DW", "SU"}) {
        ASSERT_TRUE(m.count(sys)) << sys;
        EXPECT_EQ(m.at(sys).datatype(), wire::Float) << sys;
    }
    ASSERT_TRUE(m.count(kRebirthMetric));
    EXPECT_EQ(m.at(kRebirthMetric).datatype(), wire::Boolean);
    EXPECT_FALSE(m.at(kRebirthMetric).boolean_value());
    ASSERT_TRUE(m.count(kBdSeqMetric));
    EXPECT_EQ(m.at(kBdSeqMetric).datatype(), wire::Int64);
    EXPECT_EQ(m.at(kBdSeqMetric).long_value(), 7u);
    // Every named tag of the table, and the two node metrics.
    int named = 0;
    for (int t = 1; t <= kTableTags; ++t) named += !n.r.st.tags[t].TagName.empty();
    EXPECT_EQ(p.metrics_size(), named + 2);
    for (const auto& metric : p.metrics()) {
        EXPECT_EQ(metric.timestamp(), p.timestamp()) << metric.name();
        EXPECT_FALSE(metric.has_alias()) << metric.name();
    }
}

TEST(SparkplugTime, TheScansLocalTimeBecomesMillisecondsSince1970Utc) {
    // 2026-03-14 10:00:00.250 UTC
    EXPECT_EQ(UtcMillis(LocalDateTime{2026, 3, 14, 10, 0, 0, 250}), 1773482400250u);
    EXPECT_EQ(UtcMillis(LocalDateTime{1970, 1, 1, 0, 0, 1, 5}), 1005u);
}

TEST(SparkplugData, CarriesOnlyWhatChangedWithTheScansTime) {
    NodeRig n;
    n.node.birth(*n.snap(), 0);
    n.clock.advance(500);
    n.r.st.tags[test::kLevel].Value = 12.25f;
    n.r.st.tags[test::kLamp].Value = 1;
    const Payload p = Decoded(n.node.data(*n.snap()));
    EXPECT_EQ(p.seq(), 1u);
    EXPECT_EQ(p.timestamp(), 1773482400750u);
    ASSERT_EQ(p.metrics_size(), 2);
    const auto m = ByName(p);
    EXPECT_EQ(m.at("LEVEL").float_value(), 12.25f);
    EXPECT_EQ(m.at("LEVEL").timestamp(), 1773482400750u);
    EXPECT_EQ(m.at("LEVEL").datatype(), wire::Float);
    EXPECT_TRUE(m.at("LAMP").boolean_value());
    EXPECT_FALSE(m.at("LAMP").is_historical());
    // Nothing changed: nothing to send, and the seq is not used up.
    EXPECT_EQ(n.node.data(*n.snap()), "");
    EXPECT_EQ(n.node.seq(), 1);
}

TEST(SparkplugData, SeqFollowsTheBirthWithoutAGapAndWrapsAfter255) {
    NodeRig n;
    EXPECT_EQ(Decoded(n.node.birth(*n.snap(), 3)).seq(), 0u);
    for (unsigned i = 1; i <= 600; ++i) {
        n.r.st.tags[test::kSetpt].Value = static_cast<float>(i);
        const Payload p = Decoded(n.node.data(*n.snap()));
        ASSERT_EQ(p.seq(), i % 256) << i;
    }
    // A new birth starts again from 0.
    EXPECT_EQ(Decoded(n.node.birth(*n.snap(), 4)).seq(), 0u);
    n.r.st.tags[test::kSetpt].Value = -1;
    EXPECT_EQ(Decoded(n.node.data(*n.snap())).seq(), 1u);
}

TEST(SparkplugDeath, CarriesTheBdSeqOfItsConnection) {
    for (std::uint8_t bd : {0, 1, 255}) {
        const Payload p = Decoded(DeathPayload(bd, 1234));
        ASSERT_EQ(p.metrics_size(), 1);
        EXPECT_EQ(p.metrics(0).name(), kBdSeqMetric);
        EXPECT_EQ(p.metrics(0).datatype(), wire::Int64);
        EXPECT_EQ(p.metrics(0).long_value(), bd);
        EXPECT_FALSE(p.has_seq());  // a death has no seq
    }
}

TEST(SparkplugBirth, IsDueAgainWhenATagIsNamedRenamedOrRetyped) {
    NodeRig n;
    n.node.birth(*n.snap(), 0);
    n.r.st.tags[test::kLevel].Value = 3;
    EXPECT_FALSE(n.node.needsRebirth(*n.snap()));  // values only
    n.r.st.tags[test::kLevel].Label = "Another label";
    EXPECT_FALSE(n.node.needsRebirth(*n.snap()));  // nothing a metric shows
    n.r.st.tags[test::kLevel].TagName = "TANK";
    EXPECT_TRUE(n.node.needsRebirth(*n.snap()));
    n.node.birth(*n.snap(), 0);
    EXPECT_FALSE(n.node.needsRebirth(*n.snap()));
    n.r.st.tags[test::kLevel].Units = "m";
    EXPECT_TRUE(n.node.needsRebirth(*n.snap()));
    n.node.birth(*n.snap(), 0);
    n.r.st.tags[20].TagName = "NEWONE";
    EXPECT_TRUE(n.node.needsRebirth(*n.snap()));
}

TEST(SparkplugBirth, ANameNoHostCanReadIsLeftOutAndToldOnce) {
    NodeRig n;
    n.r.st.tags[20].TagName = "BAD\x01NAME";
    n.r.st.tags[21].TagName = "LATIN\xB5";  // not UTF-8
    const auto m = ByName(Decoded(n.node.birth(*n.snap(), 0)));
    EXPECT_EQ(m.count(n.r.st.tags[20].TagName), 0u);
    EXPECT_EQ(m.count(n.r.st.tags[21].TagName), 0u);
    EXPECT_TRUE(m.count("LEVEL"));
    const auto notices = n.node.takeNotices();
    ASSERT_EQ(notices.size(), 2u);
    EXPECT_NE(notices[0].find("tag 20 (BAD\\x01NAME) is not published"), std::string::npos)
        << notices[0];
    n.node.birth(*n.snap(), 0);
    EXPECT_TRUE(n.node.takeNotices().empty());
}

TEST(SparkplugHistory, ARecordsBodyGivesItsNumbers) {
    const auto v = HeldValuesOf(
        R"({"ts":1,"time":"x","q":"good","values":{"LEVEL":12.5,"PUMP":1,"BAD":null}})");
    ASSERT_EQ(v.size(), 2u);
    EXPECT_EQ(v[0].tagName, "LEVEL");
    EXPECT_EQ(v[0].value, 12.5f);
    EXPECT_EQ(v[1].tagName, "PUMP");
    EXPECT_TRUE(HeldValuesOf("not json").empty());
    EXPECT_TRUE(HeldValuesOf(R"({"values":[1,2]})").empty());
}

TEST(SparkplugHistory, HeldValuesGoOutMarkedHistoricalWithTheirOwnTime) {
    NodeRig n;
    n.node.birth(*n.snap(), 0);
    const Payload p = Decoded(n.node.history({{"LEVEL", 5.5f}, {"PUMP", 1}, {"NOSUCHTAG", 2}},
                                             1700000000123u));  // not a metric: left out
    EXPECT_EQ(p.seq(), 1u);
    EXPECT_EQ(p.timestamp(), 1700000000123u);
    ASSERT_EQ(p.metrics_size(), 2);
    for (const auto& m : p.metrics()) {
        EXPECT_TRUE(m.is_historical());
        EXPECT_EQ(m.timestamp(), 1700000000123u);
    }
    EXPECT_EQ(p.metrics(0).float_value(), 5.5f);
    EXPECT_TRUE(p.metrics(1).boolean_value());
    // The live values are compared as before: the level of the station is still unsent.
    n.r.st.tags[test::kLevel].Value = 5.5f;
    EXPECT_EQ(Decoded(n.node.data(*n.snap())).seq(), 2u);
}

}  // namespace
}  // namespace kova::sparkplug
