#include "links/sparkplug/node_command.h"

#include <charconv>
#include <cstdint>

#include "links/sparkplug/edge_node.h"
#include "sparkplug_b.pb.h"

namespace kova::sparkplug {

namespace {

using wire::Payload;

constexpr std::size_t kMaxRefusalLines = 8;

template <typename T>
std::string NumberText(T v) {
    char buf[64];
    const auto [end, ec] = std::to_chars(buf, buf + sizeof buf, v);
    return ec == std::errc() ? std::string(buf, end) : std::string();
}

// The value a metric carries as the text an operator would type; false when it has none a
// tag can take.
bool ValueText(const Payload::Metric& m, std::string& text, std::string& why) {
    if (m.is_null()) {
        why = "it carries no value (null)";
        return false;
    }
    switch (m.value_case()) {
        case Payload::Metric::kBooleanValue:
            text = m.boolean_value() ? "1" : "0";
            return true;
        case Payload::Metric::kFloatValue:
            text = NumberText(m.float_value());
            return true;
        case Payload::Metric::kDoubleValue:
            text = NumberText(m.double_value());
            return true;
        case Payload::Metric::kIntValue:
            // Int8..Int32 travel as the bits of a 32-bit two's complement number.
            if (m.datatype() == wire::Int8 || m.datatype() == wire::Int16 ||
                m.datatype() == wire::Int32)
                text = NumberText(static_cast<std::int32_t>(m.int_value()));
            else
                text = NumberText(m.int_value());
            return true;
        case Payload::Metric::kLongValue:
            if (m.datatype() == wire::Int64 || m.datatype() == wire::DateTime)
                text = NumberText(static_cast<std::int64_t>(m.long_value()));
            else
                text = NumberText(m.long_value());
            return true;
        case Payload::Metric::kStringValue:
            text = m.string_value();
            return true;
        case Payload::Metric::VALUE_NOT_SET:
            why = "it carries no value";
            return false;
        default:
            why = "its value is no number (data set, template or bytes)";
            return false;
    }
}

}  // namespace

NodeCommand ReadNodeCommand(const std::string& payload, std::size_t payloadBytes,
                            bool writesAllowed, const std::string& source) {
    NodeCommand out;
    // A payload of many bad metrics still makes only a few lines.
    std::size_t unsaid = 0;
    auto refuse = [&](const std::string& why) {
        if (out.refusals.size() < kMaxRefusalLines)
            out.refusals.push_back(source + ": refused: " + why);
        else
            ++unsaid;
    };
    if (payloadBytes > kMaxCommandPayload) {
        refuse("a payload of " + std::to_string(payloadBytes) + " bytes is too large (" +
               std::to_string(kMaxCommandPayload) + " bytes at most)");
        return out;
    }
    Payload p;
    if (!p.ParseFromString(payload)) {
        refuse("the payload is not a Sparkplug B payload");
        return out;
    }
    std::size_t skipped = 0;
    for (const Payload::Metric& m : p.metrics()) {
        if (!m.has_name()) {
            refuse("a metric without a name (this node gives no aliases: name the metric)");
            continue;
        }
        const std::string shown = links::PrintableText(m.name(), links::kMaxCommandTextBytes);
        if (m.name() == kRebirthMetric) {
            if (m.value_case() != Payload::Metric::kBooleanValue) {
                refuse(std::string(kRebirthMetric) + " takes a Boolean");
            } else if (m.boolean_value()) {
                out.rebirth = true;
            }
            continue;
        }
        if (m.name().rfind("Node Control/", 0) == 0) {
            refuse(shown + " is not a command this node knows");
            continue;
        }
        if (!writesAllowed) {
            refuse("writes to " + shown +
                   " are not taken (the station runs without --mqtt-writes)");
            continue;
        }
        std::string text, why;
        if (!ValueText(m, text, why)) {
            refuse(shown + ": " + why);
            continue;
        }
        if (out.writes.size() >= kMaxWritesPerCommand) {
            ++skipped;
            continue;
        }
        links::LinkCommand c;
        c.kind = links::LinkCommand::Kind::Write;
        c.source = source;
        c.tagName = m.name();
        c.value = text;
        out.writes.push_back(std::move(c));
    }
    if (skipped > 0)
        refuse(std::to_string(skipped) + " more writes: one command carries " +
               std::to_string(kMaxWritesPerCommand) + " at most");
    if (unsaid > 0)
        out.refusals.push_back(source + ": refused: " + std::to_string(unsaid) +
                               " more metrics of this command");
    return out;
}

}  // namespace kova::sparkplug
