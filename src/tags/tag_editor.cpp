#include "tags/tag_editor.h"

#include <algorithm>
#include <cfloat>
#include <cmath>

#include "alarms/alarm_setup.h"
#include "control/line_check.h"
#include "core/numeric.h"
#include "core/setup_items.h"
#include "core/text_encoding.h"
#include "daq/driver_dispatch.h"
#include "platform/printer.h"
#include "platform/prompter.h"
#include "tags/tag_name_index.h"
#include "tags/tag_table.h"

namespace kova {

namespace {

constexpr const char* kErrorTitle = "ERROR";
constexpr const char* kFindTitle = "Find Tag";
constexpr const char* kQuestionTitle = "Option";

bool fail(Station& st, const std::string& text) {
    st.platform.prompter->message(text, kErrorTitle);
    return false;
}

// A refusal whose fault lies in one box: the keyboard goes back there.
bool failAt(Station& st, TagForm& f, const char* box, const std::string& text) {
    f.FailedBox = box;
    return fail(st, text);
}

bool isDigitalName(const std::string& ioName, std::int16_t kind) {
    if (ioName.empty()) return kind == kDigital;
    return ioName[0] == 'D';
}

// A raw point must be a whole number a 16-bit count can hold ("1e3" and "10.0" are).
bool isRawNumber(const std::string& text) {
    if (!isNumeric(text)) return false;
    const double v = leadingNumber(text);
    return std::isfinite(v) && v == std::floor(v) && v >= -32768 && v <= 32767;
}

bool isSingleNumber(const std::string& text) {
    if (!isNumeric(text)) return false;
    const double v = leadingNumber(text);
    return std::isfinite(v) && std::fabs(v) <= FLT_MAX;
}

bool fitsSingle(double v) {
    return std::isfinite(v) && std::fabs(v) <= FLT_MAX;
}

// The channel checks of one kind against the selected module's counts.
struct KindTexts {
    const char* address;
    const char* inputsNone;
    const char* inputsRange;
    const char* outputsNone;
    const char* outputsRange;
};
constexpr KindTexts kAnalogTexts{
    "DAQ Address must be 1 ", " has no Analog Inputs ", "I/O Number of AI's must be between 1 and ",
    " has no Analog Outputs ", "I/O Number of AO's must be between 1 and "};
constexpr KindTexts kDigitalTexts{"DAQ Address must be between 1", " has no Digital Inputs ",
                                  "I/O Number of Digital Inputs must be between 1 and ",
                                  " has no Digital Outputs ",
                                  "I/O Number of Digital Outputs must be between 1 and "};

bool checkChannel(Station& st, TagForm& f, const IONameClass& c, double address,
                  const KindTexts& texts, int inputs, int outputs) {
    const std::string& type = st.profile.TypeString;
    if (address != 1) return failAt(st, f, "TxtRTUAddr", texts.address);
    if (c.Direction == kVariable && c.IONumber != 0)
        return failAt(st, f, "CboIOName", "For a Variable the I/O Number must be 0");
    if (c.Direction == kInput && (c.IONumber < 1 || c.IONumber > inputs))
        return failAt(st, f, "CboIOName",
                      inputs == 0 ? "The " + type + texts.inputsNone
                                  : texts.inputsRange + std::to_string(inputs));
    if (c.Direction == kOutput && (c.IONumber < 1 || c.IONumber > outputs))
        return failAt(st, f, "CboIOName",
                      outputs == 0 ? "The " + type + texts.outputsNone
                                   : texts.outputsRange + std::to_string(outputs));
    return true;
}

bool listed(const DaqProfile& profile, const std::string& ioName) {
    const int count = std::clamp<int>(profile.NumIONames, 0, 40);
    for (int i = 1; i <= count; ++i)
        if (profile.IONameList[i] == ioName) return true;
    return false;
}

// The checks a careful editor adds where a record would otherwise be stored damaged:
// numbers that are not numbers, equal raw points typed differently ("1" and "01", a
// division by zero), scaling points whose slope a single cannot hold.
bool checkNumbers(Station& st, TagForm& f) {
    if (!isRawNumber(f.TxtRawValue1))
        return failAt(st, f, "TxtRawValue1",
                      "Raw Value1 must be a whole number between -32768 and 32767");
    if (!isRawNumber(f.TxtRawValue2))
        return failAt(st, f, "TxtRawValue2",
                      "Raw Value2 must be a whole number between -32768 and 32767");
    if (!isSingleNumber(f.TxtEngValue1))
        return failAt(st, f, "TxtEngValue1", "Engineering Value1 must be a number");
    if (!isSingleNumber(f.TxtEngValue2))
        return failAt(st, f, "TxtEngValue2", "Engineering Value2 must be a number");
    const double raw1 = leadingNumber(f.TxtRawValue1);
    const double raw2 = leadingNumber(f.TxtRawValue2);
    if (raw1 == raw2)
        return failAt(st, f, "TxtRawValue2", "Raw Value1 and Raw Value2 must be different numbers");
    const double eng1 = static_cast<float>(leadingNumber(f.TxtEngValue1));
    const double eng2 = static_cast<float>(leadingNumber(f.TxtEngValue2));
    const double slope = static_cast<float>((eng2 - eng1) / (raw2 - raw1));
    if (!fitsSingle((eng2 - eng1) / (raw2 - raw1)) || !fitsSingle(eng1 - raw1 * slope))
        return failAt(st, f, "TxtEngValue2", "The scaling points give a slope too large to store");
    return true;
}

// A description that would split the log's columns, a record the setup file cannot hold.
bool checkRecord(Station& st, TagForm& f, const Tag& record) {
    if (f.TxtLabel.find(',') != std::string::npos)
        return failAt(st, f, "TxtLabel",
                      "The Description cannot contain a comma: it is the heading of the tag's "
                      "column in the log file");
    const auto bytes = TagRecordBytes(record);
    if (!bytes)
        return failAt(st, f, "TxtLabel",
                      "Tag Record Contains Characters That Cannot Be Saved. Use only characters "
                      "of the Western (Windows-1252) character set");
    if (*bytes > kTagRecordBytes)
        return failAt(st, f, "TxtLabel",
                      "Tag Record Too Long. The Description, Tag Name, I/O Name, Engineering "
                      "texts and Units must fit in " +
                          std::to_string(kTagRecordBytes) + " bytes (" + std::to_string(*bytes) +
                          " now); shorten them");
    return true;
}

// The record as the boxes would store it (step 11 of accepting).
Tag buildRecord(const Tag& stored, const TagForm& f, const std::string& name, bool analog) {
    Tag t = stored;
    t.Label = ToUpper(f.TxtLabel);
    t.TagName = name;
    BindIOName(t, f.CboIOName);
    t.Address = 1;  // the only address the checks let through
    if (analog) {
        t.RawValue1 = toInt16(leadingNumber(f.TxtRawValue1));
        t.RawValue2 = toInt16(leadingNumber(f.TxtRawValue2));
        t.EngValue1 = toSingle(leadingNumber(f.TxtEngValue1));
        t.EngValue2 = toSingle(leadingNumber(f.TxtEngValue2));
        ComputeScaling(t);
    } else {
        t.RawValue1 = 0;
        t.EngText1 = f.TxtEngValue1;
        t.RawValue2 = 1;
        t.EngText2 = f.TxtEngValue2;
    }
    t.Units = f.TxtUnits;
    t.Log = f.ChkLog ? 1 : 0;
    return t;
}

bool unchanged(const Tag& stored, const TagForm& f, const std::string& name, bool analog,
               double address) {
    if (ToUpper(f.TxtLabel) != ToUpper(stored.Label) || name != stored.TagName) return false;
    // The I/O name is compared as well as its kind: a tag moved to another channel of the
    // same kind is a change.
    const IONameClass c = ClassifyIOName(f.CboIOName);
    if (c.Kind != stored.Kind || f.CboIOName != stored.IOName || address != stored.Address)
        return false;
    if (analog) {
        if (leadingNumber(f.TxtRawValue1) != stored.RawValue1 ||
            leadingNumber(f.TxtRawValue2) != stored.RawValue2 ||
            static_cast<float>(leadingNumber(f.TxtEngValue1)) != stored.EngValue1 ||
            static_cast<float>(leadingNumber(f.TxtEngValue2)) != stored.EngValue2)
            return false;
    } else if (f.TxtEngValue1 != stored.EngText1 || f.TxtEngValue2 != stored.EngText2) {
        return false;
    }
    return f.TxtUnits == stored.Units && f.ChkLog == (stored.Log != 0);
}

// Every occurrence of `from` in `text` replaced by `to`; the search goes on after each
// inserted name, so a new name that contains the old one is not replaced again.
std::string replaceAll(const std::string& text, const std::string& from, const std::string& to) {
    std::string out = text;
    std::size_t at = out.find(from);
    while (at != std::string::npos) {
        out = out.substr(0, at) + to + out.substr(at + from.size());
        at = out.find(from, at + to.size());
    }
    return out;
}

bool mentions(const ControlLine& line, const std::string& name) {
    return line.IfText.find(name) != std::string::npos ||
           line.ThenText.find(name) != std::string::npos ||
           line.ElseText.find(name) != std::string::npos;
}

struct Rewrite {
    int number;
    ControlLine line;
    std::string problem;  // the compiler's message when the new texts no longer compile
};

// Stores the renamed record and carries the new name into the readings screens and the
// control statements. The statements are compiled again against the new names so that
// the scan runs what their texts now say; a statement that would outgrow its record of
// the setup file refuses the rename and leaves everything as it was.
bool storeRenamed(Station& st, int number, const Tag& record, const std::string& oldName) {
    const Tag before = st.tags[number];
    st.tags[number] = record;
    RebuildTagNameIndex(st.tags, st.nameIndex);

    std::vector<Rewrite> rewrites;
    for (int i = 1; i <= kControlLines; ++i) {
        const ControlLine& line = st.control.Lines[i];
        if (!mentions(line, oldName)) continue;
        Rewrite r{i, line, {}};
        r.line.IfText = replaceAll(line.IfText, oldName, record.TagName);
        r.line.ThenText = replaceAll(line.ThenText, oldName, record.TagName);
        r.line.ElseText = replaceAll(line.ElseText, oldName, record.TagName);
        const LineCheck check =
            CheckLineTexts(st, nullptr, r.line.IfText, r.line.ThenText, r.line.ElseText);
        if (check.ok) {
            r.line.IfCode = check.ifCode;
            r.line.ThenCode = check.thenCode;
            r.line.ElseCode = check.elseCode;
        } else {
            r.problem = check.message;
        }
        const auto bytes = ControlRecordBytes(r.line);
        if (!bytes || *bytes > kControlRecordBytes) {
            st.tags[number] = before;
            RebuildTagNameIndex(st.tags, st.nameIndex);
            return fail(st, "Cannot rename " + oldName + " to " + record.TagName +
                                ": Control Statement " + std::to_string(i) +
                                " would no longer fit its record of the setup file");
        }
        rewrites.push_back(std::move(r));
    }

    // An alarm keeps the name of its tag as well as its number: the name follows too.
    std::vector<int> alarms;
    for (int a = 1; a <= kAlarmCount; ++a) {
        const AlarmDef& alarm = st.alarms.Alarms[a];
        if (alarm.TagName != oldName) continue;
        const auto bytes = AlarmRecordBudget(record.TagName, alarm.HiMsg, alarm.LoMsg,
                                             alarm.NormMsg, alarm.LastText);
        if (!bytes || *bytes > kAlarmRecordLimit) {
            st.tags[number] = before;
            RebuildTagNameIndex(st.tags, st.nameIndex);
            return fail(st, "Cannot rename " + oldName + " to " + record.TagName + ": Alarm " +
                                std::to_string(a) +
                                " would no longer fit its record of the setup file");
        }
        alarms.push_back(a);
    }

    Prompter& prompt = *st.platform.prompter;
    for (int s = 1; s <= 10; ++s)
        for (int l = 1; l <= 20; ++l) {
            ScreenLine& entry = st.screens.Lines(s, l);
            if (entry.TagName != oldName) continue;
            entry.TagName = record.TagName;
            prompt.message("Warning - Screen Record " + std::to_string(s) + "  has been updated",
                           kErrorTitle);
        }
    for (const int a : alarms) {
        st.alarms.Alarms[a].TagName = record.TagName;
        prompt.message("Warning - Alarm Record " + std::to_string(a) + "  has been updated",
                       kErrorTitle);
    }
    for (Rewrite& r : rewrites) {
        st.control.Lines[r.number] = r.line;
        prompt.message(
            "Warning Control Statement " + std::to_string(r.number) + " Has been Updated",
            kErrorTitle);
        if (!r.problem.empty())
            prompt.message(
                "Control Statement " + std::to_string(r.number) + " must be edited: " + r.problem,
                kErrorTitle);
    }
    return true;
}

// The scan reads the tags while the window is open: after every change of the table the
// name index and the channels in use follow it, and the windows listing tags are told.
void tableChanged(Station& st) {
    LeaveTagForm(st);
    st.changes.raise(TableChange::Tags);
}

std::string placeHolderName(Station& st) {
    auto inUse = [&](const std::string& name) {
        for (int i = 1; i <= kUserTags; ++i)
            if (st.tags[i].TagName == name) return true;
        return false;
    };
    // A place-holder left by an earlier run may already carry the next number.
    std::string name = "AVAR" + std::to_string(st.tagPlaceHolders);
    while (inUse(name)) {
        st.tagPlaceHolders = add16(st.tagPlaceHolders, 1);
        name = "AVAR" + std::to_string(st.tagPlaceHolders);
    }
    return name;
}

// Tag `deleted` is gone and the user tags after it moved up one place: every number that
// referred to one of them (alarms, readings-screen lines, trend pens, the logging
// condition) moves with it. System variables (33..38) stay where they are.
void followMovedTags(Station& st, int deleted) {
    auto follow = [deleted](std::int16_t& n) {
        if (n > deleted && n <= kUserTags) n = static_cast<std::int16_t>(n - 1);
    };
    for (int a = 1; a <= kAlarmCount; ++a) follow(st.alarms.Alarms[a].TagNo);
    for (int s = 1; s <= kScreenCount; ++s)
        for (int l = 1; l <= kScreenLineCount; ++l) follow(st.screens.Lines(s, l).TagNumber);
    for (int t = 1; t <= kTrendCount; ++t)
        for (int p = 1; p <= kPenCount; ++p) follow(st.trends.TrendTable(t, p));
    follow(st.logging.ConditionTag);
    // The extremes kept for tags 1..14 move up with their tags; the tag that moves in as the
    // fourteenth has none kept yet, so its present value starts them, as a reset would.
    if (deleted >= 1 && deleted <= kMinMaxTags) {
        MinMaxState& mm = st.minMax;
        for (int i = deleted; i < kMinMaxTags; ++i) {
            mm.TagMaximum[i] = mm.TagMaximum[i + 1];
            mm.TagMinimum[i] = mm.TagMinimum[i + 1];
        }
        mm.TagMaximum[kMinMaxTags] = st.tags[kMinMaxTags].Value;
        mm.TagMinimum[kMinMaxTags] = st.tags[kMinMaxTags].Value;
    }
}

}  // namespace

std::vector<std::string> TagFormIONames(const Station& st) {
    std::vector<std::string> names;
    const int count = std::clamp<int>(st.profile.NumIONames, 0, 40);
    for (int i = 1; i <= count; ++i) names.push_back(st.profile.IONameList[i]);
    return names;
}

ScalingCaptions TagFormScalingCaptions(const Station& st, const TagForm& f) {
    ScalingCaptions c;
    c.Digital = isDigitalName(f.CboIOName, st.tags[f.LblTag].Kind);
    c.RawValue1 = "Raw Value1";
    c.RawValue2 = "Raw Value2";
    if (c.Digital) {
        // The messages about these boxes speak of EngValue1 and EngValue2.
        c.EngValue1 = "State 0 Text (EngValue1)";
        c.EngValue2 = "State 1 Text (EngValue2)";
        c.EngHint1 = "shown for 0, e.g. OFF";
        c.EngHint2 = "shown for 1, e.g. ON";
    } else {
        c.EngValue1 = "Engineering Value1";
        c.EngValue2 = "Engineering Value2";
    }
    return c;
}

TagForm OpenTagForm(const Station& st) {
    TagForm f;
    f.IONames = TagFormIONames(st);
    f.LblTag = 1;
    ShowTag(st, f);
    return f;
}

void ShowTag(const Station& st, TagForm& f) {
    const Tag& t = st.tags[f.LblTag];
    f.TxtLabel = t.Label;
    f.TxtTagName = t.TagName;
    // A slot not used yet offers the one address there is.
    f.TxtRTUAddr = std::to_string(t.TagName.empty() && t.Address == 0 ? 1 : t.Address);
    f.TxtUnits = t.Units;
    f.ChkLog = t.Log != 0;
    f.CboIOName = t.IOName;
    if (isDigitalName(t.IOName, t.Kind)) {
        f.TxtRawValue1 = "0";
        f.TxtRawValue2 = "1";
        f.TxtEngValue1 = t.EngText1;
        f.TxtEngValue2 = t.EngText2;
    } else {
        f.TxtRawValue1 = std::to_string(t.RawValue1);
        f.TxtRawValue2 = std::to_string(t.RawValue2);
        f.TxtEngValue1 = plainNumberText(t.EngValue1);
        f.TxtEngValue2 = plainNumberText(t.EngValue2);
    }
}

void ChooseIOName(const Station& st, TagForm& f, const std::string& ioName) {
    f.CboIOName = ioName;
    if (ioName.empty()) return;
    const Tag& t = st.tags[f.LblTag];
    if (ioName[0] == 'A') {
        f.TxtRawValue1 = std::to_string(t.RawValue1);
        f.TxtRawValue2 = std::to_string(t.RawValue2);
        f.TxtEngValue1 = plainNumberText(t.EngValue1);
        f.TxtEngValue2 = plainNumberText(t.EngValue2);
    } else if (ioName[0] == 'D') {
        f.TxtRawValue1 = "0";
        f.TxtRawValue2 = "1";
        f.TxtEngValue1 = t.EngText1;
        f.TxtEngValue2 = t.EngText2;
    }
}

bool AcceptTag(Station& st, TagForm& f) {
    f.FailedBox.clear();
    const int number = f.LblTag;
    const std::string name = NormalizeTagName(f.TxtTagName);
    if (name.empty())
        return failAt(st, f, "TxtTagName",
                      "Tag Name cannot be blank. If not used name it as a variable");
    if (TagNameHasTopicCharacters(name))
        return failAt(st, f, "TxtTagName", kTagNameTopicCharacters);
    if (!listed(st.profile, f.CboIOName))
        return failAt(st, f, "CboIOName", "I/O Name Not Selected From List ");

    const IONameClass c = ClassifyIOName(f.CboIOName);
    const double address = isNumeric(f.TxtRTUAddr) ? leadingNumber(f.TxtRTUAddr) : 0.0;
    const DaqProfile& d = st.profile;
    const bool analog = c.Kind == kAnalog;
    if (analog ? !checkChannel(st, f, c, address, kAnalogTexts, d.AnalogInputs, d.AnalogOutputs)
               : !checkChannel(st, f, c, address, kDigitalTexts, d.DigitalInputs, d.DigitalOutputs))
        return false;

    // Texts as typed: "1" and "1.0" pass here.
    if (f.TxtRawValue1 == f.TxtRawValue2)
        return failAt(st, f, "TxtRawValue2", "Error RawValue1 cannot equal RawValue2");
    if (f.TxtEngValue1 == f.TxtEngValue2)
        return failAt(st, f, "TxtEngValue2", "Error EngValue1 cannot equal EngValue2");

    const Tag& stored = st.tags[number];
    if (analog && !checkNumbers(st, f)) return false;
    const Tag record = buildRecord(stored, f, name, analog);
    if (!checkRecord(st, f, record)) return false;

    if (unchanged(stored, f, name, analog, address)) return true;

    if (name != stored.TagName && IsTagNameInUse(st.tags, *st.platform.prompter, name, number)) {
        f.FailedBox = "TxtTagName";
        return false;
    }

    if (!stored.TagName.empty() && name != stored.TagName) {
        const std::string oldName = stored.TagName;  // `stored` is overwritten
        if (!storeRenamed(st, number, record, oldName)) {
            f.FailedBox = "TxtTagName";
            return false;
        }
    } else {
        st.tags[number] = record;
    }
    tableChanged(st);
    return true;
}

bool TagFormPrevious(Station& st, TagForm& f) {
    if (!AcceptTag(st, f)) return false;
    f.LblTag = std::max(1, f.LblTag - 1);
    ShowTag(st, f);
    return true;
}

bool TagFormNext(Station& st, TagForm& f) {
    if (!AcceptTag(st, f)) return false;
    f.LblTag = std::min(kUserTags, f.LblTag + 1);
    ShowTag(st, f);
    return true;
}

bool TagFormFind(Station& st, TagForm& f) {
    f.FailedBox.clear();
    const auto answer = st.platform.prompter->input("Enter Tag Name", kFindTitle);
    if (!answer) return false;
    const std::string name = NormalizeTagName(*answer);
    if (name.empty()) return false;
    for (int i = 1; i <= kUserTags; ++i) {
        if (st.tags[i].TagName != name) continue;
        f.LblTag = i;
        ShowTag(st, f);
        return true;
    }
    st.platform.prompter->message("Cannot Find TagName " + name, kFindTitle);
    return false;
}

bool TagFormDelete(Station& st, TagForm& f) {
    f.FailedBox.clear();
    if (!st.platform.prompter->askYesNo("Do You Wish to Delete this Tag", kQuestionTitle,
                                        DefaultAnswer::No))
        return false;
    const int number = f.LblTag;
    const std::string name = st.tags[number].TagName;
    // A plain substring test on purpose: T1 is kept while a statement mentions T10. A slot
    // without a name is mentioned by nothing.
    if (!name.empty())
        for (int i = 1; i <= kControlLines; ++i)
            if (mentions(st.control.Lines[i], name)) {
                return fail(st, "Warning Control Statement line " + std::to_string(i) +
                                    " uses this tag. Please Edit This Line First");
            }
    // The other tables refer to a tag by its number: the tag they use cannot go, and the
    // tags after it keep being used where they were.
    if (const std::string user = TagNumberInUse(st, number); !user.empty()) return fail(st, user);
    for (int k = number; k < kUserTags; ++k) st.tags[k] = st.tags[k + 1];
    followMovedTags(st, number);

    Tag& last = st.tags[kUserTags];  // Kind and IOName stay as they were
    last.Label.clear();
    last.TagName = placeHolderName(st);
    last.Direction = kVariable;
    last.Address = 0;
    last.IONumber = 0;
    last.RawValue1 = 0;
    last.EngValue1 = 0;
    last.RawValue2 = 4000;
    last.EngValue2 = 4000;
    last.Slope = 1;
    last.Offset = 0;
    last.Units = "mV";
    last.Log = 0;
    tableChanged(st);
    ShowTag(st, f);
    st.tagPlaceHolders = add16(st.tagPlaceHolders, 1);
    return true;
}

std::string TagNumberInUse(const Station& st, int number) {
    const std::string uses = " uses this tag. Please Edit ";
    for (int a = 1; a <= kAlarmCount; ++a)
        if (st.alarms.Alarms[a].TagNo == number)
            return "Warning Alarm " + std::to_string(a) + uses + "This Alarm First";
    for (int s = 1; s <= kScreenCount; ++s)
        for (int l = 1; l <= kScreenLineCount; ++l)
            if (st.screens.Lines(s, l).TagNumber == number) {
                const bool digital = l > kScreenLineCount / 2;
                const int row = digital ? l - kScreenLineCount / 2 : l;
                return "Warning Screen " + std::to_string(s) + (digital ? " Digital" : " Analog") +
                       " Line " + std::to_string(row) + uses + "This Screen First";
            }
    for (int t = 1; t <= kTrendCount; ++t)
        for (int p = 1; p <= kPenCount; ++p)
            if (st.trends.TrendTable(t, p) == number)
                return "Warning Trend " + std::to_string(t) + " Pen " + std::to_string(p) + uses +
                       "This Trend First";
    if (st.logging.ConditionTag == number)
        return "Warning The Logging Start/Stop Condition" + uses + "The Logging Condition First";
    return {};
}

bool IsDeletedTagPlaceHolder(const Tag& t) {
    if (t.TagName.size() <= 4 || t.TagName.compare(0, 4, "AVAR") != 0) return false;
    if (!std::all_of(t.TagName.begin() + 4, t.TagName.end(),
                     [](char c) { return c >= '0' && c <= '9'; }))
        return false;
    return t.Label.empty() && t.Direction == kVariable && t.IONumber == 0 && t.Units == "mV" &&
           t.RawValue2 == 4000 && t.EngValue2 == 4000;
}

std::vector<std::string> CheckTagTable(const TagTable& tags) {
    std::vector<std::string> problems;
    for (int n = 1; n <= kUserTags; ++n)
        if (tags[n].TagName.empty())
            problems.push_back("Tag Number " + std::to_string(n) +
                               " cannot have a blank name. If not used name it as a variable");
    // Blank names are reported above, not again as duplicates of each other.
    for (int i = 1; i <= kUserTags; ++i)
        for (int j = i + 1; j <= kUserTags; ++j)
            if (!tags[i].TagName.empty() && tags[i].TagName == tags[j].TagName)
                problems.push_back("Duplicate Tag Names. See Tag Numbers " + std::to_string(i) +
                                   " and " + std::to_string(j) + ".");
    return problems;
}

bool TagFormExit(Station& st, TagForm& f) {
    bool errors = !AcceptTag(st, f);
    for (const std::string& problem : CheckTagTable(st.tags)) {
        st.platform.prompter->message(problem, kErrorTitle);
        errors = true;
    }
    if (errors && !st.platform.prompter->askYesNo("Errors Found Do you wish to exit", kErrorTitle,
                                                  DefaultAnswer::No))
        return false;
    LeaveTagForm(st);
    return true;
}

void LeaveTagForm(Station& st) {
    RebuildTagNameIndex(st.tags, st.nameIndex);
    RebuildModuleSummary(st);
}

std::optional<std::size_t> TagRecordBytes(const Tag& t) {
    // Kind, Direction, Address, IONumber, RawValue1, RawValue2, Log; EngValue1, EngValue2,
    // Slope, Offset, Value.
    std::size_t total = 7 * 2 + 5 * 4;
    for (const std::string* s :
         {&t.Label, &t.TagName, &t.IOName, &t.EngText1, &t.EngText2, &t.Units}) {
        const auto n = Cp1252Length(*s);
        if (!n) return std::nullopt;
        total += 2 + *n;
    }
    return total;
}

std::string TagListing(const TagTable& tags) {
    std::string out;
    for (int n = 1; n <= kUserTags; ++n) {
        const Tag& t = tags[n];
        if (t.TagName.empty()) continue;
        const bool analog = t.Kind == kAnalog;
        const std::string log = t.Log != 0 ? "Yes" : "No";
        out += "********** Record " + std::to_string(n) + " **********\n";
        out += "TagName=" + t.TagName + "  Label=" + t.Label + "\n";
        out += std::string(analog ? "Analog " : "Digital") + "IOName=" + t.IOName +
               "  Address=" + std::to_string(t.Address) + "\n";
        out += "RawValue1=" + std::to_string(t.RawValue1) +
               "  EngValue1=" + (analog ? plainNumberText(t.EngValue1) : t.EngText1) +
               "  RawValue2=" + std::to_string(t.RawValue2) +
               "  EngValue2=" + (analog ? plainNumberText(t.EngValue2) : t.EngText2) + "\n";
        out += (analog ? "Units=" + t.Units : std::string()) + "  Log=" + log + "\n";
        out += "  \n";
    }
    return out;
}

bool PrintTagListing(const Station& st, Printer& printer) {
    const std::string listing = TagListing(st.tags);
    if (listing.empty()) {
        st.platform.prompter->message("There are no named tags to print", "Print");
        return false;
    }
    return printer.printText("Tag Listing", listing);
}

}  // namespace kova
