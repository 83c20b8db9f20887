#include "cli_output.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <system_error>

#ifndef _WIN32
#include <fcntl.h>
#include <unistd.h>
#endif

namespace kova::cli {

namespace {
std::string standardOutputName() {
    std::string name = "standard output";
#ifdef __linux__
    std::error_code ec;
    const auto target = std::filesystem::read_symlink("/proc/self/fd/1", ec);
    if (!ec && !target.empty()) name += " (" + target.string() + ")";
#endif
    return name;
}

std::string reason(int err) {
    return err != 0 ? std::strerror(err) : "write error";
}
}  // namespace

bool FinishStandardOutput(std::string& error) {
    errno = 0;
    const bool flushed = std::fflush(stdout) == 0;
    const int err = errno;
    if (flushed && std::ferror(stdout) == 0) return true;
    error = standardOutputName() + ": cannot write: " + reason(err);
    return false;
}

bool WriteStandardOutput(const std::string& bytes, std::string& error) {
    errno = 0;
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), stdout) == bytes.size();
    const int err = errno;
    if (!written) {
        error = standardOutputName() + ": cannot write: " + reason(err);
        return false;
    }
    return FinishStandardOutput(error);
}

namespace {
// Opens for writing without waiting: a FIFO nobody reads is an error, not a hang.
std::FILE* openForWriting(const std::filesystem::path& file) {
#ifdef _WIN32
    return _wfopen(file.c_str(), L"wb");
#else
    const int fd = ::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NONBLOCK, 0666);
    if (fd < 0) return nullptr;
    ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) & ~O_NONBLOCK);
    std::FILE* f = ::fdopen(fd, "wb");
    if (!f) ::close(fd);
    return f;
#endif
}
}  // namespace

bool WriteOutputFile(const std::filesystem::path& file, const std::string& bytes,
                     std::string& error) {
    errno = 0;
    std::FILE* f = openForWriting(file);
    if (!f) {
        error = file.string() + ": cannot create: " + reason(errno);
        return false;
    }
    const bool written =
        std::fwrite(bytes.data(), 1, bytes.size(), f) == bytes.size() && std::fflush(f) == 0;
    const int err = errno;
    const bool closed = std::fclose(f) == 0;
    if (!written || !closed) {
        error = file.string() + ": cannot write: " + reason(written ? errno : err);
        return false;
    }
    return true;
}

}  // namespace kova::cli
