#pragma once
// Failed logins slow further tries: after three failures for one user name, or for one
// address, each further try must wait, twice as long after every failure (2 s, 4 s, ...
// up to 5 minutes). A success clears the user's and the address's count. The table is
// bounded: when full, the entries whose wait is over are forgotten first.
#include <chrono>
#include <cstddef>
#include <map>
#include <mutex>
#include <string>

namespace kova::web {

class LoginThrottle {
  public:
    using Clock = std::chrono::steady_clock;
    explicit LoginThrottle(std::size_t maxEntries = 10000) : maxEntries_(maxEntries) {}

    // How long a login for this user from this address must still wait (0 = may try now).
    std::chrono::seconds waitBefore(const std::string& user, const std::string& address,
                                    Clock::time_point now) const;
    void failed(const std::string& user, const std::string& address, Clock::time_point now);
    void succeeded(const std::string& user, const std::string& address);

    static constexpr int kFreeFailures = 3;
    static constexpr std::chrono::seconds kLongestWait{300};

  private:
    struct Entry {
        int failures = 0;
        Clock::time_point until;
    };
    void note(const std::string& key, Clock::time_point now);
    std::chrono::seconds remaining(const std::string& key, Clock::time_point now) const;
    std::size_t maxEntries_;
    mutable std::mutex mutex_;
    std::map<std::string, Entry> entries_;
};

}  // namespace kova::web
