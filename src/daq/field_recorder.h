#pragma once
// FIELD RECORDER driver: one analog input, read as a byte in two nibbles on status bits
// 4..7 after the module reports ready on status bit 3. The driver writes whole values to
// the control register and leaves ControlShadow alone.
#include <cstdint>

#include "daq/port_layer.h"

namespace kova {

inline constexpr int kFieldRecorderPolls = 30;

// The channel is ignored (only AI-1 exists). 0..255, or -1 when the module did not report
// ready within 30 polls of the status register; then PortError and NotAnswering are set
// (a reading that comes clears NotAnswering).
std::int16_t FieldRecorderReadAnalogInput(PortBus& bus);

}  // namespace kova
