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
    // False when the path no longer names the open file: it was renamed or deleted (and
    // perhaps another file put in its place) while the file was open, so whatever is written
    // now is lost to anyone who looks at the path. True while that cannot be told. On
    // Windows an open log file can be neither renamed nor deleted, so this is always true.
    bool stillAtItsPath() const;
    // True when the open file holds no bytes.
    bool isEmpty() const;
    // The path as it was given to open().
    const std::string& path() const { return path_; }

  private:
    std::FILE* file_ = nullptr;
    std::string path_;
    // Which file was opened (device and inode), to tell it from another under the same path.
    unsigned long long device_ = 0;
    unsigned long long inode_ = 0;
};

// The path the operating system is given for a log file name held in memory.
std::string NativeLogPath(const std::string& path);

}  // namespace kova
