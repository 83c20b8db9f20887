#include "logging/log_conditions.h"

#include "logging/log_writer.h"

namespace kova {

namespace {
void bySampleCount(Station& st) {
    LogRunState& r = st.logRun;
    const double stopAfter = st.logging.StopSampleCount.asNumber();
    r.LogState = 0;
    if (stopAfter == 0 || r.SampleNumber < stopAfter) {
        r.LogState = 1;
    } else {
        r.LastStop = {LogStop::Why::Finished, r.File.path(), r.SampleNumber, {}};
        r.SampleNumber = 0;
        st.switches.LoggingEnabled = Variant::integer(0);
        CloseLogFile(st);
    }
}

void byTagValue(Station& st) {
    const LogSettings& s = st.logging;
    LogRunState& r = st.logRun;
    const float v = st.tag(s.ConditionTag).Value;  // a tag number outside the table faults
    if (r.LogState == 0) {
        const double start = s.StartValue.asNumber();
        const bool pass = s.StartAbove != 0 ? v > start : v < start;
        if (pass) r.LogState = 1;
    } else {
        const bool pass = s.StopAbove != 0 ? v > s.StopValue : v < s.StopValue;
        if (pass) r.LogState = 0;
    }
}

void byClockTimes(Station& st) {
    const LogSettings& s = st.logging;
    LogRunState& r = st.logRun;
    const LocalDateTime now = st.platform.clock->now();
    const long t = now.hour * 3600L + now.minute * 60L + now.second;  // whole seconds
    const double start = s.StartTimeSecs.asNumber();
    const double stop = s.StopTimeSecs;
    r.LogState = 0;
    if (stop > start) {
        if (start <= t && t <= stop) r.LogState = 1;
    } else if (t >= start || t <= stop) {
        r.LogState = 1;  // the window runs over midnight
    }
}
}  // namespace

bool LoggingActive(const Station& st) {
    return st.switches.LoggingEnabled.isOn() && st.logRun.LogState == 1;
}

void CheckLogConditions(Station& st) {
    const std::int16_t before = st.logRun.LogState;
    switch (st.logging.LogMode) {
        case 0:
            bySampleCount(st);
            return;
        case 1:
            byTagValue(st);
            break;
        case 2:
            byClockTimes(st);
            break;
        default:
            return;  // no condition of that number: the state stays as it is
    }
    if (st.logRun.LogState == 1 && before != 1) StartLogClock(st);
}

}  // namespace kova
