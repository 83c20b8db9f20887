#include "links/web/web_server.h"

#include <civetweb.h>
#include <dlfcn.h>
#include <openssl/ssl.h>

#include <atomic>
#include <charconv>
#include <chrono>
#include <condition_variable>
#include <cstring>
#include <filesystem>
#include <mutex>
#include <nlohmann/json.hpp>
#include <set>
#include <thread>
#include <vector>

#include "links/web/login_throttle.h"
#include "links/web/password_hash.h"
#include "links/web/web_assets.h"
#include "links/web/web_history.h"
#include "links/web/web_json.h"
#include "links/web/web_sessions.h"
#include "links/web/web_users.h"
#include "links/web/write_guard.h"

namespace kova::web {

namespace {

using Json = nlohmann::json;
using namespace std::chrono_literals;

constexpr std::size_t kMaxBodyBytes = 4096;
constexpr std::size_t kMaxQueryValueBytes = 300;
// The longest a request waits for the scan to apply its command: longer than any tick.
constexpr auto kScanAnswerWait = 40s;
// Pushes to the pages: at most four a second, and at least one a second even when the
// station did not change, so a page can tell a station that stopped answering.
constexpr auto kPushGap = 250ms;
constexpr auto kPushAtLeast = 1s;

const char* kSecurityHeaders =
    "Cache-Control: no-store\r\n"
    "X-Content-Type-Options: nosniff\r\n"
    "X-Frame-Options: DENY\r\n"
    "Referrer-Policy: no-referrer\r\n"
    "Content-Security-Policy: default-src 'self'; img-src 'self' data:; style-src 'self'; "
    "script-src 'self'; connect-src 'self'; frame-ancestors 'none'; form-action 'self'; "
    "base-uri 'none'\r\n";

const char* statusText(int status) {
    switch (status) {
        case 200:
            return "OK";
        case 400:
            return "Bad Request";
        case 401:
            return "Unauthorized";
        case 403:
            return "Forbidden";
        case 404:
            return "Not Found";
        case 405:
            return "Method Not Allowed";
        case 413:
            return "Payload Too Large";
        case 415:
            return "Unsupported Media Type";
        case 429:
            return "Too Many Requests";
        case 503:
            return "Service Unavailable";
        case 504:
            return "Gateway Timeout";
        default:
            return "Error";
    }
}

int send(mg_connection* c, int status, std::string_view type, std::string_view body,
         const std::string& extraHeaders = {}) {
    mg_printf(c,
              "HTTP/1.1 %d %s\r\nContent-Type: %.*s\r\nContent-Length: %zu\r\n%s%s"
              "\r\n",
              status, statusText(status), static_cast<int>(type.size()), type.data(), body.size(),
              kSecurityHeaders, extraHeaders.c_str());
    if (std::strcmp(mg_get_request_info(c)->request_method, "HEAD") != 0)
        mg_write(c, body.data(), body.size());
    return status;
}

int sendJson(mg_connection* c, int status, const std::string& body,
             const std::string& extraHeaders = {}) {
    return send(c, status, "application/json; charset=utf-8", body, extraHeaders);
}

std::string header(mg_connection* c, const char* name) {
    const char* v = mg_get_header(c, name);
    return v ? std::string(v).substr(0, 1024) : std::string();
}

// A query parameter, at most kMaxQueryValueBytes; "" when absent or too long.
std::string queryValue(mg_connection* c, const char* name) {
    const char* q = mg_get_request_info(c)->query_string;
    if (!q) return {};
    char buf[kMaxQueryValueBytes + 1];
    const int n = mg_get_var(q, std::strlen(q), name, buf, sizeof buf);
    return n < 0 ? std::string() : std::string(buf, static_cast<std::size_t>(n));
}

bool wholeNumber(const std::string& text, long long low, long long high, long long& out) {
    if (text.empty()) return false;
    const auto r = std::from_chars(text.data(), text.data() + text.size(), out);
    return r.ec == std::errc() && r.ptr == text.data() + text.size() && out >= low && out <= high;
}

RequestFacts factsOf(mg_connection* c) {
    const mg_request_info* ri = mg_get_request_info(c);
    RequestFacts f;
    f.tls = ri->is_ssl != 0;
    f.remoteAddress = ri->remote_addr;
    f.host = header(c, "Host");
    f.origin = header(c, "Origin");
    f.csrf = header(c, kCsrfHeader);
    return f;
}

// Who a request comes from, for the output line.
std::string sourceOf(const RequestFacts& f, const std::optional<Session>& s) {
    std::string who = "web";
    if (s) who += " user " + s->user;
    return who + " from " + f.remoteAddress;
}

// Loads the TLS library through the compatibility library, once per process.
bool initTlsOnce(const std::string& compatLibrary, std::string& error) {
    static std::mutex m;
    static int state = 0;  // 0 not tried, 1 ready, -1 failed
    static std::string failure;
    std::lock_guard lock(m);
    if (state == 0) {
        // The server looks the TLS library up by the name "libssl.so"; the compatibility
        // library answers to that name and adds the one function this OpenSSL renamed.
        if (compatLibrary.empty() || !dlopen(compatLibrary.c_str(), RTLD_NOW | RTLD_GLOBAL)) {
            const char* why = dlerror();
            failure = "HTTPS is not available: the TLS compatibility library " + compatLibrary +
                      " cannot be loaded" + (why ? std::string(" (") + why + ")" : "");
            state = -1;
        } else if ((mg_init_library(MG_FEATURES_TLS | MG_FEATURES_WEBSOCKET) & MG_FEATURES_TLS) ==
                   0) {
            failure = "HTTPS is not available: the server cannot load OpenSSL";
            state = -1;
        } else {
            state = 1;
        }
    }
    error = failure;
    return state == 1;
}

}  // namespace

class WebServer::Impl {
  public:
    Impl(const WebServerOptions& o, links::SnapshotHub& hub, links::CommandInbox& inbox,
         LineSink say)
        : options_(o), hub_(hub), inbox_(inbox), say_(std::move(say)) {}
    ~Impl() { stop(); }

