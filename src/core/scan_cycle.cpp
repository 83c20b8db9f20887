#include "core/scan_cycle.h"

#include <algorithm>
#include <cmath>
#include <exception>

#include "alarms/alarm_check.h"
#include "control/run_controls.h"
#include "core/numeric.h"
#include "core/trend_sampling.h"
#include "daq/driver_dispatch.h"
#include "displays/min_max.h"
#include "logging/log_writer.h"
#include "tags/tag_table.h"

namespace kova {

namespace {

// In millisecond mode the timer fires once per I/O period; in seconds mode once a second
// and the scan counts seconds.
void keepTimerInStep(Station& st, float now) {
    ScanState& s = st.scan;
    const Periods& p = st.periods;
    if (s.LastUnits != p.IOUnits) {
        if (p.IOUnits == kUnitSeconds)
            st.platform.timer->setInterval(1000);
        else if (p.IOUnits == kUnitMs)
            st.platform.timer->setInterval(ScanPeriodMs(p));
        s.LastUnits = p.IOUnits;
        s.LastPeriod = p.IOPeriod;
        s.ScanCount = 0;
        s.RateStart = toInt32(now);
    } else if (p.IOUnits == kUnitMs && s.LastPeriod != p.IOPeriod) {
        st.platform.timer->setInterval(ScanPeriodMs(p));
        s.LastPeriod = p.IOPeriod;
        s.ScanCount = 0;
        s.RateStart = toInt32(now);
    }
}

bool decideScan(Station& st, float now) {
    ScanState& s = st.scan;
    s.DoScan = false;
    if (st.periods.IOUnits == kUnitSeconds && now != s.LastTickTime) {
        s.SecondTicks = add16(s.SecondTicks, 1);
        if (s.SecondTicks >= st.periods.IOPeriod) {
            s.SecondTicks = 0;
            s.DoScan = true;
        }
    }
    if (st.periods.IOUnits == kUnitMs) s.DoScan = true;
    return s.DoScan;
}

void measureScanRate(Station& st, float now) {
    ScanState& s = st.scan;
    s.ScanCount += 1;
    if (s.ScanCount >= 200) {
        // Across midnight the clock reading falls below the start: that measurement gives 0.
        const double elapsed = now > s.RateStart ? roundHalfEven(now - s.RateStart) : 0.0;
        s.ScanTime = elapsed / s.ScanCount;
        s.ScanCount = 0;
        s.RateStart = toInt32(now);
    }
}

void readDigitalInputs(Station& st) {
    const std::uint16_t word = ReadDigitalInputs(st);
    st.scan.NumDigitalInputs = st.profile.DigitalInputs;
    StoreDigitalInputs(st.scan, word, st.scan.NumDigitalInputs);
}

void readTags(Station& st) {
    for (int i = 1; i <= kUserTags; ++i) {
        Tag& t = st.tags[i];
        if (t.IONumber == 0 || t.Direction != kInput) continue;
        if (t.Kind == kAnalog) {
            std::int16_t channel = t.IONumber;  // the driver may change its argument
            const std::int16_t raw = ReadAnalogInput(st, 1, channel);
            t.Value = ScaleInput(t, CorrectReading(st.calibration, raw));
        } else if (t.Kind == kDigital) {
            t.Value = static_cast<float>(st.scan.DigitalInputs[t.IONumber]);
        }
    }
}

void writeSystemVariables(Station& st, const LocalDateTime& clock, float now) {
    st.tags[kTagTS].Value = static_cast<float>(roundHalfEven(now));
    st.tags[kTagHR].Value = static_cast<float>(clock.hour);
    st.tags[kTagMN].Value = static_cast<float>(clock.minute);
    st.tags[kTagSC].Value = static_cast<float>(clock.second);
    st.tags[kTagDW].Value = static_cast<float>(clock.dayOfWeek());
    st.tags[kTagSU].Value = static_cast<float>(st.control.StartUpFlag);
}

long long periodMs(std::int16_t period, std::int16_t units) {
    return units == kUnitSeconds ? static_cast<long long>(period) * 1000 : period;
}

// The time one scan stands for: in millisecond mode the period the timer really runs at.
long long scanMs(const Periods& p) {
    return p.IOUnits == kUnitMs ? ScanPeriodMs(p) : periodMs(p.IOPeriod, p.IOUnits);
}

// Returns a logging fault, if any, so the rest of the tick still runs; the caller rethrows
// it at the end for the general error report.
std::exception_ptr logWhenDue(Station& st) {
    ScanState& s = st.scan;
    s.LogAccumMs = narrow32(static_cast<long long>(s.LogAccumMs) + scanMs(st.periods));
    if (s.LogAccumMs < periodMs(st.periods.LogPeriod, st.periods.LogUnits)) return nullptr;
    std::exception_ptr fault;
    try {
        AdvanceLogClock(st, s.LogAccumMs);
        WriteLogRecord(st);
    } catch (const Fault&) {
        fault = std::current_exception();
    }
    if (st.periods.TrendAtLogPeriod) SampleTrends(st);
    // The remainder above the period is dropped: the log period is counted in whole scans.
    s.LogAccumMs = 0;
    return fault;
}

}  // namespace

int ScanPeriodMs(const Periods& p) {
    return p.IOPeriod < kShortestScanMs ? kShortestScanMs : p.IOPeriod;
}

void StoreDigitalInputs(ScanState& scan, std::uint16_t word, int count) {
    const int n = std::min(count, 16);
    for (int i = 1; i <= n; ++i) scan.DigitalInputs[i] = (word >> (i - 1)) & 1u ? 1 : 0;
}

void Tick(Station& st) {
    const LocalDateTime clock = st.platform.clock->now();
    const auto now = static_cast<float>(clock.secondsOfDay());
    std::exception_ptr deferred;

    keepTimerInStep(st, now);
    if (decideScan(st, now)) {
        measureScanRate(st, now);
        readDigitalInputs(st);
        readTags(st);
        UpdateMinMax(st);
        if (!st.periods.TrendAtLogPeriod) SampleTrends(st);
        writeSystemVariables(st, clock, now);
        deferred = logWhenDue(st);
    }
    RunControls(st);
    if (now != st.scan.LastTickTime) {
        CheckAlarms(st);
        st.scan.LastTickTime = now;
    }
    if (deferred) std::rethrow_exception(deferred);
}

}  // namespace kova
