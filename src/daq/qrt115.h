#pragma once
// QRT115 driver: eight digital outputs straight from the data register, eight digital
// inputs read from an 8-bit input port over a two-wire serial bus (start, address byte,
// acknowledge, data byte, stop) produced on two control bits and read back on one status
// bit: control bit 0 is the serial clock, control bit 1 the serial data out (register 1
// is the driver's "1"), status bit 6 the serial data in.
#include <cstdint>

#include "daq/port_layer.h"

namespace kova {

// The input port's address byte: seven-bit address 0x38 with the read bit set.
inline constexpr std::uint8_t kQrt115InputAddress = 0x71;

// The bus primitives, in the driver's own sequence of register writes and waits.
void Qrt115SendStart(PortBus& bus, std::uint8_t address);
// Returns the acknowledge bit as read (1 when status bit 6 was set); nobody checks it.
int Qrt115SendByte(PortBus& bus, std::uint8_t byte);
std::uint8_t Qrt115ReceiveByte(PortBus& bus, int lastByte);
void Qrt115SendStop(PortBus& bus);

// DI-1..DI-8 in bits 0..7.
std::uint16_t Qrt115ReadDigitalInputs(PortBus& bus);
// Writes a word 0..255 to the data register; anything else is ignored without touching
// PortError.
void Qrt115WriteDigitalOutputs(PortBus& bus, int word);

}  // namespace kova
