#include "platform/port_system.h"

#include <cerrno>
#include <cstdio>
#include <fstream>
#include <sstream>

#if defined(__linux__)
#include <fcntl.h>
#include <linux/ppdev.h>
#include <sys/ioctl.h>
#include <unistd.h>
#if defined(__x86_64__) || defined(__i386__)
#include <sys/io.h>
#define KOVA_HAS_IOPERM 1
#endif
#endif

namespace kova {

namespace {

class RealPortSystem final : public PortSystem {
  public:
    int open(const std::string& path) override {
#if defined(__linux__)
        const int fd = ::open(path.c_str(), O_RDWR | O_CLOEXEC);
        return fd >= 0 ? fd : -errno;
#else
        (void)path;
        return -ENOSYS;
#endif
    }

    void close(int fd) override {
#if defined(__linux__)
        ::close(fd);
#else
        (void)fd;
#endif
    }

    int ppdev(int fd, PpRequest request, std::uint8_t& value) override {
#if defined(__linux__)
        unsigned char byte = value;
        int mode = value;
        int rc = -1;
        switch (request) {
            case PpRequest::Exclusive:
                rc = ::ioctl(fd, PPEXCL);
                break;
            case PpRequest::Claim:
                rc = ::ioctl(fd, PPCLAIM);
                break;
            case PpRequest::Release:
                rc = ::ioctl(fd, PPRELEASE);
                break;
            case PpRequest::ReadData:
                rc = ::ioctl(fd, PPRDATA, &byte);
                break;
            case PpRequest::WriteData:
                rc = ::ioctl(fd, PPWDATA, &byte);
                break;
            case PpRequest::ReadStatus:
                rc = ::ioctl(fd, PPRSTATUS, &byte);
                break;
            case PpRequest::ReadControl:
                rc = ::ioctl(fd, PPRCONTROL, &byte);
                break;
            case PpRequest::WriteControl:
                rc = ::ioctl(fd, PPWCONTROL, &byte);
                break;
            case PpRequest::DataDir:
                rc = ::ioctl(fd, PPDATADIR, &mode);
                break;
        }
        if (rc < 0) return -errno;
        value = byte;
        return 0;
#else
        (void)fd, (void)request, (void)value;
        return -ENOSYS;
#endif
    }

    int ioperm(std::uint16_t from, std::uint16_t count) override {
#if defined(KOVA_HAS_IOPERM)
        return ::ioperm(from, count, 1) == 0 ? 0 : -errno;
#else
        (void)from, (void)count;
        return -EOPNOTSUPP;
#endif
    }

    // Only reached after ioperm granted the address.
    std::uint8_t inb(std::uint16_t port) override {
#if defined(KOVA_HAS_IOPERM)
        std::uint8_t v;
        __asm__ __volatile__("inb %w1, %b0" : "=a"(v) : "Nd"(port));
        return v;
#else
        (void)port;
        return 0xFF;
#endif
    }

    void outb(std::uint16_t port, std::uint8_t value) override {
#if defined(KOVA_HAS_IOPERM)
        __asm__ __volatile__("outb %b0, %w1" : : "a"(value), "Nd"(port));
#else
        (void)port, (void)value;
#endif
    }

    std::optional<std::string> readText(const std::string& path) override {
        std::ifstream in(path, std::ios::binary);
        if (!in) return std::nullopt;
        std::string text;
        char buf[256];
        // Kernel tables are short; read at most a few kilobytes of anything else.
        while (text.size() < 4096 && in.read(buf, sizeof buf).gcount() > 0)
            text.append(buf, static_cast<std::size_t>(in.gcount()));
        if (in.bad()) return std::nullopt;
        return text;
    }
};

}  // namespace

std::shared_ptr<PortSystem> MakeRealPortSystem() {
    return std::make_shared<RealPortSystem>();
}

std::uint16_t ConventionalLptBase(int lpt) {
    switch (lpt) {
        case 1:
            return 0x378;
        case 2:
            return 0x278;
        case 3:
            return 0x3BC;
        default:
            return 0;
    }
}

std::optional<std::uint16_t> ParseBaseAddr(const std::string& text) {
    std::size_t i = 0;
    while (i < text.size() && (text[i] == ' ' || text[i] == '\t')) ++i;
    long value = 0;
    std::size_t digits = 0;
    while (i < text.size() && text[i] >= '0' && text[i] <= '9') {
        value = value * 10 + (text[i] - '0');
        if (value > 65535) return std::nullopt;
        ++i, ++digits;
    }
    if (digits == 0 || value == 0) return std::nullopt;
    // The number must end the field: a tab, a blank, a line end or the end of the text.
    if (i < text.size() && text[i] != '\t' && text[i] != ' ' && text[i] != '\n' && text[i] != '\r')
        return std::nullopt;
    return static_cast<std::uint16_t>(value);
}

std::uint16_t KernelLptBase(PortSystem& sys, const PortPaths& paths, int lpt) {
    if (lpt < 1 || lpt > 3) return 0;
    const std::string path =
        paths.proc + "/sys/dev/parport/parport" + std::to_string(lpt - 1) + "/base-addr";
    const auto text = sys.readText(path);
    if (!text) return 0;
    return ParseBaseAddr(*text).value_or(0);
}

std::string PpdevPath(const PortPaths& paths, int lpt) {
    return paths.dev + "/parport" + std::to_string(lpt - 1);
}

std::string HexAddress(std::uint16_t address) {
    char buf[8];
    std::snprintf(buf, sizeof buf, "0x%X", static_cast<unsigned>(address));
    return buf;
}

}  // namespace kova
