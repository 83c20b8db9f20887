#include "links/web/web_sessions.h"

#include <sys/random.h>

#include <algorithm>
#include <array>

namespace kova::web {

std::string RandomToken() {
    std::array<unsigned char, 32> bytes{};
    std::size_t got = 0;
    while (got < bytes.size()) {
        const ssize_t n = getrandom(bytes.data() + got, bytes.size() - got, 0);
        if (n <= 0) return {};
        got += static_cast<std::size_t>(n);
    }
    static constexpr char kHex[] = "0123456789abcdef";
    std::string token;
    for (unsigned char b : bytes) {
        token += kHex[b >> 4];
        token += kHex[b & 15];
    }
    return token;
}

bool SameToken(const std::string& a, const std::string& b) {
    if (a.size() != b.size() || a.empty()) return false;
    unsigned char differ = 0;
    for (std::size_t i = 0; i < a.size(); ++i) differ |= static_cast<unsigned char>(a[i] ^ b[i]);
    return differ == 0;
}

std::optional<Session> SessionStore::create(const std::string& user, Role role,
                                            const std::string& address, Clock::time_point now) {
    Session s{RandomToken(), RandomToken(), user, role, address, now};
    if (s.id.empty() || s.csrf.empty()) return std::nullopt;
    std::lock_guard lock(mutex_);
    dropExpired(now);
    if (sessions_.size() >= maxSessions_) {
        const auto oldest = std::min_element(
            sessions_.begin(), sessions_.end(),
            [](const auto& a, const auto& b) { return a.second.lastUse < b.second.lastUse; });
        sessions_.erase(oldest);
    }
    sessions_[s.id] = s;
    return s;
}

std::optional<Session> SessionStore::find(const std::string& id, Clock::time_point now) {
    if (id.size() != 64) return std::nullopt;
    std::lock_guard lock(mutex_);
    const auto it = sessions_.find(id);
    if (it == sessions_.end()) return std::nullopt;
    if (now - it->second.lastUse > idleLimit_) {
        sessions_.erase(it);
        return std::nullopt;
    }
    it->second.lastUse = now;
    return it->second;
}

void SessionStore::remove(const std::string& id) {
    std::lock_guard lock(mutex_);
    sessions_.erase(id);
}

std::size_t SessionStore::size() const {
    std::lock_guard lock(mutex_);
    return sessions_.size();
}

void SessionStore::dropExpired(Clock::time_point now) {
    std::erase_if(sessions_, [&](const auto& kv) { return now - kv.second.lastUse > idleLimit_; });
}

}  // namespace kova::web
