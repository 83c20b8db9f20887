#include "alarms/alarm_list.h"

#include <cerrno>
#include <cstring>
#include <fstream>

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

UnacknowledgedCount CountUnacknowledged(const Station& st) {
    UnacknowledgedCount n;
    for (const AlarmDef& a : st.alarms.Alarms) {
        if (a.State == 1 || a.State == 2) ++n.inAlarm;
        if (a.State == 4) ++n.backToNormal;
    }
    return n;
}

std::string UnacknowledgedText(const Station& st) {
    const UnacknowledgedCount n = CountUnacknowledged(st);
    if (n.total() == 0) return "No unacknowledged alarms";
    std::string text = "Unacknowledged alarms: " + std::to_string(n.total());
    if (n.backToNormal > 0) text += " (" + std::to_string(n.backToNormal) + " back to normal)";
    return text;
}

std::string AlarmHistoryListing(const Station& st) {
    std::string text;
    for (const std::string& line : st.alarms.History)
        if (!line.empty()) text += line + kCrLf;
    return text;
}

bool SaveAlarmHistory(Station& st) {
    Prompter& prompt = *st.platform.prompter;
    const std::string listing = AlarmHistoryListing(st);
    if (listing.empty()) {
        prompt.message(kHistoryEmpty, kAppTitle);
        return false;
    }
    const auto chosen =
        prompt.chooseFile(kSaveHistoryTitle, kHistoryFileFilter, kProposedHistoryFile, true);
    if (!chosen || chosen->empty()) return false;
    errno = 0;
    std::ofstream out(*chosen, std::ios::binary | std::ios::trunc);
    if (out) out.write(listing.data(), static_cast<std::streamsize>(listing.size()));
    if (out) out.close();
    if (!out) {
        const int err = errno;
        prompt.message("Cannot write the alarm history to " + *chosen + ": " +
                           (err != 0 ? std::strerror(err) : "the file could not be written"),
                       "Error");
        return false;
    }
    return true;
}

bool PrintAlarmHistory(Station& st, Printer& printer) {
    std::string listing = AlarmHistoryListing(st);
    if (listing.empty()) {
        st.platform.prompter->message(kHistoryEmpty, kAppTitle);
        return false;
    }
    std::string text;  // the printer takes lines separated by LF
    for (char c : listing)
        if (c != '\r') text += c;
    return printer.printText(kHistoryDocumentName, text);
}

}  // namespace kova
