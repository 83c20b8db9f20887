#pragma once
// What the user is told about the port and the module while the scan runs: what the
// selected module reads on a port that cannot be reached, and that the module has stopped
// answering (once, until it answers again).
#include <string>

#include "core/station.h"

namespace kova {

// The readings the module of type typeCode gives when every status line floats high, found
// by running its driver on such a port: "The QRTU will read 1023 on every analog input and
// 32767 on its digital inputs." "" for TEST, which never touches the port.
std::string FloatingBusReadingsText(int typeCode);

// "The QRTU on LPT 1 (0x378) is not answering: its analog inputs read -1" when the module
// went silent and the user has not heard it yet; "" otherwise. Told again only after the
// module answered in between. Not told while the port itself cannot be reached: the port's
// own message says what the modules read.
std::string ModuleSilenceToTell(Station& st);

}  // namespace kova
