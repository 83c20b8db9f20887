#pragma once
// A station wired to a simulated clock, a scripted prompter and a temporary folder, plus a
// stand-in for the scan's logging-period step.
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "core/station.h"
#include "platform/clock.h"
#include "support/test_support.h"
#include "tags/tag_name_index.h"

namespace kova::test {

// Forwards to a ScriptedPrompter and also remembers the name each file dialog proposed.
class ProposingPrompter final : public Prompter {
  public:
    void message(const std::string& text, const std::string& title) override {
        inner.message(text, title);
    }
    bool askYesNo(const std::string& text, const std::string& title, DefaultAnswer enter) override {
        return inner.askYesNo(text, title, enter);
    }
    SaveChoice askSaveDiscardCancel(const std::string& text, const std::string& title) override {
        return inner.askSaveDiscardCancel(text, title);
    }
    std::optional<std::string> input(const std::string& prompt, const std::string& title) override {
        return inner.input(prompt, title);
    }
    std::optional<std::string> chooseFile(const std::string& title, const std::string& filter,
                                          const std::string& proposed, bool save) override {
        proposals.push_back(proposed);
        saves.push_back(save);
        return inner.chooseFile(title, filter, proposed, save);
    }
    ScriptedPrompter inner;
    std::vector<std::string> proposals;
    std::vector<bool> saves;
};

inline LocalDateTime At(int y, int mo, int d, int h, int mi, int s, int ms = 0) {
    LocalDateTime t;
    t.year = y, t.month = mo, t.day = d, t.hour = h, t.minute = mi, t.second = s,
    t.millisecond = ms;
    return t;
}

struct LogRig {
    Station st;
    SimulatedClock clock{At(2026, 11, 15, 10, 15, 0)};
    ProposingPrompter prompt;
    TempFolder folder;
    std::int32_t accumMs = 0;  // the scan's LogAccumMs

    LogRig() {
        st.platform.clock = &clock;
        st.platform.prompter = &prompt;
    }
    const std::vector<Shown>& messages() const { return prompt.inner.messages; }

    // A user tag with a name, a label and its Log flag.
    void tag(int n, const std::string& name, const std::string& label, bool logged,
             float value = 0) {
        Tag& t = st.tag(n);
        t.TagName = name;
        t.Label = label;
        t.Log = logged ? 1 : 0;
        t.Value = value;
        RebuildTagNameIndex(st.tags, st.nameIndex);
    }
    std::string path(const std::string& name) const { return (folder / name).string(); }

    // One scan's logging step, as the scan cycle runs it: the clock moves on by the scan
    // period, the milliseconds accumulate, and a complete logging period advances the
    // logging clock and writes a record.
    void scan();
    void scans(int n) {
        for (int i = 0; i < n; ++i) scan();
    }
};

}  // namespace kova::test
