#include "links/mqtt/mqtt_station.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <sstream>

#include "core/configuration.h"
#include "mqtt/station_rig.h"
#include "mqtt/test_broker.h"
#include "tags/daq_profile.h"
#include "tags/tag_name_index.h"
#include "tags/tag_table.h"

namespace kova::mqtt {
namespace {

using test::Subscriber;
using test::TestBroker;
using test::WaitUntil;

TEST(MqttOptions, BrokerAddressTakesHostAndOptionalPort) {
    std::string host, error;
    int port = 0;
    ASSERT_TRUE(ParseBrokerAddress("broker.local", host, port, error));
    EXPECT_EQ(host, "broker.local");
    EXPECT_EQ(port, 1883);
    ASSERT_TRUE(ParseBrokerAddress("10.0.0.5:1884", host, port, error));
    EXPECT_EQ(host, "10.0.0.5");
    EXPECT_EQ(port, 1884);
    ASSERT_TRUE(ParseBrokerAddress("[::1]:8883", host, port, error));
    EXPECT_EQ(host, "::1");
    EXPECT_EQ(port, 8883);
    for (const char* bad : {"", ":1883", "host:", "host:0", "host:70000", "host:12x", "[::1"}) {
        EXPECT_FALSE(ParseBrokerAddress(bad, host, port, error)) << bad;
        EXPECT_FALSE(error.empty());
    }
}

TEST(MqttOptions, DefaultPrefixIsTheSetupFilesBaseName) {
    EXPECT_EQ(DefaultTopicPrefix("/data/Plant.SUF"), "kova/Plant");
    EXPECT_EQ(DefaultTopicPrefix("Default.Suf"), "kova/Default");
}

TEST(MqttOptions, PasswordIsTheFilesFirstLine) {
    test::TempFolder dir;
    test::WriteFileBytes(dir / "pw", "s3cret\r\nsecond line\n");
    std::string pw, error;
    ASSERT_TRUE(ReadPasswordFile((dir / "pw").string(), pw, error));
    EXPECT_EQ(pw, "s3cret");
    test::WriteFileBytes(dir / "empty", "");
    EXPECT_FALSE(ReadPasswordFile((dir / "empty").string(), pw, error));
    EXPECT_FALSE(ReadPasswordFile((dir / "missing").string(), pw, error));
    EXPECT_NE(error.find("missing"), std::string::npos);
}

TEST(MqttStation, StatusIsOnlineRetainedAndOfflineAfterACleanStop) {
    TestBroker broker;
    {
        auto link = Connected(Options(broker.port()));
        Subscriber sub(broker.port(), "kova/test/status");
        ASSERT_TRUE(sub.waitFor([](auto& m) { return !m.empty(); }));
        EXPECT_EQ(sub.messages().front().payload, "online");
        EXPECT_TRUE(sub.messages().front().retained);
    }
    Subscriber late(broker.port(), "kova/test/status");
    ASSERT_TRUE(late.waitFor([](auto& m) { return !m.empty(); }));
    EXPECT_EQ(late.last("kova/test/status"), "offline");
}

TEST(MqttStation, KilledStationReadsOfflineThroughTheLastWill) {
    TestBroker broker;
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        std::string error;
        auto link = MqttLink::Start(Options(broker.port()), error);
        for (int i = 0; i < 500 && link && !link->connected(); ++i) usleep(10000);
        raise(SIGKILL);  // no clean stop: the broker must send the will
        _exit(1);
    }
    waitpid(child, nullptr, 0);
    Subscriber sub(broker.port(), "kova/test/status");
    // The broker notices the dead connection at once (the socket closed).
    ASSERT_TRUE(sub.waitFor([](auto& m) { return !m.empty() && m.back().payload == "offline"; }))
        << "last status: " << sub.last("kova/test/status");
}

TEST(MqttStation, TagValuesArriveRetainedAsTheLogsNumberTextAndOnlyWhenChanged) {
    TestBroker broker;
    StationRig rig;
    std::ostringstream errors;
    auto link = Connected(Options(broker.port()));
    MqttStation station(*link, "kova/test", errors);
    Subscriber sub(broker.port(), "kova/test/tags/#");
    rig.st.tags[1].Value = 12.5f;
    rig.st.tags[3].Value = 0.1f;
    station.publishTags(rig.st);
    // SU, the last tag with a name, arrives last.
    ASSERT_TRUE(sub.waitFor([&](auto&) { return sub.count("kova/test/tags/SU") == 1; }));
    EXPECT_EQ(sub.last("kova/test/tags/TEMP"), "12.5");
    EXPECT_EQ(sub.last("kova/test/tags/SETP"), "0.1");
    // The system variables have names too.
    EXPECT_EQ(sub.count("kova/test/tags/TS"), 1);
    const long long first = station.published();
    // Nothing changed: nothing is sent again.
    station.publishTags(rig.st);
    EXPECT_EQ(station.published(), first);
    rig.st.tags[1].Value = -3.25f;
    station.publishTags(rig.st);
    EXPECT_EQ(station.published(), first + 1);
    ASSERT_TRUE(sub.waitFor([&](auto&) { return sub.last("kova/test/tags/TEMP") == "-3.25"; }));
    EXPECT_EQ(sub.count("kova/test/tags/SETP"), 1);
    // A subscriber that comes later finds the retained values.
    Subscriber late(broker.port(), "kova/test/tags/TEMP");
    ASSERT_TRUE(late.waitFor([](auto& m) { return !m.empty(); }));
    EXPECT_TRUE(late.messages().back().retained);
    EXPECT_EQ(late.last("kova/test/tags/TEMP"), "-3.25");
}

TEST(MqttStation, AlarmLinesArriveAsTheyAre) {
    TestBroker broker;
    std::ostringstream errors;
    auto link = Connected(Options(broker.port()));
    MqttStation station(*link, "kova/test", errors);
    Subscriber sub(broker.port(), "kova/test/alarms");
    station.publishAlarm("ALARM 03-14-2026 10:00:00 Tank level low");
    station.publishAlarm("");  // a cleared status bar is no alarm line
    station.publishAlarm("NORML 03-14-2026 10:00:05 Tank level normal");
    ASSERT_TRUE(sub.waitFor([](auto& m) { return m.size() >= 2; }));
    const auto m = sub.messages();
    ASSERT_EQ(m.size(), 2u);
    EXPECT_EQ(m[0].payload, "ALARM 03-14-2026 10:00:00 Tank level low");
    EXPECT_EQ(m[1].payload, "NORML 03-14-2026 10:00:05 Tank level normal");
}

TEST(MqttStation, AfterTheBrokerComesBackEveryValueIsSentAgain) {
    TestBroker broker;
    StationRig rig;
    std::ostringstream errors;
    auto link = Connected(Options(broker.port()));
    MqttStation station(*link, "kova/test", errors);
    rig.st.tags[1].Value = 7;
    station.publishTags(rig.st);
    ASSERT_TRUE(WaitUntil([&] { return station.published() > 0; }));
    broker.stop();  // forgets every retained message (no persistence)
    ASSERT_TRUE(WaitUntil([&] { return !link->connected(); }));
    station.publishTags(rig.st);  // nothing changed, nothing to send
    broker.start();
    ASSERT_TRUE(WaitUntil([&] { return link->connected(); }, std::chrono::seconds(10)));
    station.publishTags(rig.st);
    Subscriber sub(broker.port(), "kova/test/tags/TEMP");
    ASSERT_TRUE(sub.waitFor([](auto& m) { return !m.empty(); }));
    EXPECT_EQ(sub.last("kova/test/tags/TEMP"), "7");
    EXPECT_GE(link->connections(), 2);
}

class MqttWrites : public ::testing::Test {
  protected:
    TestBroker broker;
    StationRig rig;
    std::ostringstream errors;
    std::unique_ptr<MqttLink> link = Connected(Options(broker.port(), true));
    MqttStation station{*link, "kova/test", errors};
    Subscriber writer{broker.port(), "kova/none"};

