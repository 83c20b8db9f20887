#pragma once
// An in-memory I/O bus. Devices (module simulators, a simulated port chip) hang on it and
// see every access; addresses no device claims behave as plain latches: a read returns the
// last byte written there (0 at first).
#include <array>
#include <cstdint>
#include <map>
#include <vector>

#include "platform/port_io.h"

namespace kova {

class BusDevice {
  public:
    virtual ~BusDevice() = default;
    // True when the device answers at this address.
    virtual bool claims(std::uint16_t port) const = 0;
    virtual std::uint8_t read(std::uint16_t port) = 0;
    virtual void write(std::uint16_t port, std::uint8_t value) = 0;
};

class SimulatedBus final : public PortIo {
  public:
    SimulatedBus();
    std::uint8_t read(std::uint16_t port) override;
    void write(std::uint16_t port, std::uint8_t value) override;
    std::uint16_t lptBase(int lpt) override;

    void attach(BusDevice& device) { devices_.push_back(&device); }
    void detach(BusDevice& device);
    void setLptBase(int lpt, std::uint16_t base);
    // Preset the byte a plain latch address reads.
    void poke(std::uint16_t port, std::uint8_t value) { latches_[port] = value; }
    std::uint8_t peek(std::uint16_t port) const;

  private:
    BusDevice* deviceAt(std::uint16_t port) const;
    std::vector<BusDevice*> devices_;
    std::map<std::uint16_t, std::uint8_t> latches_;
    std::array<std::uint16_t, 4> lptBases_{};
};

}  // namespace kova
