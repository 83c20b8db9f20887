#include "log_rig.h"

#include "logging/log_writer.h"

namespace kova::test {

void LogRig::scan() {
    const Periods& p = st.periods;
    const std::int32_t scanMs = p.IOPeriod * (p.IOUnits == kUnitSeconds ? 1000 : 1);
    const std::int32_t logMs = p.LogPeriod * (p.LogUnits == kUnitSeconds ? 1000 : 1);
    clock.advance(scanMs);
    accumMs += scanMs;
    if (accumMs >= logMs) {
        AdvanceLogClock(st, accumMs);
        WriteLogRecord(st);
        accumMs = 0;
    }
}

}  // namespace kova::test
