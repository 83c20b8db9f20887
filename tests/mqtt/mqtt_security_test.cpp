// The link logs in with a user name and a password read from a file, and speaks TLS with
// the broker's certificate checked against a CA file: against a real broker set up so.
#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>
#include <thread>

#include "links/mqtt/mqtt_station.h"
#include "mqtt/test_broker.h"

namespace kova::mqtt {
namespace {

using test::Subscriber;
using test::TestBroker;
using test::WaitUntil;

bool Shell(const std::string& command) {
    return std::system(("bash -c '" + command + "' >/dev/null 2>&1").c_str()) == 0;
}

MqttOptions Options(int port) {
    MqttOptions o;
    o.host = "127.0.0.1";
    o.port = port;
    o.prefix = "kova/secure";
    o.clientId = "kova-secure-test";
    return o;
}

// Stays unconnected for a while: the broker refused the link.
bool NeverConnects(const MqttLink& link) {
    return !WaitUntil([&] { return link.connected(); }, std::chrono::milliseconds(1500));
}

// A broker that lets in only "station" with the password "s3cret" on its one listener.
TestBroker::Config LoginBroker() {
    return [](int port, int, const std::filesystem::path& dir) {
        const std::string pw = (dir / "passwords").string();
        EXPECT_TRUE(Shell("mosquitto_passwd -b -c " + pw + " station s3cret"));
        return "listener " + std::to_string(port) + " 127.0.0.1\nallow_anonymous false\n" +
               "password_file " + pw + "\n";
    };
}

TEST(MqttSecurity, LogsInWithTheUserNameAndThePasswordFromTheFile) {
    TestBroker broker(LoginBroker());
    test::WriteFileBytes(broker.folder() / "pw.txt", "s3cret\n");
    MqttOptions o = Options(broker.port());
    o.username = "station";
    o.passwordFile = (broker.folder() / "pw.txt").string();
    std::string error;
    auto link = MqttLink::Start(o, error);
    ASSERT_TRUE(link) << error;
    EXPECT_TRUE(WaitUntil([&] { return link->connected(); }));
}

TEST(MqttSecurity, AWrongPasswordOrNoLoginIsRefusedByTheBroker) {
    TestBroker broker(LoginBroker());
    test::WriteFileBytes(broker.folder() / "wrong.txt", "guess\n");
    MqttOptions o = Options(broker.port());
    o.username = "station";
    o.passwordFile = (broker.folder() / "wrong.txt").string();
    std::string error;
    auto wrong = MqttLink::Start(o, error);
    ASSERT_TRUE(wrong) << error;
    EXPECT_TRUE(NeverConnects(*wrong));
    // Said once, and not tried again for minutes: the broker would refuse it again.
    EXPECT_EQ(wrong->takeNotices(),
              std::vector<std::string>{"the broker at 127.0.0.1:" + std::to_string(broker.port()) +
                                       " refused the login (Not authorized): check --mqtt-user "
                                       "and --mqtt-password-file; trying again every 5 minutes"});
    auto anonymous = MqttLink::Start(Options(broker.port()), error);
    ASSERT_TRUE(anonymous) << error;
    EXPECT_TRUE(NeverConnects(*anonymous));
}

// A CA and a certificate for 127.0.0.1 signed by it, in the broker's folder, readable by
// the broker.
bool MakeCertificates(const std::filesystem::path& dir, const std::string& ca) {
    const std::string d = dir.string();
    return Shell("cd " + d + " && openssl req -x509 -newkey rsa:2048 -nodes -days 2 -keyout " + ca +
                 ".key -out " + ca + ".crt -subj /CN=" + ca +
                 " && openssl req -newkey rsa:2048 -nodes -keyout server.key -out server.csr "
                 "-subj /CN=127.0.0.1 && printf \"subjectAltName=IP:127.0.0.1\" > san.ext && "
                 "openssl x509 -req -in server.csr -CA " +
                 ca + ".crt -CAkey " + ca +
                 ".key -CAcreateserial -out server.crt -days 2 -extfile san.ext" +
                 // A broker started as root reads its key as the user it drops to.
                 " && chmod 755 . && chmod 644 server.key");
}

// TLS on the first port; a plain listener on the second for the test's own subscriber.
TestBroker::Config TlsBroker() {
    return [](int port, int plain, const std::filesystem::path& dir) {
        EXPECT_TRUE(MakeCertificates(dir, "kova-test-ca")) << "openssl could not make certificates";
        const std::string d = dir.string() + "/";
        return "listener " + std::to_string(port) + " 127.0.0.1\ncafile " + d +
               "kova-test-ca.crt\ncertfile " + d + "server.crt\nkeyfile " + d +
               "server.key\nlistener " + std::to_string(plain) +
               " 127.0.0.1\nallow_anonymous true\n";
    };
}

TEST(MqttSecurity, SpeaksTlsWithTheBrokersCertificateCheckedAgainstTheCaFile) {
    TestBroker broker(TlsBroker());
    MqttOptions o = Options(broker.port());
    o.caFile = (broker.folder() / "kova-test-ca.crt").string();
    std::string error;
    auto link = MqttLink::Start(o, error);
    ASSERT_TRUE(link) << error;
    ASSERT_TRUE(WaitUntil([&] { return link->connected(); }));
    Subscriber sub(broker.secondPort(), "kova/secure/alarms");
    std::ostringstream errors;
    MqttStation station(*link, o.prefix, errors);
    station.publishAlarm("ALARM 03-14-2026 10:00:00 Tank level low");
    EXPECT_TRUE(sub.waitFor([](auto& m) { return !m.empty(); }));
}

TEST(MqttSecurity, ABrokerWhoseCertificateTheCaDidNotSignIsNeverTrusted) {
    TestBroker broker(TlsBroker());
    ASSERT_TRUE(Shell("cd " + broker.folder().string() +
                      " && openssl req -x509 -newkey rsa:2048 -nodes -days 2 -keyout other.key "
                      "-out other.crt -subj /CN=other"));
    MqttOptions o = Options(broker.port());
    o.caFile = (broker.folder() / "other.crt").string();
    std::string error;
    auto link = MqttLink::Start(o, error);
    ASSERT_TRUE(link) << error;
    EXPECT_TRUE(NeverConnects(*link));
    EXPECT_EQ(link->takeNotices(),
              std::vector<std::string>{
                  "cannot connect to the broker at 127.0.0.1:" + std::to_string(broker.port()) +
                  ": TLS failed (certificate verify failed): --mqtt-ca-file does not hold the CA "
                  "that signed the broker's certificate; trying again every 5 minutes"});
}

TEST(MqttSecurity, AnUnreadableCaFileIsNamed) {
    MqttOptions o = Options(1883);
    o.caFile = "/nonexistent/ca.crt";
    std::string error;
    EXPECT_FALSE(MqttLink::Start(o, error));
    EXPECT_NE(error.find("/nonexistent/ca.crt"), std::string::npos) << error;
}

}  // namespace
}  // namespace kova::mqtt
