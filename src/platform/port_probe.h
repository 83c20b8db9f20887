#pragma once
// Whether a printer port is really there: its data register reads back what was written.
// A floating bus (no port at the address) reads 0xFF whatever was written, so a back-end
// that cannot ask the system for its ports confirms one this way before offering its base.
#include <cstdint>

#include "platform/port_io.h"

namespace kova {

// Writes 0x55, then 0xAA, to the data register at base and reads each back; true when both
// come back. The data lines are put in output direction for the test and the data and
// control registers are given back their bytes afterwards.
bool DataRegisterReadsBack(PortIo& io, std::uint16_t base);

}  // namespace kova
