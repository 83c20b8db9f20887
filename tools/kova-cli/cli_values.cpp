#include "cli_values.h"

#include <CLI/CLI.hpp>
#include <charconv>

namespace kova::cli {

namespace {
bool allDigits(std::string_view s) {
    if (s.empty()) return false;
    for (char c : s)
        if (c < '0' || c > '9') return false;
    return true;
}

// A field of exactly `width` digits.
std::optional<int> field(std::string_view s, std::size_t at, std::size_t width) {
    if (at + width > s.size() || !allDigits(s.substr(at, width))) return std::nullopt;
    int v = 0;
    std::from_chars(s.data() + at, s.data() + at + width, v);
    return v;
}

bool leapYear(int y) {
    return (y % 4 == 0 && y % 100 != 0) || y % 400 == 0;
}

int daysInMonth(int y, int m) {
    static constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return m == 2 && leapYear(y) ? 29 : kDays[m - 1];
}
}  // namespace

std::optional<long long> ParseWholeNumber(std::string_view text, long long low, long long high) {
    const std::string_view digits = !text.empty() && text[0] == '-' ? text.substr(1) : text;
    if (!allDigits(digits)) return std::nullopt;
    long long v = 0;
    const auto r = std::from_chars(text.data(), text.data() + text.size(), v);
    if (r.ec != std::errc() || r.ptr != text.data() + text.size()) return std::nullopt;
    if (v < low || v > high) return std::nullopt;
    return v;
}

std::optional<LocalDateTime> ParseStartTime(std::string_view s) {
    // 0123456789012345678901
    // YYYY-MM-DD HH:MM:SS.mmm
    if (s.size() != 19 && s.size() != 23) return std::nullopt;
    if (s[4] != '-' || s[7] != '-' || s[10] != ' ' || s[13] != ':' || s[16] != ':')
        return std::nullopt;
    const auto year = field(s, 0, 4), month = field(s, 5, 2), day = field(s, 8, 2);
    const auto hour = field(s, 11, 2), minute = field(s, 14, 2), second = field(s, 17, 2);
    if (!year || !month || !day || !hour || !minute || !second) return std::nullopt;
    LocalDateTime t;
    if (s.size() == 23) {
        const auto ms = field(s, 20, 3);
        if (s[19] != '.' || !ms) return std::nullopt;
        t.millisecond = *ms;
    }
    if (*year < 1900 || *month < 1 || *month > 12 || *day < 1 ||
        *day > daysInMonth(*year, *month) || *hour > 23 || *minute > 59 || *second > 59)
        return std::nullopt;
    t.year = *year;
    t.month = *month;
    t.day = *day;
    t.hour = *hour;
    t.minute = *minute;
    t.second = *second;
    return t;
}

CLI::Option* AddWholeNumberOption(CLI::App& app, const std::string& name,
                                  std::optional<long long>& value, long long low, long long high,
                                  const std::string& description) {
    const std::string range = std::to_string(low) + ".." + std::to_string(high);
    return app
        .add_option_function<std::string>(
            name,
            [&value, name, low, high, range](const std::string& text) {
                value = ParseWholeNumber(text, low, high);
                if (!value)
                    throw CLI::ValidationError(
                        name, "takes a whole number in " + range + ", not \"" + text + "\"");
            },
            description)
        ->type_name("N");
}

CLI::Option* AddStartTimeOption(CLI::App& app, const std::string& name,
                                std::optional<LocalDateTime>& value,
                                const std::string& description) {
    return app
        .add_option_function<std::string>(
            name,
            [&value, name](const std::string& text) {
                value = ParseStartTime(text);
                if (!value)
                    throw CLI::ValidationError(
                        name,
                        "takes a date and time that exist, as \"YYYY-MM-DD HH:MM:SS.mmm\", "
                        "not \"" +
                            text + "\"");
            },
            description)
        ->type_name("\"YYYY-MM-DD HH:MM:SS.mmm\"");
}

}  // namespace kova::cli
