#pragma once
#include <filesystem>
#include <string>

namespace kova {

// Writes the bytes to a temporary file beside the target, flushes it and renames it over
// the target, so a crash never leaves a half-written file. Faults (File) naming the file,
// also when the target exists but is not a plain file (a device, a FIFO), which is never
// replaced.
void WriteFileAtomically(const std::filesystem::path& target, const std::string& bytes);

// Reads a whole plain file of at most maxBytes; false with a reason naming the file when
// it cannot be read, is larger, or is not a plain file (a FIFO, a device).
bool ReadWholeFile(const std::filesystem::path& path, std::string& bytes, std::string& error,
                   std::size_t maxBytes = 64u << 20);

}  // namespace kova