    bool start(std::string& error);
    void stop();
    int port() const { return port_; }
    bool tls() const { return !options_.certFile.empty(); }
    int pages() const {
        std::lock_guard lock(pagesMutex_);
        return static_cast<int>(pages_.size());
    }

  private:
    // civetweb's callbacks, each forwarding to the server.
    static int onRequest(mg_connection* c, void* self) {
        return static_cast<Impl*>(self)->request(c);
    }
    static int onPageConnect(const mg_connection* c, void* self) {
        return static_cast<Impl*>(self)->pageConnect(c);
    }
    static void onPageReady(mg_connection* c, void* self) {
        static_cast<Impl*>(self)->pageReady(c);
    }
    static int onPageData(mg_connection*, int bits, char*, std::size_t, void*) {
        // Pages send nothing but control frames; a close ends the connection.
        return (bits & 0x0F) == MG_WEBSOCKET_OPCODE_CONNECTION_CLOSE ? 0 : 1;
    }
    static void onPageClose(const mg_connection* c, void* self) {
        static_cast<Impl*>(self)->pageClose(c);
    }
    static int onInitTls(void* sslContext, void* self) {
        return static_cast<Impl*>(self)->loadCertificate(static_cast<SSL_CTX*>(sslContext));
    }
    static int onLog(const mg_connection*, const char*) { return 1; }  // the server stays quiet

