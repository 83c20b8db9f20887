#pragma once
// What the QRT105 and QRT110 share: the 12-bit serial input converter, clocked by data
// bit 0, fed on data bit 1, selected by control bit 1, answering on status bit 3.
#include "daq/sim/module_simulator.h"
#include "daq/sim/serial_converter12.h"

namespace kova {

class Qrt105FamilySimulator : public ModuleSimulator {
  public:
    void setAnalogInput(int n, int counts) { converter_.setInput(n, counts); }
    const SerialConverter12& converter() const { return converter_; }

  protected:
    // Hands the converter its pins after any register change.
    void updateConverter() {
        converter_.update(isSet(controlRegister(), 1), isSet(dataRegister(), 0),
                          isSet(dataRegister(), 1));
    }
    std::uint8_t converterPin() const { return converter_.dataOut() ? 0x08 : 0x00; }

  private:
    SerialConverter12 converter_;
};

}  // namespace kova
