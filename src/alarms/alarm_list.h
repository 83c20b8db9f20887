#pragma once
// The alarm list window (FrmAlarms) as a model: its two views as text, and acknowledgement.
#include <string>

#include "core/station.h"
#include "platform/printer.h"

namespace kova {

// Alarms in state 1 or 2 become acknowledged (3) and their LastText starts "ACKN  ";
// alarms back to normal (4) become quiet (0) without a line; history lines that begin
// with "ALARM" begin with "ACKN " instead.
void AcknowledgeAlarms(Station& st);

// The current view: the 20 LastText values in alarm order, each followed by CR LF.
std::string CurrentAlarmsText(const Station& st);
// The history view: slots 0..50, each followed by CR LF.
std::string AlarmHistoryText(const Station& st);

struct AlarmListForm {
    bool ShowingHistory = false;  // which view TxtAlarms holds
    std::string TxtAlarms;
};

// The window opens on the current view.
AlarmListForm OpenAlarmList(const Station& st);
// CmdCurrent and CmdHistory.
void ShowCurrentAlarms(const Station& st, AlarmListForm& form);
void ShowAlarmHistory(const Station& st, AlarmListForm& form);
// CmdAck: acknowledge, then refresh the view that is shown.
void AcknowledgeFromList(Station& st, AlarmListForm& form);

// How many alarms wait for "&Acknowledge": those in alarm (states 1 and 2) and those back
// to normal but not yet acknowledged (state 4).
struct UnacknowledgedCount {
    int inAlarm = 0;
    int backToNormal = 0;
    int total() const { return inAlarm + backToNormal; }
};
UnacknowledgedCount CountUnacknowledged(const Station& st);
// "No unacknowledged alarms", "Unacknowledged alarms: 3" or
// "Unacknowledged alarms: 3 (1 back to normal)".
std::string UnacknowledgedText(const Station& st);

inline constexpr const char* kSaveHistoryTitle = "Save Alarm History";
inline constexpr const char* kHistoryFileFilter = "Text Files (*.TXT)|*.TXT|All Files (*.*)|*.*|";
inline constexpr const char* kProposedHistoryFile = "ALARMS.TXT";
inline constexpr const char* kHistoryDocumentName = "KOVA Alarm History";
inline constexpr const char* kHistoryEmpty = "The Alarm History Is Empty";

// The history lines in use (the slots that are not empty, oldest first), each followed by
// CR LF: what is saved and printed.
std::string AlarmHistoryListing(const Station& st);

// Asks for a text file and writes the history listing into it (replacing it). False when
// the history is empty (said so), the user cancelled, or the file could not be written (a
// message titled "Error" names the file and why).
bool SaveAlarmHistory(Station& st);
// Prints the history listing on the printer; false when the history is empty (said so) or
// nothing was printed.
bool PrintAlarmHistory(Station& st, Printer& printer);

}  // namespace kova
