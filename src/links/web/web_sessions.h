#pragma once
// Who is logged in to the web page. A session is named by a random token that only its
// browser holds (in an HttpOnly, SameSite=Strict cookie) and carries a second random token
// that the page sends back in a header with every write, which a page of another site
// cannot read. Sessions end after a time without use, on logout, and when too many exist
// (the oldest goes first).
#include <chrono>
#include <cstddef>
#include <map>
#include <mutex>
#include <optional>
#include <string>

#include "links/web/web_users.h"

namespace kova::web {

using Clock = std::chrono::steady_clock;

struct Session {
    std::string id;    // the cookie's value
    std::string csrf;  // the header every write must carry
    std::string user;
    Role role = Role::Viewer;
    std::string address;  // where the login came from
    Clock::time_point lastUse;
};

// 32 random bytes from the system as 64 hex digits; "" when the system has none to give.
std::string RandomToken();

// True when a and b are equal, in a time that does not depend on where they differ.
bool SameToken(const std::string& a, const std::string& b);

class SessionStore {
  public:
    explicit SessionStore(std::chrono::seconds idleLimit = std::chrono::hours(8),
                          std::size_t maxSessions = 256)
        : idleLimit_(idleLimit), maxSessions_(maxSessions) {}

    // A new session; nullopt when no random token could be made.
    std::optional<Session> create(const std::string& user, Role role, const std::string& address,
                                  Clock::time_point now);
    // The session of a cookie value, its last use moved to now; nullopt when there is none
    // (unknown, forged, expired or ended).
    std::optional<Session> find(const std::string& id, Clock::time_point now);
    void remove(const std::string& id);
    std::size_t size() const;

  private:
    void dropExpired(Clock::time_point now);
    std::chrono::seconds idleLimit_;
    std::size_t maxSessions_;
    mutable std::mutex mutex_;
    std::map<std::string, Session> sessions_;
};

}  // namespace kova::web
