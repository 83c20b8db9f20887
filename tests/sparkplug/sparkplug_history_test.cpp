// Records the outbox held while the broker was away follow the node's next birth.
#include <gtest/gtest.h>

#include <thread>

#include "displays/screen_rig.h"
#include "links/command_inbox.h"
#include "links/outbox/outbox.h"
#include "links/snapshot_hub.h"
#include "links/sparkplug/sparkplug_link.h"
#include "mqtt/test_broker.h"
#include "sparkplug_b.pb.h"

namespace kova::sparkplug {
namespace {

using test::Subscriber;
using test::TestBroker;
using wire::Payload;

struct Decoded {
    std::string topic;
    Payload payload;
};

std::vector<Decoded> DecodedMessages(Subscriber& sub) {
    std::vector<Decoded> out;
    for (const auto& m : sub.messages()) {
        Decoded d{m.topic, {}};
        EXPECT_TRUE(d.payload.ParseFromString(m.payload)) << m.topic;
        out.push_back(std::move(d));
    }
    return out;
}

bool Historical(const Decoded& d) {
    return d.topic.find("/NDATA/") != std::string::npos && d.payload.metrics_size() > 0 &&
           d.payload.metrics(0).is_historical();
}

TEST(SparkplugHistory, RecordsHeldDuringABrokerOutageFollowTheNewBirthMarkedHistorical) {
    TestBroker broker;
    test::TempFolder dir;
    std::string error;
    auto outbox = links::Outbox::Open(dir.path() / "outbox", {}, error);
    ASSERT_TRUE(outbox) << error;
    test::ScreenRig r;
    SimulatedClock clock{LocalDateTime{2026, 3, 14, 10, 0, 0, 0}};
    r.st.platform.clock = &clock;
    links::SnapshotBuilder builder;
    links::SnapshotHub hub;
    links::CommandInbox inbox;
    hub.publish(builder.build(r.st, 0));

    mqtt::MqttOptions m;
    m.host = "127.0.0.1";
    m.port = broker.port();
    m.prefix = "spBv1.0/G/N";
    m.clientId = "kova-sparkplug-history-test";
    SparkplugOptions o;
    o.name = {"G", "N"};
    auto quiet = [](const std::string&) {};
    auto link = SparkplugLink::Start(m, o, hub, inbox, quiet, quiet, error, outbox.get());
    ASSERT_TRUE(link) << error;
    // Born: a record made now goes out live (as data), and is no history later.
    ASSERT_TRUE(test::WaitUntil([&] { return link->born(); }));
    outbox->append(1000, R"({"values":{"LEVEL":7}})");
    ASSERT_TRUE(test::WaitUntil([&] { return outbox->stats().records == 0; }));
    broker.stop();
    for (int i = 1; i <= 3; ++i)
        outbox->append(1700000000000 + i,
                       R"({"ts":1,"q":"good","values":{"LEVEL":)" + std::to_string(i) + "}}");
    // The station tries to connect while the broker is away: attempts that never got through
    // use no bdSeq.
    std::this_thread::sleep_for(std::chrono::milliseconds(1500));
    broker.start();
    Subscriber sub(broker.port(), "spBv1.0/G/#");
    ASSERT_TRUE(sub.waitFor(
        [](const std::vector<Subscriber::Message>& got) {
            int historical = 0;
            for (const auto& msg : got)
                historical += msg.topic.find("/NDATA/") != std::string::npos;
            return historical >= 3;
        },
        std::chrono::seconds(15)));
    const std::vector<Decoded> got = DecodedMessages(sub);
    ASSERT_GE(got.size(), 4u);
    EXPECT_EQ(got[0].topic, "spBv1.0/G/NBIRTH/N");
    EXPECT_EQ(got[0].payload.seq(), 0u);
    ASSERT_GE(got[0].payload.metrics_size(), 1);
    EXPECT_EQ(got[0].payload.metrics(0).name(), "bdSeq");
    EXPECT_EQ(got[0].payload.metrics(0).long_value(), 1u);  // the second accepted connection
    for (int i = 1; i <= 3; ++i) {
        SCOPED_TRACE(i);
        ASSERT_TRUE(Historical(got[i]));
        EXPECT_EQ(got[i].payload.seq(), static_cast<std::uint64_t>(i));
        EXPECT_EQ(got[i].payload.timestamp(), 1700000000000u + i);
        ASSERT_EQ(got[i].payload.metrics_size(), 1);
        EXPECT_EQ(got[i].payload.metrics(0).name(), "LEVEL");
        EXPECT_EQ(got[i].payload.metrics(0).float_value(), static_cast<float>(i));
        EXPECT_EQ(got[i].payload.metrics(0).timestamp(), 1700000000000u + i);
    }
    // The record that was live is not sent again.
    for (const Decoded& d : got)
        if (Historical(d)) {
            EXPECT_NE(d.payload.timestamp(), 1000u);
        }
    // Everything was delivered: nothing is handed out again.
    EXPECT_TRUE(test::WaitUntil([&] { return outbox->stats().records == 0; }));
}

}  // namespace
}  // namespace kova::sparkplug
