#pragma once
// Printer ports on Windows through the InpOut port-I/O DLL (inpoutx64.dll in a 64-bit
// program, inpout32.dll in a 32-bit one), loaded at run time by name. Available only in
// Windows builds; elsewhere opening it just says so.
#include <memory>
#include <string>

#include "platform/port_io.h"

namespace kova {

// The DLL's port, or nullptr with problem set to a clear text (DLL missing, function
// missing, its kernel driver not open).
std::unique_ptr<PortIo> OpenWindowsPortDll(std::string& problem);

}  // namespace kova
