#pragma once
// The checks every request that changes something passes before it reaches the station:
// a connection the password and session may travel on (TLS, or the machine's own loopback),
// a page of this station (the Origin header, when the browser sends one, names this very
// host), the session cookie of a logged-in user, and the session's own token in the
// X-KOVA-CSRF header, which a page of another site can neither read nor set.
#include <optional>
#include <string>

#include "links/web/web_sessions.h"

namespace kova::web {

inline constexpr const char* kCsrfHeader = "X-KOVA-CSRF";
inline constexpr const char* kSessionCookie = "kova_session";

// What the checks need to know of one request.
struct RequestFacts {
    bool tls = false;
    std::string remoteAddress;  // as the socket gives it ("127.0.0.1", "::1", ...)
    std::string host;           // the Host header ("" when absent)
    std::string origin;         // the Origin header ("" when absent)
    std::string csrf;           // the X-KOVA-CSRF header ("" when absent)
};

// 127.0.0.0/8, ::1 and ::ffff:127.x.x.x.
bool IsLoopbackAddress(const std::string& address);

// "" when the connection may carry a password or a write; else why not (plain HTTP from
// another machine).
std::string ConnectionRefusal(const RequestFacts& r);

// "" when the Origin header is absent or names this host (with the scheme the connection
// has); else why the request is refused.
std::string OriginRefusal(const RequestFacts& r);

struct WriteVerdict {
    int status = 200;    // 200 allowed; 401 no session; 403 refused
    std::string reason;  // "" when allowed
};

// The whole check for a write by an operator: connection, origin, session (nullopt = no
// valid session cookie), role and CSRF token.
WriteVerdict CheckWrite(const RequestFacts& r, const std::optional<Session>& session);

// The value of one cookie in a Cookie header; "" when absent. Looks at no more than the
// header's first 4096 bytes.
std::string CookieValue(const std::string& cookieHeader, const std::string& name);

}  // namespace kova::web
