#include "alarms/alarm_setup.h"

#include <algorithm>

#include "alarms/alarm_text.h"
#include "core/numeric.h"
#include "core/text_encoding.h"
#include "tags/tag_name_index.h"
#include "tags/tag_table.h"

namespace kova {

namespace {

// TagName, TagNo, HiVal, HiMsg, LoVal, LoMsg, NormMsg, LastText, State without the text
// bytes: five 2-byte string lengths, two 16-bit integers, two singles.
constexpr std::size_t kFixedRecordBytes = 5 * 2 + 2 * 2 + 2 * 4;
constexpr std::size_t kTextRoom = kAlarmRecordLimit - kFixedRecordBytes - kAlarmPrefixLength;

void clearAlarm(AlarmDef& a) {
    a = AlarmDef{};
}

// The bytes the kept LastText takes on file (a line the file could not hold counts as its
// UTF-8 length; such a line cannot come from the setup file or from checked messages).
std::size_t keptLineBytes(const std::string& lastText) {
    return Cp1252Length(lastText).value_or(lastText.size());
}

// A refusal text when the alarm's texts cannot be kept in its record, "" when they can.
// `kept` is the LastText that the alarm keeps when it is saved.
std::string recordProblem(const std::string& tagName, const AlarmSetupForm& form,
                          const std::string& kept) {
    const struct {
        const std::string* text;
        const char* field;
    } texts[] = {{&tagName, "Tag Name"},
                 {&form.TxtHiMsg, "High Alarm Message"},
                 {&form.TxtLoMsg, "Low Alarm Message"},
                 {&form.TxtNormMsg, "Normal Message"}};
    std::size_t total = 0;
    std::size_t longest = 0;
    for (const auto& t : texts) {
        const auto n = Cp1252Length(*t.text);
        if (!n)
            return std::string("The ") + t.field +
                   " contains a character that cannot be stored in the setup file";
        total += *n;
        if (t.text != &tagName) longest = std::max(longest, *n);
    }
    const std::size_t keptBytes = keptLineBytes(kept);
    if (keptBytes > kAlarmPrefixLength + longest) {
        // The alarm's latest line, which saving keeps, is longer than any line the new
        // messages can make: it takes the room of the longest message counted twice.
        if (kFixedRecordBytes + total + keptBytes <= kAlarmRecordLimit) return "";
        return "Alarm messages too long to save: the alarm keeps its latest line of " +
               std::to_string(keptBytes) +
               " characters, so the tag name and the three messages may have at most " +
               std::to_string(kAlarmRecordLimit - kFixedRecordBytes - keptBytes) +
               " characters together; these have " + std::to_string(total);
    }
    const std::size_t used = total + longest;
    if (used <= kTextRoom) return "";
    return "Alarm messages too long to save: the tag name and the three messages, with the "
           "longest message counted twice, may have at most " +
           std::to_string(kTextRoom) + " characters together; these have " + std::to_string(used);
}

}  // namespace

std::optional<std::size_t> AlarmRecordBudget(const std::string& tagName, const std::string& hiMsg,
                                             const std::string& loMsg, const std::string& normMsg,
                                             const std::string& lastText) {
    const auto name = Cp1252Length(tagName);
    const auto hi = Cp1252Length(hiMsg);
    const auto lo = Cp1252Length(loMsg);
    const auto norm = Cp1252Length(normMsg);
    if (!name || !hi || !lo || !norm) return std::nullopt;
    const std::size_t longestLine =
        std::max(kAlarmPrefixLength + std::max({*hi, *lo, *norm}), keptLineBytes(lastText));
    return kFixedRecordBytes + *name + *hi + *lo + *norm + longestLine;
}

std::vector<std::string> AlarmTagChoices(const Station& st) {
    std::vector<std::string> names;
    for (int n = 1; n <= kUserTags; ++n)
        if (!st.tags[n].TagName.empty()) names.push_back(st.tags[n].TagName);
    return names;
}

AlarmSetupForm OpenAlarmSetup(const Station& st) {
    AlarmSetupForm form;
    form.CboTagList = AlarmTagChoices(st);
    form.ChkEnableAlm = st.switches.AlarmsEnabled != 0;
    ShowAlarm(st, form, 1);
    return form;
}

void ShowAlarm(const Station& st, AlarmSetupForm& form, int number) {
    const AlarmDef& a = st.alarms.Alarms[number];
    form.LblAlmNo = number;
    form.CboTag = a.TagName;
    form.ShownTag = a.TagName;
    form.TxtHiVal = plainNumberText(a.HiVal);
    form.TxtHiMsg = a.HiMsg;
    form.TxtLoVal = plainNumberText(a.LoVal);
    form.TxtLoMsg = a.LoMsg;
    form.TxtNormMsg = a.NormMsg;
}

std::optional<AlarmRefusal> CheckAlarmForm(const Station& st, const AlarmSetupForm& form) {
    const std::string name = NormalizeTagName(form.CboTag);
    if (name.empty()) return std::nullopt;
    if (FindTag(st.nameIndex, name) == 0)
        return AlarmRefusal{"Tag Name Not Found", "ERROR", "CboTag"};
    if (!isNumeric(form.TxtHiVal) || !isNumeric(form.TxtLoVal))
        return AlarmRefusal{"High and Low Alarm Values must be numbers", "Error",
                            isNumeric(form.TxtHiVal) ? "TxtLoVal" : "TxtHiVal"};
    if (toSingle(leadingNumber(form.TxtHiVal)) <= toSingle(leadingNumber(form.TxtLoVal)))
        return AlarmRefusal{"High Alarm Value must be greater than Low Alarm Value", "Error",
                            "TxtHiVal"};
    const std::string& kept = st.alarms.Alarms[form.LblAlmNo].LastText;
    if (std::string problem = recordProblem(name, form, kept); !problem.empty())
        return AlarmRefusal{std::move(problem), "Error", "TxtHiMsg"};
    return std::nullopt;
}

void AlarmSetupTablesChanged(const Station& st, AlarmSetupForm& form, TableChange change) {
    if (change == TableChange::DaqType) return;
    form.CboTagList = AlarmTagChoices(st);
    if (change == TableChange::Configuration) {
        form.ChkEnableAlm = st.switches.AlarmsEnabled != 0;
        ShowAlarm(st, form, form.LblAlmNo);
        return;
    }
    if (form.CboTag == form.ShownTag) {
        form.CboTag = st.alarms.Alarms[form.LblAlmNo].TagName;
        form.ShownTag = form.CboTag;
    }
}

bool SaveAlarm(Station& st, const AlarmSetupForm& form) {
    AlarmDef& a = st.alarms.Alarms[form.LblAlmNo];
    const std::string name = NormalizeTagName(form.CboTag);
    if (name.empty()) {
        clearAlarm(a);
        return true;
    }
    if (const auto refusal = CheckAlarmForm(st, form)) {
        st.platform.prompter->message(refusal->text, refusal->title);
        return false;
    }
    const int tagNo = FindTag(st.nameIndex, name);
    const float hi = toSingle(leadingNumber(form.TxtHiVal));
    const float lo = toSingle(leadingNumber(form.TxtLoVal));

    a.TagName = name;
    a.TagNo = static_cast<std::int16_t>(tagNo);
    a.HiVal = hi;
    a.HiMsg = form.TxtHiMsg;
    a.LoVal = lo;
    a.LoMsg = form.TxtLoMsg;
    a.NormMsg = form.TxtNormMsg;
    return true;  // State and LastText stay as they are
}

namespace {
// SaveAlarm that also notes the box at fault when it refuses.
bool saveShown(Station& st, AlarmSetupForm& form) {
    form.FailedBox.clear();
    if (SaveAlarm(st, form)) return true;
    if (const auto refusal = CheckAlarmForm(st, form)) form.FailedBox = refusal->box;
    return false;
}
}  // namespace

bool NextAlarm(Station& st, AlarmSetupForm& form) {
    if (!saveShown(st, form)) return false;
    ShowAlarm(st, form, form.LblAlmNo == kAlarmCount ? 1 : form.LblAlmNo + 1);
    return true;
}

bool PrevAlarm(Station& st, AlarmSetupForm& form) {
    if (!saveShown(st, form)) return false;
    ShowAlarm(st, form, form.LblAlmNo == 1 ? kAlarmCount : form.LblAlmNo - 1);
    return true;
}

void DeleteAlarm(Station& st, AlarmSetupForm& form) {
    auto& alarms = st.alarms.Alarms;
    for (int n = form.LblAlmNo; n < kAlarmCount; ++n) alarms[n] = alarms[n + 1];
    clearAlarm(alarms[kAlarmCount]);
    ShowAlarm(st, form, form.LblAlmNo);
}

bool ExitAlarmSetup(Station& st, AlarmSetupForm& form) {
    if (!saveShown(st, form) &&
        !st.platform.prompter->askYesNo("Do You wish to exit without saving this alarm", kAppTitle,
                                        DefaultAnswer::No))
        return false;
    st.switches.AlarmsEnabled = form.ChkEnableAlm ? 1 : 0;
    return true;
}

}  // namespace kova
