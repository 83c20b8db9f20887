// What a host's NCMD asks of the node, read as the network gives it.
#include "links/sparkplug/node_command.h"

#include <gtest/gtest.h>

#include "links/sparkplug/edge_node.h"
#include "sparkplug_b.pb.h"

namespace kova::sparkplug {
namespace {

using wire::Payload;

constexpr const char* kSource = "sparkplug NCMD";

NodeCommand Read(const Payload& p, bool writes = true) {
    const std::string bytes = p.SerializeAsString();
    return ReadNodeCommand(bytes, bytes.size(), writes, kSource);
}

Payload::Metric* Add(Payload& p, const std::string& name) {
    Payload::Metric* m = p.add_metrics();
    m->set_name(name);
    return m;
}

TEST(SparkplugCommand, RebirthTrueAsksForABirth) {
    Payload p;
    Add(p, kRebirthMetric)->set_boolean_value(true);
    const NodeCommand c = Read(p, false);  // no writes needed for a rebirth
    EXPECT_TRUE(c.rebirth);
    EXPECT_TRUE(c.writes.empty());
    EXPECT_TRUE(c.refusals.empty());
    Payload no;
    Add(no, kRebirthMetric)->set_boolean_value(false);
    EXPECT_FALSE(Read(no).rebirth);
    Payload wrongType;
    Add(wrongType, kRebirthMetric)->set_float_value(1);
    const NodeCommand w = Read(wrongType);
    EXPECT_FALSE(w.rebirth);
    ASSERT_EQ(w.refusals.size(), 1u);
    EXPECT_EQ(w.refusals[0], "sparkplug NCMD: refused: Node Control/Rebirth takes a Boolean");
}

TEST(SparkplugCommand, WritesBecomeOperatorWritesWithTheValueAsText) {
    Payload p;
    Add(p, "SETPT")->set_float_value(55.5f);
    Add(p, "PUMP")->set_boolean_value(true);
    Add(p, "LAMP")->set_boolean_value(false);
    Payload::Metric* i8 = Add(p, "A");
    i8->set_datatype(wire::Int8);
    i8->set_int_value(static_cast<std::uint32_t>(-3));
    Payload::Metric* i64 = Add(p, "B");
    i64->set_datatype(wire::Int64);
    i64->set_long_value(static_cast<std::uint64_t>(-40));
    Add(p, "C")->set_double_value(0.125);
    Add(p, "D")->set_string_value("12");
    const NodeCommand c = Read(p);
    EXPECT_TRUE(c.refusals.empty());
    ASSERT_EQ(c.writes.size(), 7u);
    const char* names[] = {"SETPT", "PUMP", "LAMP", "A", "B", "C", "D"};
    const char* values[] = {"55.5", "1", "0", "-3", "-40", "0.125", "12"};
    for (int i = 0; i < 7; ++i) {
        EXPECT_EQ(c.writes[i].kind, links::LinkCommand::Kind::Write);
        EXPECT_EQ(c.writes[i].source, kSource);
        EXPECT_EQ(c.writes[i].tagName, names[i]);
        EXPECT_EQ(c.writes[i].value, values[i]);
    }
}

TEST(SparkplugCommand, WritesWithoutMqttWritesAreRefusedOneLineEach) {
    Payload p;
    Add(p, "SETPT")->set_float_value(1);
    Add(p, "PUMP")->set_boolean_value(true);
    const NodeCommand c = Read(p, false);
    EXPECT_TRUE(c.writes.empty());
    ASSERT_EQ(c.refusals.size(), 2u);
    EXPECT_EQ(c.refusals[0],
              "sparkplug NCMD: refused: writes to SETPT are not taken (the station runs "
              "without --mqtt-writes)");
}

TEST(SparkplugCommand, HostileInputIsRefusedInFewBoundedEscapedLines) {
    // Too large: refused by its size alone.
    NodeCommand big = ReadNodeCommand("", kMaxCommandPayload + 1, true, kSource);
    ASSERT_EQ(big.refusals.size(), 1u);
    EXPECT_NE(big.refusals[0].find("65537 bytes is too large"), std::string::npos);
    // Not protobuf.
    const std::string junk = "\xff\xff\xff\xff\xff";
    NodeCommand bad = ReadNodeCommand(junk, junk.size(), true, kSource);
    ASSERT_EQ(bad.refusals.size(), 1u);
    EXPECT_EQ(bad.refusals[0], "sparkplug NCMD: refused: the payload is not a Sparkplug B payload");
    // An alias, no value, a data set, an unknown node control, a name with escapes.
    Payload p;
    p.add_metrics()->set_alias(3);
    Add(p, "SETPT");
    Add(p, "SETPT")->mutable_dataset_value();
    Add(p, "Node Control/Reboot")->set_boolean_value(true);
    Add(p, "X\n\x1b[2J")->set_is_null(true);
    const NodeCommand c = Read(p);
    EXPECT_TRUE(c.writes.empty());
    ASSERT_EQ(c.refusals.size(), 5u);
    EXPECT_NE(c.refusals[0].find("without a name"), std::string::npos);
    EXPECT_NE(c.refusals[1].find("SETPT: it carries no value"), std::string::npos);
    EXPECT_NE(c.refusals[2].find("no number"), std::string::npos);
    EXPECT_NE(c.refusals[3].find("Node Control/Reboot is not a command"), std::string::npos);
    EXPECT_NE(c.refusals[4].find("X\\x0A\\x1B[2J"), std::string::npos) << c.refusals[4];
    for (const std::string& line : c.refusals) EXPECT_EQ(line.find('\n'), std::string::npos);
    // Many bad metrics: a few lines and a count.
    Payload many;
    for (int i = 0; i < 1000; ++i) many.add_metrics()->set_alias(1);
    const NodeCommand m = Read(many);
    ASSERT_EQ(m.refusals.size(), 9u);
    EXPECT_EQ(m.refusals.back(), "sparkplug NCMD: refused: 992 more metrics of this command");
    // Many writes: as many as the inbox holds, the rest refused in one line.
    Payload flood;
    for (int i = 0; i < 100; ++i) Add(flood, "SETPT")->set_float_value(static_cast<float>(i));
    const NodeCommand f = Read(flood);
    EXPECT_EQ(f.writes.size(), kMaxWritesPerCommand);
    ASSERT_EQ(f.refusals.size(), 1u);
    EXPECT_NE(f.refusals[0].find("68 more writes"), std::string::npos);
}

}  // namespace
}  // namespace kova::sparkplug
