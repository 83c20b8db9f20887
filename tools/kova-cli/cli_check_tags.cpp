#include "cli_check_tags.h"

#include "tags/tag.h"
#include "tags/tag_editor.h"
#include "tags/tag_table.h"

namespace kova::cli {

namespace {
bool listed(const DaqProfile& p, const std::string& ioName) {
    for (int i = 1; i <= p.NumIONames && i <= 40; ++i)
        if (p.IONameList[i] == ioName) return true;
    return false;
}

// The editor's channel check for one direction: "" when the number is in range.
std::string channelProblem(const DaqProfile& p, int number, int count, const char* none,
                           const char* range) {
    if (number >= 1 && number <= count) return {};
    if (count == 0) return "The " + p.TypeString + " has no " + none + " ";
    return std::string(range) + std::to_string(count);
}

// The first message the editor would show for this record, "" when it accepts it.
std::string recordProblem(const DaqProfile& p, const Tag& t) {
    if (TagNameHasTopicCharacters(t.TagName)) return kTagNameTopicCharacters;
    if (!listed(p, t.IOName)) return "I/O Name Not Selected From List ";
    const bool analog = t.Kind == kAnalog;
    if (t.Address != 1) return analog ? "DAQ Address must be 1 " : "DAQ Address must be between 1";
    if (t.Direction == kVariable && t.IONumber != 0)
        return "For a Variable the I/O Number must be 0";
    std::string channel;
    if (t.Direction == kInput)
        channel = analog ? channelProblem(p, t.IONumber, p.AnalogInputs, "Analog Inputs",
                                          "I/O Number of AI's must be between 1 and ")
                         : channelProblem(p, t.IONumber, p.DigitalInputs, "Digital Inputs",
                                          "I/O Number of Digital Inputs must be between 1 and ");
    else if (t.Direction == kOutput)
        channel = analog ? channelProblem(p, t.IONumber, p.AnalogOutputs, "Analog Outputs",
                                          "I/O Number of AO's must be between 1 and ")
                         : channelProblem(p, t.IONumber, p.DigitalOutputs, "Digital Outputs",
                                          "I/O Number of Digital Outputs must be between 1 and ");
    if (!channel.empty()) return channel;
    if (analog && t.RawValue1 == t.RawValue2) return "Error RawValue1 cannot equal RawValue2";
    if (analog ? t.EngValue1 == t.EngValue2 : t.EngText1 == t.EngText2)
        return "Error EngValue1 cannot equal EngValue2";
    return {};
}
}  // namespace

std::vector<std::string> CheckTagRecords(const Station& st) {
    std::vector<std::string> problems;
    for (int n = 1; n <= kUserTags; ++n) {
        const Tag& t = st.tags[n];
        if (t.TagName.empty()) continue;
        const std::string why = recordProblem(st.profile, t);
        if (!why.empty())
            problems.push_back("tag " + std::to_string(n) + " (" + t.TagName +
                               "): the tag editor refuses it (\"" + why + "\")");
    }
    for (int i = 1; i <= kUserTags; ++i)
        for (int j = i + 1; j <= kUserTags; ++j)
            if (!st.tags[i].TagName.empty() && st.tags[i].TagName == st.tags[j].TagName)
                problems.push_back("tags " + std::to_string(i) + " and " + std::to_string(j) +
                                   ": the tag editor refuses it (\"Duplicate Tag Names. See Tag "
                                   "Numbers " +
                                   std::to_string(i) + " and " + std::to_string(j) + ".\")");
    return problems;
}

std::vector<std::string> CheckTagReferences(const Station& st) {
    std::vector<std::string> problems;
    auto placeHolder = [&](int n) {
        return n >= 1 && n <= kUserTags && IsDeletedTagPlaceHolder(st.tags[n]);
    };
    auto lost = [&](int n) {
        return "refers to " + st.tags[n].TagName +
               ", the place-holder that deleting a tag leaves: the tag it followed was deleted, "
               "or moved up when a tag before it was deleted";
    };
    for (int t = 1; t <= 10; ++t)
        for (int pen = 1; pen <= 4; ++pen) {
            const int n = st.trends.TrendTable(t, pen);
            if (placeHolder(n))
                problems.push_back("trend " + std::to_string(t) + " pen " + std::to_string(pen) +
                                   " (tag " + std::to_string(n) + "): " + lost(n));
        }
    const int n = st.logging.ConditionTag;
    const std::string where = "ConditionTag " + std::to_string(n) + " (logging start/stop)";
    if (placeHolder(n))
        problems.push_back(where + ": " + lost(n));
    else if (n >= 1 && n <= kUserTags && st.tags[n].TagName.empty())
        problems.push_back(where +
                           ": the tag has no name, so the logging start/stop window shows no "
                           "condition tag");
    return problems;
}

}  // namespace kova::cli
