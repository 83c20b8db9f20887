#pragma once
// The control statements as the scan runs them.
#include "core/station.h"

namespace kova {

// One pass over control lines 1..ControlCount (nothing unless ControlsEnabled is 1 and
// ControlCount > 0); sets StartUpFlag to 1; then sends the digital and the analog outputs
// once each, only when their pending flag is set, and clears the flag.
void RunControls(Station& st);

// Empties all 30 lines (texts, codes, LastResult, ThenOnRise) and switches control off.
void ClearControls(Station& st);

// The number of the first line whose THEN and ELSE texts are both empty, or 30.
std::int16_t ComputeControlCount(const ControlState& control);

}  // namespace kova
