#include "platform/clock.h"

#include <chrono>
#include <ctime>

namespace kova {

namespace {
// Days from 1970-01-01 for a proleptic Gregorian date (H. Hinnant's algorithm).
long daysFromCivil(long y, unsigned m, unsigned d) {
    y -= m <= 2;
    const long era = (y >= 0 ? y : y - 399) / 400;
    const unsigned yoe = static_cast<unsigned>(y - era * 400);
    const unsigned doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
    const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + static_cast<long>(doe) - 719468;
}

void civilFromDays(long z, int& y, int& m, int& d) {
    z += 719468;
    const long era = (z >= 0 ? z : z - 146096) / 146097;
    const unsigned doe = static_cast<unsigned>(z - era * 146097);
    const unsigned yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    const long yy = static_cast<long>(yoe) + era * 400;
    const unsigned doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const unsigned mp = (5 * doy + 2) / 153;
    d = static_cast<int>(doy - (153 * mp + 2) / 5 + 1);
    m = static_cast<int>(mp < 10 ? mp + 3 : mp - 9);
    y = static_cast<int>(yy + (m <= 2));
}

constexpr long kSerialEpochOffset = 25569;  // days from 1899-12-30 to 1970-01-01
}  // namespace

long dateSerial(int year, int month, int day) {
    return daysFromCivil(year, static_cast<unsigned>(month), static_cast<unsigned>(day)) +
           kSerialEpochOffset;
}

void dateFromSerial(long serial, int& year, int& month, int& day) {
    civilFromDays(serial - kSerialEpochOffset, year, month, day);
}

long LocalDateTime::dateSerial() const {
    return kova::dateSerial(year, month, day);
}

int LocalDateTime::dayOfWeek() const {
    const long days = daysFromCivil(year, static_cast<unsigned>(month), static_cast<unsigned>(day));
    // 1970-01-01 was a Thursday (Sunday = 1 gives Thursday = 5).
    long w = (days + 4) % 7;  // 0 = Sunday
    if (w < 0) w += 7;
    return static_cast<int>(w) + 1;
}

LocalDateTime addMilliseconds(const LocalDateTime& t, long long ms) {
    constexpr long long kDayMs = 86400000LL;
    long long total = ((t.hour * 60LL + t.minute) * 60LL + t.second) * 1000LL + t.millisecond + ms;
    long days = daysFromCivil(t.year, static_cast<unsigned>(t.month), static_cast<unsigned>(t.day));
    long long dayShift = total / kDayMs;
    total %= kDayMs;
    if (total < 0) total += kDayMs, --dayShift;
    days += static_cast<long>(dayShift);
    LocalDateTime r;
    civilFromDays(days, r.year, r.month, r.day);
    r.millisecond = static_cast<int>(total % 1000);
    total /= 1000;
    r.second = static_cast<int>(total % 60);
    total /= 60;
    r.minute = static_cast<int>(total % 60);
    r.hour = static_cast<int>(total / 60);
    return r;
}

LocalDateTime SystemClock::now() const {
    const auto now = std::chrono::system_clock::now();
    const auto ms =
        std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count();
    const std::time_t secs = static_cast<std::time_t>(ms / 1000);
    std::tm local{};
#ifdef _WIN32
    localtime_s(&local, &secs);
#else
    localtime_r(&secs, &local);
#endif
    LocalDateTime t;
    t.year = local.tm_year + 1900;
    t.month = local.tm_mon + 1;
    t.day = local.tm_mday;
    t.hour = local.tm_hour;
    t.minute = local.tm_min;
    t.second = local.tm_sec;
    t.millisecond = static_cast<int>(ms % 1000);
    return t;
}

}  // namespace kova
