#pragma once
// The module simulators with the fixed inputs that a run on the simulated port presents:
//   QRT105, QRT110   analog input n reads n x 450 + 50 counts;
//   QRT105           digital inputs DI-2 and DI-4 on (word 10);
//   QRT115           digital inputs 0xA5;
//   FIELD RECORDER   analog input 165;
//   QRTU             analog input n reads n x 100 + 20; digital inputs 0x5AA5.
// Every simulator answers at once (no busy status reads). Attach the result to the
// simulated bus at the station's port base (st.daq.Port.DataPort); LatchedOutputsLine()
// then tells what the module latched: "outputs: DO=0x<hex> AO-1=<n> AO-2=<n>".
//
// On a QRTU, SelectPort's control value 0x0A selects the converter (control bit 3), and a
// digital read before the first analog read then puts the converter out of step for that
// one analog reading (see qrtu_simulator.h). A run that wants the fixed values from its
// first scan attaches the simulator after SelectPort has written 0x0A, as a module
// plugged into an initialised port.
#include <memory>

#include "daq/sim/module_simulator.h"

namespace kova {

// nullptr for TEST (0), which never touches the port, and for codes outside 0..5.
std::unique_ptr<ModuleSimulator> MakeModuleSimulator(int typeCode);

}  // namespace kova
