#pragma once
// The station's own web page, served on threads of the embedded HTTP/WebSocket server
// (civetweb) while the scan goes on. Pages read the snapshots the scan publishes: the live
// state is pushed over a WebSocket at least once a second; configuration, trends and
// history are fetched as JSON. Writes (acknowledge, min/max reset, operator writes) come
// from logged-in operators only, pass the checks of write_guard.h and go to the scan
// through the command inbox; each gives one output line naming the user.
#include <functional>
#include <memory>
#include <string>

#include "links/command_inbox.h"
#include "links/snapshot_hub.h"

namespace kova::web {

struct WebServerOptions {
    std::string address = "127.0.0.1";  // the address to listen on
    int port = 0;                       // 0: any free port (see WebServer::port)
    std::string usersFile;              // "" = nobody can log in: the page only shows
    std::string certFile;               // with keyFile: HTTPS instead of HTTP
    std::string keyFile;
    // The small library that lets the server's TLS use this system's OpenSSL (see
    // tls_compat/); needed only with certFile.
    std::string tlsCompatLibrary;
    int maxPages = 80;  // pages connected at once (each holds a server thread)
};

// Prints one line of the station's output (thread-safe).
using LineSink = std::function<void(const std::string&)>;

class WebServer {
  public:
    // Starts listening; nullptr and the reason when it cannot (address in use, users file
    // or certificate unreadable, ...).
    static std::unique_ptr<WebServer> Start(const WebServerOptions& options,
                                            links::SnapshotHub& hub, links::CommandInbox& inbox,
                                            LineSink say, std::string& error);
    // Closes every page and stops the server's threads.
    ~WebServer();
    WebServer(const WebServer&) = delete;
    WebServer& operator=(const WebServer&) = delete;

    // The port listened on.
    int port() const;
    // "http://127.0.0.1:8080/"
    std::string url() const;
    // Pages connected now.
    int pagesConnected() const;

    class Impl;

  private:
    explicit WebServer(std::unique_ptr<Impl> impl);
    std::unique_ptr<Impl> impl_;
};

// "[ADDR:]PORT" as --http takes it: the address defaults to 127.0.0.1; an IPv6 address
// is written in brackets ("[::1]:8080"). False with `error` when it is not that.
bool ParseListenAddress(const std::string& text, std::string& address, int& port,
                        std::string& error);

}  // namespace kova::web
