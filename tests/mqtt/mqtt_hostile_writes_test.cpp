// Whoever can publish on the broker can do no more than the documented writes: payloads
// are bounded before they are copied, what is printed of them is escaped and cut, retained
// writes are never applied, a flood is counted, and a tag whose name no topic can carry is
// never published.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <thread>

#include "links/mqtt/mqtt_station.h"
#include "mqtt/station_rig.h"
#include "mqtt/test_broker.h"

namespace kova::mqtt {
namespace {

using test::Subscriber;
using test::TestBroker;
using test::WaitUntil;

// A broker that queues without limit for a subscriber that falls behind (a default broker
// drops beyond 1000), so a flood reaches the station whole.
TestBroker::Config Unqueued() {
    return [](int port, int, const std::filesystem::path&) {
        return "listener " + std::to_string(port) +
               " 127.0.0.1\nallow_anonymous true\nmax_queued_messages 0\n";
    };
}

class HostileWrites : public ::testing::Test {
  protected:
    TestBroker broker{Unqueued()};
    StationRig rig;
    std::ostringstream errors;
    std::unique_ptr<MqttLink> link = Connected(Options(broker.port(), true));
    MqttStation station{*link, "kova/test", errors};
    Subscriber writer{broker.port(), "kova/none"};

    // Publishes and waits until the link holds `count` more writes than before.
    void arrive(const std::function<void()>& publish, long long count = 1) {
        const long long before = link->writesWaiting();
        publish();
        // A busy machine delivers a flood slowly.
        ASSERT_TRUE(WaitUntil([&] { return link->writesWaiting() >= before + count; },
                              std::chrono::seconds(30)))
            << "the writes never arrived";
    }
    std::vector<std::string> lines() const {
        std::vector<std::string> out;
        std::istringstream in(errors.str());
        for (std::string l; std::getline(in, l);) out.push_back(l);
        return out;
    }
};

TEST_F(HostileWrites, APayloadLongerThanANumberIsRefusedBeforeItIsCopied) {
    const std::string huge(4 << 20, '1');
    arrive([&] { writer.publish("kova/test/set/SETP", huge); });
    const MqttLink::Taken taken = link->takeIncoming();
    ASSERT_EQ(taken.messages.size(), 1u);
    EXPECT_TRUE(taken.messages[0].payloadTooLong);
    EXPECT_EQ(taken.messages[0].payloadBytes, huge.size());
    EXPECT_EQ(taken.messages[0].payload.capacity() < 64, true);  // nothing of it was kept
    // Through the station: one short line, nothing changed.
    arrive([&] { writer.publish("kova/test/set/SETP", huge); });
    station.applyWrites(rig.st);
    EXPECT_EQ(rig.st.tags[3].Value, 0.0f);
    EXPECT_EQ(errors.str(),
              "kova-cli: mqtt: kova/test/set/SETP: refused: a payload of 4194304 bytes is no "
              "number (64 bytes at most)\n");
    // 64 bytes is still taken as a number.
    arrive([&] { writer.publish("kova/test/set/SETP", std::string(62, ' ') + "42"); });
    station.applyWrites(rig.st);
    EXPECT_EQ(rig.st.tags[3].Value, 42.0f);
}

TEST_F(HostileWrites, ARefusedPayloadIsPrintedEscapedAndCutOnOneLine) {
    arrive(
        [&] {
            writer.publish("kova/test/set/SETP", "1\nkova-cli: mqtt: forged line\x1b[2J");
            writer.publish("kova/test/set/SETP", std::string(64, 'x'));
            // (A broker passes no control characters in a topic; bytes beyond ASCII it does.)
            writer.publish("kova/test/set/NO\xC3\xA9SUCH\xE2\x80\xAE", "1");
        },
        3);
    station.applyWrites(rig.st);
    const auto l = lines();
    ASSERT_EQ(l.size(), 3u) << errors.str();
    EXPECT_EQ(l[0],
              "kova-cli: mqtt: kova/test/set/SETP: refused: \"1\\x0Akova-cli: mqtt: forged "
              "line\\x1B[2J\" is not a number");
    EXPECT_EQ(l[1], "kova-cli: mqtt: kova/test/set/SETP: refused: \"" + std::string(64, 'x') +
                        "\" is not a number");
    EXPECT_EQ(l[2],
              "kova-cli: mqtt: kova/test/set/NO\\xC3\\xA9SUCH\\xE2\\x80\\xAE: refused: there is "
              "no tag NO\\xC3\\xA9SUCH\\xE2\\x80\\xAE to set");
    for (const std::string& line : l)
        for (unsigned char c : line) EXPECT_TRUE(c >= 0x20 && c < 0x7F) << line;
}

TEST_F(HostileWrites, ATopicWithAHugeTagNameIsKeptShortAndRefused) {
    const std::string name(60000, 'N');
    arrive([&] { writer.publish("kova/test/set/" + name, "1"); });
    station.applyWrites(rig.st);
    EXPECT_EQ(errors.str(), "kova-cli: mqtt: kova/test/set/" + std::string(64, 'N') +
                                "...: refused: there is no tag " + std::string(64, 'N') +
                                "... to set\n");
}

TEST(MqttRetained, ARetainedWriteIsNeverAppliedAndSaidOnce) {
    TestBroker broker;
    StationRig rig;
    {
        // Sent once, long before the station starts, and kept by the broker.
        Subscriber old(broker.port(), "kova/none");
        old.publish("kova/test/set/PUMP", "1", true);
        old.publish("kova/test/set/LAMP", "1", true);
        Subscriber check(broker.port(), "kova/test/set/LAMP");
        ASSERT_TRUE(check.waitFor([](auto& m) { return !m.empty(); }));
    }
    std::ostringstream errors;
    auto link = Connected(Options(broker.port(), true));
    MqttStation station(*link, "kova/test", errors);
    ASSERT_TRUE(WaitUntil([&] { return link->writesWaiting() >= 2; }));
    station.applyWrites(rig.st);
    EXPECT_EQ(rig.st.tags[4].Value, 0.0f);
    EXPECT_EQ(rig.st.tags[5].Value, 0.0f);
    EXPECT_EQ(rig.st.daq.DigitalOutputImage, 0);
    EXPECT_EQ(errors.str(),
              "kova-cli: mqtt: kova/test/set/PUMP: ignored: a retained write is never applied, "
              "or it would run again at every start (clear it by publishing an empty retained "
              "message to the topic); further retained writes are ignored without a word\n");
    // A write sent now is applied.
    Subscriber writer(broker.port(), "kova/none");
    writer.publish("kova/test/set/PUMP", "1");
    ASSERT_TRUE(WaitUntil([&] {
        station.applyWrites(rig.st);
        return rig.st.tags[4].Value == 1.0f;
    }));
}

TEST_F(HostileWrites, WritesBeyondWhatATickTakesAreDroppedAndCounted) {
    constexpr long long kSent = 12000;
    for (long long i = 0; i < kSent; ++i) writer.publish("kova/test/set/SETP", "7");
    // What arrived is counted once the flood has stopped arriving.
    long long arrived = 0;
    for (int still = 0; still < 10;) {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        const long long now = link->writesWaiting();
        still = now == arrived ? still + 1 : 0;
        arrived = now;
    }
    ASSERT_EQ(arrived, kSent);
    station.applyWrites(rig.st);
    EXPECT_EQ(station.writesSeen(), static_cast<long long>(MqttLink::kMaxWritesWaiting));
    EXPECT_EQ(rig.st.tags[3].Value, 7.0f);
    EXPECT_EQ(errors.str(), "kova-cli: mqtt: " + std::to_string(arrived - 10000) +
                                " writes were dropped: more than 10000 arrived between two "
                                "scans\n");
}

TEST(MqttTopics, ATagNameNoTopicCanCarryIsNeverPublishedAndTheOthersGoOnce) {
    TestBroker broker;
    StationRig rig;
    rig.st.tags[6].TagName = "A+B";
    rig.st.tags[7].TagName = "LINE/2";
    rig.st.tags[8].TagName = "C#";
    std::ostringstream errors;
    auto link = Connected(Options(broker.port()));
    MqttStation station(*link, "kova/test", errors);
    Subscriber sub(broker.port(), "kova/test/tags/#");
    station.publishTags(rig.st);
    const long long first = station.published();
    ASSERT_TRUE(sub.waitFor([&](auto& m) { return m.size() >= static_cast<std::size_t>(first); }));
    // Nothing changed: nothing is sent again, tick after tick.
    for (int tick = 0; tick < 5; ++tick) station.publishTags(rig.st);
    EXPECT_EQ(station.published(), first);
    EXPECT_EQ(sub.count("kova/test/tags/LINE/2"), 0);
    EXPECT_EQ(sub.count("kova/test/tags/TEMP"), 1);
    EXPECT_EQ(errors.str(),
              "kova-cli: mqtt: tag 6 (A+B) is not published: a topic cannot hold the wildcards + "
              "and #\n"
              "kova-cli: mqtt: tag 7 (LINE/2) is not published: a / would split its topic\n"
              "kova-cli: mqtt: tag 8 (C#) is not published: a topic cannot hold the wildcards + "
              "and #\n");
}

TEST(MqttTopics, AFailingPublishRetriesThatTagAloneAndIsToldOnce) {
    // A broker that takes no packet longer than 100 bytes: the long tag's never goes out.
    TestBroker broker([](int port, int, const std::filesystem::path&) {
        return "listener " + std::to_string(port) +
               " 127.0.0.1\nallow_anonymous true\nmax_packet_size 100\n";
    });
    StationRig rig;
    rig.st.tags[6].TagName = std::string(100, 'L');
    std::ostringstream errors;
    auto link = Connected(Options(broker.port()));
    MqttStation station(*link, "kova/test", errors);
    station.publishTags(rig.st);
    const long long first = station.published();
    EXPECT_GT(first, 5);
    for (int tick = 0; tick < 5; ++tick) station.publishTags(rig.st);
    EXPECT_EQ(station.published(), first);  // the others are not sent again and again
    const std::string said = errors.str();
    EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1) << said;
    EXPECT_EQ(
        said.rfind("kova-cli: mqtt: tag 6 (" + std::string(64, 'L') + "...) cannot be published: ",
                   0),
        0u)
        << said;
}

}  // namespace
}  // namespace kova::mqtt
