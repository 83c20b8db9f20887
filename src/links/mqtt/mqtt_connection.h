#pragma once
// Why the link to the broker failed, in one line a user can act on, told once per cause;
// and how long to wait before the next try. Causes that can pass by themselves (the broker
// is down or restarting, the network or the name server is away, the broker is busy) are
// tried again with the back-off, 1 s doubling up to 30 s; causes that need someone to change
// something (a refused login, a certificate the CA did not sign, a refused client ID) are
// tried again only every 5 minutes, so that a fix on the broker's side still takes effect.
#include <chrono>
#include <string>

namespace kova::mqtt {

// What the network thread saw when a connection attempt or a connection ended.
struct ConnectionEvent {
    int rc = 0;                 // libmosquitto's result of the connect or of the loop
    int err = 0;                // errno right after it (a negative getaddrinfo code for EAI)
    int refusal = -1;           // the CONNACK reason when the broker refused (-1: none)
    int disconnectReason = -1;  // the reason of a DISCONNECT the broker sent (-1: none)
    bool accepted = false;      // the broker had accepted this connection (CONNACK success)
    std::string errorLog;       // the library's last error line (OpenSSL's words on TLS)
};

class ConnectionTeller {
  public:
    using Clock = std::chrono::steady_clock;
    // How long a connection must hold before it counts as good again: the cause told is
    // forgotten and the back-off starts from 1 s.
    static constexpr std::chrono::seconds kSteady{10};
    static constexpr std::chrono::seconds kLongestBackOff{30};
    static constexpr std::chrono::minutes kNeedsAFixRetry{5};

    // tls: the link speaks TLS to the broker (--mqtt-ca-file).
    ConnectionTeller(std::string host, int port, std::string clientId, bool tls = false);

    struct Next {
        std::string tell;  // the line to print, "" when this cause was told already
        Clock::duration wait{};
    };
    // A connection attempt failed or a connection ended.
    Next failed(const ConnectionEvent& e, Clock::time_point now);
    // The broker accepted the connection: "connected to the broker ... again" once after a
    // failure was told, else "".
    std::string accepted(Clock::time_point now);
    // While connected, now and then: a connection that held kSteady is good again.
    void connectedAt(Clock::time_point now);
    // The broker answered that it does not speak MQTT 5: the next try uses MQTT 3.1.1.
    bool useMqtt311() const { return mqtt311_; }

    // The cause of one event, and whether it can pass by itself (without the counting of
    // quick closures that failed() adds).
    struct Cause {
        std::string text;
        bool passes = true;
    };
    Cause causeOf(const ConnectionEvent& e) const;

  private:
    std::string where() const;
    std::string takeoverText() const;

    std::string host_;
    int port_;
    std::string clientId_;
    bool tls_ = false;
    std::string told_;  // the cause told last; "" once a connection held
    bool againTold_ = false;
    bool mqtt311_ = false;
    int quickCloses_ = 0;  // closures in a row, each soon after the broker accepted
    bool connected_ = false;
    Clock::time_point since_{};
    Clock::duration backOff_ = std::chrono::seconds(1);
};

}  // namespace kova::mqtt
