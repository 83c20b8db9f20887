#include "cli_run_web.h"

#include "cli_run_sparkplug.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <filesystem>

#include "links/command_inbox.h"
#include "links/snapshot_hub.h"
#include "links/station_snapshot.h"
#ifdef KOVA_WITH_WEB
#include "links/web/web_server.h"
#endif

namespace kova::cli {

void AddWebOptions(CLI::App& run, RunOptions& o) {
    const char* group = "Web page (see docs/web.md)";
    run.add_option_function<std::string>(
           "--http", [&o](const std::string& v) { o.httpListen = v; },
           "Serve the station's web page on [ADDR:]PORT (address 127.0.0.1 when not given)")
        ->type_name("[ADDR:]PORT")
        ->group(group);
    run.add_option("--http-users", o.httpUsers,
                   "Users who may log in (lines of name:role:hash made by kova-cli passwd); "
                   "without it the page only shows")
        ->type_name("FILE")
        ->group(group);
    run.add_option("--http-cert", o.httpCert, "Serve HTTPS with this PEM certificate (chain)")
        ->type_name("FILE")
        ->group(group);
    run.add_option("--http-key", o.httpKey, "The PEM private key of --http-cert")
        ->type_name("FILE")
        ->group(group);
}

namespace {

void printLine(const std::string& line) {
    std::printf("%s\n", line.c_str());
    std::fflush(stdout);
}

#ifdef KOVA_WITH_WEB
// The compatibility library HTTPS needs lies beside kova-cli (in the build) or in the
// library folder of an installation.
std::string tlsCompatLibrary() {
    std::error_code ec;
    const std::filesystem::path exe = std::filesystem::read_symlink("/proc/self/exe", ec);
    if (ec) return {};
    const std::filesystem::path dir = exe.parent_path();
    for (const auto& candidate :
         {dir / "libkova_tls_compat.so", dir / ".." / "lib" / "kova" / "libkova_tls_compat.so"})
        if (std::filesystem::exists(candidate, ec)) return candidate.string();
    return (dir / "libkova_tls_compat.so").string();
}
#endif

class StationLinks final : public RunLinks {
  public:
    ~StationLinks() override {
        // Requests waiting for the scan are answered before the server stops.
        inbox_.close();
        hub_.close();
        sparkplug_.reset();
#ifdef KOVA_WITH_WEB
        server_.reset();
#endif
    }
    void afterTick(Station& st, long long lateTicks) override {
        inbox_.drain(st, [](const links::CommandResult& r) { printLine(r.line); });
        hub_.publish(builder_.build(st, lateTicks));
    }
    bool start(const RunOptions& o, links::Outbox* outbox, std::string& error) {
        if (o.sparkplug) {
            sparkplug_ = StartSparkplugLink(o, hub_, inbox_, outbox, error);
            if (!sparkplug_) return false;
        }
        return !o.httpListen || startWeb(o, error);
    }
    bool startWeb(const RunOptions& o, std::string& error) {
#ifdef KOVA_WITH_WEB
        web::WebServerOptions w;
        if (!web::ParseListenAddress(*o.httpListen, w.address, w.port, error)) return false;
        w.usersFile = o.httpUsers;
        w.certFile = o.httpCert;
        w.keyFile = o.httpKey;
        w.tlsCompatLibrary = tlsCompatLibrary();
        server_ = web::WebServer::Start(w, hub_, inbox_, printLine, error);
        if (!server_) return false;
        std::fprintf(stderr, "kova-cli: run: the station's page is at %s://%s%s%s:%d/\n",
                     w.certFile.empty() ? "http" : "https",
                     w.address.find(':') != std::string::npos ? "[" : "", w.address.c_str(),
                     w.address.find(':') != std::string::npos ? "]" : "", server_->port());
        return true;
#else
        (void)o;
        error = "--http: this kova-cli was built without the web page (civetweb)";
        return false;
#endif
    }

  private:
    links::SnapshotBuilder builder_;
    links::SnapshotHub hub_;
    links::CommandInbox inbox_;
    std::unique_ptr<RunningLink> sparkplug_;
#ifdef KOVA_WITH_WEB
    std::unique_ptr<web::WebServer> server_;
#endif
};

}  // namespace

std::unique_ptr<RunLinks> StartRunLinks(const RunOptions& o, links::Outbox* outbox,
                                        std::string& error) {
    error.clear();
    if (!o.httpListen && (!o.httpUsers.empty() || !o.httpCert.empty() || !o.httpKey.empty())) {
        error = "the --http-... options need --http [ADDR:]PORT";
        return nullptr;
    }
    error = SparkplugOptionsProblem(o);
    if (!error.empty() || (!o.httpListen && !o.sparkplug)) return nullptr;
    auto links = std::make_unique<StationLinks>();
    if (!links->start(o, outbox, error)) return nullptr;
    return links;
}

}  // namespace kova::cli
