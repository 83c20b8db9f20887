#include "links/mqtt/mqtt_connection.h"

#include <mosquitto.h>
#include <mqtt_protocol.h>
#include <netdb.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace kova::mqtt {

namespace {

// MQTT 3.1.1 CONNACK codes in the words of MQTT 5's reasons.
int AsMqtt5Reason(int code) {
    switch (code) {
        case 1:
            return MQTT_RC_UNSUPPORTED_PROTOCOL_VERSION;
        case 2:
            return MQTT_RC_CLIENTID_NOT_VALID;
        case 3:
            return MQTT_RC_SERVER_UNAVAILABLE;
        case 4:
            return MQTT_RC_BAD_USERNAME_OR_PASSWORD;
        case 5:
            return MQTT_RC_NOT_AUTHORIZED;
        default:
            return code;
    }
}

// OpenSSL's words without its codes: "error:0A000086:SSL routines::certificate verify
// failed" becomes "certificate verify failed".
std::string TlsWords(const std::string& line) {
    const auto at = line.rfind("::");
    if (at != std::string::npos) return line.substr(at + 2);
    const auto colon = line.rfind(": ");
    return colon == std::string::npos ? line : line.substr(colon + 2);
}

}  // namespace

ConnectionTeller::ConnectionTeller(std::string host, int port, std::string clientId, bool tls)
    : host_(std::move(host)), port_(port), clientId_(std::move(clientId)), tls_(tls) {}

std::string ConnectionTeller::where() const {
    const bool v6 = host_.find(':') != std::string::npos;
    return (v6 ? "[" + host_ + "]" : host_) + ":" + std::to_string(port_);
}

std::string ConnectionTeller::takeoverText() const {
    return "another client connected to the broker at " + where() +
           " with this station's client ID \"" + clientId_ +
           "\" and took its session over (every client needs an ID of its own: "
           "--mqtt-client-id)";
}

ConnectionTeller::Cause ConnectionTeller::causeOf(const ConnectionEvent& e) const {
    if (e.refusal > 0) {
        const int reason = AsMqtt5Reason(e.refusal);
        const std::string why = mosquitto_reason_string(reason);
        switch (reason) {
            case MQTT_RC_CLIENTID_NOT_VALID:
                return {"the broker at " + where() + " refused the client ID \"" + clientId_ +
                            "\" (" + why + "): give the station another with --mqtt-client-id",
                        false};
            case MQTT_RC_BAD_USERNAME_OR_PASSWORD:
            case MQTT_RC_NOT_AUTHORIZED:
            case MQTT_RC_BAD_AUTHENTICATION_METHOD:
                return {"the broker at " + where() + " refused the login (" + why +
                            "): check --mqtt-user and --mqtt-password-file",
                        false};
            case MQTT_RC_BANNED:
                return {"the broker at " + where() + " refused the connection (" + why + ")",
                        false};
            default:
                return {"the broker at " + where() + " refused the connection (" + why + ")", true};
        }
    }
    if (e.disconnectReason >= 0x80) {
        if (e.disconnectReason == MQTT_RC_SESSION_TAKEN_OVER) return {takeoverText(), true};
        return {"the broker at " + where() + " closed the connection (" +
                    mosquitto_reason_string(e.disconnectReason) + ")",
                true};
    }
    switch (e.rc) {
        case MOSQ_ERR_EAI:
        case MOSQ_ERR_LOOKUP:
            return {"cannot connect to the broker: the host name \"" + host_ +
                        "\" cannot be looked up (" +
                        (e.err < 0 ? gai_strerror(e.err) : "no such host") + ")",
                    true};
        case MOSQ_ERR_ERRNO:
            if (e.err == ECONNREFUSED)
                return {"cannot connect to the broker at " + where() +
                            ": connection refused (is the broker running?)",
                        true};
            if (e.err == ETIMEDOUT)
                return {"cannot connect to the broker at " + where() +
                            ": no answer (is the host up, and the port open in its firewall?)",
                        true};
            return {"cannot connect to the broker at " + where() + ": " +
                        (e.err > 0 ? std::strerror(e.err) : "system error"),
                    true};
        case MOSQ_ERR_TLS:
        case MOSQ_ERR_TLS_HANDSHAKE:
        case MOSQ_ERR_OCSP: {
            const std::string words = e.errorLog.empty() ? "" : TlsWords(e.errorLog);
            std::string text = "cannot connect to the broker at " + where() + ": TLS failed";
            if (!words.empty()) text += " (" + words + ")";
            if (words.find("certificate verify failed") != std::string::npos)
                text +=
                    ": --mqtt-ca-file does not hold the CA that signed the broker's certificate";
            else if (words.find("unexpected eof") != std::string::npos)
                text += ": is this the broker's TLS port?";
            return {text, false};
        }
        case MOSQ_ERR_CONN_LOST:
            // The usual reason is a port that speaks the other way: plain MQTT to a TLS
            // port, or TLS to a plain one.
            if (!e.accepted)
                return {"the broker at " + where() + " closed the connection before accepting it" +
                            (tls_ ? " (is this the broker's TLS port?)"
                                  : " (is this the broker's plain MQTT port? Its TLS port "
                                    "needs --mqtt-ca-file)"),
                        true};
            return {"the broker at " + where() +
                        " closed the connection (a broker does this when it stops, and when "
                        "another client connects with this station's client ID \"" +
                        clientId_ + "\")",
                    true};
        case MOSQ_ERR_KEEPALIVE:
            return {"the broker at " + where() + " stopped answering", true};
        default:
            return {"lost the connection to the broker at " + where() + " (" +
                        mosquitto_strerror(e.rc) + ")",
                    true};
    }
}

