#include "links/records/utc_time.h"

#include <ctime>

namespace kova::links {

std::int64_t LocalToUtcMs(const LocalDateTime& local) {
    std::tm tm{};
    tm.tm_year = local.year - 1900;
    tm.tm_mon = local.month - 1;
    tm.tm_mday = local.day;
    tm.tm_hour = local.hour;
    tm.tm_min = local.minute;
    tm.tm_sec = local.second;
    // Summer time first: in a repeated hour that is the earlier of the two readings.
    tm.tm_isdst = 1;
    std::tm probe = tm;
    std::time_t t = std::mktime(&probe);
    // Not summer time at that moment (or the zone has none): read it as standard time.
    if (probe.tm_isdst <= 0 || probe.tm_hour != local.hour) {
        probe = tm;
        probe.tm_isdst = 0;
        // In the hour skipped in spring this reads it as standard time, before the clock
        // moved.
        t = std::mktime(&probe);
    }
    return static_cast<std::int64_t>(t) * 1000 + local.millisecond;
}

}  // namespace kova::links
