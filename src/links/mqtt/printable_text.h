#pragma once
// Text that came from the network, made safe to print on one line of a terminal or a log:
// control characters (line breaks and terminal escapes among them), bytes beyond ASCII and
// the backslash itself are written as \xNN, and a long text is cut.
#include <cstddef>
#include <string>
#include <string_view>

namespace kova::mqtt {

inline constexpr std::size_t kShownBytes = 64;

// The first `most` bytes of the text, escaped; "..." follows when the text was longer.
std::string Printable(std::string_view bytes, std::size_t most = kShownBytes);

}  // namespace kova::mqtt
