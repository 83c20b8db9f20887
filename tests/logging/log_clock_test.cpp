#include <gtest/gtest.h>

#include "core/fault.h"
#include "log_rig.h"
#include "logging/log_writer.h"

namespace kova {

namespace {
struct ClockReading {
    int h, m, s, ms;
    long date;
};
ClockReading Read(const Station& st) {
    const LogRunState& r = st.logRun;
    return {r.LogHour, r.LogMinute, r.LogSecond, r.LogMillisecond, r.LogDate};
}
void Set(Station& st, int h, int m, int s, int ms, long date) {
    st.logRun.LogHour = static_cast<std::int16_t>(h);
    st.logRun.LogMinute = static_cast<std::int16_t>(m);
    st.logRun.LogSecond = static_cast<std::int16_t>(s);
    st.logRun.LogMillisecond = static_cast<std::int16_t>(ms);
    st.logRun.LogDate = date;
}
#define EXPECT_CLOCK(st, H, M, S, MS, DATE) \
    do {                                    \
        const ClockReading c = Read(st);    \
        EXPECT_EQ(c.h, H);                  \
        EXPECT_EQ(c.m, M);                  \
        EXPECT_EQ(c.s, S);                  \
        EXPECT_EQ(c.ms, MS);                \
        EXPECT_EQ(c.date, DATE);            \
    } while (0)

const long kNov15 = dateSerial(2026, 11, 15);
}  // namespace

TEST(LogClock, StartTakesTodayAndTheTimeWithMillisecondZero) {
    test::LogRig r;
    r.clock.set(test::At(2026, 11, 15, 10, 15, 1, 734));
    StartLogClock(r.st);
    EXPECT_CLOCK(r.st, 10, 15, 1, 0, kNov15);
}

TEST(LogClock, HalfSecondSteps) {
    test::LogRig r;
    Set(r.st, 10, 15, 0, 0, kNov15);
    AdvanceLogClock(r.st, 500);
    EXPECT_CLOCK(r.st, 10, 15, 0, 500, kNov15);
    AdvanceLogClock(r.st, 500);
    EXPECT_CLOCK(r.st, 10, 15, 1, 0, kNov15);
    AdvanceLogClock(r.st, 500);
    EXPECT_CLOCK(r.st, 10, 15, 1, 500, kNov15);
}

TEST(LogClock, TwoHundredMillisecondsBeforeMidnightPlusHalfASecondIsTheNextDay) {
    test::LogRig r;
    Set(r.st, 23, 59, 59, 800, kNov15);
    AdvanceLogClock(r.st, 500);
    EXPECT_CLOCK(r.st, 0, 0, 0, 300, kNov15 + 1);
}

TEST(LogClock, MidnightAtTheEndOfAYearGoesToTheFirstOfJanuary) {
    test::LogRig r;
    Set(r.st, 23, 59, 50, 0, dateSerial(2026, 12, 31));
    AdvanceLogClock(r.st, 10000);
    EXPECT_CLOCK(r.st, 0, 0, 0, 0, dateSerial(2027, 1, 1));
}

TEST(LogClock, TwelveHundredMillisecondsCarryIntoSeconds) {
    test::LogRig r;
    Set(r.st, 10, 15, 59, 900, kNov15);
    AdvanceLogClock(r.st, 1200);
    EXPECT_CLOCK(r.st, 10, 16, 1, 100, kNov15);
}

TEST(LogClock, SecondsAndMinutesCarryOnce) {
    test::LogRig r;
    Set(r.st, 10, 59, 45, 0, kNov15);
    AdvanceLogClock(r.st, 90 * 1000);  // 1 min 30 s
    EXPECT_CLOCK(r.st, 11, 1, 15, 0, kNov15);
}

TEST(LogClock, AnHourPeriodWrapsMinutesOnce) {
    test::LogRig r;
    Set(r.st, 10, 15, 0, 0, kNov15);
    AdvanceLogClock(r.st, 3600 * 1000);
    EXPECT_CLOCK(r.st, 11, 15, 0, 0, kNov15);
}

TEST(LogClock, TwoHourPeriodLeavesMinutesAtSixtyOrAbove) {
    test::LogRig r;
    Set(r.st, 10, 15, 0, 0, kNov15);
    AdvanceLogClock(r.st, 7200 * 1000);  // 120 minutes: one wrap subtracts 60 only
    EXPECT_CLOCK(r.st, 11, 75, 0, 0, kNov15);
    AdvanceLogClock(r.st, 7200 * 1000);
    EXPECT_CLOCK(r.st, 12, 135, 0, 0, kNov15);
}

TEST(LogClock, MinutesThatNoLongerFitSixteenBitsFault) {
    test::LogRig r;
    Set(r.st, 10, 32760, 0, 0, kNov15);
    try {
        AdvanceLogClock(r.st, 7200 * 1000);
        FAIL() << "no fault";
    } catch (const Fault& f) {
        EXPECT_EQ(f.kind(), FaultKind::Overflow);
    }
}

}  // namespace kova
