#include "links/mqtt/printable_text.h"

namespace kova::mqtt {

std::string Printable(std::string_view bytes, std::size_t most) {
    static constexpr char kHex[] = "0123456789ABCDEF";
    std::string out;
    const std::size_t shown = bytes.size() < most ? bytes.size() : most;
    out.reserve(shown + 3);
    for (std::size_t i = 0; i < shown; ++i) {
        const auto c = static_cast<unsigned char>(bytes[i]);
        if (c >= 0x20 && c < 0x7F && c != '\\') {
            out += static_cast<char>(c);
        } else {
            out += "\\x";
            out += kHex[c >> 4];
            out += kHex[c & 0x0F];
        }
    }
    if (bytes.size() > most) out += "...";
    return out;
}

}  // namespace kova::mqtt
