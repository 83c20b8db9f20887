#include "links/mqtt/tcp_probe.h"

#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace kova::mqtt {

namespace {

using Clock = std::chrono::steady_clock;

// One address: 0 when it connected, else the errno; -1 when stopped.
int TryAddress(const addrinfo& a, Clock::time_point until, const std::function<bool()>& stop) {
    const int fd = socket(a.ai_family, a.ai_socktype | SOCK_NONBLOCK | SOCK_CLOEXEC, a.ai_protocol);
    if (fd < 0) return errno;
    int result = 0;
    if (connect(fd, a.ai_addr, a.ai_addrlen) != 0) {
        result = errno;
        if (result == EINPROGRESS) {
            result = ETIMEDOUT;
            for (;;) {
                if (stop && stop()) {
                    result = -1;
                    break;
                }
                const auto left =
                    std::chrono::duration_cast<std::chrono::milliseconds>(until - Clock::now());
                if (left.count() <= 0) break;
                pollfd p{fd, POLLOUT, 0};
                const int n = poll(&p, 1, static_cast<int>(std::min<long long>(left.count(), 100)));
                if (n < 0 && errno != EINTR) {
                    result = errno;
                    break;
                }
                if (n > 0) {
                    int soError = 0;
                    socklen_t len = sizeof soError;
                    getsockopt(fd, SOL_SOCKET, SO_ERROR, &soError, &len);
                    result = soError;
                    break;
                }
            }
        }
    }
    close(fd);
    return result;
}

}  // namespace

TcpProbe ProbeTcp(const std::string& host, int port, std::chrono::milliseconds wait,
                  const std::function<bool()>& stop) {
    const Clock::time_point until = Clock::now() + wait;
    addrinfo hints{};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    const std::string service = std::to_string(port);
    const int gai = getaddrinfo(host.c_str(), service.c_str(), &hints, &found);
    if (gai != 0) return {TcpProbe::Outcome::NoSuchHost, gai};
    TcpProbe out{TcpProbe::Outcome::Failed, ETIMEDOUT};
    for (const addrinfo* a = found; a != nullptr; a = a->ai_next) {
        const int r = TryAddress(*a, until, stop);
        if (r == 0) {
            out = {TcpProbe::Outcome::Reached, 0};
            break;
        }
        if (r < 0) {
            out = {TcpProbe::Outcome::Stopped, 0};
            break;
        }
        out.err = r;
        if (Clock::now() >= until) break;
    }
    freeaddrinfo(found);
    return out;
}

}  // namespace kova::mqtt
