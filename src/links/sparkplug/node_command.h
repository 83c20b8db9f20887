#pragma once
// What a host asks of the edge node in an NCMD: "Node Control/Rebirth" true asks for a new
// birth; any other metric names a tag to set, which goes to the station as an operator
// write from a readings screen (only when the station takes writes). Everything here came
// from the network: the payload is bounded before it is read, and every line shows what it
// quotes escaped and cut.
#include <cstddef>
#include <string>
#include <vector>

#include "links/link_command.h"

namespace kova::sparkplug {

// The largest NCMD payload read; a larger one is refused without being copied.
inline constexpr std::size_t kMaxCommandPayload = 65536;
// The most writes one NCMD may carry (the station's command inbox holds as many).
inline constexpr std::size_t kMaxWritesPerCommand = 32;

struct NodeCommand {
    bool rebirth = false;
    std::vector<links::LinkCommand> writes;  // in the payload's order
    std::vector<std::string> refusals;       // one line each: "<source>: refused: <why>"
};

// `payload` holds the message when it was not over kMaxCommandPayload (`payloadBytes` is
// its real size either way). `source` names the sender in every line and write.
NodeCommand ReadNodeCommand(const std::string& payload, std::size_t payloadBytes,
                            bool writesAllowed, const std::string& source);

}  // namespace kova::sparkplug
