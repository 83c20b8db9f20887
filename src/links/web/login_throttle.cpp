#include "links/web/login_throttle.h"

#include <algorithm>

namespace kova::web {

namespace {
std::string userKey(const std::string& user) {
    return "u:" + user;
}
std::string addressKey(const std::string& address) {
    return "a:" + address;
}
}  // namespace

std::chrono::seconds LoginThrottle::remaining(const std::string& key, Clock::time_point now) const {
    const auto it = entries_.find(key);
    if (it == entries_.end() || it->second.until <= now) return std::chrono::seconds(0);
    // Rounded up: a wait of 0.2 s still reads as 1 s.
    return std::chrono::ceil<std::chrono::seconds>(it->second.until - now);
}

std::chrono::seconds LoginThrottle::waitBefore(const std::string& user, const std::string& address,
                                               Clock::time_point now) const {
    std::lock_guard lock(mutex_);
    return std::max(remaining(userKey(user), now), remaining(addressKey(address), now));
}

void LoginThrottle::note(const std::string& key, Clock::time_point now) {
    if (entries_.size() >= maxEntries_ && !entries_.count(key)) {
        std::erase_if(entries_, [&](const auto& kv) { return kv.second.until <= now; });
        if (entries_.size() >= maxEntries_)
            return;  // under attack from everywhere: keep what we have
    }
    Entry& e = entries_[key];
    ++e.failures;
    if (e.failures >= kFreeFailures) {
        const int doublings = std::min(e.failures - kFreeFailures, 8);
        const std::chrono::seconds wait =
            std::min<std::chrono::seconds>(std::chrono::seconds(2LL << doublings), kLongestWait);
        e.until = now + wait;
    }
}

void LoginThrottle::failed(const std::string& user, const std::string& address,
                           Clock::time_point now) {
    std::lock_guard lock(mutex_);
    note(userKey(user), now);
    note(addressKey(address), now);
}

void LoginThrottle::succeeded(const std::string& user, const std::string& address) {
    std::lock_guard lock(mutex_);
    entries_.erase(userKey(user));
    entries_.erase(addressKey(address));
}

}  // namespace kova::web
