// Why the link has no connection is said once per cause, against real brokers (and, for a
// broker that speaks only MQTT 3.1.1, a stand-in that answers as such a broker does); the
// link keeps trying with its back-off.
#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <thread>
#include <vector>

#include "links/mqtt/mqtt_link.h"
#include "mqtt/station_rig.h"
#include "mqtt/test_broker.h"

namespace kova::mqtt {
namespace {

using namespace std::chrono_literals;
using test::Subscriber;
using test::TestBroker;
using test::WaitUntil;

// Everything the link said so far, gathered across calls.
struct Told {
    explicit Told(MqttLink& l) : link(l) {}
    MqttLink& link;
    std::vector<std::string> lines;
    const std::vector<std::string>& now() {
        for (std::string& l : link.takeNotices()) lines.push_back(std::move(l));
        return lines;
    }
    int count(const std::string& part) {
        now();
        return static_cast<int>(std::count_if(lines.begin(), lines.end(), [&](auto& l) {
            return l.find(part) != std::string::npos;
        }));
    }
    bool waitFor(const std::string& part, std::chrono::milliseconds timeout = 10s) {
        return WaitUntil([&] { return count(part) > 0; }, timeout);
    }
};

std::unique_ptr<MqttLink> Started(const MqttOptions& o) {
    std::string error;
    auto link = MqttLink::Start(o, error);
    EXPECT_TRUE(link) << error;
    return link;
}

TEST(MqttConnection, ABrokerThatIsNotThereIsSaidOnceAndTriedUntilItComes) {
    TestBroker broker;
    broker.stop();
    auto link = Started(Options(broker.port()));
    ASSERT_TRUE(link);
    Told told(*link);
    ASSERT_TRUE(told.waitFor("connection refused"));
    std::this_thread::sleep_for(3500ms);  // tries after 1 s and 2 s more
    EXPECT_EQ(told.now().size(), 1u);
    EXPECT_EQ(told.now()[0],
              "cannot connect to the broker at 127.0.0.1:" + std::to_string(broker.port()) +
                  ": connection refused (is the broker running?); trying again, "
                  "waiting longer each time up to 30 s");
    broker.start();
    ASSERT_TRUE(WaitUntil([&] { return link->connected(); }, 15s));
    EXPECT_TRUE(told.waitFor(
        "connected to the broker at 127.0.0.1:" + std::to_string(broker.port()) + " again"));
}

// A listening socket on a free loopback port; `address` is where it listens.
int LoopbackListener(int backlog, sockaddr_in& address) {
    const int fd = socket(AF_INET, SOCK_STREAM, 0);
    address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address);
    socklen_t len = sizeof address;
    getsockname(fd, reinterpret_cast<sockaddr*>(&address), &len);
    listen(fd, backlog);
    return fd;
}

// A port that takes no more connections: its listener never accepts, and its queue is
// full, so the kernel drops every new attempt as a host behind a dropping firewall does.
class SilentPort {
  public:
    SilentPort() {
        sockaddr_in a{};
        listener_ = LoopbackListener(0, a);
        port_ = ntohs(a.sin_port);
        for (int i = 0; i < 3; ++i) {
            const int c = socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, 0);
            connect(c, reinterpret_cast<sockaddr*>(&a), sizeof a);
            fillers_.push_back(c);
        }
    }
    ~SilentPort() {
        for (int c : fillers_) close(c);
        close(listener_);
    }
    int port() const { return port_; }

  private:
    int listener_ = -1;
    int port_ = 0;
    std::vector<int> fillers_;
};

TEST(MqttConnection, AHostThatDoesNotAnswerIsSaidAndTheLinkStopsAtOnce) {
    SilentPort silent;
    MqttOptions o = Options(silent.port());
    o.connectWait = 1s;
    auto link = Started(o);
    ASSERT_TRUE(link);
    Told told(*link);
    ASSERT_TRUE(told.waitFor("no answer", 5s));
    EXPECT_EQ(told.now()[0],
              "cannot connect to the broker at 127.0.0.1:" + std::to_string(silent.port()) +
                  ": no answer (is the host up, and the port open in its "
                  "firewall?); trying again, waiting longer each time up to 30 s");
    // Stopped while it tries again: a station being stopped does not wait on the network.
    std::this_thread::sleep_for(1500ms);
    const auto before = std::chrono::steady_clock::now();
    link.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - before, 1500ms);
}

TEST(MqttConnection, AHostNameThatDoesNotExistIsSaidOnce) {
    MqttOptions o = Options(1883);
    o.host = "nosuchhost.invalid";
    auto link = Started(o);
    ASSERT_TRUE(link);
    Told told(*link);
    ASSERT_TRUE(told.waitFor("the host name \"nosuchhost.invalid\" cannot be looked up"));
    std::this_thread::sleep_for(3500ms);
    EXPECT_EQ(told.now().size(), 1u) << told.now().back();
    EXPECT_FALSE(link->connected());
}

