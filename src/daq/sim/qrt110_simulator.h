#pragma once
// A QRT110 at its pins: the QRT105's 12-bit input converter (clock data bit 0, data in data
// bit 1, select control bit 1, data out status bit 3) and a dual 12-bit output converter on
// the same clock and data lines. While control bit 0 is 1 the output converter shifts data
// bit 1 into a 24-bit register on every rising clock edge (older bits fall off the end);
// when control bit 0 goes from 1 to 0 it loads both outputs: the first twelve of the last
// 24 bits shifted go to AO-2, the last twelve to AO-1. Clock edges while control bit 0 is
// 0 are ignored.
#include <cstdint>

#include "daq/sim/qrt105_family.h"
#include "tags/daq_profile.h"

namespace kova {

class Qrt110Simulator final : public Qrt105FamilySimulator {
  public:
    int typeCode() const override { return kDaqQrt110; }
    int latchedAnalogOutput(int n) const override;
    int loads() const { return loads_; }

  protected:
    void dataChanged(std::uint8_t before, std::uint8_t after) override;
    void controlChanged(std::uint8_t before, std::uint8_t after) override;
    std::uint8_t statusPins() const override;

  private:
    std::uint32_t shift_ = 0;
    int ao1_ = 0;
    int ao2_ = 0;
    int loads_ = 0;
};

}  // namespace kova
