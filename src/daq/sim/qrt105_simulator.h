#pragma once
// A QRT105 at its pins: the 12-bit serial converter (clock data bit 0, data in data bit 1,
// select control bit 1, data out status bit 3) and a strobe on control bit 0 whose rising
// edge (register 0 -> 1) latches data bits 0..3 into DO-1..DO-4 and samples DI-1..DI-4.
// The sampled DI-1..DI-3 drive status pins 4..6 and DI-4 the BUSY pin (status bit 7, which
// the port inverts). Before the first strobe the sampled inputs are all 0.
#include <cstdint>

#include "daq/sim/qrt105_family.h"
#include "tags/daq_profile.h"

namespace kova {

class Qrt105Simulator final : public Qrt105FamilySimulator {
  public:
    int typeCode() const override { return kDaqQrt105; }
    // DI-1..DI-4 pin levels in bits 0..3 (1 = high).
    void setDigitalInputs(std::uint16_t word) { inputs_ = static_cast<std::uint8_t>(word & 15); }
    std::uint16_t latchedDigitalOutputs() const override { return outputs_; }
    int strobes() const { return strobes_; }

  protected:
    void dataChanged(std::uint8_t before, std::uint8_t after) override;
    void controlChanged(std::uint8_t before, std::uint8_t after) override;
    std::uint8_t statusPins() const override;

  private:
    std::uint8_t inputs_ = 0;
    std::uint8_t sampled_ = 0;
    std::uint8_t outputs_ = 0;
    int strobes_ = 0;
};

}  // namespace kova
