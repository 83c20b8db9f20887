#pragma once
// Whether the broker's port takes a TCP connection, asked with a time limit. libmosquitto's
// first connect (the one that carries the MQTT 5 properties) waits for TCP with no limit of
// its own: over two minutes when the broker's host drops the attempt, with nothing said and a
// station being stopped waiting as long. The link asks this first, so that it says why within
// seconds and stops at once.
#include <chrono>
#include <functional>
#include <string>

namespace kova::mqtt {

struct TcpProbe {
    enum class Outcome {
        Reached,     // a connection was made (and closed again)
        NoSuchHost,  // the name cannot be looked up; err is getaddrinfo's code
        Failed,      // refused, unreachable, or no answer in time (ETIMEDOUT); err is errno
        Stopped,     // given up because `stop` said so
    };
    Outcome outcome = Outcome::Failed;
    int err = 0;
};

// Tries each address of `host` in turn until one connects or `wait` has passed; `stop` is
// asked every tenth of a second.
TcpProbe ProbeTcp(const std::string& host, int port, std::chrono::milliseconds wait,
                  const std::function<bool()>& stop);

}  // namespace kova::mqtt
