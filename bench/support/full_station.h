#pragma once
// A station with everything in use, for the benchmarks of a tick and of the windows: the
// TEST module's 18 channels and 14 variables as 32 tags, 30 control lines, 20 alarms on
// moving tags, every trend pen on a tag and readings screen 1 full.
#include <string>

#include "core/station.h"

namespace kova::bench {

// crossingAlarms: the limits sit where the moving tags cross them now and then; otherwise
// no alarm ever fires.
void BuildFullStation(Station& st, bool crossingAlarms);

// Logging switched on into `file` (replaced), with the time and date columns, the file open.
void LogEverythingTo(Station& st, const std::string& file);

}  // namespace kova::bench
