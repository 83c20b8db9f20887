#include "tags/tag_table.h"

#include <cctype>
#include <cmath>

#include "core/fault.h"
#include "core/numeric.h"

namespace kova {

void InitSystemTags(TagTable& tags) {
    struct Sys {
        const char* name;
        const char* label;
        const char* units;
    };
    // The labels of MN and SC say "of Day" while the values are minute-of-hour and
    // second-of-minute; users' statements depend on both, so both stay as they are.
    static constexpr Sys sys[] = {{"TS", "Time In Secs", "Secs"},   {"HR", "Hour Of Day", "Hours"},
                                  {"MN", "Minutes of Day", "Mins"}, {"SC", "Secs of Day", "Secs"},
                                  {"DW", "Day of Week", ""},        {"SU", "Start Up Flag", ""}};
    for (int i = 0; i < 6; ++i) {
        Tag& t = tags[kTagTS + i];
        t.TagName = sys[i].name;
        t.Label = sys[i].label;
        t.Units = sys[i].units;
        t.Kind = kAnalog;
        t.Address = 1;
        t.IONumber = 0;
        t.RawValue1 = 0;
        t.EngValue1 = 0;
        t.RawValue2 = 1;
        t.EngValue2 = 1.0f;
    }
}

void ClearUserTags(TagTable& tags) {
    for (int i = 1; i <= kUserTags; ++i) tags[i] = Tag{};
}

std::string ToUpper(std::string s) {
    for (char& c : s) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return s;
}

std::string Trim(const std::string& s) {
    const auto first = s.find_first_not_of(' ');
    if (first == std::string::npos) return {};
    const auto last = s.find_last_not_of(' ');
    return s.substr(first, last - first + 1);
}

std::string NormalizeTagName(const std::string& name) {
    return ToUpper(Trim(name));
}

bool TagNameHasTopicCharacters(const std::string& name) {
    return name.find_first_of("+#/") != std::string::npos;
}

IONameClass ClassifyIOName(const std::string& ioName) {
    IONameClass c{kDigital, kVariable, 0};
    if (!ioName.empty() && ioName[0] == 'A') c.Kind = kAnalog;
    if (ioName.size() >= 2) {
        if (ioName[1] == 'I')
            c.Direction = kInput;
        else if (ioName[1] == 'O')
            c.Direction = kOutput;
    }
    if (c.Direction != kVariable && ioName.size() > 3 && isNumeric(ioName.substr(3)))
        c.IONumber = textToInt16(ioName.substr(3));
    return c;
}

void BindIOName(Tag& tag, const std::string& ioName) {
    const IONameClass c = ClassifyIOName(ioName);
    tag.IOName = ioName;
    tag.Kind = c.Kind;
    tag.Direction = c.Direction;
    tag.IONumber = c.IONumber;
}

void ComputeScaling(Tag& tag) {
    const std::int16_t rawDiff = sub16(tag.RawValue2, tag.RawValue1);
    if (rawDiff == 0) {
        // Equal raw numbers typed differently ("1" and "01"): a division by zero that must not
        // leave a non-finite slope behind.
        tag.Slope = 0.0f;
        tag.Offset = tag.EngValue1;
        return;
    }
    const double slope = (static_cast<double>(tag.EngValue2) - tag.EngValue1) / rawDiff;
    tag.Slope = toSingle(slope);
    tag.Offset = toSingle(static_cast<double>(tag.EngValue1) -
                          tag.RawValue1 * static_cast<double>(tag.Slope));
}

float ScaleInput(const Tag& tag, std::int16_t raw) {
    return toSingle(raw * static_cast<double>(tag.Slope) + tag.Offset);
}

std::int16_t ScaleOutput(const Tag& tag, double value, std::int16_t rawMin, std::int16_t rawMax) {
    if (tag.Slope == 0.0f)
        throw Fault(FaultKind::DivisionByZero,
                    "Division by zero: tag " + tag.TagName + " has slope 0");
    double raw = (value - tag.Offset) / tag.Slope;
    if (std::isnan(raw)) throwOverflow("analog output");
    if (raw > rawMax) raw = rawMax;
    if (raw < rawMin) raw = rawMin;
    return toInt16(raw);
}

int OutputSlot(const Tag& tag) {
    const long slot = (static_cast<long>(tag.Address) - 1) * 20 + tag.IONumber;
    if (slot < 1 || slot > 32) throwBounds("analog output slot", slot, 1, 32);
    return static_cast<int>(slot);
}

}  // namespace kova

#include "platform/prompter.h"

namespace kova {

bool IsTagNameInUse(const TagTable& tags, Prompter& prompter, const std::string& name,
                    int editing) {
    for (int i = 1; i <= kUserTags; ++i) {
        if (i == editing || tags[i].TagName != name) continue;
        prompter.message(
            "Variable " + name + " already in use in Record Number " + std::to_string(i), "ERROR");
        return true;
    }
    return false;
}

}  // namespace kova
