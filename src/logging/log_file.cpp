#include "logging/log_file.h"

#include <cerrno>
#include <system_error>
#include <utility>

#ifdef _WIN32
#include <filesystem>
#else
#include <fcntl.h>
#include <unistd.h>
#endif

namespace kova {

namespace {
std::string reasonOf(int err) {
    if (err == 0) return "unknown error";
    return std::generic_category().message(err);
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
    : file_(std::exchange(other.file_, nullptr)), path_(std::move(other.path_)) {}

LogFile& LogFile::operator=(LogFile&& other) noexcept {
    if (this != &other) {
        close();
        file_ = std::exchange(other.file_, nullptr);
        path_ = std::move(other.path_);
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
    file_ = f;
    path_ = path;
    return {};
}

std::string LogFile::write(const std::string& bytes) {
    if (file_ == nullptr) return "the file is not open";
    errno = 0;
    const std::size_t n = std::fwrite(bytes.data(), 1, bytes.size(), file_);
    if (n != bytes.size()) {
        const int err = errno;
        std::clearerr(file_);
        return reasonOf(err);
    }
    errno = 0;
    if (std::fflush(file_) != 0) {
        const int err = errno;
        std::clearerr(file_);
        return reasonOf(err);
    }
    return {};
}

void LogFile::close() {
    if (file_ != nullptr) {
        std::fclose(file_);
        file_ = nullptr;
    }
    path_.clear();
}

}  // namespace kova
