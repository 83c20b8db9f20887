#pragma once
// QRTU driver: eight 10-bit analog inputs through a serial converter, one 8-bit analog
// output, fifteen digital inputs through a serial shift register and eight latched
// digital outputs. Data bit 0 is serial data (converter) or shift/load (input register),
// data bit 1 the clock of both; status bit 4 the converter's data out, bit 5 the input
// register's, bit 6 end of conversion; control bit 3 selects the converter, control bit 0
// latches the digital outputs and control bit 1 the analog output.
#include <chrono>
#include <cstdint>

#include "daq/port_layer.h"

namespace kova {

// How long an analog read waits for the end of conversion (a conversion takes well under a
// millisecond), and how long once the module has been found silent, so that a missing
// module costs the scan one full wait and then only short looks until it answers again.
inline constexpr std::chrono::milliseconds kQrtuAnswerBound{100};
inline constexpr std::chrono::milliseconds kQrtuSilentLook{1};

// 0..1023. The caller's channel is counted down to 0-based in place. The wait for the end
// of conversion is bounded by the bus's steady clock: past it the converter is deselected,
// PortError and NotAnswering are set and the reading is -1. A conversion that ends clears
// NotAnswering.
std::int16_t QrtuReadAnalogInput(PortBus& bus, std::int16_t& channel);
// DI-1..DI-15 in bits 0..14.
std::uint16_t QrtuReadDigitalInputs(PortBus& bus);
// A word outside 0..255 sets PortError and writes nothing.
void QrtuWriteDigitalOutputs(PortBus& bus, int word);
// Sends AO-1; a value outside 0..255 sets PortError and writes nothing.
void QrtuWriteAnalogOutputs(PortBus& bus, int value);

}  // namespace kova
