#include "logging/log_file.h"

#include <cerrno>
#include <system_error>
#include <utility>

#ifdef _WIN32
#include <io.h>

#include <filesystem>
#else
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace kova {

namespace {
std::string reasonOf(int err) {
    if (err == 0) return "unknown error";
    return std::generic_category().message(err);
}

// The file's length on disk, or -1 when it cannot be told.
long long lengthOf(std::FILE* f) {
#ifdef _WIN32
    return _filelengthi64(_fileno(f));
#else
    struct stat info {};
    return fstat(fileno(f), &info) == 0 ? static_cast<long long>(info.st_size) : -1;
#endif
}

// Cuts off what a failed write left of its record, so the file ends with a whole line.
void cutBack(std::FILE* f, long long length) {
    if (length < 0) return;
        // Nothing more can be done when this fails too: the reason of the write is reported.
#ifdef _WIN32
    if (_chsize_s(_fileno(f), length) != 0) return;
#else
    if (ftruncate(fileno(f), static_cast<off_t>(length)) != 0) return;
#endif
}
}  // namespace

std::string NativeLogPath(const std::string& path) {
#ifdef _WIN32
    return path;
#else
    std::string p = path;
    for (char& c : p)
        if (c == '\\') c = '/';
    return p;
#endif
}

LogFile::LogFile(LogFile&& other) noexcept
    : file_(std::exchange(other.file_, nullptr)),
      path_(std::move(other.path_)),
      device_(other.device_),
      inode_(other.inode_) {}

LogFile& LogFile::operator=(LogFile&& other) noexcept {
    if (this != &other) {
        close();
        file_ = std::exchange(other.file_, nullptr);
        path_ = std::move(other.path_);
        device_ = other.device_;
        inode_ = other.inode_;
    }
    return *this;
}

std::string LogFile::open(const std::string& path, bool truncate) {
    close();
    if (path.empty()) return "no file name has been entered";
    errno = 0;
#ifdef _WIN32
    const std::filesystem::path native(
        std::u8string(reinterpret_cast<const char8_t*>(path.data()), path.size()));
    std::FILE* f = _wfopen(native.c_str(), truncate ? L"wb" : L"ab");
#else
    // Opened without waiting, so a FIFO that nobody reads is an error rather than a hang.
    const int flags = O_WRONLY | O_CREAT | O_NONBLOCK | (truncate ? O_TRUNC : O_APPEND);
    const int fd = ::open(NativeLogPath(path).c_str(), flags, 0666);
    if (fd < 0) return reasonOf(errno);
    ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) & ~O_NONBLOCK);
    std::FILE* f = ::fdopen(fd, truncate ? "wb" : "ab");
    if (f == nullptr) {
        const int err = errno;
        ::close(fd);
        return reasonOf(err);
    }
#endif
    if (f == nullptr) return reasonOf(errno);
    // Unbuffered: every record goes to the operating system in one write, and nothing of a
    // failed one waits in a buffer to be written later.
    std::setvbuf(f, nullptr, _IONBF, 0);
    file_ = f;
    path_ = path;
#ifndef _WIN32
    struct stat info {};
    if (fstat(fileno(f), &info) == 0) {
        device_ = static_cast<unsigned long long>(info.st_dev);
        inode_ = static_cast<unsigned long long>(info.st_ino);
    }
#endif
    return {};
}

bool LogFile::stillAtItsPath() const {
    if (file_ == nullptr) return true;
#ifdef _WIN32
    return true;
#else
    struct stat info {};
    if (::stat(NativeLogPath(path_).c_str(), &info) != 0)
        return errno != ENOENT && errno != ENOTDIR;  // gone, or its folder is
    return static_cast<unsigned long long>(info.st_dev) == device_ &&
           static_cast<unsigned long long>(info.st_ino) == inode_;
#endif
}

bool LogFile::isEmpty() const {
    return file_ != nullptr && lengthOf(file_) == 0;
}

std::string LogFile::write(const std::string& bytes) {
    if (file_ == nullptr) return "the file is not open";
    const long long before = lengthOf(file_);
    errno = 0;
    int err = 0;
    if (std::fwrite(bytes.data(), 1, bytes.size(), file_) != bytes.size())
        err = errno ? errno : EIO;
    else if (std::fflush(file_) != 0)
        err = errno ? errno : EIO;
    if (err == 0) return {};
    // A full disk or a size limit may let part of the record through: the lines already
    // written stay, the broken one goes.
    std::clearerr(file_);
    cutBack(file_, before);
    return reasonOf(err);
}

void LogFile::close() {
    if (file_ != nullptr) {
        std::fclose(file_);
        file_ = nullptr;
    }
    path_.clear();
}

}  // namespace kova
