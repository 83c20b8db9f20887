#include "links/mqtt/mqtt_station.h"

#include <mosquitto.h>

#include <cctype>
#include <cmath>
#include <limits>
#include <ostream>

#include "core/numeric.h"
#include "daq/driver_dispatch.h"
#include "displays/operator_writes.h"
#include "links/mqtt/printable_text.h"
#include "links/records/record_maker.h"
#include "links/records/scan_quality.h"
#include "links/records/utc_time.h"
#include "tags/tag_name_index.h"

namespace kova::mqtt {

namespace {

std::string Trimmed(const std::string& s) {
    std::size_t a = 0, b = s.size();
    while (a < b && std::isspace(static_cast<unsigned char>(s[a]))) ++a;
    while (b > a && std::isspace(static_cast<unsigned char>(s[b - 1]))) --b;
    return s.substr(a, b - a);
}

// A write ignored without a line (the user heard once why).
constexpr const char* kIgnoredQuietly = "-";

std::string Upper(std::string s) {
    for (char& c : s) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return s;
}

}  // namespace

std::string TopicLevelProblem(const std::string& name) {
    if (name.find_first_of("+#") != std::string::npos)
        return "a topic cannot hold the wildcards + and #";
    if (name.find('/') != std::string::npos) return "a / would split its topic";
    for (unsigned char c : name)
        if (c < 0x20 || c == 0x7F) return "it holds control characters";
    return {};
}

MqttStation::MqttStation(MqttLink& link, std::string prefix, std::ostream& errors,
                         ValueFormat format, MqttRecordSender* records)
    : link_(link), prefix_(std::move(prefix)), errors_(errors), format_(format), records_(records) {
    // Every connect (the first and each after the broker came back) sends every value again,
    // so a broker that lost its retained messages gets them back.
    link_.onConnect([this] {
        republish_ = true;
        if (records_) records_->connected();
    });
}

MqttStation::~MqttStation() {
    link_.onConnect({});
}

std::string MqttStation::tagTopic(const std::string& tagName) const {
    return prefix_ + "/tags/" + tagName;
}

void MqttStation::say(const std::string& text) {
    errors_ << "kova-cli: mqtt: " << text << std::endl;
}

void MqttStation::afterTick(Station& st) {
    tellLinkNotices();
    if (link_.connected()) sendAlarmsKept();
    applyWrites(st);
    publishTags(st);
}

void MqttStation::tellLinkNotices() {
    for (const std::string& line : link_.takeNotices()) say(line);
}

void MqttStation::publishAlarm(const std::string& line) {
    if (line.empty()) return;
    // Alarm lines are kept while the broker is away and sent when it is back, up to a
    // bound, so a long outage with a flapping alarm cannot fill memory. They are kept here,
    // not handed to the client, which must not send anything before its connection is
    // accepted.
    if (!link_.connected()) {
        if (alarmsWhileAway_.size() < kAlarmsKeptWhileAway) alarmsWhileAway_.push_back(line);
        return;
    }
    sendAlarmsKept();
    link_.publish(prefix_ + "/alarms", line, false);
}

void MqttStation::sendAlarmsKept() {
    for (const std::string& kept : alarmsWhileAway_)
        link_.publish(prefix_ + "/alarms", kept, false);
    alarmsWhileAway_.clear();
}

void MqttStation::publishTags(const Station& st) {
    // While the broker is away nothing is queued (a week-long outage must not fill memory):
    // the next connect sends every value as it is then.
    // The records that waited while the broker was away go first: history before the present.
    if (!link_.connected() || (records_ && records_->catchingUp())) {
        republish_ = true;
        return;
    }
    const bool all = republish_.exchange(false);
    const bool json = format_ == ValueFormat::Json;
    const links::ScanQuality quality = json ? links::QualityOfScan(st) : links::ScanQuality{};
    const std::string ts =
        json ? std::to_string(links::LocalToUtcMs(st.platform.clock->now())) : std::string();
    for (int n = 1; n <= kTableTags; ++n) {
        const Tag& tag = st.tags[n];
        if (tag.TagName.empty()) continue;
        // A name no topic can carry is never handed to the broker (it could never arrive);
        // the user hears of it once.
        if (const std::string why = TopicLevelProblem(tag.TagName); !why.empty()) {
            if (unpublishedTold_[n] != tag.TagName) {
                unpublishedTold_[n] = tag.TagName;
                say("tag " + std::to_string(n) + " (" + Printable(tag.TagName) +
                    ") is not published: " + why);
            }
            continue;
        }
        // The number text of the log, without its blanks. In JSON with the reading's quality,
        // published when either changed, with the time of the scan that changed it.
        std::string text = json ? links::JsonNumber(tag.Value) : plainNumberText(tag.Value);
        const bool good = quality.good || !links::TagIsReading(st, n);
        if (json) text += good ? " good" : " bad";
        if (!all && text == lastText_[n] && tag.TagName == lastName_[n]) continue;
        const std::string payload = json ? "{\"v\":" + links::JsonNumber(tag.Value) +
                                               ",\"ts\":" + ts + ",\"q\":\"" +
                                               (good ? "good" : "bad") + "\"}"
                                         : text;
        const int rc = link_.publish(tagTopic(tag.TagName), payload, true);
        if (rc == MOSQ_ERR_SUCCESS) {
            lastText_[n] = std::move(text);
            lastName_[n] = tag.TagName;
            ++published_;
        } else if (rc != MOSQ_ERR_NO_CONN && unpublishedTold_[n] != tag.TagName) {
            // Only this tag is tried again at the next tick; the broker being away is no
            // news (the next connect sends every value again).
            unpublishedTold_[n] = tag.TagName;
            say("tag " + std::to_string(n) + " (" + Printable(tag.TagName) +
                ") cannot be published: " + mosquitto_strerror(rc));
        }
    }
}

void MqttStation::applyWrites(Station& st) {
    MqttLink::Taken taken = link_.takeIncoming();
    if (taken.dropped > 0)
        say(std::to_string(taken.dropped) + " writes were dropped: more than " +
            std::to_string(MqttLink::kMaxWritesWaiting) + " arrived between two scans");
    for (const MqttLink::Incoming& in : taken.messages) {
        ++writesSeen_;
        const std::string why = applyWrite(st, in);
        if (why.empty() || why == kIgnoredQuietly) continue;
        // The topic's tail and the payload came from the network: escaped and cut.
        const std::string setPrefix = prefix_ + "/set/";
        const std::string shown = in.topic.rfind(setPrefix, 0) == 0
                                      ? setPrefix + Printable(in.topic.substr(setPrefix.size()))
                                      : Printable(in.topic);
        say(shown + ": " + why);
    }
}

std::string MqttStation::applyWrite(Station& st, const MqttLink::Incoming& in) {
    // A retained write would be applied again at every start of the station (and of every
    // other subscriber): never applied, and said once.
    if (in.retained) {
        if (retainedTold_) return kIgnoredQuietly;
        retainedTold_ = true;
        return "ignored: a retained write is never applied, or it would run again at every "
               "start (clear it by publishing an empty retained message to the topic); "
               "further retained writes are ignored without a word";
    }
    const std::string setPrefix = prefix_ + "/set/";
    if (in.topic.rfind(setPrefix, 0) != 0) return "not a write topic";
    const std::string name = Upper(Trimmed(in.topic.substr(setPrefix.size())));
    const int n = name.empty() || in.topicCut ? 0 : FindTag(st.nameIndex, name);
    if (n < 1 || n > kUserTags) return "refused: there is no tag " + Printable(name) + " to set";
    const Tag& tag = st.tags[n];
    if (tag.Direction != 1 && tag.Direction != 2) return "refused: " + name + " is an input";
    if (in.payloadTooLong)
        return "refused: a payload of " + std::to_string(in.payloadBytes) +
               " bytes is no number (" + std::to_string(MqttLink::kMaxWritePayload) +
               " bytes at most)";
    const std::string& payload = in.payload;
    if (!isNumeric(payload)) return "refused: \"" + Printable(payload) + "\" is not a number";
    const double v = leadingNumber(payload);
    if (!std::isfinite(v) || std::fabs(v) > std::numeric_limits<float>::max())
        return "refused: " + Printable(Trimmed(payload)) + " is out of range for " + name;
    if (tag.Kind == 1) {
        if (v != 0 && v != 1) return "refused: " + name + " is digital and takes 0 or 1";
        OperatorWriteDigital(st, n, v == 1);
    } else {
        OperatorWriteAnalog(st, n, static_cast<float>(v));
    }
    // As the readings screen's timer does: what is pending goes to the module.
    SendPendingOutputs(st);
    return {};
}

}  // namespace kova::mqtt
