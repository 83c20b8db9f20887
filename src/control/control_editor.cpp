#include "control/control_editor.h"

#include <utility>

#include "control/control_messages.h"
#include "control/line_check.h"
#include "control/run_controls.h"
#include "core/text_encoding.h"

namespace kova {

namespace {

void showError(Station& st, const std::string& text) {
    st.platform.prompter->message(text, control_text::kErrorTitle);
}

// The shown texts and check box into the shown line; the enable box into ControlsEnabled.
void storeShownLine(Station& st, const ControlForm& form) {
    ControlLine& line = st.control.Lines[form.LblLineNo];
    line.IfText = form.TxtIf;
    line.ThenText = form.TxtThen;
    line.ElseText = form.TxtElse;
    line.ThenOnRise = form.ChkIf ? 1 : 0;
    st.switches.ControlsEnabled = form.ChkEnableControl ? 1 : 0;
}

void clearTexts(ControlLine& line) {
    line.IfText.clear();
    line.ThenText.clear();
    line.ElseText.clear();
    line.ThenOnRise = 0;
}

// CheckLine, then store the shown line and move by `step` (+1 or -1).
bool stepLine(Station& st, ControlForm& form, int step) {
    if (!CheckLine(st, form)) return false;
    storeShownLine(st, form);
    int n = form.LblLineNo + step;
    if (n > kControlLines) {
        showError(st, control_text::kMaximumLines);
        n = kControlLines;
    }
    if (n < 1) n = 1;
    form.LblLineNo = n;
    ShowControlLine(st, form);
    return true;
}

}  // namespace

std::vector<std::string> ControlTagChoices(const Station& st) {
    std::vector<std::string> names;
    for (int i = 1; i <= kUserTags; ++i)
        if (!st.tags[i].TagName.empty()) names.push_back(st.tags[i].TagName);
    return names;
}

void ControlFormTablesChanged(const Station& st, ControlForm& form, TableChange change) {
    if (change == TableChange::DaqType) return;
    form.CboTag = ControlTagChoices(st);
    if (change == TableChange::Configuration) {
        form.ChkEnableControl = st.switches.ControlsEnabled != 0;
        ShowControlLine(st, form);
        return;
    }
    if (form.TxtIf == form.ShownIf && form.TxtThen == form.ShownThen &&
        form.TxtElse == form.ShownElse) {
        const bool rise = form.ChkIf;  // the box keeps what the user set
        ShowControlLine(st, form);
        form.ChkIf = rise;
    }
}

ControlForm OpenControlForm(const Station& st) {
    ControlForm form;
    form.CboTag = ControlTagChoices(st);
    form.ChkEnableControl = st.switches.ControlsEnabled != 0;
    form.LblLineNo = 1;
    ShowControlLine(st, form);
    return form;
}

void ShowControlLine(const Station& st, ControlForm& form) {
    const ControlLine& line = st.control.Lines[form.LblLineNo];
    form.TxtIf = line.IfText;
    form.TxtThen = line.ThenText;
    form.TxtElse = line.ElseText;
    form.ChkIf = line.ThenOnRise != 0;
    form.ShownIf = form.TxtIf;
    form.ShownThen = form.TxtThen;
    form.ShownElse = form.TxtElse;
}

bool CheckLine(Station& st, ControlForm& form) {
    form.FailedBox.clear();
    form.FailedToken.clear();
    form.FailedLine = 0;
    for (const auto& [text, box] :
         {std::pair{&form.TxtIf, kFocusIf}, std::pair{&form.TxtThen, kFocusThen},
          std::pair{&form.TxtElse, kFocusElse}}) {
        if (!Cp1252Length(*text)) {
            form.FailedBox = box;
            showError(st, control_text::kCannotEncode);
            return false;
        }
    }
    // A line that compiles but would not fit its record is refused before anything of it is
    // executed. Compiling changes nothing, so a trial compile gives the very same codes.
    const LineCheck trial = CheckLineTexts(st, nullptr, form.TxtIf, form.TxtThen, form.TxtElse);
    if (trial.ok) {
        ControlLine record = st.control.Lines[form.LblLineNo];
        record.IfText = form.TxtIf;
        record.ThenText = form.TxtThen;
        record.ElseText = form.TxtElse;
        record.IfCode = trial.ifCode;
        record.ThenCode = trial.thenCode;
        record.ElseCode = trial.elseCode;
        const auto bytes = ControlRecordBytes(record);
        if (!bytes || *bytes > kControlRecordBytes) {
            showError(st, control_text::kLineTooLong);
            return false;
        }
    }
    LineCheck check = CheckLineTexts(st, &st, form.TxtIf, form.TxtThen, form.TxtElse);
    if (!check.ok) {
        form.FailedBox = check.failedPart;
        form.FailedToken = check.token;
        form.FailedLine = check.textLine;
        showError(st, check.message);
        return false;
    }
    ControlLine& line = st.control.Lines[form.LblLineNo];
    line.IfCode = std::move(check.ifCode);
    line.ThenCode = std::move(check.thenCode);
    line.ElseCode = std::move(check.elseCode);
    return true;
}

bool ControlFormNext(Station& st, ControlForm& form) {
    return stepLine(st, form, +1);
}

bool ControlFormPrev(Station& st, ControlForm& form) {
    return stepLine(st, form, -1);
}

void ControlFormInsert(Station& st, ControlForm& form) {
    if (form.LblLineNo == kControlLines) {
        showError(st, control_text::kCannotInsert);
        return;
    }
    // Lines shown..29 move one place down as whole records; line 30 is lost.
    for (int k = kControlLines; k > form.LblLineNo; --k)
        st.control.Lines[k] = st.control.Lines[k - 1];
    clearTexts(st.control.Lines[form.LblLineNo]);
    form.TxtIf.clear();
    form.TxtThen.clear();
    form.TxtElse.clear();
}

void ControlFormDelete(Station& st, ControlForm& form) {
    if (!st.platform.prompter->askYesNo(control_text::kDeleteQuestion, control_text::kOptionTitle,
                                        DefaultAnswer::No))
        return;
    for (int k = form.LblLineNo; k < kControlLines; ++k)
        st.control.Lines[k] = st.control.Lines[k + 1];
    clearTexts(st.control.Lines[kControlLines]);  // its codes stay; they never run without texts
    ShowControlLine(st, form);
}

bool ControlFormExit(Station& st, ControlForm& form) {
    if (!CheckLine(st, form)) return false;
    storeShownLine(st, form);
    st.control.ControlCount = ComputeControlCount(st.control);
    st.switches.ControlsEnabled = form.ChkEnableControl ? 1 : 0;
    return true;
}

void ControlFormFocus(ControlForm& form, const std::string& box) {
    if (box == kFocusIf || box == kFocusThen || box == kFocusElse) form.LastFocus = box;
}

void ControlFormChooseTag(ControlForm& form, const std::string& name) {
    if (form.LastFocus == kFocusIf)
        form.TxtIf += "@" + name;
    else if (form.LastFocus == kFocusThen)
        form.TxtThen += "@" + name;
    else if (form.LastFocus == kFocusElse)
        form.TxtElse += "@" + name;
}

}  // namespace kova
