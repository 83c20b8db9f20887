#include "alarms/alarm_text.h"

#include <cstdio>

namespace kova {

std::string AlarmLinePrefix(const char* word, const LocalDateTime& when) {
    // Regional settings never change this form: month-day-year, "-" separators.
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.5s %02d-%02d-%04d %02d:%02d:%02d ", word, when.month,
                  when.day, when.year, when.hour, when.minute, when.second);
    return buf;
}

}  // namespace kova
