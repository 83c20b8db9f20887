#pragma once
// The typed values of kova-cli's options, each checked in one place: a whole number within
// its range, a start time that is a real date and time.
#include <optional>
#include <string>
#include <string_view>

#include "platform/clock.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace kova::cli {

// Decimal digits only (an optional "-"), nothing around them, within low..high.
std::optional<long long> ParseWholeNumber(std::string_view text, long long low, long long high);

// "YYYY-MM-DD HH:MM:SS" with optional ".mmm": a date that exists (no 31 February, 29
// February only in leap years), years 1900..9999, a time of day 00:00:00 .. 23:59:59.999.
std::optional<LocalDateTime> ParseStartTime(std::string_view text);

// An option holding a whole number within low..high; anything else is refused while the
// command line is read, naming the option and the range.
CLI::Option* AddWholeNumberOption(CLI::App& app, const std::string& name,
                                  std::optional<long long>& value, long long low, long long high,
                                  const std::string& description);

// An option holding a start time as ParseStartTime reads it.
CLI::Option* AddStartTimeOption(CLI::App& app, const std::string& name,
                                std::optional<LocalDateTime>& value,
                                const std::string& description);

}  // namespace kova::cli
