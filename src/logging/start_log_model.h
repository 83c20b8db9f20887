#pragma once
// The "StartLog" window as a model: when records are written (start/stop conditions) and
// the box that switches logging on.
#include <string>
#include <vector>

#include "core/station.h"

namespace kova {

struct StartLogForm {
    int OptLogMode = 0;  // index of the chosen OptLogMode button: 0 samples, 1 tag value, 2 clock
    std::string TxtSampleNo;
    std::string CboTag;
    std::string TxtStartValue;
    bool OptStartAbove = false;  // false: start when below
    std::string TxtStopValue;
    bool OptStopAbove = false;  // false: stop when below
    std::string TxtStartTime;
    std::string TxtStopTime;
    bool ChkLogging = false;
    // After a refused Exit: the box at fault ("TxtSampleNo", "CboTag", "TxtStartValue",
    // "TxtStopValue", "TxtStartTime", "TxtStopTime"); "" otherwise.
    std::string FailedBox{};
};

// What the window shows when it opens.
StartLogForm OpenStartLogForm(const Station& st);
// The names CboTag offers: the named tags 1..32 in tag order.
std::vector<std::string> ConditionTagChoices(const Station& st);

// The tag table or the whole configuration changed while the window is open. `form` holds
// what the controls show now, `shown` what the window showed when it opened. A condition tag
// box the user has not typed in shows the condition tag as it is now named; a new
// configuration shows the window afresh (both forms).
void StartLogTablesChanged(const Station& st, StartLogForm& form, StartLogForm& shown,
                           TableChange change);

// Exit: the checks in their order; the first failure shows its message and returns false
// (the window stays open, values stored by earlier steps stay stored). Returns true when
// the window closes. Logging follows the box: switched on, it opens the file (a file that
// cannot be opened faults, with logging left off); the box ticked without a log file name
// shows "Error No Log File Name Has Been Entered", is cleared, and the window closes.
bool ExitStartLogForm(Station& st, StartLogForm& form);

// A "HH:MM" entry: ":" at the second character or later, whole hours 0..23 before it and
// whole minutes 0..59 after it. False when the text is not such a time.
bool ParseLogTime(const std::string& text, int& hours, int& minutes);

}  // namespace kova
