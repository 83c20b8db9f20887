#include "links/outbox/outbox_file.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>
#else
#include <fcntl.h>
#include <unistd.h>
#endif

namespace kova::links::outbox_file {

namespace {

// Length (4), check sum (4), sequence (8), record time (8), time appended (8), then the body.
constexpr std::size_t kHeader = 32;

std::uint32_t Crc32(const char* data, std::size_t size) {
    static const std::array<std::uint32_t, 256> table = [] {
        std::array<std::uint32_t, 256> t{};
        for (std::uint32_t i = 0; i < 256; ++i) {
            std::uint32_t c = i;
            for (int k = 0; k < 8; ++k) c = c & 1 ? 0xEDB88320u ^ (c >> 1) : c >> 1;
            t[i] = c;
        }
        return t;
    }();
    std::uint32_t c = 0xFFFFFFFFu;
    for (std::size_t i = 0; i < size; ++i)
        c = table[(c ^ static_cast<unsigned char>(data[i])) & 0xFF] ^ (c >> 8);
    return c ^ 0xFFFFFFFFu;
}

// Little-endian, whatever the machine, so a queue moved to another PC still reads.
void Put(std::string& out, std::uint64_t v, int bytes) {
    for (int i = 0; i < bytes; ++i) out.push_back(static_cast<char>((v >> (8 * i)) & 0xFF));
}
std::uint64_t Get(const char* p, int bytes) {
    std::uint64_t v = 0;
    for (int i = 0; i < bytes; ++i)
        v |= static_cast<std::uint64_t>(static_cast<unsigned char>(p[i])) << (8 * i);
    return v;
}

}  // namespace

void Encode(const Frame& frame, std::string& out) {
    const std::size_t start = out.size();
    Put(out, frame.body.size(), 4);
    Put(out, 0, 4);  // the check sum, filled in below
    Put(out, frame.sequence, 8);
    Put(out, static_cast<std::uint64_t>(frame.timeMs), 8);
    Put(out, static_cast<std::uint64_t>(frame.storedMs), 8);
    out += frame.body;
    // Covers everything after the check sum, so a record cut short or damaged is noticed.
    const std::uint32_t crc = Crc32(out.data() + start + 8, out.size() - start - 8);
    for (int i = 0; i < 4; ++i) out[start + 4 + i] = static_cast<char>((crc >> (8 * i)) & 0xFF);
}

bool ReadSegment(const std::filesystem::path& path, ReadBack& out, std::string& error) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        error = path.string() + ": cannot read the outbox file (" + std::strerror(errno) + ")";
        return false;
    }
    std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    std::size_t at = 0;
    while (at < bytes.size()) {
        if (bytes.size() - at < kHeader) break;
        const char* p = bytes.data() + at;
        const std::uint64_t length = Get(p, 4);
        if (length > kMaxBody || bytes.size() - at - kHeader < length) break;
        const std::uint32_t crc = static_cast<std::uint32_t>(Get(p + 4, 4));
        if (Crc32(p + 8, kHeader - 8 + length) != crc) break;
        Frame f;
        f.sequence = Get(p + 8, 8);
        f.timeMs = static_cast<std::int64_t>(Get(p + 16, 8));
        f.storedMs = static_cast<std::int64_t>(Get(p + 24, 8));
        f.body.assign(p + kHeader, length);
        out.frames.push_back(std::move(f));
        at += kHeader + length;
    }
    out.goodBytes = at;
    out.torn = at < bytes.size();
    return true;
}

std::string SegmentName(std::uint64_t first) {
    char name[40];
    std::snprintf(name, sizeof name, "q-%020llu.kq", static_cast<unsigned long long>(first));
    return name;
}

std::uint64_t SegmentFirst(const std::string& fileName) {
    if (fileName.size() != 25 || fileName.rfind("q-", 0) != 0 || fileName.substr(22) != ".kq")
        return 0;
    std::uint64_t v = 0;
    for (std::size_t i = 2; i < 22; ++i) {
        if (fileName[i] < '0' || fileName[i] > '9') return 0;
        v = v * 10 + static_cast<std::uint64_t>(fileName[i] - '0');
    }
    return v;
}

#ifdef _WIN32
int OpenForAppend(const std::filesystem::path& path, std::string& error) {
    const int fd =
        _wopen(path.c_str(), _O_WRONLY | _O_CREAT | _O_APPEND | _O_BINARY, _S_IREAD | _S_IWRITE);
    if (fd < 0) error = std::strerror(errno);
    return fd;
}
std::string WriteAll(int fd, const std::string& bytes) {
    std::size_t done = 0;
    while (done < bytes.size()) {
        const int n = _write(fd, bytes.data() + done, static_cast<unsigned>(bytes.size() - done));
        if (n < 0) return std::strerror(errno);
        done += static_cast<std::size_t>(n);
    }
    return {};
}
void SyncToDisk(int fd) {
    _commit(fd);
}
void CloseFile(int fd) {
    _close(fd);
}
#else
int OpenForAppend(const std::filesystem::path& path, std::string& error) {
    const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
    if (fd < 0) error = std::strerror(errno);
    return fd;
}
std::string WriteAll(int fd, const std::string& bytes) {
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t n = ::write(fd, bytes.data() + done, bytes.size() - done);
        if (n < 0) {
            if (errno == EINTR) continue;
            return std::strerror(errno);
        }
        done += static_cast<std::size_t>(n);
    }
    return {};
}
void SyncToDisk(int fd) {
    ::fdatasync(fd);
}
void CloseFile(int fd) {
    ::close(fd);
}
#endif

bool Truncate(const std::filesystem::path& path, std::uint64_t bytes, std::string& error) {
    std::error_code ec;
    std::filesystem::resize_file(path, bytes, ec);
    if (ec) error = path.string() + ": cannot cut off a torn record (" + ec.message() + ")";
    return !ec;
}

}  // namespace kova::links::outbox_file