    // Publishes a write and waits until the station has taken it.
    void write(const std::string& tag, const std::string& payload) {
        const long long seen = station.writesSeen();
        writer.publish("kova/test/set/" + tag, payload);
        ASSERT_TRUE(WaitUntil([&] {
            station.applyWrites(rig.st);
            return station.writesSeen() > seen;
        })) << "the write to "
            << tag << " never arrived";
    }
};

TEST_F(MqttWrites, AnalogOutputFollowsTheOperatorWriteRules) {
    write("VALVE", "100.5");
    EXPECT_EQ(rig.st.tags[2].Value, 100.5f);
    EXPECT_EQ(rig.st.daq.AnalogOutputValues[1], 100);  // 100.5 rounds half to even
    write("valve", "99999");                           // names are not case-sensitive
    EXPECT_EQ(rig.st.tags[2].Value, 99999.0f);
    EXPECT_EQ(rig.st.daq.AnalogOutputValues[1], rig.st.profile.RawMax);  // clamped
    write("VALVE", "-5");
    EXPECT_EQ(rig.st.daq.AnalogOutputValues[1], rig.st.profile.RawMin);
    write("SETP", " 2.25 ");
    EXPECT_EQ(rig.st.tags[3].Value, 2.25f);
    EXPECT_EQ(errors.str(), "");
}

TEST_F(MqttWrites, DigitalOutputsTakeZeroOrOne) {
    write("PUMP", "1");
    EXPECT_EQ(rig.st.tags[4].Value, 1.0f);
    EXPECT_EQ(rig.st.daq.DigitalOutputImage & 0x04, 0x04);
    write("LAMP", "1");
    write("PUMP", "0");
    EXPECT_EQ(rig.st.tags[4].Value, 0.0f);
    EXPECT_EQ(rig.st.daq.DigitalOutputImage, 0x01);
    EXPECT_EQ(errors.str(), "");
}

TEST_F(MqttWrites, RefusedWritesChangeNothingAndSayWhyOnALineEach) {
    rig.st.tags[1].Value = 5;
    rig.st.tags[2].Value = 6;
    write("TEMP", "10");      // an input
    write("NOSUCH", "1");     // unknown
    write("VALVE", "abc");    // not a number
    write("VALVE", "1e999");  // beyond a single-precision value
    write("PUMP", "2");       // digital takes 0 or 1
    write("TS", "3");         // a system variable is not the user's to set
    EXPECT_EQ(rig.st.tags[1].Value, 5.0f);
    EXPECT_EQ(rig.st.tags[2].Value, 6.0f);
    EXPECT_EQ(rig.st.tags[4].Value, 0.0f);
    EXPECT_EQ(rig.st.daq.DigitalOutputImage, 0);
    EXPECT_EQ(rig.st.daq.AnalogOutputValues[1], 0);
    const std::string e = errors.str();
    EXPECT_EQ(std::count(e.begin(), e.end(), '\n'), 6) << e;
    EXPECT_NE(e.find("kova/test/set/TEMP: refused: TEMP is an input"), std::string::npos) << e;
    EXPECT_NE(e.find("there is no tag NOSUCH"), std::string::npos) << e;
    EXPECT_NE(e.find("\"abc\" is not a number"), std::string::npos) << e;
    EXPECT_NE(e.find("PUMP is digital and takes 0 or 1"), std::string::npos) << e;
}

TEST(MqttStation, WritesAreIgnoredUnlessAllowed) {
    TestBroker broker;
    StationRig rig;
    std::ostringstream errors;
    auto link = Connected(Options(broker.port(), false));
    MqttStation station(*link, "kova/test", errors);
    Subscriber writer(broker.port(), "kova/none");
    writer.publish("kova/test/set/SETP", "4");
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    station.applyWrites(rig.st);
    EXPECT_EQ(rig.st.tags[3].Value, 0.0f);
}

}  // namespace
}  // namespace kova::mqtt
