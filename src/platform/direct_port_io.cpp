#include "platform/direct_port_io.h"

#include <cerrno>
#include <cstring>

#include "platform/port_probe.h"

namespace kova {

std::string IopermProblemText(std::uint16_t from, std::uint16_t count, int err) {
    const std::string where = "Direct port access at " + HexAddress(from) + "-" +
                              HexAddress(static_cast<std::uint16_t>(from + count - 1));
    switch (err) {
        case ENOSYS:
            return where + ": not available: this kernel is built without I/O port access";
        case EPERM:
        case EACCES:
            return where +
                   ": not permitted: it needs root (CAP_SYS_RAWIO) and is blocked while the "
                   "kernel is locked down (Secure Boot)";
        case EOPNOTSUPP:
#if EOPNOTSUPP != ENOTSUP
        case ENOTSUP:
#endif
            return where + ": not available: only x86 PCs have I/O ports";
        case EINVAL:
            return where + ": refused: address out of range";
        default:
            return where + ": refused: " + std::strerror(err);
    }
}

DirectPortIo::DirectPortIo(std::shared_ptr<PortSystem> sys, PortPaths paths, int lpt)
    : sys_(std::move(sys)), paths_(std::move(paths)), granted_(65536), refused_(65536) {
    const std::uint16_t known = lpt >= 1 && lpt <= 3 ? KernelLptBase(*sys_, paths_, lpt) : 0;
    const std::uint16_t base = known != 0 ? known : ConventionalLptBase(lpt);
    if (base == 0) {
        problem_ = "LPT " + std::to_string(lpt) + ": no such printer port";
        return;
    }
    if (!grant(base, 8, &problem_)) return;
    if (base <= 0xFFFF - 0x402) grant(static_cast<std::uint16_t>(base + 0x400), 3, nullptr);
    // Without the kernel's table a floating bus would pass for a port: ask the port itself.
    if (lptBase(lpt) == 0)
        problem_ = "LPT " + std::to_string(lpt) + ": no printer port answers at " +
                   HexAddress(base) + " (its data register does not read back what is written)";
}

bool DirectPortIo::grant(std::uint16_t from, std::uint16_t count, std::string* why) {
    if (from + count > 0x10000) count = static_cast<std::uint16_t>(0x10000 - from);
    const int rc = sys_->ioperm(from, count);
    for (unsigned a = from; a < static_cast<unsigned>(from) + count; ++a)
        (rc == 0 ? granted_ : refused_)[a] = true;
    if (rc != 0 && why) *why = IopermProblemText(from, count, -rc);
    return rc == 0;
}

bool DirectPortIo::access(std::uint16_t port) {
    if (granted_[port]) return true;
    if (!refused_[port] && grant(port, 1, nullptr)) return true;
    bool listed = false;
    for (std::uint16_t a : unreachable_) listed = listed || a == port;
    if (!listed) unreachable_.push_back(port);
    return false;
}

std::uint8_t DirectPortIo::read(std::uint16_t port) {
    return access(port) ? sys_->inb(port) : 0xFF;
}

void DirectPortIo::write(std::uint16_t port, std::uint8_t value) {
    if (access(port)) sys_->outb(port, value);
}

std::uint16_t DirectPortIo::lptBase(int lpt) {
    if (lpt < 1 || lpt > 3) return 0;
    const std::uint16_t known = KernelLptBase(*sys_, paths_, lpt);
    if (known != 0) return known;
    int& probed = probed_[static_cast<std::size_t>(lpt)];
    if (probed < 0) {
        const std::uint16_t base = ConventionalLptBase(lpt);
        probed = DataRegisterReadsBack(*this, base) ? base : 0;
    }
    return static_cast<std::uint16_t>(probed);
}

}  // namespace kova
