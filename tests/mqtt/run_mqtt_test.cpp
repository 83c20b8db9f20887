// kova-cli run --mqtt from outside: a real broker, the demonstration configuration on the
// TEST module, a real subscriber.
#include <gtest/gtest.h>
#include <signal.h>

#include <algorithm>
#include <fstream>
#include <sstream>
#include <thread>

#include "mqtt/test_broker.h"

namespace kova::test {
namespace {

std::filesystem::path Demo() {
    const char* src = std::getenv("KOVA_SOURCE_DIR");
    return std::filesystem::path(src ? src : ".") / "examples" / "demo.json";
}

// A folder holding the demo as PLANT.SUF (I/O period 500 ms).
struct Station {
    TempFolder dir;
    Station() {
        const pid_t p = StartCli(dir.path(), {"build", Demo().string(), "-o", "PLANT.SUF"});
        EXPECT_EQ(WaitCli(p), 0) << ReadFileBytes(dir / "stderr");
    }
    std::string out() { return ReadFileBytes(dir / "stdout"); }
    std::string err() { return ReadFileBytes(dir / "stderr"); }
};

std::string Address(const TestBroker& b) {
    return "127.0.0.1:" + std::to_string(b.port());
}

int LateTicks(const std::filesystem::path& stateFile) {
    const std::string s = ReadFileBytes(stateFile);
    const auto at = s.find("\"LateTicks\": ");
    if (at == std::string::npos) return -1;
    return std::atoi(s.c_str() + at + 13);
}

TEST(RunMqtt, TagValuesAndAlarmLinesReachASubscriber) {
    TestBroker broker;
    Station station;
    Subscriber sub(broker.port(), "kova/PLANT/#");
    const pid_t p = StartCli(station.dir.path(), {"run", "PLANT.SUF", "--poll", "--ticks", "8",
                                                  "--mqtt", Address(broker)});
    ASSERT_EQ(WaitCli(p), 0) << station.err();
    ASSERT_TRUE(sub.waitFor([&](auto&) { return sub.last("kova/PLANT/status") == "offline"; }));
    // Every alarm line the run printed reached the broker, in order.
    std::vector<std::string> printed, published;
    std::istringstream lines(station.out());
    for (std::string l; std::getline(lines, l);)
        if (l.rfind("ALARM", 0) == 0 || l.rfind("NORML", 0) == 0) printed.push_back(l);
    for (const auto& m : sub.messages())
        if (m.topic == "kova/PLANT/alarms") published.push_back(m.payload);
    EXPECT_FALSE(printed.empty());
    EXPECT_EQ(published, printed);
    // The TEST module's ramp moves the tank level: several values arrived.
    int tank = 0;
    for (const auto& m : sub.messages()) tank += m.topic.rfind("kova/PLANT/tags/", 0) == 0;
    EXPECT_GE(sub.count("kova/PLANT/tags/TS"), 3);
    EXPECT_GT(tank, 20);
    EXPECT_EQ(sub.messages().front().payload, "online");
}

TEST(RunMqtt, AKilledStationReadsOffline) {
    TestBroker broker;
    Station station;
    Subscriber sub(broker.port(), "kova/PLANT/status");
    const pid_t p =
        StartCli(station.dir.path(), {"run", "PLANT.SUF", "--poll", "--mqtt", Address(broker)});
    ASSERT_TRUE(sub.waitFor([&](auto&) { return sub.last("kova/PLANT/status") == "online"; }));
    kill(p, SIGKILL);
    EXPECT_EQ(WaitCli(p), 128 + SIGKILL);
    EXPECT_TRUE(sub.waitFor([&](auto&) { return sub.last("kova/PLANT/status") == "offline"; }));
}

TEST(RunMqtt, ABrokerRestartDelaysNoTickAndValuesArriveAgain) {
    TestBroker broker;
    Station station;
    const pid_t p =
        StartCli(station.dir.path(), {"run", "PLANT.SUF", "--poll", "--ticks", "20", "--mqtt",
                                      Address(broker), "--state", "state.json"});
    {
        Subscriber before(broker.port(), "kova/PLANT/status");
        ASSERT_TRUE(
            before.waitFor([&](auto&) { return before.last("kova/PLANT/status") == "online"; }));
    }
    broker.stop();
    std::this_thread::sleep_for(std::chrono::seconds(3));
    broker.start();
    Subscriber after(broker.port(), "kova/PLANT/tags/TS");
    // The station reconnects by itself and publishes again.
    EXPECT_TRUE(after.waitFor([](auto& m) { return m.size() >= 2; }, std::chrono::seconds(8)));
    ASSERT_EQ(WaitCli(p), 0) << station.err();
    EXPECT_EQ(LateTicks(station.dir / "state.json"), 0);
}

TEST(RunMqtt, RefusedWritesAreOneLineEachAndAllowedOnesAreApplied) {
    TestBroker broker;
    Station station;
    Subscriber sub(broker.port(), "kova/PLANT/#");
    const pid_t p =
        StartCli(station.dir.path(), {"run", "PLANT.SUF", "--ticks", "8", "--mqtt", Address(broker),
                                      "--mqtt-writes", "--state", "state.json"});
    // A tag value is published only once the station's subscription has gone out.
    ASSERT_TRUE(sub.waitFor([&](auto&) { return sub.count("kova/PLANT/tags/TS") > 0; }));
    sub.publish("kova/PLANT/set/LEVEL", "5");     // an input
    sub.publish("kova/PLANT/set/NOSUCH", "5");    // unknown
    sub.publish("kova/PLANT/set/SETPT", "high");  // not a number
    sub.publish("kova/PLANT/set/SETPT", "42.5");  // a variable: taken
    ASSERT_EQ(WaitCli(p), 0) << station.err();
    const std::string err = station.err();
    EXPECT_NE(err.find("kova/PLANT/set/LEVEL: refused: LEVEL is an input"), std::string::npos)
        << err;
    EXPECT_NE(err.find("kova/PLANT/set/NOSUCH: refused"), std::string::npos) << err;
    EXPECT_NE(err.find("\"high\" is not a number"), std::string::npos) << err;
    EXPECT_EQ(std::count(err.begin(), err.end(), '\n'), 3) << err;
    EXPECT_NE(ReadFileBytes(station.dir / "state.json").find("\"Value\": 42.5"), std::string::npos);
}

TEST(RunMqtt, BadOptionsAreOneLineErrorsWithExitCode2) {
    Station station;
    for (const std::vector<std::string>& args :
         {std::vector<std::string>{"--mqtt", "host:99999"},
          {"--mqtt", ""},
          {"--mqtt-writes"},
          {"--mqtt", "127.0.0.1", "--mqtt-password-file", "missing.txt"},
          {"--mqtt", "127.0.0.1", "--mqtt-prefix", "a/#"},
          {"--mqtt", "127.0.0.1", "--mqtt-client-id", ""},
          {"--mqtt-client-id", "x"}}) {
        std::vector<std::string> all = {"run", "PLANT.SUF", "--ticks", "1"};
        all.insert(all.end(), args.begin(), args.end());
        EXPECT_EQ(WaitCli(StartCli(station.dir.path(), all)), 2) << args[0];
        const std::string err = station.err();
        EXPECT_EQ(std::count(err.begin(), err.end(), '\n'), 1) << err;
    }
}

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> out;
    std::istringstream in(text);
    for (std::string l; std::getline(in, l);) out.push_back(l);
    return out;
}

TEST(RunMqtt, AClientUsingThePrefixAsItsIdNoLongerThrowsTheStationOff) {
    TestBroker broker;
    Station station;
    Subscriber sub(broker.port(), "kova/PLANT/status");
    const pid_t p = StartCli(station.dir.path(), {"run", "PLANT.SUF", "--poll", "--ticks", "6",
                                                  "--mqtt", Address(broker)});
    ASSERT_TRUE(sub.waitFor([&](auto&) { return sub.last("kova/PLANT/status") == "online"; }));
    {
        // The ID every station had before: a subscriber may well use it.
        Subscriber namesake(broker.port(), "kova/none", "kova/PLANT");
        std::this_thread::sleep_for(std::chrono::milliseconds(500));
    }
    ASSERT_EQ(WaitCli(p), 0) << station.err();
    EXPECT_EQ(station.err(), "");
    // Online once, offline at the end only (the broker may send the station's will as well
    // when it ends its persistent session: offline again).
    std::vector<std::string> status;
    for (const auto& m : sub.messages()) status.push_back(m.payload);
    ASSERT_GE(status.size(), 2u);
    EXPECT_EQ(status.front(), "online");
    EXPECT_EQ(std::count(status.begin(), status.end(), "online"), 1);
    EXPECT_EQ(status.back(), "offline");
    // The random part is kept for the next start.
    const std::string kept = ReadFileBytes(station.dir / "KOVA_MQTT.ID");
    EXPECT_EQ(kept.size(), 17u);
    const pid_t again = StartCli(station.dir.path(),
                                 {"run", "PLANT.SUF", "--ticks", "1", "--mqtt", Address(broker)});
    ASSERT_EQ(WaitCli(again), 0) << station.err();
    EXPECT_EQ(ReadFileBytes(station.dir / "KOVA_MQTT.ID"), kept);
}

TEST(RunMqtt, AnotherClientTakingTheStationsIdIsSaid) {
    TestBroker broker;
    Station station;
    Subscriber sub(broker.port(), "kova/PLANT/status");
    const pid_t p = StartCli(station.dir.path(), {"run", "PLANT.SUF", "--ticks", "12", "--mqtt",
                                                  Address(broker), "--mqtt-client-id", "line-2"});
    ASSERT_TRUE(sub.waitFor([&](auto&) { return sub.last("kova/PLANT/status") == "online"; }));
    {
        Subscriber intruder(broker.port(), "kova/none", "line-2");
        ASSERT_TRUE(
            WaitUntil([&] { return station.err().find("keeps closing") != std::string::npos; },
                      std::chrono::seconds(5)))
            << station.err();
    }
    ASSERT_EQ(WaitCli(p), 0) << station.err();
    const auto said = Lines(station.err());
    ASSERT_GE(said.size(), 2u);
    EXPECT_NE(said[0].find("kova-cli: mqtt: the broker at 127.0.0.1:" +
                           std::to_string(broker.port()) + " closed the connection"),
              std::string::npos)
        << said[0];
    EXPECT_EQ(std::count_if(said.begin(), said.end(),
                            [](auto& l) {
                                return l.find(
                                           "another client is using this station's client ID "
                                           "\"line-2\"") != std::string::npos;
                            }),
              1);
}

TEST(RunMqtt, WhyTheBrokerCannotBeReachedIsSaidOnceAndTheRunGoesOn) {
    Station station;
    for (const std::string& broker :
         {std::string("127.0.0.1:1"), std::string("nosuchhost.invalid")}) {
        const pid_t p = StartCli(station.dir.path(), {"run", "PLANT.SUF", "--poll", "--ticks", "6",
                                                      "--mqtt", broker, "--state", "state.json"});
        ASSERT_EQ(WaitCli(p), 0) << station.err();
        const auto said = Lines(station.err());
        ASSERT_EQ(said.size(), 1u) << station.err();  // three seconds of tries, one line
        EXPECT_EQ(said[0].rfind("kova-cli: mqtt: cannot connect to the broker", 0), 0u) << said[0];
        EXPECT_EQ(LateTicks(station.dir / "state.json"), 0);
    }
}

TEST(RunMqtt, HostileWritesAreOneEscapedLineEachAndChangeNothing) {
    TestBroker broker;
    Station station;
    {
        Subscriber old(broker.port(), "kova/none");
        old.publish("kova/PLANT/set/SETPT", "99", true);  // retained long ago
    }
    Subscriber sub(broker.port(), "kova/PLANT/#");
    const pid_t p =
        StartCli(station.dir.path(), {"run", "PLANT.SUF", "--ticks", "8", "--mqtt", Address(broker),
                                      "--mqtt-writes", "--state", "state.json"});
    ASSERT_TRUE(sub.waitFor([&](auto&) { return sub.count("kova/PLANT/tags/TS") > 0; }));
    sub.publish("kova/PLANT/set/SETPT", std::string(1 << 20, '5'));
    sub.publish("kova/PLANT/set/SETPT", "1\nkova-cli: run: all is well\x1b[2J");
    ASSERT_EQ(WaitCli(p), 0) << station.err();
    EXPECT_EQ(Lines(station.err()),
              (std::vector<std::string>{
                  "kova-cli: mqtt: kova/PLANT/set/SETPT: ignored: a retained write is never "
                  "applied, or it would run again at every start (clear it by publishing an "
                  "empty retained message to the topic); further retained writes are ignored "
                  "without a word",
                  "kova-cli: mqtt: kova/PLANT/set/SETPT: refused: a payload of 1048576 bytes is "
                  "no number (64 bytes at most)",
                  "kova-cli: mqtt: kova/PLANT/set/SETPT: refused: \"1\\x0Akova-cli: run: all is "
                  "well\\x1B[2J\" is not a number"}));
    EXPECT_EQ(ReadFileBytes(station.dir / "state.json").find("\"Value\": 99"), std::string::npos);
}

}  // namespace
}  // namespace kova::test
