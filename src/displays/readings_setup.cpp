#include "displays/readings_setup.h"

#include <cmath>

#include "core/numeric.h"
#include "platform/prompter.h"
#include "tags/tag_name_index.h"
#include "tags/tag_table.h"

namespace kova {

namespace {

constexpr int kDigitalFirstLine = kScreenRows + 1;  // lines 11..20 are the digital rows

std::string descriptionOf(const Station& st, int tagNumber) {
    return tagNumber >= 1 && tagNumber <= kTableTags ? st.tags[tagNumber].Label : std::string();
}

void refuse(Station& st, const std::string& text) {
    st.platform.prompter->message(text, kAppTitle);
}

// Stores one line from its combo text; false (message shown) when the name is refused.
bool storeLine(Station& st, int screen, int line, const std::string& text, bool digital) {
    int n = 0;
    if (const std::string refusal = ScreenLineRefusal(st, text, digital, n); !refusal.empty()) {
        refuse(st, refusal);
        return false;
    }
    ScreenLine& l = st.screens.Lines(screen, line);
    l.TagName = n == 0 ? std::string() : NormalizeTagName(text);
    l.TagNumber = static_cast<std::int16_t>(n);
    return true;
}

// The jump box: empty stores 0; text that is no number stores 0 and is refused; a number
// outside 0..10 is refused and leaves the target as it was.
bool storeJump(Station& st, ScreenHeader& h, const std::string& text) {
    st.screens.JumpShownEmpty = 0;  // the box's own value is stored from here on
    if (const std::string refusal = JumpToRefusal(text); !refusal.empty()) {
        refuse(st, refusal);
        if (!isNumeric(text)) h.JumpTo = 0;
        return false;
    }
    h.JumpTo = text.empty() ? 0 : static_cast<std::int16_t>(roundHalfEven(leadingNumber(text)));
    return true;
}

}  // namespace

std::string ScreenLineRefusal(const Station& st, const std::string& text, bool digital,
                              int& tagNumber) {
    tagNumber = 0;
    const std::string name = NormalizeTagName(text);
    if (name.empty()) return {};
    const int n = FindTag(st.nameIndex, name);
    if (n == 0) return "Error " + name + " is not in Variable Database";
    const std::int16_t kind = st.tags[n].Kind;
    if (!digital && kind != kAnalog) return "Error " + name + " is a digital variable";
    if (digital && kind != kDigital) return "ERROR " + name + " is an analog variable";
    tagNumber = n;
    return {};
}

std::string JumpToRefusal(const std::string& text) {
    if (text.empty()) return {};
    const std::string message = std::string(kJumpToMessage) + std::to_string(kScreens);
    if (!isNumeric(text)) return message;
    // A number too large for a whole number is refused like any other out of range; 0
    // passes, as the message does not say.
    const double v = roundHalfEven(leadingNumber(text));
    if (!std::isfinite(v) || v < 0 || v > kScreens) return message;
    return {};
}

std::vector<std::string> ScreenTagChoices(const TagTable& tags, std::int16_t kind) {
    std::vector<std::string> out;
    for (int i = 1; i <= kUserTags; ++i)
        if (tags[i].Kind == kind) out.push_back(tags[i].TagName);
    return out;
}

ScreenSetupForm OpenSetupScreens(Station& st) {
    ScreenSetupForm form;
    LoadSetupScreen(st, form, 1);
    form.AnalogChoices = ScreenTagChoices(st.tags, kAnalog);
    form.DigitalChoices = ScreenTagChoices(st.tags, kDigital);
    return form;
}

void LoadSetupScreen(Station& st, ScreenSetupForm& form, int n) {
    ScreenHeader& h = st.screens.Headers[n];
    form.LblScrNo = n;
    form.TxtScreen = h.Title;
    if (h.JumpTo != 0) {
        if (h.JumpTo < 0 || h.JumpTo > kScreens) h.JumpTo = 1;
        form.TxtJump = std::to_string(h.JumpTo);
    } else {
        // Read as target 1 until the screen is saved again with the box still empty.
        h.JumpTo = 1;
        st.screens.JumpShownEmpty = n;
        form.TxtJump.clear();
    }
    for (int row = 0; row < kScreenRows; ++row) {
        const ScreenLine& an = st.screens.Lines(n, row + 1);
        form.CboAnTag[row] = an.TagName;
        form.ShownAnTag[row] = an.TagName;
        form.LblAn[row] = descriptionOf(st, an.TagNumber);
        const ScreenLine& dig = st.screens.Lines(n, row + kDigitalFirstLine);
        form.CboDigTag[row] = dig.TagName;
        form.ShownDigTag[row] = dig.TagName;
        form.LblDig[row] = descriptionOf(st, dig.TagNumber);
    }
}

void ScreenSetupTablesChanged(Station& st, ScreenSetupForm& form, TableChange change) {
    if (change == TableChange::DaqType) return;
    form.AnalogChoices = ScreenTagChoices(st.tags, kAnalog);
    form.DigitalChoices = ScreenTagChoices(st.tags, kDigital);
    const int n = form.LblScrNo;
    if (change == TableChange::Configuration) {
        LoadSetupScreen(st, form, n);
        return;
    }
    for (int row = 0; row < kScreenRows; ++row) {
        const ScreenLine& an = st.screens.Lines(n, row + 1);
        if (form.CboAnTag[row] == form.ShownAnTag[row]) form.CboAnTag[row] = an.TagName;
        form.ShownAnTag[row] = an.TagName;
        form.LblAn[row] = descriptionOf(st, an.TagNumber);
        const ScreenLine& dig = st.screens.Lines(n, row + kDigitalFirstLine);
        if (form.CboDigTag[row] == form.ShownDigTag[row]) form.CboDigTag[row] = dig.TagName;
        form.ShownDigTag[row] = dig.TagName;
        form.LblDig[row] = descriptionOf(st, dig.TagNumber);
    }
}

int SaveSetupScreen(Station& st, const ScreenSetupForm& form) {
    const int n = form.LblScrNo;
    ScreenHeader& h = st.screens.Headers[n];
    h.Title = form.TxtScreen;
    if (!storeJump(st, h, form.TxtJump)) return 1;
    for (int row = 0; row < kScreenRows; ++row)
        if (!storeLine(st, n, row + 1, form.CboAnTag[row], false)) return 1;
    for (int row = 0; row < kScreenRows; ++row)
        if (!storeLine(st, n, row + kDigitalFirstLine, form.CboDigTag[row], true)) return 1;
    return 0;
}

namespace {
// The box SaveSetupScreen refused: its checks again, without a message.
std::string failedBox(const Station& st, const ScreenSetupForm& form) {
    if (!JumpToRefusal(form.TxtJump).empty()) return "TxtJump";
    int n = 0;
    for (int row = 0; row < kScreenRows; ++row)
        if (!ScreenLineRefusal(st, form.CboAnTag[row], false, n).empty())
            return "CboAnTag" + std::to_string(row);
    for (int row = 0; row < kScreenRows; ++row)
        if (!ScreenLineRefusal(st, form.CboDigTag[row], true, n).empty())
            return "CboDigTag" + std::to_string(row);
    return {};
}

// SaveSetupScreen that also notes the box at fault when it refuses.
bool saveShown(Station& st, ScreenSetupForm& form) {
    form.FailedBox.clear();
    if (SaveSetupScreen(st, form) == 0) return true;
    form.FailedBox = failedBox(st, form);
    return false;
}
}  // namespace

bool NextSetupScreen(Station& st, ScreenSetupForm& form) {
    if (!saveShown(st, form)) return false;
    LoadSetupScreen(st, form, form.LblScrNo == kScreens ? 1 : form.LblScrNo + 1);
    return true;
}

bool PrevSetupScreen(Station& st, ScreenSetupForm& form) {
    if (!saveShown(st, form)) return false;
    LoadSetupScreen(st, form, form.LblScrNo == 1 ? kScreens : form.LblScrNo - 1);
    return true;
}

bool ExitSetupScreens(Station& st, ScreenSetupForm& form) {
    if (saveShown(st, form)) return true;
    return st.platform.prompter->askYesNo(kExitQuestion, kExitQuestionTitle, DefaultAnswer::No);
}

void AskPickerFromRow(ScreenSetupForm& form, int row) {
    form.PickerRow = row >= 0 && row < kScreenRows ? row : -1;
}

void TakePickedTag(ScreenSetupForm& form, const std::string& name) {
    if (form.PickerRow < 0) return;
    form.CboAnTag[form.PickerRow] = name;
    form.PickerRow = -1;
}

}  // namespace kova
