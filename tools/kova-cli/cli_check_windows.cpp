#include "cli_check_windows.h"

#include "alarms/alarm_setup.h"
#include "control/line_check.h"
#include "displays/readings_setup.h"
#include "displays/trend_setup.h"
#include "tags/tag_name_index.h"
#include "tags/tag_table.h"

namespace kova::cli {

namespace {
std::string refused(const std::string& where, const char* window, const std::string& message) {
    return where + ": the " + window + " refuses it (\"" + message + "\")";
}

// The scan goes by the stored number, the set-up window by the name: when the two disagree
// the program does one thing and the window shows another, and saving silently changes it.
// `field` is the number's name in the file, `user` what uses the number. "" when they agree,
// when the name is refused anyway or the number is outside 1..42 (other checks say so).
std::string numberMismatch(const Station& st, const std::string& where, const char* field,
                           const std::string& name, int number, const char* user,
                           const char* window) {
    if (number < 1 || number > kTableTags) return {};
    const std::string n = std::to_string(number);
    if (name.empty())
        return where + ": " + field + " " + n + " without a tag name: " + user + " tag " + n +
               ", the " + window + " shows no tag and stores 0";
    const int found = FindTag(st.nameIndex, NormalizeTagName(name));
    if (found == 0 || found == number) return {};
    return where + ": " + field + " " + n + " is not the number of " + name + " (" +
           std::to_string(found) + "): " + user + " tag " + n + ", the " + window + " stores " +
           std::to_string(found);
}
}  // namespace

std::vector<std::string> CheckAlarmRecords(const Station& st) {
    std::vector<std::string> problems;
    for (int n = 1; n <= kAlarmCount; ++n) {
        const AlarmDef& a = st.alarms.Alarms[n];
        const std::string where = "alarm " + std::to_string(n);
        if (std::string m = numberMismatch(st, where, "TagNo", a.TagName, a.TagNo,
                                           "the alarm checks", "alarm set-up window");
            !m.empty())
            problems.push_back(std::move(m));
        if (a.TagName.empty()) continue;
        AlarmSetupForm form;
        ShowAlarm(st, form, n);
        if (const auto refusal = CheckAlarmForm(st, form))
            problems.push_back(refused("alarm " + std::to_string(n) + " (" + a.TagName + ")",
                                       "alarm set-up window", refusal->text));
    }
    return problems;
}

std::vector<std::string> CheckScreenRecords(const Station& st) {
    std::vector<std::string> problems;
    for (int s = 1; s <= kScreens; ++s) {
        const int jump = st.screens.Headers[s].JumpTo;
        // The window shows a target outside 0..10 as 1; typed in, it would be refused.
        if (const std::string r = JumpToRefusal(std::to_string(jump)); !r.empty())
            problems.push_back(
                refused("screen " + std::to_string(s) + ": JumpTo " + std::to_string(jump),
                        "screen set-up window", r));
        for (int l = 1; l <= 2 * kScreenRows; ++l) {
            const ScreenLine& line = st.screens.Lines(s, l);
            const std::string where = "screen " + std::to_string(s) + " line " + std::to_string(l);
            if (std::string m = numberMismatch(st, where, "TagNumber", line.TagName, line.TagNumber,
                                               "the screen shows", "screen set-up window");
                !m.empty())
                problems.push_back(std::move(m));
            if (line.TagName.empty()) continue;
            int number = 0;
            const std::string r = ScreenLineRefusal(st, line.TagName, l > kScreenRows, number);
            if (!r.empty())
                problems.push_back(refused("screen " + std::to_string(s) + " line " +
                                               std::to_string(l) + " (" + line.TagName + ")",
                                           "screen set-up window", r));
        }
    }
    return problems;
}

std::vector<std::string> CheckTrendRecords(const Station& st) {
    std::vector<std::string> problems;
    for (int t = 1; t <= 10; ++t)
        for (int pen = 1; pen <= 4; ++pen) {
            const int n = st.trends.TrendTable(t, pen);
            if (n == 0 || !TagTable::inRange(n)) continue;
            const std::string where = "trend " + std::to_string(t) + " pen " + std::to_string(pen) +
                                      " (tag " + std::to_string(n) + ")";
            const std::string text = TrendPenText(st, t, pen);
            if (text.empty()) {
                problems.push_back(where +
                                   ": the tag has no name, so the trend set-up window shows the "
                                   "pen empty and stores 0");
                continue;
            }
            int found = 0;
            if (const std::string r = TrendPenRefusal(st, text, found); !r.empty())
                problems.push_back(refused(where, "trend set-up window", r));
        }
    return problems;
}

std::vector<std::string> CheckControlRecords(const Station& st, Station& scratch) {
    std::vector<std::string> problems;
    for (const ControlLineProblem& p : FindControlLineProblems(st, &scratch)) {
        const std::string where = "control line " + std::to_string(p.line);
        problems.push_back(p.editorRefuses ? refused(where, "control statement editor", p.message)
                                           : where + ": " + p.message);
    }
    return problems;
}

}  // namespace kova::cli
