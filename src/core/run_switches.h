#pragma once
#include <cstdint>

#include "core/variant.h"

namespace kova {

// The four switches of the main window's buttons.
struct RunSwitches {
    bool PollEnabled = false;  // inputs are read (and the port used) only while on
    Variant LoggingEnabled = Variant::integer(0);  // non-zero = logging on
    std::int16_t AlarmsEnabled = 0;                // 1 on, 0 off
    std::int16_t ControlsEnabled = 0;              // 1 on, 0 off
};

}  // namespace kova
