#include "mqtt/mqtt_station.h"

#include <cctype>
#include <cmath>
#include <limits>
#include <ostream>

#include "core/numeric.h"
#include "daq/driver_dispatch.h"
#include "displays/operator_writes.h"
#include "tags/tag_name_index.h"

namespace kova::mqtt {

namespace {

std::string Trimmed(const std::string& s) {
    std::size_t a = 0, b = s.size();
    while (a < b && std::isspace(static_cast<unsigned char>(s[a]))) ++a;
    while (b > a && std::isspace(static_cast<unsigned char>(s[b - 1]))) --b;
    return s.substr(a, b - a);
}

std::string Upper(std::string s) {
    for (char& c : s) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return s;
}

}  // namespace

MqttStation::MqttStation(MqttLink& link, std::string prefix, std::ostream& errors)
    : link_(link), prefix_(std::move(prefix)), errors_(errors) {
    // Every connect (the first and each after the broker came back) sends every value again,
    // so a broker that lost its retained messages gets them back.
    link_.onConnect([this] {
        republish_ = true;
        alarmsWhileAway_ = 0;
    });
}

MqttStation::~MqttStation() {
    link_.onConnect({});
}

std::string MqttStation::tagTopic(const std::string& tagName) const {
    return prefix_ + "/tags/" + tagName;
}

void MqttStation::afterTick(Station& st) {
    applyWrites(st);
    publishTags(st);
}

void MqttStation::publishAlarm(const std::string& line) {
    if (line.empty()) return;
    // Alarm lines are kept while the broker is away and sent when it is back, up to a
    // bound, so a long outage with a flapping alarm cannot fill memory.
    if (!link_.connected()) {
        if (alarmsWhileAway_ >= kAlarmsKeptWhileAway) return;
        ++alarmsWhileAway_;
    }
    link_.publish(prefix_ + "/alarms", line, false);
}

void MqttStation::publishTags(const Station& st) {
    // While the broker is away nothing is queued (a week-long outage must not fill memory):
    // the next connect sends every value as it is then.
    if (!link_.connected()) {
        republish_ = true;
        return;
    }
    const bool all = republish_.exchange(false);
    for (int n = 1; n <= kTableTags; ++n) {
        const Tag& tag = st.tags[n];
        if (tag.TagName.empty()) continue;
        // The number text of the log, without its blanks.
        std::string text = plainNumberText(tag.Value);
        if (!all && text == lastText_[n] && tag.TagName == lastName_[n]) continue;
        if (link_.publish(tagTopic(tag.TagName), text, true)) {
            lastText_[n] = std::move(text);
            lastName_[n] = tag.TagName;
            ++published_;
        } else {
            // Not queued (broker away): the next connect sends everything again.
            republish_ = true;
        }
    }
}

void MqttStation::applyWrites(Station& st) {
    for (const MqttLink::Incoming& in : link_.takeIncoming()) {
        ++writesSeen_;
        const std::string why = applyWrite(st, in.topic, in.payload);
        if (!why.empty()) errors_ << "kova-cli: mqtt: " << in.topic << ": " << why << std::endl;
    }
}

std::string MqttStation::applyWrite(Station& st, const std::string& topic,
                                    const std::string& payload) {
    const std::string setPrefix = prefix_ + "/set/";
    if (topic.rfind(setPrefix, 0) != 0) return "not a write topic";
    const std::string name = Upper(Trimmed(topic.substr(setPrefix.size())));
    const int n = name.empty() ? 0 : FindTag(st.nameIndex, name);
    if (n < 1 || n > kUserTags) return "refused: there is no tag " + name + " to set";
    const Tag& tag = st.tags[n];
    if (tag.Direction != 1 && tag.Direction != 2) return "refused: " + name + " is an input";
    if (!isNumeric(payload)) return "refused: \"" + payload + "\" is not a number";
    const double v = leadingNumber(payload);
    if (!std::isfinite(v) || std::fabs(v) > std::numeric_limits<float>::max())
        return "refused: " + Trimmed(payload) + " is out of range for " + name;
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
