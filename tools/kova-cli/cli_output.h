#pragma once
// What kova-cli writes, checked: a write that fails (a full disk, a closed pipe) is an
// error that names the file, never a silent success.
#include <filesystem>
#include <string>

namespace kova::cli {

// Writes the bytes to standard output and flushes them; false with the reason, naming
// where standard output goes when that can be found ("standard output (/dev/full): ...").
bool WriteStandardOutput(const std::string& bytes, std::string& error);
// Flushes standard output and reports whether everything printed so far reached it.
bool FinishStandardOutput(std::string& error);

// Writes the file anew with exactly these bytes; false with "<file>: cannot ...: <reason>".
bool WriteOutputFile(const std::filesystem::path& file, const std::string& bytes,
                     std::string& error);

}  // namespace kova::cli
