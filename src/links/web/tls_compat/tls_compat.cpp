// The embedded web server of Debian 12 (civetweb 1.15) loads OpenSSL at run time, by the
// name "libssl.so", and looks up the functions of the OpenSSL 1.1 interface by name. Of
// those, OpenSSL 3 renamed one: SSL_get_peer_certificate is SSL_get1_peer_certificate now
// (the old name survives only as a macro), so the server's TLS start fails on this system.
// This small library carries the name "libssl.so" (its soname), depends on the system's
// libssl.so.3 and adds the old name. Loaded before the server starts TLS, it is what the
// server's dlopen("libssl.so") finds, and the server's look-ups reach OpenSSL through it.
#include <openssl/ssl.h>

#undef SSL_get_peer_certificate

extern "C" {
X509* SSL_get_peer_certificate(const SSL* ssl);
X509* SSL_get_peer_certificate(const SSL* ssl) {
    return SSL_get1_peer_certificate(ssl);
}
}
