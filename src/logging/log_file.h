#pragma once
// The open log file: one handle, closed when it goes out of scope. Every write goes to the
// operating system at once, so a killed program loses at most the record being written.
#include <cstdio>
#include <string>

namespace kova {

class LogFile {
  public:
    LogFile() = default;
    ~LogFile() { close(); }
    LogFile(const LogFile&) = delete;
    LogFile& operator=(const LogFile&) = delete;
    LogFile(LogFile&& other) noexcept;
    LogFile& operator=(LogFile&& other) noexcept;

    // Opens the file named by a UTF-8 path, truncating it or appending to it (creating it
    // when missing). Returns "" on success, otherwise the reason (the file stays closed).
    // Outside Windows a "\" in the path separates folders just as "/" does.
    std::string open(const std::string& path, bool truncate);
    // Writes the bytes and flushes them to the operating system. Returns "" or the reason.
    std::string write(const std::string& bytes);
    void close();
    bool isOpen() const { return file_ != nullptr; }
    // The path as it was given to open().
    const std::string& path() const { return path_; }

  private:
    std::FILE* file_ = nullptr;
    std::string path_;
};

// The path the operating system is given for a log file name held in memory.
std::string NativeLogPath(const std::string& path);

}  // namespace kova
