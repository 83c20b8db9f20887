#include "core/atomic_file.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

#include "core/fault.h"

namespace kova {

void WriteFileAtomically(const std::filesystem::path& target, const std::string& bytes) {
    const std::filesystem::path tmp = target.string() + ".tmp";
    auto fail = [&](const char* what) {
        const std::string reason = std::strerror(errno);
        throw Fault(FaultKind::File, target.string() + ": " + what + ": " + reason);
    };
    const int fd = ::open(tmp.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (fd < 0) fail("cannot create");
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t n = ::write(fd, bytes.data() + done, bytes.size() - done);
        if (n < 0) {
            if (errno == EINTR) continue;
            ::close(fd);
            std::remove(tmp.c_str());
            fail("cannot write");
        }
        done += static_cast<std::size_t>(n);
    }
    if (::fsync(fd) != 0 || ::close(fd) != 0) {
        std::remove(tmp.c_str());
        fail("cannot flush");
    }
    if (std::rename(tmp.c_str(), target.c_str()) != 0) {
        std::remove(tmp.c_str());
        fail("cannot replace");
    }
}

bool ReadWholeFile(const std::filesystem::path& path, std::string& bytes, std::string& error,
                   std::size_t maxBytes) {
    std::FILE* f = std::fopen(path.c_str(), "rb");
    if (!f) {
        error = path.string() + ": cannot open: " + std::strerror(errno);
        return false;
    }
    bytes.clear();
    char buf[8192];
    std::size_t n;
    while ((n = std::fread(buf, 1, sizeof buf, f)) > 0) {
        bytes.append(buf, n);
        if (bytes.size() > maxBytes) {
            std::fclose(f);
            error = path.string() + ": file is too large";
            return false;
        }
    }
    const bool bad = std::ferror(f) != 0;
    std::fclose(f);
    if (bad) {
        error = path.string() + ": read error";
        return false;
    }
    return true;
}

}  // namespace kova
