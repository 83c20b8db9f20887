#pragma once
// A simulated printer-port chip on the simulated bus, for the port detection: a standard
// port (SPP), a bidirectional one (PS/2), an EPP port or an ECP port with its extended
// control register. The hardware inversions are those of a real port: status bit 7 (BUSY)
// and control bits 0, 1 and 3 (STROBE, AUTOFEED, SELECT IN) read and drive the pins
// inverted.
#include <cstdint>

#include "platform/simulated_bus.h"

namespace kova {

enum class PortChipKind { Spp, PS2, Epp, Ecp };

// How the chip clears a pending EPP time-out.
enum class TimeoutClear { ByWritingOne, ByWritingZero, ByReadingStatus };

class PortChip final : public BusDevice {
  public:
    PortChip(std::uint16_t base, PortChipKind kind);

    // base .. base + 7 and base + 0x400 .. base + 0x402 (the ECP registers, which read as
    // an empty bus, 0xFF, on chips without them).
    bool claims(std::uint16_t port) const override;
    std::uint8_t read(std::uint16_t port) override;
    void write(std::uint16_t port, std::uint8_t value) override;

    // --- what the outside world sees and does -------------------------------------------
    // Levels of the status input pins, bits 3..7 (ERROR, SELECT, PAPER OUT, ACK, BUSY).
    std::uint8_t statusPins = 0;
    // What a device drives onto the data lines while they are inputs (pulled up: 0xFF).
    std::uint8_t externalData = 0xFF;
    // An EPP peripheral answers address cycles; without one every cycle times out.
    bool eppPeripheral = true;
    TimeoutClear timeoutClear = TimeoutClear::ByWritingOne;
    // A chip with no ECR whose control register shows again at base + 0x402 as the control
    // latch before its inverters (incomplete address decoding).
    bool ecrMirrorsControl = false;
    // ECP FIFO state, reported in ECR bits 0 (empty) and 1 (full).
    bool fifoEmpty = true;
    bool fifoFull = false;

    // --- inspection ----------------------------------------------------------------------
    std::uint16_t base() const { return base_; }
    std::uint8_t controlRegister() const { return control_; }  // raw, as written
    // Levels of the control output pins, bits 0..3 (inversions applied).
    std::uint8_t controlPins() const { return static_cast<std::uint8_t>((control_ ^ 0x0B) & 0x0F); }
    std::uint8_t dataLatch() const { return data_; }
    bool dataLinesAreInputs() const;
    int ecpMode() const { return ecr_ >> 5; }
    void setEcpMode(int mode) { ecr_ = static_cast<std::uint8_t>((ecr_ & 0x1F) | (mode << 5)); }
    std::uint8_t eppAddress() const { return eppAddress_; }
    bool timeout() const { return timeout_; }
    void setTimeout(bool on) { timeout_ = on; }
    int ecrWrites() const { return ecrWrites_; }

  private:
    bool eppActive() const;
    std::uint8_t eppCycle(std::uint8_t* written);
    std::uint8_t readEcr() const;

    std::uint16_t base_;
    PortChipKind kind_;
    std::uint8_t data_ = 0;
    std::uint8_t control_ = 0;
    std::uint8_t ecr_ = 0x00;  // bits 7..2 as written (mode 0 at power-up)
    std::uint8_t eppAddress_ = 0;
    bool timeout_ = false;
    int ecrWrites_ = 0;
};

}  // namespace kova