    int request(mg_connection* c);
    int api(mg_connection* c, const std::string& method, const std::string& uri);
    int login(mg_connection* c);
    int logout(mg_connection* c);
    int command(mg_connection* c, links::LinkCommand::Kind kind);
    int history(mg_connection* c, const std::string& uri);
    int pageConnect(const mg_connection* c);
    void pageReady(mg_connection* c);
    void pageClose(const mg_connection* c);
    int loadCertificate(SSL_CTX* ctx);
    void pushLoop();
    void say(const std::string& line) {
        if (say_) say_(line);
    }
    std::optional<Session> sessionOf(mg_connection* c) {
        return sessions_.find(CookieValue(header(c, "Cookie"), kSessionCookie), Clock::now());
    }
    // Reads a JSON body (Content-Type application/json, at most kMaxBodyBytes); false with
    // the answer already sent when it is not one.
    bool readJsonBody(mg_connection* c, Json& body, int& status);

    WebServerOptions options_;
    links::SnapshotHub& hub_;
    links::CommandInbox& inbox_;
    LineSink say_;
    WebUsers users_;
    bool haveUsers_ = false;
    SessionStore sessions_;
    LoginThrottle throttle_;
    HistoryReaders history_;
    mg_context* ctx_ = nullptr;
    int port_ = 0;

