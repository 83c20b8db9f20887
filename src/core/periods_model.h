#pragma once
// The "I/O And Logging Periods" window as a model: what the controls show and what
// E&xit checks and stores.
#include <string>

#include "core/station.h"

namespace kova {

struct PeriodsForm {
    std::string TxtIOPeriod;
    bool OptIOSecs = true;  // false: OptIOmSecs
    std::string TxtLogPeriod;
    bool OptLogSecs = true;    // false: OptLogmSecs
    bool OptLogTrend = false;  // false: OptIOTrend
    // After a refusal: the period box at fault ("TxtIOPeriod", "TxtLogPeriod"), "" if none.
    std::string FailedBox{};
};

// What the window shows when it opens.
PeriodsForm OpenPeriodsForm(const Station& st);

// E&xit: each period is stored as soon as it is read, before it is checked (a rejected
// period stays stored until the next successful exit, deliberately). Returns true when
// the window may close; on a refusal the message has been shown and the form may have
// been corrected ("50" put back into a period box).
bool ExitPeriodsForm(Station& st, PeriodsForm& form);

}  // namespace kova
