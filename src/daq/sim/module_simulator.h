#pragma once
// Base of the bit-level module simulators. A simulator hangs on a SimulatedBus at a
// printer-port base and claims its three registers: it keeps the data and control bytes
// the driver writes, reacts to every change of them like the module's logic would, and
// composes the status byte from the module's output pins on every read.
//
// How the port's inverting lines are modelled. A real port inverts status bit 7 (BUSY)
// and control bits 0, 1 and 3 between the register and the pin. The modules' logic is
// described here in register values, as the drivers write them: a control bit is "1"
// when the driver sets it, and each simulator says which register transitions it acts on
// (that already includes whatever inversion the port puts in front of the module). The
// status side is modelled at the pins: a simulator gives the levels of its output pins
// S7..S0 and the port inverts S7 on the way into the register, which the QRT105 and the
// FIELD RECORDER drivers undo. Pins a module does not drive read low.
#include <cstdint>
#include <string>

#include "platform/simulated_bus.h"

namespace kova {

class ModuleSimulator : public BusDevice {
  public:
    ModuleSimulator() = default;
    ModuleSimulator(const ModuleSimulator&) = delete;
    ModuleSimulator& operator=(const ModuleSimulator&) = delete;
    // Detaches from the bus. The bus must still exist, so destroy the simulator first (or
    // detach it) when both live in the same scope.
    ~ModuleSimulator() override;

    // Claims base (data), base + 1 (status) and base + 2 (control) of bus.
    void attach(SimulatedBus& bus, std::uint16_t base);
    void detach();
    bool attached() const { return bus_ != nullptr; }
    std::uint16_t base() const { return base_; }

    bool claims(std::uint16_t port) const override;
    std::uint8_t read(std::uint16_t port) override;
    void write(std::uint16_t port, std::uint8_t value) override;

    // The DAQ type code of the module.
    virtual int typeCode() const = 0;
    // What the module's output latches hold now; outputs the module lacks read 0.
    virtual std::uint16_t latchedDigitalOutputs() const { return 0; }
    virtual int latchedAnalogOutput(int /*n*/) const { return 0; }
    // "outputs: DO=0x<hex> AO-1=<n> AO-2=<n>", the digital outputs in upper-case hex of
    // at least two digits ("DO=0x0A"), the analog outputs in decimal.
    std::string LatchedOutputsLine() const;

    std::uint8_t dataRegister() const { return data_; }
    std::uint8_t controlRegister() const { return control_; }
    // The status byte as the port shows it, without counting as a read by the driver.
    std::uint8_t peekStatus() const { return static_cast<std::uint8_t>(statusPins() ^ 0x80); }
    long statusReads() const { return statusReads_; }

  protected:
    // Called after the data (or control) register changed from before to after; a write
    // of the same value changes no line and calls nothing.
    virtual void dataChanged(std::uint8_t /*before*/, std::uint8_t /*after*/) {}
    virtual void controlChanged(std::uint8_t /*before*/, std::uint8_t /*after*/) {}
    // Called once for each read of the status register, before the pins are sampled.
    virtual void statusRead() {}
    virtual std::uint8_t statusPins() const = 0;

    static bool rose(std::uint8_t before, std::uint8_t after, int bit) {
        return ((before >> bit) & 1) == 0 && ((after >> bit) & 1) == 1;
    }
    static bool fell(std::uint8_t before, std::uint8_t after, int bit) {
        return ((before >> bit) & 1) == 1 && ((after >> bit) & 1) == 0;
    }
    static bool isSet(std::uint8_t value, int bit) { return ((value >> bit) & 1) != 0; }

  private:
    SimulatedBus* bus_ = nullptr;
    std::uint16_t base_ = 0;
    std::uint8_t data_ = 0;
    std::uint8_t control_ = 0;
    long statusReads_ = 0;
};

}  // namespace kova
