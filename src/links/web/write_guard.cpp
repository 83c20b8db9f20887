#include "links/web/write_guard.h"

namespace kova::web {

bool IsLoopbackAddress(const std::string& a) {
    return a.rfind("127.", 0) == 0 || a == "::1" || a.rfind("::ffff:127.", 0) == 0;
}

std::string ConnectionRefusal(const RequestFacts& r) {
    if (r.tls || IsLoopbackAddress(r.remoteAddress)) return {};
    return "writes and logins need HTTPS (start the station with --http-cert and --http-key)";
}

std::string OriginRefusal(const RequestFacts& r) {
    if (r.origin.empty()) return {};
    const std::string expected = std::string(r.tls ? "https://" : "http://") + r.host;
    if (!r.host.empty() && r.origin == expected) return {};
    return "the request came from a page of another site";
}

WriteVerdict CheckWrite(const RequestFacts& r, const std::optional<Session>& session) {
    if (std::string why = ConnectionRefusal(r); !why.empty()) return {403, why};
    if (std::string why = OriginRefusal(r); !why.empty()) return {403, why};
    if (!session) return {401, "not logged in"};
    if (!SameToken(r.csrf, session->csrf))
        return {403, "the page's write token is missing or wrong"};
    if (session->role != Role::Operator) return {403, "user " + session->user + " is a viewer"};
    return {};
}

std::string CookieValue(const std::string& header, const std::string& name) {
    const std::string h = header.substr(0, 4096);
    std::size_t at = 0;
    while (at < h.size()) {
        while (at < h.size() && (h[at] == ' ' || h[at] == ';')) ++at;
        const std::size_t end = std::min(h.find(';', at), h.size());
        const std::string pair = h.substr(at, end - at);
        const std::size_t eq = pair.find('=');
        if (eq != std::string::npos && pair.substr(0, eq) == name) return pair.substr(eq + 1);
        at = end;
    }
    return {};
}

}  // namespace kova::web
