#pragma once
// A FIELD RECORDER at its pins: an 8-bit converter with a nibble multiplexer on the status
// lines, driven by whole control-register values.
//   control bit 2  conversion start: a rising edge (0 -> 1) starts a conversion;
//   control bit 1  output enable: the selected nibble drives status pins 4..7 while it is
//                  1 (they read low otherwise);
//   control bit 0  nibble select: 0 the low nibble, 1 the high nibble;
//   status pin 3   busy: high from a start until the conversion is done.
// The converter's speed is counted in status reads: a conversion stays busy for the first
// `busyReads` reads of the status register after its start and is done (taking the input
// at that moment) at the next one; a negative count never finishes, like a missing module.
// Nibble bit 3 drives the BUSY pin, which the port inverts into status bit 7.
#include <cstdint>

#include "daq/sim/module_simulator.h"
#include "tags/daq_profile.h"

namespace kova {

class FieldRecorderSimulator final : public ModuleSimulator {
  public:
    int typeCode() const override { return kDaqFieldRecorder; }
    void setAnalogInput(int value) { input_ = static_cast<std::uint8_t>(value & 0xFF); }
    void setBusyReads(int reads) { busyReads_ = reads; }
    int conversionsStarted() const { return started_; }

  protected:
    void controlChanged(std::uint8_t before, std::uint8_t after) override;
    void statusRead() override;
    std::uint8_t statusPins() const override;

  private:
    std::uint8_t input_ = 0;
    std::uint8_t result_ = 0;
    int busyReads_ = 0;
    bool busy_ = false;
    int busyLeft_ = 0;
    int started_ = 0;
};

}  // namespace kova
