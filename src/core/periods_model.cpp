#include "core/periods_model.h"

#include "core/numeric.h"

namespace kova {

PeriodsForm OpenPeriodsForm(const Station& st) {
    PeriodsForm f;
    f.TxtIOPeriod = std::to_string(st.periods.IOPeriod);
    f.OptIOSecs = st.periods.IOUnits == kUnitSeconds;
    f.TxtLogPeriod = std::to_string(st.periods.LogPeriod);
    f.OptLogSecs = st.periods.LogUnits == kUnitSeconds;
    f.OptLogTrend = st.periods.TrendAtLogPeriod != 0;
    return f;
}

bool ExitPeriodsForm(Station& st, PeriodsForm& form) {
    Periods& p = st.periods;
    Prompter& prompt = *st.platform.prompter;
    form.FailedBox = "TxtIOPeriod";  // until it has passed

    p.IOPeriod = strictTextToInt16(form.TxtIOPeriod);
    if (!form.OptIOSecs && p.IOPeriod < 50) {
        prompt.message("Time Between I/O Readings Cannot Be Less than 50mSecs", "Error");
        form.TxtIOPeriod = "50";
        return false;
    }
    form.FailedBox = "TxtLogPeriod";
    p.IOUnits = form.OptIOSecs ? kUnitSeconds : kUnitMs;
    const long long ioMs = static_cast<long long>(p.IOPeriod) * p.IOUnits;

    p.LogPeriod = strictTextToInt16(form.TxtLogPeriod);
    if (!form.OptLogSecs && p.LogPeriod < 50) {
        prompt.message("Time Between Logging Readings Cannot Be Less than 50mSecs", "Error");
        form.TxtLogPeriod = "50";
        return false;
    }
    p.LogUnits = form.OptLogSecs ? kUnitSeconds : kUnitMs;
    const long long logMs = static_cast<long long>(p.LogPeriod) * p.LogUnits;

    if (ioMs > logMs) {
        form.FailedBox = "TxtIOPeriod";
        prompt.message("Period for I/O Readings must be less than or equal to Logging Period",
                       "ERROR");
        return false;
    }
    p.TrendAtLogPeriod = form.OptLogTrend ? -1 : 0;
    form.FailedBox.clear();
    return true;
}

}  // namespace kova
