// The node's names on the broker, and its primary host's STATE.
#include <gtest/gtest.h>

#include "links/sparkplug/host_state.h"
#include "links/sparkplug/sparkplug_names.h"

namespace kova::sparkplug {
namespace {

TEST(SparkplugNames, GroupSlashNodeMakesTheTopics) {
    NodeName n;
    std::string error;
    ASSERT_TRUE(ParseNodeName("Plant/Line 2", n, error)) << error;
    EXPECT_EQ(n.group, "Plant");
    EXPECT_EQ(n.node, "Line 2");
    EXPECT_EQ(NodeTopic(n, NodeMessage::Birth), "spBv1.0/Plant/NBIRTH/Line 2");
    EXPECT_EQ(NodeTopic(n, NodeMessage::Data), "spBv1.0/Plant/NDATA/Line 2");
    EXPECT_EQ(NodeTopic(n, NodeMessage::Death), "spBv1.0/Plant/NDEATH/Line 2");
    EXPECT_EQ(NodeTopic(n, NodeMessage::Command), "spBv1.0/Plant/NCMD/Line 2");
    EXPECT_EQ(HostStateTopic("scada"), "spBv1.0/STATE/scada");
}

TEST(SparkplugNames, EmptyWildcardsSlashesAndControlsAreRefusedWithTheReason) {
    NodeName n;
    std::string error;
    const std::pair<const char*, const char*> bad[] = {
        {"Plant", "takes GROUP/NODE"},
        {"/Node", "group ID \"\" cannot be used: it is empty"},
        {"Plant/", "node ID \"\" cannot be used: it is empty"},
        {"Pl+nt/N", "wildcard"},
        {"Plant/N#", "wildcard"},
        {"Plant/a/b", "node ID \"a/b\" cannot be used: it holds a /"},
        {"Plant/a\tb", "node ID \"a\\x09b\" cannot be used: it holds control characters"},
    };
    for (const auto& [text, why] : bad) {
        error.clear();
        EXPECT_FALSE(ParseNodeName(text, n, error)) << text;
        EXPECT_NE(error.find(why), std::string::npos) << text << ": " << error;
    }
    EXPECT_EQ(IdProblem(std::string(300, 'a')), "it is longer than 256 bytes");
    EXPECT_EQ(IdProblem("scada"), "");
}

TEST(SparkplugHostState, ReadsOnlineAndTimestampFromJson) {
    std::string error;
    auto s = ParseHostState(R"({"online":true,"timestamp":1700000000000})", error);
    ASSERT_TRUE(s) << error;
    EXPECT_TRUE(s->online);
    EXPECT_EQ(s->timestamp, 1700000000000u);
    s = ParseHostState(R"({"online":false,"timestamp":5})", error);
    ASSERT_TRUE(s);
    EXPECT_FALSE(s->online);
    for (const char* bad : {"ONLINE", "", "[]", R"({"online":"yes"})", R"({"timestamp":1})"}) {
        error.clear();
        EXPECT_FALSE(ParseHostState(bad, error)) << bad;
        EXPECT_FALSE(error.empty());
    }
    EXPECT_FALSE(ParseHostState(std::string(kMaxHostStatePayload + 1, ' '), error));
}

TEST(SparkplugHostState, AnOlderStateThanTheNewestSeenChangesNothing) {
    HostWatch w;
    EXPECT_FALSE(w.online());
    EXPECT_TRUE(w.seen({true, 100}));
    EXPECT_TRUE(w.online());
    EXPECT_FALSE(w.seen({false, 99}));  // a stale copy arriving late
    EXPECT_TRUE(w.online());
    EXPECT_TRUE(w.seen({false, 101}));
    EXPECT_FALSE(w.online());
    EXPECT_TRUE(w.seen({true, 101}));
    // A new connection: offline until the host's state arrives again.
    w.reconnected();
    EXPECT_FALSE(w.online());
    EXPECT_TRUE(w.seen({true, 101}));
}

}  // namespace
}  // namespace kova::sparkplug
