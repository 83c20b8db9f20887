#pragma once
// The simulated TEST module: moving, predictable values, no port.
#include <cstdint>

#include "daq/daq_state.h"

namespace kova {

// n x 200 + c, with the ramp counter c shared by all channels (0, 2, 4 .. 198, 0 ...).
std::int16_t TestReadAnalogInput(TestModuleState& s, std::int16_t channel);
// Active-low walking bit: 14, 13, 11, 7, 14, ...
std::uint16_t TestReadDigitalInputs(TestModuleState& s);

}  // namespace kova
