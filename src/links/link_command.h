#pragma once
// What a link asks the station to do, and what came of it. Commands come from outside
// (a web page, a broker) and are applied on the scan's thread with the readings screens'
// operator-write rules; each gives one line that names its source.
#include <string>

namespace kova {
struct Station;
}

namespace kova::links {

struct LinkCommand {
    enum class Kind {
        Write,              // tagName = value, as an operator write from a readings screen
        AcknowledgeAlarms,  // the alarm list's "&Acknowledge"
        ResetMinMax,        // the min/max window's "&Reset Min/Max"
    };
    Kind kind = Kind::Write;
    std::string source;   // who asks, as the output line names it ("web user ann from ...")
    std::string tagName;  // Write: the tag, as sent (checked here)
    std::string value;    // Write: the value text, as sent (checked here)
};

struct CommandResult {
    bool accepted = false;
    std::string line;  // "<source>: <what was done>" or "<source>: refused: <why>"
};

// Longest tag name and value text a command may carry; longer ones are refused before
// they are looked at.
inline constexpr std::size_t kMaxCommandTextBytes = 64;

// Applies one command to the station (on the scan's thread). A write must name a tag shown
// on a readings screen whose direction is output or variable: an analog line takes a
// number that fits a single-precision value, a digital line takes 0 or 1. Writes reach the
// output image and pending flags as a readings screen's do, and pending outputs are sent.
CommandResult ApplyLinkCommand(Station& st, const LinkCommand& command);

// Text from outside made fit for one output line: control characters and bytes that are
// not UTF-8 shown as \xNN, cut to `maxBytes` (with "...").
std::string PrintableText(const std::string& text, std::size_t maxBytes = 80);

}  // namespace kova::links
