#pragma once
// The alarm list window (FrmAlarms) as a model: its two views as text, and acknowledgement.
#include <string>

#include "core/station.h"

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

}  // namespace kova
