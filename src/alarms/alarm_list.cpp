#include "alarms/alarm_list.h"

namespace kova {

namespace {

constexpr const char* kCrLf = "\r\n";

// Byte offset just past the first `count` characters of a UTF-8 text (its length when
// shorter).
std::size_t afterCharacters(const std::string& s, std::size_t count) {
    std::size_t i = 0;
    while (i < s.size() && count > 0) {
        ++i;
        while (i < s.size() && (static_cast<unsigned char>(s[i]) & 0xC0) == 0x80) ++i;
        --count;
    }
    return i;
}

}  // namespace

void AcknowledgeAlarms(Station& st) {
    for (AlarmDef& a : st.alarms.Alarms) {
        if (a.State == 1 || a.State == 2) {
            a.State = 3;
            a.LastText = "ACKN  " + a.LastText.substr(afterCharacters(a.LastText, 6));
        } else if (a.State == 4) {
            a.State = 0;
        }
    }
    for (std::string& line : st.alarms.History) {
        if (line.starts_with("ALARM")) line.replace(0, 5, "ACKN ");
    }
}

std::string CurrentAlarmsText(const Station& st) {
    std::string text;
    for (const AlarmDef& a : st.alarms.Alarms) text += a.LastText + kCrLf;
    return text;
}

std::string AlarmHistoryText(const Station& st) {
    std::string text;
    for (const std::string& line : st.alarms.History) text += line + kCrLf;
    return text;
}

AlarmListForm OpenAlarmList(const Station& st) {
    AlarmListForm form;
    ShowCurrentAlarms(st, form);
    return form;
}

void ShowCurrentAlarms(const Station& st, AlarmListForm& form) {
    form.ShowingHistory = false;
    form.TxtAlarms = CurrentAlarmsText(st);
}

void ShowAlarmHistory(const Station& st, AlarmListForm& form) {
    form.ShowingHistory = true;
    form.TxtAlarms = AlarmHistoryText(st);
}

void AcknowledgeFromList(Station& st, AlarmListForm& form) {
    AcknowledgeAlarms(st);
    if (form.ShowingHistory)
        ShowAlarmHistory(st, form);
    else
        ShowCurrentAlarms(st, form);
}

}  // namespace kova
