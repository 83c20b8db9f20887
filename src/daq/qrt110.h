#pragma once
// QRT110 driver: the QRT105's eight 12-bit analog inputs (same converter, same conversion)
// and two 12-bit analog outputs behind a serial converter loaded with both channels in one
// 24-bit transfer. Data bit 0 is the serial clock and data bit 1 the serial data for both
// converters; control bit 0 frames the output transfer (1 while the bits shift in, pulsed
// to 0 around the last clock edge to load both outputs).
#include <cstdint>

#include "daq/port_layer.h"

namespace kova {

// The QRT105 conversion and pair rule (see Qrt105ReadAnalogInput).
std::int16_t Qrt110ReadAnalogInput(PortBus& bus, std::int16_t singleEnded, std::int16_t& channel);

// Sends AO-2 (ao2) then AO-1 (ao1), twelve bits each, most significant first, and loads
// both outputs. Bits above bit 11 are not sent. 76 register writes, each followed by one
// delay count; the data shadow follows every data-register write.
void Qrt110WriteAnalogOutputs(PortBus& bus, std::int16_t ao1, std::int16_t ao2);

}  // namespace kova
