#pragma once
// The main window's rules: the check boxes beside the run buttons, what the Poll I/O,
// Alarms and Control buttons switch, the calibration menu's check and the title.
#include <functional>
#include <string>

#include "core/station.h"

namespace kova {

// The four check boxes that only the program sets.
struct SwitchIndicators {
    bool OptPoll = false;
    bool OptLog = false;
    bool OptAlarm = false;
    bool OptControl = false;
    bool operator==(const SwitchIndicators&) const = default;
};

// Sets the boxes from the switches. Alarms and control show 1 checked and 0 unchecked;
// any other value leaves the box as it is.
void MirrorSwitches(const RunSwitches& sw, SwitchIndicators& boxes);

// CmdPoll: polling off -> on, on -> off.
void TogglePoll(Station& st);
// CmdAlarms: 0 -> 1, anything else -> 0.
void ToggleAlarms(Station& st);
// CmdControl: 0 -> 1, anything else -> 0.
void ToggleControls(Station& st);

// Why the printer port cannot be reached, when the user should hear it: a module other
// than the TEST module is selected, the port back-end has a problem, and that problem is
// not the one told last time (`told`, updated). The text ends with what the selected
// module reads on such a port. "" when there is nothing to tell.
std::string PortProblemToTell(const Station& st, std::string& told);

// The main window's caption: the program, the setup file in use and the working folder
// ("KOVA - Default.Suf - ~/Documents/KOVA").
std::string MainWindowTitle(const Station& st);

// The name of the setup file in use, without its folder.
std::string SetupFileShortName(const Station& st);

// "Save changes to NAME?", NAME the setup file's name.
std::string SaveChangesQuestion(const Station& st);

// Before File New, File Load and File Exit replace or drop the configuration: when it
// differs from what was last loaded or saved (ConfigurationChanged), asks "Save changes to
// NAME?" with Save, Discard and Cancel, Save the default. Save runs `save`, the ordinary
// File Save, which returns false when it was cancelled or failed. True when the command
// may go on: nothing changed, Discard, or Save that saved. Cancel, or a save that did not
// happen, leaves everything as it was and returns false.
bool MayReplaceConfiguration(Station& st, const std::function<bool()>& save);

}  // namespace kova
