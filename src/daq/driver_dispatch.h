#pragma once
// The five operations the scan uses, dispatched on the selected DAQ type. While I/O is
// disabled (polling off) every read gives 0 and nothing touches the port.
#include <cstdint>

#include "core/station.h"

namespace kova {

// Raw count of an analog input. The driver may change channel (the QRT105 and QRTU count
// it down to 0-based), so callers pass a variable of their own.
std::int16_t ReadAnalogInput(Station& st, std::int16_t singleEnded, std::int16_t& channel);
// Digital input word, bit 0 = DI-1.
std::uint16_t ReadDigitalInputs(Station& st);
// Sends the analog output table (QRT110: slots 1 and 2; QRTU: slot 1).
void WriteAnalogOutputs(Station& st);
// Sends a digital output word (QRT105, QRT115, QRTU).
void WriteDigitalOutputs(Station& st, std::uint16_t word);
// Sends what is pending to the module: the digital output word first, then the analog
// output table, each only when its flag is set, clearing the flag. The control pass ends
// with it; the readings screen's timer runs it for the operator's writes.
void SendPendingOutputs(Station& st);
// Chooses the printer port: base 0 derives it from the LPT number (1: 0x378, 2: 0x278;
// anything else sets PortError and keeps the registers). Writes ControlShadow 0x0A.
// Runs whatever the I/O switch says, as at start-up.
void SelectPort(Station& st, int lpt, std::uint16_t base);

// The module summary of DAQ address 1, rebuilt from the input tags. The digital bounds
// are compared with the analog bounds on purpose.
void RebuildModuleSummary(Station& st);

// A bus over the station's port registers and port back-end, for the drivers.
PortBus StationBus(Station& st);

}  // namespace kova
