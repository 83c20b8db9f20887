#pragma once
// The "Set Printer Port Address" window as a model: the register operations on a printer
// port, the four hardware tests, the combined port type, "&Find Port" and the port
// initialisation that hands the port to the drivers.
#include <cstdint>
#include <string>

#include "core/station.h"
#include "platform/port_io.h"

namespace kova {

// ECP mode names; mode 5 has none ("").
std::string GetEcpModeDescription(int mode);
// Bit n of value as 0 or 1.
int BitRead(int value, int n);

// Register operations on the port at base B. Status bit 7 and control bits 0, 1 and 3 are
// inverted by the hardware; these operations undo it.
std::uint8_t StatusPortRead(PortIo& io, std::uint16_t base);            // read(B+1) ^ 0x80
std::uint8_t ControlPortRead(PortIo& io, std::uint16_t base);           // read(B+2) ^ 0x0B
void ControlPortWrite(PortIo& io, std::uint16_t base, std::uint8_t v);  // write(B+2, v ^ 0x0B)
std::uint8_t DataPortRead(PortIo& io, std::uint16_t base);
void DataPortWrite(PortIo& io, std::uint16_t base, std::uint8_t v);
int ReadEcpMode(PortIo& io, std::uint16_t base);  // ECR bits 7..5
void SetEcpMode(PortIo& io, std::uint16_t base, int mode);
// Clears a pending EPP time-out (writes 1, then 0, to the status register) and returns the
// time-out bit read afterwards.
int ReadEppTimeoutBit(PortIo& io, std::uint16_t base);

bool TestForEcp(PortIo& io, std::uint16_t base);
bool TestForEpp(PortIo& io, std::uint16_t base);
bool TestForPS2(PortIo& io, std::uint16_t base);  // leaves the control register at 0x0F
bool TestForSpp(PortIo& io, std::uint16_t base);

struct PortTestResult {
    bool Ecp = false;
    bool Epp = false;
    bool Spp = false;
    bool PS2 = false;
    std::string Mode;  // the ECP mode's name; "" when the port is not ECP
    // The types found in test order, separated by one blank ("ECP EPP SPP PS/2").
    std::string TypeText() const;
    bool Found() const { return Ecp || Epp || Spp || PS2; }
};

// ECP, then EPP (never at 0x3BC), then SPP, then PS/2.
PortTestResult TestPort(PortIo& io, std::uint16_t base);

// What the window shows.
struct PrinterPortForm {
    int SelectedLpt = 1;  // OptLpt: 1, 2 or 3
    std::string TxtTypePort;
    std::string TxtMode;
    std::string TxtAddress;
    std::uint16_t FoundBase = 0;  // the base of the port last found; 0 when none
};

// The window on opening: the LPT in use is selected, the boxes are empty.
PrinterPortForm OpenPrinterPortForm(const Station& st);

// "&Find Port": looks up the selected LPT's base, tests the port and fills the boxes; a port
// found is then initialised for the drivers (InitialisePrinterPort). Returns true when a
// port was found.
bool FindPort(Station& st, PrinterPortForm& form);

// Hands the port found to the drivers: an ECP port in ECP mode is put into standard mode
// first, then SelectPort, then "Printer Port Initialised".
void InitialisePrinterPort(Station& st, PrinterPortForm& form);

// The address as the window shows it: hexadecimal, upper case, no prefix ("378").
std::string PortAddressText(std::uint16_t base);

}  // namespace kova
