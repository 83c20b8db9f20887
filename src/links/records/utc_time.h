#pragma once
// The station's clock is local time; what leaves the station carries UTC. A local time is
// read in the station's time zone (TZ, else the system's), across daylight-saving changes:
// in the hour that a change to winter time repeats, the first (summer) reading is taken,
// and a time in the hour skipped in spring is read as if the clock had not moved yet.
#include <cstdint>

#include "platform/clock.h"

namespace kova::links {

// Milliseconds since 1970-01-01 00:00 UTC of a local date and time.
std::int64_t LocalToUtcMs(const LocalDateTime& local);

}  // namespace kova::links
