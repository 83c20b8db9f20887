#pragma once
// The "DAQ Type" window as a model: one option button per module type, E&xit makes the
// selected type the module in use.
#include <array>
#include <string>

#include "core/station.h"
#include "tags/daq_profile.h"

namespace kova {

struct DaqTypeForm {
    std::array<bool, kDaqTypeCount> OptDaqType{};  // button i stands for type code i
};

// The caption of option button i: the type name, with the kit designation in brackets for
// the three QRT modules sold as kits.
std::string DaqTypeCaption(int code);

// The tip of option button i: for the simulated TEST module what each of its inputs and
// outputs does, with range and period; "" for the modules on the printer port.
std::string DaqTypeTip(int code);

// What the window shows when it opens: the button of the current type selected.
DaqTypeForm OpenDaqTypeForm(const Station& st);

// E&xit: the buttons are examined from 0 to 5 and the last selected one gives the type
// code (none selected keeps the code); the I/O name list of that type is built and the
// module summary rebuilt. The tags are not checked against the new type here. Another type
// than before is told to the open windows (TableChange::DaqType).
void ExitDaqTypeForm(Station& st, const DaqTypeForm& form);

}  // namespace kova