    mutable std::mutex pagesMutex_;
    std::set<mg_connection*> pages_;
    std::thread pusher_;
    std::mutex stopMutex_;
    std::condition_variable stopChanged_;
    bool stopping_ = false;
};

bool WebServer::Impl::start(std::string& error) {
    if (!options_.usersFile.empty()) {
        if (!users_.load(options_.usersFile, error)) return false;
        haveUsers_ = true;
    }
    if (options_.certFile.empty() != options_.keyFile.empty()) {
        error = "--http-cert and --http-key go together";
        return false;
    }
    if (tls()) {
        if (!initTlsOnce(options_.tlsCompatLibrary, error)) return false;
    } else {
        mg_init_library(MG_FEATURES_WEBSOCKET);
    }
    const bool v6 = options_.address.find(':') != std::string::npos;
    const std::string listen = (v6 ? "[" + options_.address + "]" : options_.address) + ":" +
                               std::to_string(options_.port) + (tls() ? "s" : "");
    const std::string threads = std::to_string(options_.maxPages + 16);
    const char* civetOptions[] = {"listening_ports",
                                  listen.c_str(),
                                  "num_threads",
                                  threads.c_str(),
                                  "request_timeout_ms",
                                  "10000",
                                  "enable_keep_alive",
                                  "yes",
                                  "keep_alive_timeout_ms",
                                  "5000",
                                  "websocket_timeout_ms",
                                  "3600000",
                                  "ssl_protocol_version",
                                  "4",  // TLS 1.2 and newer
                                  "enable_directory_listing",
                                  "no",
                                  nullptr};
    mg_callbacks callbacks{};
    callbacks.log_message = onLog;
    if (tls()) callbacks.init_ssl = onInitTls;
    ctx_ = mg_start(&callbacks, this, civetOptions);
    if (!ctx_) {
        error = "the web server cannot listen on " + listen +
                " (is the port in use, or the address not this machine's?)";
        return false;
    }
    mg_server_port ports[4]{};
    if (mg_get_server_ports(ctx_, 4, ports) >= 1) port_ = ports[0].port;
    mg_set_request_handler(ctx_, "/", onRequest, this);
    mg_set_websocket_handler(ctx_, "/live", onPageConnect, onPageReady, onPageData, onPageClose,
                             this);
    pusher_ = std::thread([this] { pushLoop(); });
    return true;
}

void WebServer::Impl::stop() {
    {
        std::lock_guard lock(stopMutex_);
        stopping_ = true;
    }
    stopChanged_.notify_all();
    if (pusher_.joinable()) pusher_.join();
    if (ctx_) {
        mg_stop(ctx_);
        ctx_ = nullptr;
    }
}

int WebServer::Impl::loadCertificate(SSL_CTX* ctx) {
    if (SSL_CTX_use_certificate_chain_file(ctx, options_.certFile.c_str()) != 1 ||
        SSL_CTX_use_PrivateKey_file(ctx, options_.keyFile.c_str(), SSL_FILETYPE_PEM) != 1 ||
        SSL_CTX_check_private_key(ctx) != 1)
        return -1;
    return 1;  // the certificate is in place
}

int WebServer::Impl::request(mg_connection* c) {
    const mg_request_info* ri = mg_get_request_info(c);
    const std::string method = ri->request_method ? ri->request_method : "";
    const std::string uri = ri->local_uri ? std::string(ri->local_uri).substr(0, 512) : "/";
    if (uri.rfind("/api/", 0) == 0) return api(c, method, uri);
    if (method != "GET" && method != "HEAD")
        return send(c, 405, "text/plain; charset=utf-8", "Only GET and HEAD are served here.\n",
                    "Allow: GET, HEAD\r\n");
    const WebAsset* asset = FindWebAsset(uri == "/index.html" ? "/" : uri);
    if (!asset)
        return send(c, 404, "text/html; charset=utf-8",
                    "<!DOCTYPE html><title>Not found</title><p>There is no page " +
                        EscapeHtml(uri) + " on this station. <a href=\"/\">The station's page</a>");
    return send(c, 200, asset->contentType,
                std::string_view(reinterpret_cast<const char*>(asset->data), asset->size));
}

bool WebServer::Impl::readJsonBody(mg_connection* c, Json& body, int& status) {
    const mg_request_info* ri = mg_get_request_info(c);
    const std::string type = header(c, "Content-Type");
    if (type.rfind("application/json", 0) != 0) {
        status = sendJson(c, 415, ErrorJson("the request must be JSON"));
        return false;
    }
    if (ri->content_length > static_cast<long long>(kMaxBodyBytes)) {
        status = sendJson(c, 413, ErrorJson("the request is too large"));
        return false;
    }
    std::string text(kMaxBodyBytes + 1, '\0');
    std::size_t got = 0;
    for (;;) {
        const int n = mg_read(c, text.data() + got, text.size() - got);
        if (n <= 0) break;
        got += static_cast<std::size_t>(n);
        if (got >= text.size()) break;
    }
    if (got > kMaxBodyBytes) {
        status = sendJson(c, 413, ErrorJson("the request is too large"));
        return false;
    }
    text.resize(got);
    body = Json::parse(text, nullptr, false);
    if (body.is_discarded() || !body.is_object()) {
        status = sendJson(c, 400, ErrorJson("the request is not a JSON object"));
        return false;
    }
    return true;
}

int WebServer::Impl::api(mg_connection* c, const std::string& method, const std::string& uri) {
    const bool get = method == "GET" || method == "HEAD";
    if (method == "POST") {
        if (uri == "/api/login") return login(c);
        if (uri == "/api/logout") return logout(c);
        if (uri == "/api/write") return command(c, links::LinkCommand::Kind::Write);
        if (uri == "/api/acknowledge")
            return command(c, links::LinkCommand::Kind::AcknowledgeAlarms);
        if (uri == "/api/minmax/reset") return command(c, links::LinkCommand::Kind::ResetMinMax);
        return sendJson(c, 404, ErrorJson("no such request"));
    }
    if (!get) return sendJson(c, 405, ErrorJson("only GET and POST"), "Allow: GET, POST\r\n");
    if (uri == "/api/session") {
        const std::optional<Session> s = sessionOf(c);
        const RequestFacts f = factsOf(c);
        Json j = {{"loginAvailable", haveUsers_}, {"secureEnough", ConnectionRefusal(f).empty()}};
        if (s) {
            j["user"] = s->user;
            j["role"] = RoleName(s->role);
            j["csrf"] = s->csrf;
        }
        return sendJson(c, 200, j.dump());
    }
    if (uri.rfind("/api/history/", 0) == 0) return history(c, uri);
    const std::shared_ptr<const links::StationSnapshot> s = hub_.latest();
    if (!s) return sendJson(c, 503, ErrorJson("the station has not scanned yet"));
    if (uri == "/api/live") return sendJson(c, 200, LiveJson(*s));
    if (uri == "/api/layout") return sendJson(c, 200, LayoutJson(*s));
    if (uri == "/api/trend") {
        long long n = 0;
        if (!wholeNumber(queryValue(c, "n"), 1, 10, n))
            return sendJson(c, 400, ErrorJson("trend must be 1 to 10"));
        return sendJson(c, 200, TrendJson(*s, static_cast<int>(n)));
    }
    return sendJson(c, 404, ErrorJson("no such request"));
}

int WebServer::Impl::login(mg_connection* c) {
    const RequestFacts f = factsOf(c);
    Json body;
    int status = 0;
    if (std::string why = ConnectionRefusal(f); !why.empty()) {
        say("web from " + f.remoteAddress + ": login refused: " + why);
        return sendJson(c, 403, ErrorJson(why));
    }
    if (std::string why = OriginRefusal(f); !why.empty()) return sendJson(c, 403, ErrorJson(why));
    if (!haveUsers_)
        return sendJson(c, 403, ErrorJson("this station has no users: its page only shows"));
    if (!readJsonBody(c, body, status)) return status;
    const std::string user =
        body.value("user", Json()).is_string() ? body["user"].get<std::string>() : "";
    const std::string password =
        body.value("password", Json()).is_string() ? body["password"].get<std::string>() : "";
    if (!ValidUserName(user)) return sendJson(c, 400, ErrorJson("user name or password is wrong"));
    const auto now = Clock::now();
    if (const auto wait = throttle_.waitBefore(user, f.remoteAddress, now); wait.count() > 0)
        return sendJson(c, 429,
                        ErrorJson("too many failed logins: try again in " +
                                  std::to_string(wait.count()) + " s"),
                        "Retry-After: " + std::to_string(wait.count()) + "\r\n");
    const WebUser* u = users_.find(user);
    // An unknown name costs the same hashing time as a known one.
    const bool ok = VerifyPassword(password, u ? u->hash : DummyHash()) && u;
    if (!ok) {
        throttle_.failed(user, f.remoteAddress, now);
        say("web from " + f.remoteAddress + ": login refused for " + user);
        return sendJson(c, 401, ErrorJson("user name or password is wrong"));
    }
    throttle_.succeeded(user, f.remoteAddress);
    const std::optional<Session> s = sessions_.create(user, u->role, f.remoteAddress, now);
    if (!s) return sendJson(c, 503, ErrorJson("no session could be made"));
    say("web user " + user + " from " + f.remoteAddress + ": logged in as " + RoleName(u->role));
    const std::string cookie = std::string("Set-Cookie: ") + kSessionCookie + "=" + s->id +
                               "; Path=/; HttpOnly; SameSite=Strict" + (f.tls ? "; Secure" : "") +
                               "\r\n";
    return sendJson(c, 200,
                    Json({{"user", user}, {"role", RoleName(u->role)}, {"csrf", s->csrf}}).dump(),
                    cookie);
}

int WebServer::Impl::logout(mg_connection* c) {
    const RequestFacts f = factsOf(c);
    const std::optional<Session> s = sessionOf(c);
    if (std::string why = OriginRefusal(f); !why.empty()) return sendJson(c, 403, ErrorJson(why));
    if (s && SameToken(f.csrf, s->csrf)) {
        sessions_.remove(s->id);
        say("web user " + s->user + " from " + f.remoteAddress + ": logged out");
    }
    return sendJson(c, 200, "{}",
                    std::string("Set-Cookie: ") + kSessionCookie +
                        "=; Path=/; HttpOnly; SameSite=Strict; Max-Age=0\r\n");
}

int WebServer::Impl::command(mg_connection* c, links::LinkCommand::Kind kind) {
    const RequestFacts f = factsOf(c);
    const std::optional<Session> s = sessionOf(c);
    const WriteVerdict v = CheckWrite(f, s);
    const char* what = kind == links::LinkCommand::Kind::Write               ? "write"
                       : kind == links::LinkCommand::Kind::AcknowledgeAlarms ? "acknowledge"
                                                                             : "min/max reset";
    if (v.status != 200) {
        say(sourceOf(f, s) + ": refused " + what + ": " + v.reason);
        return sendJson(c, v.status, ErrorJson(v.reason));
    }
    links::LinkCommand cmd{kind, sourceOf(f, s), {}, {}};
    if (kind == links::LinkCommand::Kind::Write) {
        Json body;
        int status = 0;
        if (!readJsonBody(c, body, status)) return status;
        const Json tag = body.value("tag", Json()), value = body.value("value", Json());
        if (!tag.is_string() || !(value.is_string() || value.is_number()))
            return sendJson(c, 400, ErrorJson("a write names a tag and a value"));
        cmd.tagName = tag.get<std::string>();
        cmd.value = value.is_string() ? value.get<std::string>() : value.dump();
    }
    std::future<links::CommandResult> answer = inbox_.submit(std::move(cmd));
    if (answer.wait_for(kScanAnswerWait) != std::future_status::ready)
        return sendJson(c, 504, ErrorJson("the station did not answer in time"));
    const links::CommandResult r = answer.get();
    return sendJson(c, r.accepted ? 200 : 409,
                    Json({{"accepted", r.accepted}, {"line", r.line}})
                        .dump(-1, ' ', false, Json::error_handler_t::replace));
}

int WebServer::Impl::history(mg_connection* c, const std::string& uri) {
    const std::shared_ptr<const links::StationSnapshot> s = hub_.latest();
    if (!s) return sendJson(c, 503, ErrorJson("the station has not scanned yet"));
    const std::string folder = LogFolder(s->layout->logDirectory, s->layout->logFileName);
    std::string error;
    if (uri == "/api/history/files") {
        std::vector<LogFileEntry> files;
        if (!ListLogFiles(folder, files, error)) return sendJson(c, 404, ErrorJson(error));
        return sendJson(c, 200, LogFilesJson(files, folder));
    }
    const std::string name = queryValue(c, "file");
    const std::string path = LogFilePath(folder, name, error);
    if (path.empty()) return sendJson(c, 404, ErrorJson(error));
    // The file being logged is never opened, as in the history window.
    if (s->loggingEnabled) {
        std::string ignored;
        const std::string logging = LogFilePath(
            folder, std::filesystem::path(s->layout->logFileName).filename().string(), ignored);
        std::error_code ec;
        if (!logging.empty() && std::filesystem::equivalent(path, logging, ec) && !ec)
            return sendJson(c, 409, ErrorJson("Cannot View Current Logging File " + name));
    }
    if (uri == "/api/history/columns") {
        const HistoryAnswer a = history_.columns(path);
        if (!a.error.empty()) return sendJson(c, 404, ErrorJson(a.error));
        return sendJson(c, 200, HistoryColumnsJson(a));
    }
    if (uri == "/api/history/block") {
        HistoryRequest r;
        r.path = path;
        long long start = 0;
        if (!wholeNumber(queryValue(c, "start"), 1, 1LL << 40, start))
            return sendJson(c, 400, ErrorJson("start must be a row number from 1"));
        r.startRow = start;
        const std::string columns = queryValue(c, "columns");
        std::size_t at = 0;
        while (at < columns.size()) {
            const std::size_t end = std::min(columns.find(',', at), columns.size());
            long long col = 0;
            if (!wholeNumber(columns.substr(at, end - at), 1, kHistoryMaxColumns, col) ||
                r.columns.size() >= kHistoryPens)
                return sendJson(c, 400, ErrorJson("up to four column numbers, by commas"));
            r.columns.push_back(static_cast<int>(col));
            at = end + 1;
        }
        const HistoryAnswer a = history_.block(r);
        if (!a.error.empty()) return sendJson(c, 400, ErrorJson(a.error));
        return sendJson(c, 200, HistoryBlockJson(a, r.startRow));
    }
    return sendJson(c, 404, ErrorJson("no such request"));
}

int WebServer::Impl::pageConnect(const mg_connection* c) {
    const mg_request_info* ri = mg_get_request_info(c);
    RequestFacts f;
    f.tls = ri->is_ssl != 0;
    const char* host = mg_get_header(c, "Host");
    const char* origin = mg_get_header(c, "Origin");
    f.host = host ? host : "";
    f.origin = origin ? origin : "";
    if (!OriginRefusal(f).empty()) return 1;  // another site's page: refused
    std::lock_guard lock(pagesMutex_);
    return static_cast<int>(pages_.size()) >= options_.maxPages ? 1 : 0;
}

void WebServer::Impl::pageReady(mg_connection* c) {
    // The page gets the live state at once, then with every push.
    if (const auto s = hub_.latest()) {
        const std::string text = LiveJson(*s);
        mg_websocket_write(c, MG_WEBSOCKET_OPCODE_TEXT, text.data(), text.size());
    }
    std::lock_guard lock(pagesMutex_);
    pages_.insert(c);
}

void WebServer::Impl::pageClose(const mg_connection* c) {
    std::lock_guard lock(pagesMutex_);
    pages_.erase(const_cast<mg_connection*>(c));
}

void WebServer::Impl::pushLoop() {
    std::uint64_t sent = 0;
    auto lastPush = std::chrono::steady_clock::now() - kPushAtLeast;
    for (;;) {
        {
            std::unique_lock lock(stopMutex_);
            if (stopChanged_.wait_for(lock, kPushGap, [this] { return stopping_; })) return;
        }
        const auto s = hub_.latest();
        const auto now = std::chrono::steady_clock::now();
        if (!s || (s->sequence == sent && now - lastPush < kPushAtLeast)) continue;
        // One text for every page.
        const std::string text = LiveJson(*s);
        std::lock_guard lock(pagesMutex_);
        for (mg_connection* page : pages_)
            mg_websocket_write(page, MG_WEBSOCKET_OPCODE_TEXT, text.data(), text.size());
        sent = s->sequence;
        lastPush = now;
    }
}

std::unique_ptr<WebServer> WebServer::Start(const WebServerOptions& options,
                                            links::SnapshotHub& hub, links::CommandInbox& inbox,
                                            LineSink say, std::string& error) {
    auto impl = std::make_unique<Impl>(options, hub, inbox, std::move(say));
    if (!impl->start(error)) return nullptr;
    return std::unique_ptr<WebServer>(new WebServer(std::move(impl)));
}

WebServer::WebServer(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}
WebServer::~WebServer() = default;

int WebServer::port() const {
    return impl_->port();
}

std::string WebServer::url() const {
    return std::string(impl_->tls() ? "https" : "http") + "://127.0.0.1:" + std::to_string(port()) +
           "/";
}

int WebServer::pagesConnected() const {
    return impl_->pages();
}

bool ParseListenAddress(const std::string& text, std::string& address, int& port,
                        std::string& error) {
    std::string portText = text;
    address = "127.0.0.1";
    if (!text.empty() && text[0] == '[') {
        const std::size_t close = text.find("]:");
        if (close == std::string::npos) {
            error = "--http takes [ADDR:]PORT, an IPv6 address in brackets, not \"" + text + "\"";
            return false;
        }
        address = text.substr(1, close - 1);
        portText = text.substr(close + 2);
    } else if (const std::size_t colon = text.rfind(':'); colon != std::string::npos) {
        address = text.substr(0, colon);
        portText = text.substr(colon + 1);
    }
    long long p = 0;
    if (address.empty() || address.find_first_of(" ,/[]") != std::string::npos ||
        !wholeNumber(portText, 1, 65535, p)) {
        error = "--http takes [ADDR:]PORT with a port 1..65535, not \"" + text + "\"";
        return false;
    }
    port = static_cast<int>(p);
    return true;
}

}  // namespace kova::web
