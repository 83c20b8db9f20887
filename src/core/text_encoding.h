#pragma once
// Text is UTF-8 in memory and 8-bit Windows-1252 in the exchange files (setup file,
// logs, calibration).
#include <optional>
#include <string>
#include <string_view>

namespace kova {

// UTF-8 to Windows-1252; nullopt when a character has no Windows-1252 byte (or the
// UTF-8 is malformed). Editors refuse such text rather than mangle it.
std::optional<std::string> Utf8ToCp1252(const std::string& utf8);
// Windows-1252 to UTF-8 (the five undefined bytes map to U+0081 etc. so nothing is lost).
std::string Cp1252ToUtf8(std::string_view bytes);
// The number of bytes a text takes in the files; nullopt when it cannot be encoded.
std::optional<std::size_t> Cp1252Length(const std::string& utf8);

}  // namespace kova
