#pragma once
// A private mosquitto broker on a free port of 127.0.0.1 for one test, and a subscriber
// that records what arrives.
#include <sys/types.h>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "support/test_support.h"

struct mosquitto;
struct mosquitto_message;

namespace kova::test {

class TestBroker {
  public:
    // The listener lines and settings of the broker's configuration, given its port, a
    // second free port and its folder; the default is one plain listener for anybody.
    using Config =
        std::function<std::string(int port, int secondPort, const std::filesystem::path& folder)>;
    explicit TestBroker(const Config& config = {});  // starts it; the test fails when it cannot
    ~TestBroker();                                   // kills it
    int port() const { return port_; }
    int secondPort() const { return secondPort_; }
    const std::filesystem::path& folder() const { return dir_.path(); }
    bool running() const { return pid_ > 0; }
    void stop();   // SIGTERM and wait
    void start();  // on the same port
  private:
    TempFolder dir_;
    int port_ = 0;
    int secondPort_ = 0;
    pid_t pid_ = -1;
};

class Subscriber {
  public:
    struct Message {
        std::string topic;
        std::string payload;
        bool retained;
    };
    // clientId "": one the library makes up. persistent: the broker keeps the session (and
    // the QoS 1 messages for it) while the subscriber is away, as a historian's would.
    Subscriber(int port, const std::string& topic, const std::string& clientId = "",
               bool persistent = false);
    ~Subscriber();
    // Waits until `done` holds for the messages so far, at most `timeout`.
    bool waitFor(const std::function<bool(const std::vector<Message>&)>& done,
                 std::chrono::milliseconds timeout = std::chrono::seconds(5));
    std::vector<Message> messages();
    // The last payload of a topic, "" when none came.
    std::string last(const std::string& topic);
    int count(const std::string& topic);
    void publish(const std::string& topic, const std::string& payload, bool retain = false);

  private:
    static void onMessage(mosquitto*, void*, const mosquitto_message*);
    mosquitto* client_ = nullptr;
    std::mutex mutex_;
    std::vector<Message> messages_;
    std::atomic<bool> subscribed_{false};
};

// kova-cli (KOVA_CLI) started in `folder` with its output in folder/stdout and
// folder/stderr; returns its process id.
pid_t StartCli(const std::filesystem::path& folder, const std::vector<std::string>& args);
// A program started in `folder` with its output in folder/outFile and folder/errFile.
pid_t StartProgram(const std::filesystem::path& folder, const std::string& program,
                   const std::vector<std::string>& args, const std::string& outFile,
                   const std::string& errFile);
// A historian's subscriber (mosquitto_sub, QoS 1, a persistent session as `clientId`) in
// `folder`; what arrives is folder/<clientId>.out, one payload a line.
pid_t StartHistorian(const std::filesystem::path& folder, int port, const std::string& topic,
                     const std::string& clientId);
// Waits for it to end; its exit code, or 128 + the signal that ended it.
int WaitCli(pid_t pid);

// Waits until the condition holds, at most `timeout`.
bool WaitUntil(const std::function<bool()>& condition,
               std::chrono::milliseconds timeout = std::chrono::seconds(5));

}  // namespace kova::test
