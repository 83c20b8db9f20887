#pragma once
// The alarm set-up window (FrmAlmSetUp) as a model: what the controls show, SaveAlarm with
// its checks in their order, the wrap-around navigation, delete and exit.
#include <optional>
#include <string>
#include <vector>

#include "core/station.h"

namespace kova {

inline constexpr const char* kEnableAlarmsCaption = "Enable Alarms";

struct AlarmSetupForm {
    int LblAlmNo = 1;                     // the shown alarm, 1..20
    std::vector<std::string> CboTagList;  // the names offered
    std::string CboTag;                   // "" means no alarm
    std::string TxtHiVal;
    std::string TxtHiMsg;
    std::string TxtLoVal;
    std::string TxtLoMsg;
    std::string TxtNormMsg;
    bool ChkEnableAlm = false;
    std::string ShownTag{};  // what ShowAlarm put in CboTag: a box showing it was not typed in
    // After a refused alarm: the box at fault ("CboTag", "TxtHiVal", "TxtLoVal", ...).
    std::string FailedBox{};
};

// The names CboTag offers: user tags 1..32 that have a name, in tag order.
std::vector<std::string> AlarmTagChoices(const Station& st);

// Opening: the tag list, the switch, alarm 1.
AlarmSetupForm OpenAlarmSetup(const Station& st);
// Puts alarm `number` into the controls (the list and the switch stay).
void ShowAlarm(const Station& st, AlarmSetupForm& form, int number);

// A message SaveAlarm shows, with its title.
struct AlarmRefusal {
    std::string text;
    std::string title;
    std::string box{};  // the control at fault
};

// SaveAlarm's checks of the shown texts, in their order: the first refusal, nullopt when
// the alarm would be stored (a form without a tag clears the alarm: always taken).
std::optional<AlarmRefusal> CheckAlarmForm(const Station& st, const AlarmSetupForm& form);

// Stores the shown alarm, or clears it when no tag is chosen. On a refusal the message
// has been shown, nothing is stored and false is returned.
bool SaveAlarm(Station& st, const AlarmSetupForm& form);

// The tag table or the whole configuration changed while the window is open; `form` holds
// what the controls show now. The list follows the table, and a tag box the user has not
// typed in shows the shown alarm's tag as it is now named. A new configuration shows the
// alarm afresh, with the switch.
void AlarmSetupTablesChanged(const Station& st, AlarmSetupForm& form, TableChange change);

// Next and Prev: save, then move on (after 20 comes 1, before 1 comes 20); a failed save
// stays on the alarm. True when the form moved.
bool NextAlarm(Station& st, AlarmSetupForm& form);
bool PrevAlarm(Station& st, AlarmSetupForm& form);
// CmdDelete, without asking: alarms after the shown one move up one place, alarm 20 is
// emptied, and the alarm now at the shown number is shown.
void DeleteAlarm(Station& st, AlarmSetupForm& form);
// Exit: save; when that fails ask whether to leave anyway. On leaving the switch is
// stored in AlarmsEnabled. True when the window closes.
bool ExitAlarmSetup(Station& st, AlarmSetupForm& form);

// The setup file keeps an alarm in one 128-byte record. The bytes the alarm would need
// with these texts, its LastText counted at its longest: the 26-character prefix and the
// longest message, or the line it keeps now (`lastText`: saving leaves it as it is) when
// that is longer. nullopt when a text has a character the file cannot hold.
std::optional<std::size_t> AlarmRecordBudget(const std::string& tagName, const std::string& hiMsg,
                                             const std::string& loMsg, const std::string& normMsg,
                                             const std::string& lastText = "");
inline constexpr std::size_t kAlarmRecordLimit = 128;

}  // namespace kova
