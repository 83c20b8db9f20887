#include "core/atomic_file.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <system_error>

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

#include "core/fault.h"
#include "core/plain_file.h"

namespace kova {

namespace {
// Pushes the file's bytes from the operating system's cache to the disk.
bool syncToDisk(std::FILE* f) {
#ifdef _WIN32
    return _commit(_fileno(f)) == 0;
#else
    return ::fsync(fileno(f)) == 0;
#endif
}
}  // namespace

void WriteFileAtomically(const std::filesystem::path& target, const std::string& bytes) {
    std::filesystem::path tmp = target;
    tmp += ".tmp";
    auto fail = [&](const char* what, const std::string& reason) {
        throw Fault(FaultKind::File, target.string() + ": " + what + ": " + reason);
    };
    // The rename below would put a plain file in place of a device or a FIFO (as root, even
    // /dev/full): only a plain file, or a new one, is ever replaced.
    std::error_code statusError;
    const auto status = std::filesystem::status(target, statusError);
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status))
        fail("cannot replace", "not a plain file");
#ifdef _WIN32
    std::FILE* f = _wfopen(tmp.c_str(), L"wb");
#else
    std::FILE* f = std::fopen(tmp.c_str(), "wb");
#endif
    if (!f) fail("cannot create", std::strerror(errno));
    const bool written = std::fwrite(bytes.data(), 1, bytes.size(), f) == bytes.size();
    const std::string writeError = std::strerror(errno);
    const bool flushed = written && std::fflush(f) == 0 && syncToDisk(f);
    const std::string flushError = std::strerror(errno);
    if (std::fclose(f) != 0 || !flushed) {
        std::error_code ignored;
        std::filesystem::remove(tmp, ignored);
        if (!written) fail("cannot write", writeError);
        fail("cannot flush", flushError);
    }
    std::error_code ec;
    std::filesystem::rename(tmp, target, ec);  // replaces the target in one step
    if (ec) {
        std::error_code ignored;
        std::filesystem::remove(tmp, ignored);
        fail("cannot replace", ec.message());
    }
}

bool ReadWholeFile(const std::filesystem::path& path, std::string& bytes, std::string& error,
                   std::size_t maxBytes) {
    // Only a plain file is read: a FIFO would block the open, a device (a link to
    // /dev/zero) would never end.
    const OpenedForReading opened = OpenPlainFileForReading(path);
    if (!opened.notPlain.empty()) {
        error = path.string() + ": not a plain file";
        return false;
    }
    std::FILE* f = opened.file;
    if (!f) {
        error = path.string() + ": cannot open: " + std::strerror(opened.error);
        return false;
    }
    bytes.clear();
    char buf[8192];
    std::size_t n;
    // Never more than one byte past the limit, however much the file offers.
    while ((n = std::fread(buf, 1, std::min(sizeof buf, maxBytes + 1 - bytes.size()), f)) > 0) {
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
