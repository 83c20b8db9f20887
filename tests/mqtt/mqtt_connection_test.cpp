// How the link tells why it has no connection and how long it waits before the next try:
// the rules alone, without a broker.
#include "links/mqtt/mqtt_connection.h"

#include <gtest/gtest.h>
#include <mosquitto.h>
#include <mqtt_protocol.h>
#include <netdb.h>

#include <cerrno>

namespace kova::mqtt {
namespace {

using namespace std::chrono_literals;
using Clock = ConnectionTeller::Clock;

ConnectionEvent Refused() {
    ConnectionEvent e;
    e.rc = MOSQ_ERR_ERRNO;
    e.err = ECONNREFUSED;
    return e;
}

ConnectionEvent Closed() {
    ConnectionEvent e;
    e.rc = MOSQ_ERR_CONN_LOST;
    e.accepted = true;
    return e;
}

ConnectionEvent Login() {
    ConnectionEvent e;
    e.rc = MOSQ_ERR_PROTOCOL;
    e.refusal = MQTT_RC_NOT_AUTHORIZED;
    return e;
}

TEST(ConnectionTeller, EachCauseIsToldOnceWhileItLasts) {
    ConnectionTeller t("127.0.0.1", 1, "id");
    const Clock::time_point now{};
    const auto first = t.failed(Refused(), now);
    EXPECT_EQ(first.tell,
              "cannot connect to the broker at 127.0.0.1:1: connection refused (is the broker "
              "running?); trying again, waiting longer each time up to 30 s");
    for (int i = 0; i < 5; ++i) EXPECT_EQ(t.failed(Refused(), now).tell, "");
    ConnectionEvent lookup;
    lookup.rc = MOSQ_ERR_EAI;
    lookup.err = EAI_NONAME;
    EXPECT_NE(t.failed(lookup, now).tell, "");  // another cause is news
    EXPECT_NE(t.failed(Refused(), now).tell, "");
}

TEST(ConnectionTeller, CausesThatPassBackOffFromOneSecondToThirty) {
    ConnectionTeller t("broker", 1883, "id");
    std::vector<long long> waits;
    for (int i = 0; i < 8; ++i)
        waits.push_back(std::chrono::duration_cast<std::chrono::seconds>(
                            t.failed(Refused(), Clock::time_point{}).wait)
                            .count());
    EXPECT_EQ(waits, (std::vector<long long>{1, 2, 4, 8, 16, 30, 30, 30}));
}

TEST(ConnectionTeller, ARefusedLoginIsTriedAgainOnlyEveryFiveMinutes) {
    ConnectionTeller t("broker", 1883, "id");
    const auto next = t.failed(Login(), Clock::time_point{});
    EXPECT_EQ(next.tell,
              "the broker at broker:1883 refused the login (Not authorized): check --mqtt-user "
              "and --mqtt-password-file; trying again every 5 minutes");
    EXPECT_EQ(next.wait, std::chrono::minutes(5));
    ConnectionEvent v311;  // the same from a broker speaking MQTT 3.1.1
    v311.refusal = 4;
    EXPECT_NE(t.failed(v311, Clock::time_point{}).tell.find("refused the login (Bad"),
              std::string::npos);
}

TEST(ConnectionTeller, TlsFailuresSayWhatOpenSslSaidAndWhatToCheck) {
    ConnectionTeller t("127.0.0.1", 8883, "id");
    ConnectionEvent e;
    e.rc = MOSQ_ERR_TLS;
    e.errorLog = "OpenSSL Error[0]: error:0A000086:SSL routines::certificate verify failed";
    const auto next = t.failed(e, Clock::time_point{});
    EXPECT_EQ(next.tell,
              "cannot connect to the broker at 127.0.0.1:8883: TLS failed (certificate verify "
              "failed): --mqtt-ca-file does not hold the CA that signed the broker's "
              "certificate; trying again every 5 minutes");
    EXPECT_EQ(next.wait, std::chrono::minutes(5));
}

TEST(ConnectionTeller, AHostNameThatCannotBeLookedUpIsNamed) {
    ConnectionTeller t("nosuchhost.invalid", 1883, "id");
    ConnectionEvent e;
    e.rc = MOSQ_ERR_EAI;
    e.err = EAI_NONAME;
    EXPECT_EQ(t.failed(e, Clock::time_point{}).tell,
              std::string("cannot connect to the broker: the host name \"nosuchhost.invalid\" "
                          "cannot be looked up (") +
                  gai_strerror(EAI_NONAME) +
                  "); trying again, waiting longer each time up to 30 s");
}

TEST(ConnectionTeller, ConnectedAgainIsSaidOnceAndASteadyConnectionMakesNewsOfTheNextFailure) {
    ConnectionTeller t("b", 1, "id");
    Clock::time_point now{};
    EXPECT_EQ(t.accepted(now), "");  // the first connection is no news
    t.connectedAt(now + 20s);
    EXPECT_NE(t.failed(Closed(), now + 21s).tell, "");
    EXPECT_EQ(t.accepted(now + 22s), "connected to the broker at b:1 again");
    EXPECT_EQ(t.failed(Closed(), now + 23s).tell, "");   // the same cause, soon after
    EXPECT_EQ(t.accepted(now + 25s), "");                // and the same news
    EXPECT_NE(t.failed(Refused(), now + 26s).tell, "");  // a new cause ...
    EXPECT_EQ(t.accepted(now + 30s), "connected to the broker at b:1 again");  // ... and its end
    t.connectedAt(now + 45s);  // steady: the back-off starts from 1 s again
    const auto next = t.failed(Closed(), now + 80s);
    EXPECT_NE(next.tell, "");
    EXPECT_EQ(next.wait, std::chrono::seconds(1));
}

TEST(ConnectionTeller, ClosingAgainAndAgainJustAfterAcceptingIsATakeover) {
    ConnectionTeller t("b", 1, "kova/PLANT@host-0123456789abcdef");
    Clock::time_point now{};
    t.accepted(now);
    const auto first = t.failed(Closed(), now + 1s);
    EXPECT_NE(first.tell.find("closed the connection (a broker does this when it stops, and when "
                              "another client connects with this station's client ID"),
              std::string::npos)
        << first.tell;
    t.accepted(now + 2s);
    const auto second = t.failed(Closed(), now + 3s);
    EXPECT_EQ(second.tell,
              "the broker at b:1 keeps closing the connection just after accepting it: another "
              "client is using this station's client ID \"kova/PLANT@host-0123456789abcdef\" "
              "(every client needs an ID of its own: --mqtt-client-id); reconnecting, waiting "
              "longer each time");
    t.accepted(now + 4s);
    EXPECT_EQ(t.failed(Closed(), now + 5s).tell, "");  // said once
}

TEST(ConnectionTeller, ABrokerThatSaysTheSessionWasTakenOverIsBelieved) {
    ConnectionTeller t("b", 1, "station-7");
    t.accepted(Clock::time_point{});
    ConnectionEvent e = Closed();
    e.disconnectReason = MQTT_RC_SESSION_TAKEN_OVER;
    EXPECT_EQ(t.failed(e, Clock::time_point{} + 60s).tell,
              "another client connected to the broker at b:1 with this station's client ID "
              "\"station-7\" and took its session over (every client needs an ID of its own: "
              "--mqtt-client-id); reconnecting, waiting longer each time");
}

TEST(ConnectionTeller, ABrokerWithoutMqtt5IsSpokenToInMqtt311AtOnce) {
    ConnectionTeller t("b", 1, "id");
    EXPECT_FALSE(t.useMqtt311());
    ConnectionEvent e;
    e.refusal = MQTT_RC_UNSUPPORTED_PROTOCOL_VERSION;
    const auto next = t.failed(e, Clock::time_point{});
    EXPECT_TRUE(t.useMqtt311());
    EXPECT_EQ(next.wait, Clock::duration::zero());
    EXPECT_NE(next.tell.find("does not speak MQTT 5: using MQTT 3.1.1"), std::string::npos);
}

TEST(ConnectionTeller, AConnectionClosedBeforeItWasAcceptedNamesThePortItWasMadeTo) {
    ConnectionEvent e;
    e.rc = MOSQ_ERR_CONN_LOST;  // no CONNACK came
    ConnectionTeller plain("broker", 8883, "id");
    EXPECT_EQ(plain.failed(e, Clock::time_point{}).tell,
              "the broker at broker:8883 closed the connection before accepting it (is this the "
              "broker's plain MQTT port? Its TLS port needs --mqtt-ca-file); trying again, "
              "waiting longer each time up to 30 s");
    ConnectionTeller tls("broker", 1883, "id", true);
    EXPECT_EQ(tls.failed(e, Clock::time_point{}).tell,
              "the broker at broker:1883 closed the connection before accepting it (is this the "
              "broker's TLS port?); trying again, waiting longer each time up to 30 s");
}

TEST(ConnectionTeller, AHostThatDoesNotAnswerSaysSo) {
    ConnectionTeller t("10.0.0.9", 1883, "id");
    ConnectionEvent e;
    e.rc = MOSQ_ERR_ERRNO;
    e.err = ETIMEDOUT;
    EXPECT_EQ(t.failed(e, Clock::time_point{}).tell,
              "cannot connect to the broker at 10.0.0.9:1883: no answer (is the host up, and the "
              "port open in its firewall?); trying again, waiting longer each time up to 30 s");
}

}  // namespace
}  // namespace kova::mqtt
