#pragma once
// The lines an alarm produces: a five-letter word and a blank, the date as month-day-year
// with a four-digit year, the 24-hour time, a blank, then the alarm's message.
#include <cstddef>
#include <string>

#include "platform/clock.h"

namespace kova {

inline constexpr const char* kAlarmWord = "ALARM";
inline constexpr const char* kNormalWord = "NORML";

// "ALARM 11-15-2026 14:05:09 " for word "ALARM" (always 26 characters).
std::string AlarmLinePrefix(const char* word, const LocalDateTime& when);

inline constexpr std::size_t kAlarmPrefixLength = 26;

}  // namespace kova
