#pragma once
// Alarm evaluation as the scan runs it.
#include "core/station.h"

namespace kova {

// One pass over the 20 alarms (nothing when AlarmsEnabled is 0): state changes, beeps,
// status-bar text, LastText and history.
void CheckAlarms(Station& st);

// Empties every alarm's texts and numbers, history slots 1..50, and switches alarms off.
void ClearAlarms(Station& st);

}  // namespace kova
