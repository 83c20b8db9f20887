#include "links/link_command.h"

#include <cctype>
#include <cfloat>
#include <cmath>
#include <exception>

#include "alarms/alarm_list.h"
#include "core/numeric.h"
#include "core/station.h"
#include "daq/driver_dispatch.h"
#include "displays/min_max.h"
#include "displays/operator_writes.h"
#include "tags/tag_name_index.h"

namespace kova::links {

namespace {

constexpr int kAnalogLines = 10;

std::string trimmedUpper(const std::string& s) {
    std::size_t a = 0, b = s.size();
    while (a < b && std::isspace(static_cast<unsigned char>(s[a]))) ++a;
    while (b > a && std::isspace(static_cast<unsigned char>(s[b - 1]))) --b;
    std::string out = s.substr(a, b - a);
    for (char& c : out) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return out;
}

// Which kind of readings-screen line shows the tag: a value box (analog line) or a tick box
// (digital line). A tag on no screen cannot be written, as on the screens themselves.
struct ScreenPlaces {
    bool analogLine = false;
    bool digitalLine = false;
};

ScreenPlaces placesOf(const Station& st, int tagNumber) {
    ScreenPlaces p;
    for (int screen = 1; screen <= 10; ++screen)
        for (int line = 1; line <= 20; ++line)
            if (st.screens.Lines(screen, line).TagNumber == tagNumber)
                (line <= kAnalogLines ? p.analogLine : p.digitalLine) = true;
    return p;
}

CommandResult refused(const LinkCommand& c, const std::string& why) {
    return {false, c.source + ": refused: " + why};
}

CommandResult write(Station& st, const LinkCommand& c) {
    if (c.tagName.size() > kMaxCommandTextBytes) return refused(c, "the tag name is too long");
    if (c.value.size() > kMaxCommandTextBytes) return refused(c, "the value is too long");
    const std::string name = trimmedUpper(c.tagName);
    const std::string shown = PrintableText(name);
    const int n = name.empty() ? 0 : FindTag(st.nameIndex, name);
    if (n < 1 || n > kTableTags) return refused(c, "there is no tag " + shown);
    const Tag& tag = st.tags[n];
    const ScreenPlaces places = placesOf(st, n);
    if (!places.analogLine && !places.digitalLine)
        return refused(c, shown + " is on no readings screen");
    if (tag.Direction != kOutput && tag.Direction != kVariable)
        return refused(c, shown + " is an input");
    const std::string valueShown = PrintableText(c.value);
    if (!isNumeric(c.value)) return refused(c, "\"" + valueShown + "\" is not a number");
    const double v = leadingNumber(c.value);
    if (!std::isfinite(v) || std::fabs(v) > static_cast<double>(FLT_MAX))
        return refused(c, valueShown + " is out of range for " + shown);
    if (places.digitalLine && (v == 0 || v == 1)) {
        OperatorWriteDigital(st, n, v == 1);
    } else if (places.analogLine) {
        OperatorWriteAnalog(st, n, static_cast<float>(v));
    } else {
        return refused(c, shown + " is digital and takes 0 or 1");
    }
    // As the readings screen's timer does: what is pending goes to the module.
    SendPendingOutputs(st);
    return {true, c.source + ": " + shown + " set to " + plainNumberText(tag.Value)};
}

}  // namespace

CommandResult ApplyLinkCommand(Station& st, const LinkCommand& c) {
    try {
        switch (c.kind) {
            case LinkCommand::Kind::Write:
                return write(st, c);
            case LinkCommand::Kind::AcknowledgeAlarms:
                AcknowledgeAlarms(st);
                return {true, c.source + ": alarms acknowledged"};
            case LinkCommand::Kind::ResetMinMax:
                ResetMinMax(st);
                return {true, c.source + ": min/max reset"};
        }
        return refused(c, "unknown command");
    } catch (const std::exception& e) {
        // A fault of the write itself (an output whose slope is 0): the station goes on.
        return refused(c, e.what());
    }
}

std::string PrintableText(const std::string& text, std::size_t maxBytes) {
    std::string out;
    const auto hex = [&out](unsigned char b) {
        static constexpr char kDigits[] = "0123456789ABCDEF";
        out += "\\x";
        out += kDigits[b >> 4];
        out += kDigits[b & 15];
    };
    std::size_t i = 0;
    while (i < text.size()) {
        if (out.size() >= maxBytes) {
            out += "...";
            break;
        }
        const auto b = static_cast<unsigned char>(text[i]);
        if (b < 0x20 || b == 0x7F) {
            hex(b);
            ++i;
            continue;
        }
        if (b < 0x80) {
            out += static_cast<char>(b);
            ++i;
            continue;
        }
        // A whole UTF-8 sequence passes; anything else is shown byte by byte.
        const std::size_t len = b >= 0xF0 && b < 0xF5 ? 4 : b >= 0xE0 ? 3 : b >= 0xC2 ? 2 : 0;
        bool ok = len > 0 && i + len <= text.size();
        for (std::size_t k = 1; ok && k < len; ++k)
            ok = (static_cast<unsigned char>(text[i + k]) & 0xC0) == 0x80;
        if (ok) {
            out.append(text, i, len);
            i += len;
        } else {
            hex(b);
            ++i;
        }
    }
    return out;
}

}  // namespace kova::links
