#include "core/text_encoding.h"

#include <cstdint>

namespace kova {

namespace {
// Code points of bytes 0x80..0x9F; the five bytes Windows-1252 leaves undefined map to
// the C1 control with the same number.
constexpr std::uint16_t kHigh[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

std::optional<unsigned char> byteFor(std::uint32_t cp) {
    if (cp < 0x80 || (cp >= 0xA0 && cp <= 0xFF)) return static_cast<unsigned char>(cp);
    for (int i = 0; i < 32; ++i)
        if (kHigh[i] == cp) return static_cast<unsigned char>(0x80 + i);
    return std::nullopt;
}

// Writes the code point as UTF-8 at `out` and returns the end; at most 3 bytes, as every
// Windows-1252 character lies below U+10000.
char* putUtf8(char* out, std::uint32_t cp) {
    if (cp < 0x80) {
        *out++ = static_cast<char>(cp);
    } else if (cp < 0x800) {
        *out++ = static_cast<char>(0xC0 | (cp >> 6));
        *out++ = static_cast<char>(0x80 | (cp & 0x3F));
    } else {
        *out++ = static_cast<char>(0xE0 | (cp >> 12));
        *out++ = static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        *out++ = static_cast<char>(0x80 | (cp & 0x3F));
    }
    return out;
}
}  // namespace

std::optional<std::string> Utf8ToCp1252(const std::string& utf8) {
    // Never longer than the UTF-8: one byte per character.
    std::string out(utf8.size(), '\0');
    std::size_t used = 0;
    for (std::size_t i = 0; i < utf8.size();) {
        const auto c = static_cast<unsigned char>(utf8[i]);
        std::uint32_t cp;
        std::size_t len;
        if (c < 0x80) {
            cp = c;
            len = 1;
        } else if ((c & 0xE0) == 0xC0) {
            cp = c & 0x1F;
            len = 2;
        } else if ((c & 0xF0) == 0xE0) {
            cp = c & 0x0F;
            len = 3;
        } else {
            return std::nullopt;  // 4-byte sequences have no Windows-1252 byte anyway
        }
        if (i + len > utf8.size()) return std::nullopt;
        for (std::size_t k = 1; k < len; ++k) {
            const auto cc = static_cast<unsigned char>(utf8[i + k]);
            if ((cc & 0xC0) != 0x80) return std::nullopt;
            cp = (cp << 6) | (cc & 0x3F);
        }
        const auto b = byteFor(cp);
        if (!b) return std::nullopt;
        out[used++] = static_cast<char>(*b);
        i += len;
    }
    out.resize(used);
    return out;
}

std::string Cp1252ToUtf8(std::string_view bytes) {
    // Every setup file load converts each text, so this works in one buffer, not byte by byte.
    std::string out(bytes.size() * 3, '\0');
    char* const begin = out.data();
    char* end = begin;
    for (char ch : bytes) {
        const auto b = static_cast<unsigned char>(ch);
        end = putUtf8(end, b >= 0x80 && b < 0xA0 ? kHigh[b - 0x80] : b);
    }
    out.resize(static_cast<std::size_t>(end - begin));
    return out;
}

std::optional<std::size_t> Cp1252Length(const std::string& utf8) {
    const auto enc = Utf8ToCp1252(utf8);
    if (!enc) return std::nullopt;
    return enc->size();
}

}  // namespace kova
