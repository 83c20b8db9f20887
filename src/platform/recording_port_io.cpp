#include "platform/recording_port_io.h"

#include <algorithm>

namespace kova {

std::uint8_t RecordingPortIo::read(std::uint16_t port) {
    const std::uint8_t v = inner_.read(port);
    log_.push_back({PortAccess::Read, port, v});
    return v;
}

void RecordingPortIo::write(std::uint16_t port, std::uint8_t value) {
    inner_.write(port, value);
    log_.push_back({PortAccess::Write, port, value});
}

void RecordingPortIo::noteWait(std::int32_t count) {
    inner_.noteWait(count);
    log_.push_back({PortAccess::Wait, 0, 0, count});
}

std::size_t RecordingPortIo::countOf(PortAccess::Kind kind) const {
    return static_cast<std::size_t>(std::count_if(
        log_.begin(), log_.end(), [kind](const PortAccess& a) { return a.kind == kind; }));
}

std::size_t RecordingPortIo::reads() const {
    return countOf(PortAccess::Read);
}

std::size_t RecordingPortIo::writes() const {
    return countOf(PortAccess::Write);
}

std::size_t RecordingPortIo::waits() const {
    return countOf(PortAccess::Wait);
}

std::vector<std::uint8_t> RecordingPortIo::writesTo(std::uint16_t port) const {
    std::vector<std::uint8_t> out;
    for (const PortAccess& a : log_)
        if (a.kind == PortAccess::Write && a.port == port) out.push_back(a.value);
    return out;
}

}  // namespace kova
