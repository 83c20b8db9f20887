#pragma once
// The "SetLogging" window as a model: where the log file goes and which columns it has.
#include <string>

#include "core/station.h"

namespace kova {

struct SetLoggingForm {
    std::string TxtFileName;
    bool OptDateFormat2 = false;  // month/day/year; false: OptDateFormat1 (day/month/year)
    bool ChkTime = false;
    bool ChkDate = false;
    bool ChkDaily = false;
    bool NewFile = false;
};

// What the window shows when it opens.
SetLoggingForm OpenSetLoggingForm(const Station& st);

// ChkDaily click: DailyFiles takes the box's value at once.
void ClickDailyFiles(Station& st, SetLoggingForm& form, bool checked);

// ComFile: the file dialog "Open Logging File" proposing "*.CSV" (in daily mode the current
// LogFileName, and the logging date becomes today). The chosen path becomes LogFileName,
// its folder (up to the last "\" or "/") LogDirectory, and TxtFileName shows it. Returns
// false (nothing changed beyond the logging date) when the dialog is cancelled.
bool ChooseLogFile(Station& st, SetLoggingForm& form);

// ComExit: stores the date format, the time and date columns, daily files and overwrite
// from the controls. The window then closes.
void ExitSetLoggingForm(Station& st, const SetLoggingForm& form);

}  // namespace kova
