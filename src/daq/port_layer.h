#pragma once
// The thin layer between the drivers and the printer port: the register numbers of the
// selected port, the control-register shadow, the error flag and the calibrated busy-wait.
#include <cstdint>

#include "platform/port_io.h"
#include "platform/steady_clock.h"

namespace kova {

struct PortState {
    std::uint16_t DataPort = 0x378;     // base
    std::uint16_t StatusPort = 0x379;   // base + 1
    std::uint16_t ControlPort = 0x37A;  // base + 2
    std::uint8_t ControlShadow = 0x0A;  // the last byte written to the control register
    std::uint8_t DataShadow = 0;        // the last byte a driver wrote to the data register
    std::int16_t PortError = 0;         // 1 when the last driver request was invalid
    std::int32_t DelayCount = 0;        // busy-wait rounds of one bit time, measured at start
    // 1 while the module has not answered its last transfer within the wait's bound; a
    // module that stays silent is then given only a short look on each later read.
    std::int16_t NotAnswering = 0;
    bool operator==(const PortState&) const = default;
};

// Busy-waits count + 1 rounds of an empty loop (none when count < 0) and returns the
// rounds it counted. The loop's 16-bit counter would overflow at 32766 or more: that is an
// overflow fault, raised before waiting.
std::int32_t DelayLoop(std::int32_t count);

// What a driver holds while it talks to the module: the registers, the port back-end and
// the steady clock that bounds a wait for a module's answer.
class PortBus {
  public:
    PortBus(PortState& regs, PortIo& io, SteadyClock& clock = TheSteadyClock())
        : regs_(regs), io_(io), clock_(clock) {}
    std::uint8_t in(std::uint16_t port) { return io_.read(port); }
    void out(std::uint16_t port, std::uint8_t value) { io_.write(port, value); }
    // One bit time: DelayLoop(delay count). Longer waits are made of several, so no count
    // ever comes near the loop's limit.
    void wait();

    std::uint8_t readData() { return in(regs_.DataPort); }
    std::uint8_t readStatus() { return in(regs_.StatusPort); }
    void writeData(std::uint8_t v) { out(regs_.DataPort, v); }
    // Writes ControlShadow whole to the control register.
    void writeControlShadow() { out(regs_.ControlPort, regs_.ControlShadow); }
    void setControlBit(int bit) {
        regs_.ControlShadow = static_cast<std::uint8_t>(regs_.ControlShadow | (1u << bit));
    }
    void clearControlBit(int bit) {
        regs_.ControlShadow = static_cast<std::uint8_t>(regs_.ControlShadow & ~(1u << bit));
    }

    PortState& regs() { return regs_; }
    PortIo& io() { return io_; }
    SteadyClock& clock() { return clock_; }

  private:
    PortState& regs_;
    PortIo& io_;
    SteadyClock& clock_;
};

}  // namespace kova
