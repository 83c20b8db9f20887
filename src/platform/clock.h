#pragma once
// The only way the engine reads time: local date and time with milliseconds.
#include <cstdint>

namespace kova {

struct LocalDateTime {
    int year = 2000, month = 1, day = 1;  // calendar date
    int hour = 0, minute = 0, second = 0, millisecond = 0;

    // Seconds since local midnight, with the milliseconds as a fraction.
    double secondsOfDay() const {
        return hour * 3600.0 + minute * 60.0 + second + millisecond / 1000.0;
    }
    // Day of the week, Sunday = 1 .. Saturday = 7.
    int dayOfWeek() const;
    // Days since 30 December 1899 (the date serial of the setup file's date variants).
    long dateSerial() const;
    bool operator==(const LocalDateTime&) const = default;
};

// Calendar helpers on date serials (days since 30 December 1899).
long dateSerial(int year, int month, int day);
void dateFromSerial(long serial, int& year, int& month, int& day);

// Adds milliseconds (may be negative) to a local date-time, carrying into the date.
LocalDateTime addMilliseconds(const LocalDateTime& t, long long ms);

class Clock {
  public:
    virtual ~Clock() = default;
    virtual LocalDateTime now() const = 0;
};

// The machine's local clock.
class SystemClock final : public Clock {
  public:
    LocalDateTime now() const override;
};

// A clock that stands still until told to move: tests and the command line's simulated runs.
class SimulatedClock final : public Clock {
  public:
    explicit SimulatedClock(LocalDateTime start = {}) : now_(start) {}
    LocalDateTime now() const override { return now_; }
    void set(const LocalDateTime& t) { now_ = t; }
    void advance(long long ms) { now_ = addMilliseconds(now_, ms); }

  private:
    LocalDateTime now_;
};

}  // namespace kova
