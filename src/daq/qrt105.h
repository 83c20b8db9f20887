#pragma once
// QRT105 driver: eight 12-bit analog inputs behind a serial converter, four digital inputs
// and four latched digital outputs, all bit-banged on the printer port.
//
// Wiring (register bits as the driver writes and reads them):
//   data bit 0     converter serial clock; DO-1 while latched
//   data bit 1     converter serial data in; DO-2 while latched
//   data bits 2, 3 DO-3, DO-4 while latched
//   control bit 0  latch strobe, driven 0 then 1: latches the outputs, samples the inputs
//   control bit 1  converter select, 1 for the whole transfer
//   status bit 3   converter serial data out
//   status bits 4..6  DI-1..DI-3;  status bit 7  DI-4, inverted by the port
#include <cstdint>

#include "daq/port_layer.h"

namespace kova {

// One conversion. mode 1 = single-ended, 0 = differential. The channel check only reports
// (PortError = 1 for mode 1 outside 0..4, mode 0 outside 0..8, any other mode): the
// conversion goes on regardless, so the scan's single-ended reads of channels 5..8 always
// leave PortError set with a good reading. channel is counted down to 0-based in place.
// Costs 46 register writes, 12 register reads and 61 busy-waits of one bit time (1 at the
// start, 16 for the command, 20 for the conversion, 24 for the data).
std::int16_t Qrt105Convert(PortBus& bus, std::int16_t mode, std::int16_t& channel);

// singleEnded != 0: the conversion (mode 1, channel), which counts the caller's channel
// down by one. singleEnded == 0: the pair reading, conversion of 2n - 1 minus conversion
// of 2n (the caller's channel is left alone).
std::int16_t Qrt105ReadAnalogInput(PortBus& bus, std::int16_t singleEnded, std::int16_t& channel);

// Re-presents outputWord (the system's digital output word) to the latch, strobes, and
// returns DI-1..DI-4 in bits 0..3.
std::uint16_t Qrt105ReadDigitalInputs(PortBus& bus, std::uint16_t outputWord);

// Latches DO-1..DO-4. A word outside 0..15 sets PortError and writes nothing.
void Qrt105WriteDigitalOutputs(PortBus& bus, int word);

}  // namespace kova