TEST(MqttConnection, ARestartedBrokerIsToldAsItHappens) {
    TestBroker broker;
    auto link = Started(Options(broker.port()));
    ASSERT_TRUE(link);
    ASSERT_TRUE(WaitUntil([&] { return link->connected(); }));
    Told told(*link);
    broker.stop();
    ASSERT_TRUE(told.waitFor("closed the connection"));
    ASSERT_TRUE(told.waitFor("connection refused"));
    broker.start();
    ASSERT_TRUE(told.waitFor("connected to the broker at", 20s));
    EXPECT_EQ(told.now().size(), 3u);
}

TEST(MqttConnection, AnotherClientWithTheStationsIdIsToldAsATakeover) {
    TestBroker broker;
    MqttOptions o = Options(broker.port());
    o.clientId = "station-7";
    auto link = Started(o);
    ASSERT_TRUE(link);
    ASSERT_TRUE(WaitUntil([&] { return link->connected(); }));
    Told told(*link);
    {
        // A client that takes the ID and, thrown off in turn, comes back (as a
        // misconfigured second station does).
        Subscriber intruder(broker.port(), "kova/none", "station-7");
        EXPECT_TRUE(
            told.waitFor("keeps closing the connection just after accepting it: another "
                         "client is using this station's client ID \"station-7\"",
                         20s))
            << (told.now().empty() ? "" : told.now().back());
    }
    EXPECT_EQ(told.count("keeps closing"), 1);
}

// A broker that speaks only MQTT 3.1.1: it answers an MQTT 5 CONNECT with 3.1.1's "refused:
// unacceptable protocol version" and accepts a 3.1.1 CONNECT.
class Mqtt311Broker {
  public:
    Mqtt311Broker() {
        sockaddr_in a{};
        listener_ = LoopbackListener(4, a);
        port_ = ntohs(a.sin_port);
        thread_ = std::thread([this] { serve(); });
    }
    ~Mqtt311Broker() {
        shutdown(listener_, SHUT_RDWR);
        close(listener_);
        thread_.join();
        for (int c : clients_) close(c);
    }
    int port() const { return port_; }
    std::vector<int> levels() {
        std::lock_guard lock(mutex_);
        return levels_;
    }
    int silent() {
        std::lock_guard lock(mutex_);
        return silent_;
    }

  private:
    void serve() {
        for (;;) {
            const int c = accept(listener_, nullptr, nullptr);
            if (c < 0) return;
            unsigned char packet[512];
            const ssize_t n = recv(c, packet, sizeof packet, 0);
            // CONNECT: the fixed header, its length, then "\0\4MQTT" and the protocol level.
            const std::string bytes(reinterpret_cast<char*>(packet), n > 0 ? n : 0);
            const auto at = bytes.find("MQTT");
            const int level = at != std::string::npos && at + 4 < bytes.size()
                                  ? static_cast<unsigned char>(bytes[at + 4])
                                  : -1;
            {
                std::lock_guard lock(mutex_);
                // A connection that sends nothing is the link asking whether the port answers.
                if (n == 0)
                    ++silent_;
                else
                    levels_.push_back(level);
            }
            const unsigned char refused[] = {0x20, 0x02, 0x00, 0x01};
            const unsigned char accepted[] = {0x20, 0x02, 0x00, 0x00};
            send(c, level == 4 ? accepted : refused, 4, MSG_NOSIGNAL);
            if (level == 4)
                clients_.push_back(c);  // kept open: the station stays connected
            else
                close(c);
        }
    }
    int listener_ = -1;
    int port_ = 0;
    std::thread thread_;
    std::mutex mutex_;
    std::vector<int> levels_;
    int silent_ = 0;
    std::vector<int> clients_;
};

TEST(MqttConnection, ABrokerThatSpeaksOnlyMqtt311IsSpokenToInIt) {
    Mqtt311Broker broker;
    auto link = Started(Options(broker.port()));
    ASSERT_TRUE(link);
    ASSERT_TRUE(WaitUntil([&] { return link->connected(); }));
    EXPECT_EQ(broker.levels(), (std::vector<int>{5, 4}));
    // Each first connect, in MQTT 5 and then in 3.1.1, was preceded by one check that the
    // port answers: a connection closed without a word.
    EXPECT_EQ(broker.silent(), 2);
    Told told(*link);
    EXPECT_EQ(told.count("does not speak MQTT 5: using MQTT 3.1.1"), 1);
}

}  // namespace
}  // namespace kova::mqtt
