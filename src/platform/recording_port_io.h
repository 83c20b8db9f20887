#pragma once
// Wraps a PortIo and records every access in order, for register-trace tests: each read
// and write with its byte, and each busy-wait of one bit time with its loop count, where
// it stands between the accesses.
#include <cstdint>
#include <string>
#include <vector>

#include "platform/port_io.h"

namespace kova {

struct PortAccess {
    enum Kind : char { Read = 'R', Write = 'W', Wait = 'D' } kind;
    std::uint16_t port;
    std::uint8_t value;      // the byte read or written
    std::int32_t count = 0;  // a wait's loop count
    bool operator==(const PortAccess&) const = default;
};

class RecordingPortIo final : public PortIo {
  public:
    explicit RecordingPortIo(PortIo& inner) : inner_(inner) {}
    std::uint8_t read(std::uint16_t port) override;
    void write(std::uint16_t port, std::uint8_t value) override;
    std::uint16_t lptBase(int lpt) override { return inner_.lptBase(lpt); }
    std::string problem() const override { return inner_.problem(); }
    void noteWait(std::int32_t count) override;

    const std::vector<PortAccess>& log() const { return log_; }
    void clear() { log_.clear(); }
    std::size_t reads() const;
    std::size_t writes() const;
    std::size_t waits() const;
    // Values written to one port, in order.
    std::vector<std::uint8_t> writesTo(std::uint16_t port) const;

  private:
    std::size_t countOf(PortAccess::Kind kind) const;
    PortIo& inner_;
    std::vector<PortAccess> log_;
};

}  // namespace kova