ConnectionTeller::Next ConnectionTeller::failed(const ConnectionEvent& e, Clock::time_point now) {
    const bool wasConnected = connected_;
    connected_ = false;
    if (!mqtt311_ && e.refusal > 0 &&
        AsMqtt5Reason(e.refusal) == MQTT_RC_UNSUPPORTED_PROTOCOL_VERSION) {
        mqtt311_ = true;
        return {"the broker at " + where() +
                    " does not speak MQTT 5: using MQTT 3.1.1 (a broker that speaks it "
                    "tells a taken-over session apart from a closed connection)",
                Clock::duration::zero()};
    }
    Cause cause = causeOf(e);
    // A broker that does not say why it closes (Debian 12's does not) closing again and
    // again just after accepting: another client keeps taking the session over.
    const bool quick = e.rc == MOSQ_ERR_CONN_LOST && e.accepted && e.disconnectReason < 0 &&
                       wasConnected && now - since_ < kSteady;
    quickCloses_ = quick ? quickCloses_ + 1 : 0;
    if (quickCloses_ >= 2)
        cause.text = "the broker at " + where() +
                     " keeps closing the connection just after accepting it: another client "
                     "is using this station's client ID \"" +
                     clientId_ + "\" (every client needs an ID of its own: --mqtt-client-id)";
    Next next;
    if (cause.passes) {
        next.wait = backOff_;
        backOff_ = std::min<Clock::duration>(backOff_ * 2, kLongestBackOff);
        cause.text += quickCloses_ >= 2 || e.disconnectReason == MQTT_RC_SESSION_TAKEN_OVER
                          ? "; reconnecting, waiting longer each time"
                          : "; trying again, waiting longer each time up to 30 s";
    } else {
        next.wait = kNeedsAFixRetry;
        cause.text += "; trying again every 5 minutes";
    }
    if (cause.text != told_) {
        told_ = cause.text;
        againTold_ = false;
        next.tell = cause.text;
    }
    return next;
}

std::string ConnectionTeller::accepted(Clock::time_point now) {
    connected_ = true;
    since_ = now;
    if (told_.empty() || againTold_) return {};
    againTold_ = true;
    return "connected to the broker at " + where() + " again";
}

void ConnectionTeller::connectedAt(Clock::time_point now) {
    if (!connected_ || now - since_ < kSteady) return;
    // Held long enough: what goes wrong next is news again, and retries start quick.
    told_.clear();
    againTold_ = false;
    quickCloses_ = 0;
    backOff_ = std::chrono::seconds(1);
}

}  // namespace kova::mqtt
