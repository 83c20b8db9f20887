#include "core/plain_file.h"

#include <cerrno>

#include <sys/stat.h>
#ifndef _WIN32
#include <fcntl.h>
#include <unistd.h>
#endif

namespace kova {

namespace {

#ifdef _WIN32
using StatInfo = struct _stat64;
bool isPlain(const StatInfo& s) {
    return (s.st_mode & _S_IFMT) == _S_IFREG;
}
std::string kindOf(const StatInfo& s) {
    if ((s.st_mode & _S_IFMT) == _S_IFDIR) return "a folder";
    if ((s.st_mode & _S_IFMT) == _S_IFCHR) return "a device";
    return "not a plain file";
}
#else
using StatInfo = struct stat;
bool isPlain(const StatInfo& s) {
    return S_ISREG(s.st_mode);
}
std::string kindOf(const StatInfo& s) {
    if (S_ISDIR(s.st_mode)) return "a folder";
    if (S_ISFIFO(s.st_mode)) return "a FIFO (named pipe)";
    if (S_ISCHR(s.st_mode) || S_ISBLK(s.st_mode)) return "a device";
    if (S_ISSOCK(s.st_mode)) return "a socket";
    return "not a plain file";
}
#endif

OpenedForReading failed(int err) {
    OpenedForReading r;
    r.error = err != 0 ? err : EIO;
    return r;
}

OpenedForReading notPlain(const StatInfo& s) {
    OpenedForReading r;
    r.notPlain = kindOf(s);
    return r;
}

}  // namespace

OpenedForReading OpenPlainFileForReading(const std::filesystem::path& path) {
#ifdef _WIN32
    StatInfo before{};
    if (_wstat64(path.c_str(), &before) != 0) return failed(errno);
    if (!isPlain(before)) return notPlain(before);
    std::FILE* f = _wfopen(path.c_str(), L"rb");
    if (f == nullptr) return failed(errno);
    StatInfo now{};
    if (_fstat64(_fileno(f), &now) != 0 || !isPlain(now)) {
        const int err = errno;
        std::fclose(f);
        return isPlain(now) ? failed(err) : notPlain(now);
    }
    OpenedForReading r;
    r.file = f;
    r.size = static_cast<unsigned long long>(now.st_size);
    return r;
#else
    // Looked at before the open, so that a device is never opened at all ...
    StatInfo before{};
    if (::stat(path.c_str(), &before) != 0) return failed(errno);
    if (!isPlain(before)) return notPlain(before);
    // ... and again through the open file, which cannot have been swapped since.
    const int fd = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (fd < 0) return failed(errno);
    StatInfo now{};
    if (::fstat(fd, &now) != 0) {
        const int err = errno;
        ::close(fd);
        return failed(err);
    }
    if (!isPlain(now)) {
        ::close(fd);
        return notPlain(now);
    }
    // A plain file's reads never wait on a writer; the flag is cleared all the same.
    ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) & ~O_NONBLOCK);
    std::FILE* f = ::fdopen(fd, "rb");
    if (f == nullptr) {
        const int err = errno;
        ::close(fd);
        return failed(err);
    }
    OpenedForReading r;
    r.file = f;
    r.size = static_cast<unsigned long long>(now.st_size);
    return r;
#endif
}

}  // namespace kova
