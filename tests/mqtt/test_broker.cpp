#include "mqtt/test_broker.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <mosquitto.h>
#include <netinet/in.h>
#include <signal.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <thread>

extern char** environ;

namespace kova::test {

namespace {

int FreePort() {
    const int s = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    a.sin_port = 0;
    bind(s, reinterpret_cast<sockaddr*>(&a), sizeof a);
    socklen_t len = sizeof a;
    getsockname(s, reinterpret_cast<sockaddr*>(&a), &len);
    close(s);
    return ntohs(a.sin_port);
}

bool Accepts(int port) {
    const int s = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    a.sin_port = htons(static_cast<std::uint16_t>(port));
    const bool ok = connect(s, reinterpret_cast<sockaddr*>(&a), sizeof a) == 0;
    close(s);
    return ok;
}

const char* MosquittoBinary() {
    for (const char* p : {"/usr/sbin/mosquitto", "/usr/bin/mosquitto"})
        if (access(p, X_OK) == 0) return p;
    return nullptr;
}

}  // namespace

bool WaitUntil(const std::function<bool()>& condition, std::chrono::milliseconds timeout) {
    const auto end = std::chrono::steady_clock::now() + timeout;
    while (std::chrono::steady_clock::now() < end) {
        if (condition()) return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return condition();
}

TestBroker::TestBroker(const Config& config) {
    port_ = FreePort();
    do secondPort_ = FreePort();
    while (secondPort_ == port_);
    std::string text =
        config ? config(port_, secondPort_, dir_.path())
               : "listener " + std::to_string(port_) + " 127.0.0.1\nallow_anonymous true\n";
    // A test that wants the broker to keep sessions across its restarts says so itself.
    if (text.find("persistence") == std::string::npos) text += "persistence false\n";
    std::ofstream conf(dir_ / "mosquitto.conf");
    conf << text << "log_dest none\n";
    conf.close();
    start();
}

TestBroker::~TestBroker() {
    if (pid_ > 0) {
        kill(pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
    }
}

void TestBroker::start() {
    const char* bin = MosquittoBinary();
    ASSERT_NE(bin, nullptr) << "the mosquitto broker is not installed (scripts/install-deps.sh)";
    const std::string conf = (dir_ / "mosquitto.conf").string();
    std::vector<std::string> args = {bin, "-c", conf};
    std::vector<char*> argv;
    for (auto& a : args) argv.push_back(a.data());
    argv.push_back(nullptr);
    ASSERT_EQ(posix_spawn(&pid_, bin, nullptr, nullptr, argv.data(), environ), 0);
    ASSERT_TRUE(WaitUntil([&] { return Accepts(port_); })) << "the broker did not start";
}

void TestBroker::stop() {
    if (pid_ <= 0) return;
    // mosquitto forgets a SIGTERM that comes between opening its port and entering its main
    // loop (the loop sets its run flag afresh), so the signal is repeated until it ends; a
    // broker that still runs after 10 s is killed.
    const auto until = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (waitpid(pid_, nullptr, WNOHANG) == 0) {
        if (std::chrono::steady_clock::now() > until) {
            kill(pid_, SIGKILL);
            waitpid(pid_, nullptr, 0);
            break;
        }
        kill(pid_, SIGTERM);
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
    pid_ = -1;
}

Subscriber::Subscriber(int port, const std::string& topic, const std::string& clientId,
                       bool persistent) {
    mosquitto_lib_init();
    client_ = mosquitto_new(clientId.empty() ? nullptr : clientId.c_str(), !persistent, this);
    mosquitto_message_callback_set(client_, &Subscriber::onMessage);
    mosquitto_subscribe_callback_set(client_, [](mosquitto*, void* self, int, int, const int*) {
        static_cast<Subscriber*>(self)->subscribed_ = true;
    });
    EXPECT_EQ(mosquitto_connect(client_, "127.0.0.1", port, 30), MOSQ_ERR_SUCCESS);
    EXPECT_EQ(mosquitto_subscribe(client_, nullptr, topic.c_str(), 1), MOSQ_ERR_SUCCESS);
    mosquitto_loop_start(client_);
    // What is published after the constructor returns reaches this subscriber.
    EXPECT_TRUE(WaitUntil([&] { return subscribed_.load(); })) << "no SUBACK for " << topic;
}

Subscriber::~Subscriber() {
    mosquitto_disconnect(client_);
    mosquitto_loop_stop(client_, false);
    mosquitto_destroy(client_);
}

void Subscriber::onMessage(mosquitto*, void* self, const mosquitto_message* m) {
    auto* s = static_cast<Subscriber*>(self);
    std::lock_guard lock(s->mutex_);
    s->messages_.push_back(
        {m->topic,
         std::string(static_cast<const char*>(m->payload), static_cast<std::size_t>(m->payloadlen)),
         m->retain});
}

bool Subscriber::waitFor(const std::function<bool(const std::vector<Message>&)>& done,
                         std::chrono::milliseconds timeout) {
    return WaitUntil([&] { return done(messages()); }, timeout);
}

std::vector<Subscriber::Message> Subscriber::messages() {
    std::lock_guard lock(mutex_);
    return messages_;
}

std::string Subscriber::last(const std::string& topic) {
    std::string out;
    for (const Message& m : messages())
        if (m.topic == topic) out = m.payload;
    return out;
}

int Subscriber::count(const std::string& topic) {
    int n = 0;
    for (const Message& m : messages()) n += m.topic == topic;
    return n;
}

void Subscriber::publish(const std::string& topic, const std::string& payload, bool retain) {
    mosquitto_publish(client_, nullptr, topic.c_str(), static_cast<int>(payload.size()),
                      payload.data(), 1, retain);
}

pid_t StartCli(const std::filesystem::path& folder, const std::vector<std::string>& args) {
    const char* cli = std::getenv("KOVA_CLI");
    EXPECT_NE(cli, nullptr) << "KOVA_CLI is not set";
    if (!cli) return -1;
    return StartProgram(folder, cli, args, "stdout", "stderr");
}

pid_t StartHistorian(const std::filesystem::path& folder, int port, const std::string& topic,
                     const std::string& clientId) {
    return StartProgram(folder, "/usr/bin/mosquitto_sub",
                        {"-h", "127.0.0.1", "-p", std::to_string(port), "-q", "1", "-c", "-i",
                         clientId, "-t", topic},
                        clientId + ".out", clientId + ".err");
}

pid_t StartProgram(const std::filesystem::path& folder, const std::string& program,
                   const std::vector<std::string>& args, const std::string& outFile,
                   const std::string& errFile) {
    const char* cli = program.c_str();
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    const std::string out = (folder / outFile).string(), err = (folder / errFile).string();
    posix_spawn_file_actions_addopen(&actions, 1, out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    posix_spawn_file_actions_addopen(&actions, 2, err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    posix_spawn_file_actions_addchdir_np(&actions, folder.c_str());
    std::vector<std::string> all = {cli};
    all.insert(all.end(), args.begin(), args.end());
    std::vector<char*> argv;
    for (auto& a : all) argv.push_back(a.data());
    argv.push_back(nullptr);
    pid_t pid = -1;
    EXPECT_EQ(posix_spawn(&pid, cli, &actions, nullptr, argv.data(), environ), 0);
    posix_spawn_file_actions_destroy(&actions);
    return pid;
}

int WaitCli(pid_t pid) {
    int status = 0;
    if (pid <= 0) return -1;  // never any child: the broker is one
    if (waitpid(pid, &status, 0) != pid) return -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace kova::test
