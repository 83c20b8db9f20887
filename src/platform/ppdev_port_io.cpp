#include "platform/ppdev_port_io.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace kova {

std::string PpdevProblemText(const std::string& path, const std::string& step, int err) {
    switch (err) {
        case ENOENT:
        case ENODEV:
        case ENXIO:
            return path + ": no such port (no parallel port driver loaded or no printer port)";
        case EACCES:
        case EPERM:
            // The one command that fixes it; group membership counts from the next login.
            return path + ": permission denied: add your user to group lp (" + kJoinGroupLp + ")";
        case ENOSYS:
            return path + ": this system has no parallel port support";
        case EBUSY:
            return path + ": the port is in use by another program or driver (" + step + ")";
        case ENOTTY:
        case EINVAL:
            return path + ": not a parallel port device (" + step + " refused)";
        default:
            return path + ": " + step + " failed: " + std::strerror(err);
    }
}

PpdevPortIo::PpdevPortIo(std::shared_ptr<PortSystem> sys, PortPaths paths, int lpt)
    : sys_(std::move(sys)), lpt_(lpt) {
    for (int n = 1; n <= 3; ++n) {
        Device& d = devices_[static_cast<std::size_t>(n - 1)];
        d.path = PpdevPath(paths, n);
        d.base = KernelLptBase(*sys_, paths, n);
    }
    if (lpt < 1 || lpt > 3) return;
    Device& chosen = devices_[static_cast<std::size_t>(lpt - 1)];
    if (claim(chosen) && chosen.base == 0) chosen.base = ConventionalLptBase(lpt);
}

PpdevPortIo::~PpdevPortIo() {
    for (Device& d : devices_) {
        if (d.fd < 0) continue;
        std::uint8_t unused = 0;
        sys_->ppdev(d.fd, PpRequest::Release, unused);
        sys_->close(d.fd);
    }
}

bool PpdevPortIo::claim(Device& d) {
    if (d.tried) return d.fd >= 0;
    d.tried = true;
    const int fd = sys_->open(d.path);
    if (fd < 0) {
        d.problem = PpdevProblemText(d.path, "open", -fd);
        return false;
    }
    std::uint8_t unused = 0;
    int rc = sys_->ppdev(fd, PpRequest::Exclusive, unused);
    if (rc == 0) rc = sys_->ppdev(fd, PpRequest::Claim, unused);
    if (rc != 0) {
        d.problem = PpdevProblemText(d.path, "PPEXCL/PPCLAIM", -rc);
        sys_->close(fd);
        return false;
    }
    d.fd = fd;
    return true;
}

PpdevPortIo::Device* PpdevPortIo::find(std::uint16_t port, int& offset) {
    for (Device& d : devices_) {
        if (d.base == 0 || port < d.base || port > d.base + 2) continue;
        offset = port - d.base;
        return claim(d) ? &d : nullptr;
    }
    return nullptr;
}

void PpdevPortIo::note(std::uint16_t port) {
    if (std::find(unreachable_.begin(), unreachable_.end(), port) == unreachable_.end())
        unreachable_.push_back(port);
}

bool PpdevPortIo::request(Device& d, PpRequest r, std::uint8_t& value) {
    const int rc = sys_->ppdev(d.fd, r, value);
    if (rc == 0) return true;
    if (d.problem.empty()) d.problem = PpdevProblemText(d.path, "register access", -rc);
    return false;
}

std::uint8_t PpdevPortIo::read(std::uint16_t port) {
    int offset = 0;
    Device* d = find(port, offset);
    std::uint8_t v = 0;
    bool done = false;
    if (d && offset == 0) done = request(*d, PpRequest::ReadData, v);
    if (d && offset == 1) done = request(*d, PpRequest::ReadStatus, v);
    if (d && offset == 2) {
        done = request(*d, PpRequest::ReadControl, v);
        v = static_cast<std::uint8_t>((v & 0x0F) | d->controlHigh);
    }
    if (done) return v;
    note(port);
    return 0xFF;
}

void PpdevPortIo::write(std::uint16_t port, std::uint8_t value) {
    int offset = 0;
    Device* d = find(port, offset);
    if (d && offset == 0) {
        if (request(*d, PpRequest::WriteData, value)) return;
    } else if (d && offset == 2) {
        std::uint8_t low = value & 0x0F;
        const bool reverse = (value & 0x20) != 0;
        const bool wasReverse = (d->controlHigh & 0x20) != 0;
        bool done = request(*d, PpRequest::WriteControl, low);
        if (done && reverse != wasReverse) {
            std::uint8_t dir = reverse ? 1 : 0;
            done = request(*d, PpRequest::DataDir, dir);
        }
        if (done) {
            d->controlHigh = value & 0xF0;
            return;
        }
    }
    note(port);
}

std::uint16_t PpdevPortIo::lptBase(int lpt) {
    if (lpt < 1 || lpt > 3) return 0;
    return devices_[static_cast<std::size_t>(lpt - 1)].base;
}

std::string PpdevPortIo::problem() const {
    if (lpt_ < 1 || lpt_ > 3) return "LPT " + std::to_string(lpt_) + ": no such printer port";
    return devices_[static_cast<std::size_t>(lpt_ - 1)].problem;
}

std::string PpdevPortIo::unreachableText() const {
    if (unreachable_.empty()) return {};
    std::string list;
    for (std::uint16_t a : unreachable_) list += (list.empty() ? "" : ", ") + HexAddress(a);
    return "Not reachable through ppdev (only data, status and control are): " + list;
}

}  // namespace kova
