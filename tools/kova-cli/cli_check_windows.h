#pragma once
// What the alarm, screen and trend set-up windows and the control statement editor would
// refuse in a configuration that reads. Each check is the window's own, so the messages
// quoted are the very ones the window shows.
#include <string>
#include <vector>

#include "core/station.h"

namespace kova::cli {

// Every alarm with a tag name, as the alarm set-up window saves it: the name must be a
// tag's, high above low, the texts must fit the record. Alarms without a name and without a
// tag number are unused; a number that is not the name's tag is reported (the scan goes by
// the number, the window by the name).
std::vector<std::string> CheckAlarmRecords(const Station& st);

// Every screen as the screen set-up window saves it: the jump target, and every line with a
// name (a tag of the row's kind: analog lines 1..10, digital lines 11..20); and, as for
// alarms, a tag number that is not the number of the line's name.
std::vector<std::string> CheckScreenRecords(const Station& st);

// Every pen with a tag as the trend set-up window shows and saves it: the tag's name must
// find the tag again. Pens outside 0..42 are left to the value checks.
std::vector<std::string> CheckTrendRecords(const Station& st);

// Every control line with a text, checked as the control statement editor checks it; the
// assignments are executed once on `scratch` (a second copy of the same configuration), so
// one the target refuses is found while `st` stays as it is.
std::vector<std::string> CheckControlRecords(const Station& st, Station& scratch);

}  // namespace kova::cli
