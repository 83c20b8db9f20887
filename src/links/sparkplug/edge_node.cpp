#include "links/sparkplug/edge_node.h"

#include <cstring>

#include "links/link_command.h"
#include "links/records/utc_time.h"
#include "sparkplug_b.pb.h"

namespace kova::sparkplug {

namespace {

using wire::Payload;

std::uint32_t Bits(float v) {
    std::uint32_t b;
    std::memcpy(&b, &v, sizeof b);
    return b;
}

// Protobuf text must be UTF-8, and a name is no name with control characters in it.
bool CleanText(const std::string& text) {
    return links::PrintableText(text, text.size() + 1) == text;
}

void SetValue(Payload::Metric& m, const EdgeNode::MetricTag& t, float value) {
    if (t.digital)
        m.set_boolean_value(value != 0);
    else
        m.set_float_value(value);
}

std::string Encoded(const Payload& p) {
    std::string out;
    p.SerializeToString(&out);
    return out;
}

}  // namespace

std::uint64_t UtcMillis(const LocalDateTime& t) {
    // The same reading of the station's local time as the records and JSON values carry,
    // so a metric and the record of the same scan have the same time stamp.
    const std::int64_t ms = links::LocalToUtcMs(t);
    return ms < 0 ? 0 : static_cast<std::uint64_t>(ms);
}

std::string DeathPayload(std::uint8_t bdSeq, std::uint64_t timestamp) {
    Payload p;
    p.set_timestamp(timestamp);
    Payload::Metric* m = p.add_metrics();
    m->set_name(kBdSeqMetric);
    m->set_timestamp(timestamp);
    m->set_datatype(wire::Int64);
    m->set_long_value(bdSeq);
    return Encoded(p);
}

std::vector<EdgeNode::MetricTag> EdgeNode::metricsOf(const links::StationSnapshot& s) {
    std::vector<MetricTag> out;
    if (!s.layout) return out;
    for (int n = 1; n <= kTableTags; ++n) {
        const links::TagInfo& tag = s.layout->tags[n];
        if (tag.TagName.empty()) continue;
        if (!CleanText(tag.TagName)) {
            bool told = false;
            for (const std::string& t : told_) told = told || t == tag.TagName;
            if (!told) {
                told_.push_back(tag.TagName);
                notices_.push_back("tag " + std::to_string(n) + " (" +
                                   links::PrintableText(tag.TagName) +
                                   ") is not published: a metric name cannot hold control "
                                   "characters or bytes that are not UTF-8");
            }
            continue;
        }
        out.push_back({n, tag.TagName, tag.Kind == kDigital, tag.Units});
    }
    return out;
}

std::uint8_t EdgeNode::nextSeq() {
    seq_ = static_cast<std::uint8_t>(seq_ + 1);  // 255 is followed by 0
    return seq_;
}

std::string EdgeNode::birth(const links::StationSnapshot& s, std::uint8_t bdSeq) {
    metrics_ = metricsOf(s);
    layoutVersion_ = s.layoutVersion;
    layout_ = s.layout.get();
    seq_ = 0;
    const std::uint64_t now = UtcMillis(s.time);
    Payload p;
    p.set_timestamp(now);
    p.set_seq(0);
    Payload::Metric* bd = p.add_metrics();
    bd->set_name(kBdSeqMetric);
    bd->set_timestamp(now);
    bd->set_datatype(wire::Int64);
    bd->set_long_value(bdSeq);
    Payload::Metric* rebirth = p.add_metrics();
    rebirth->set_name(kRebirthMetric);
    rebirth->set_timestamp(now);
    rebirth->set_datatype(wire::Boolean);
    rebirth->set_boolean_value(false);
    sentBits_.assign(metrics_.size(), 0);
    for (std::size_t i = 0; i < metrics_.size(); ++i) {
        const MetricTag& t = metrics_[i];
        const float value = s.values[t.number];
        Payload::Metric* m = p.add_metrics();
        m->set_name(t.name);
        m->set_timestamp(now);
        m->set_datatype(t.digital ? wire::Boolean : wire::Float);
        SetValue(*m, t, value);
        if (!t.units.empty() && CleanText(t.units)) {
            Payload::PropertySet* props = m->mutable_properties();
            props->add_keys(kUnitsProperty);
            Payload::PropertyValue* units = props->add_values();
            units->set_type(wire::String);
            units->set_string_value(t.units);
        }
        sentBits_[i] = Bits(value);
    }
    return Encoded(p);
}

std::string EdgeNode::data(const links::StationSnapshot& s) {
    const std::uint64_t now = UtcMillis(s.time);
    Payload p;
    for (std::size_t i = 0; i < metrics_.size(); ++i) {
        const MetricTag& t = metrics_[i];
        const float value = s.values[t.number];
        if (Bits(value) == sentBits_[i]) continue;
        sentBits_[i] = Bits(value);
        Payload::Metric* m = p.add_metrics();
        m->set_name(t.name);
        m->set_timestamp(now);
        m->set_datatype(t.digital ? wire::Boolean : wire::Float);
        SetValue(*m, t, value);
    }
    if (p.metrics_size() == 0) return {};
    p.set_timestamp(now);
    p.set_seq(nextSeq());
    return Encoded(p);
}

std::string EdgeNode::history(const std::vector<HeldValue>& values, std::uint64_t timestamp) {
    Payload p;
    for (const HeldValue& v : values)
        for (const MetricTag& t : metrics_) {
            if (t.name != v.tagName) continue;
            Payload::Metric* m = p.add_metrics();
            m->set_name(t.name);
            m->set_timestamp(timestamp);
            m->set_datatype(t.digital ? wire::Boolean : wire::Float);
            m->set_is_historical(true);
            SetValue(*m, t, v.value);
        }
    if (p.metrics_size() == 0) return {};
    p.set_timestamp(timestamp);
    p.set_seq(nextSeq());
    return Encoded(p);
}

bool EdgeNode::needsRebirth(const links::StationSnapshot& s) {
    // The layout is shared between snapshots until it changes: most ticks end here.
    if (s.layout.get() == layout_ && s.layoutVersion == layoutVersion_) return false;
    if (metricsOf(s) != metrics_) return true;
    layout_ = s.layout.get();
    layoutVersion_ = s.layoutVersion;
    return false;
}

std::vector<std::string> EdgeNode::takeNotices() {
    std::vector<std::string> out;
    out.swap(notices_);
    return out;
}

}  // namespace kova::sparkplug
