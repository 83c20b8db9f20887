#pragma once
// The control statement window (FrmControl) as a model: what its controls show, and what
// the buttons check, store and say. One line of the control table is shown at a time.
#include <string>
#include <vector>

#include "core/station.h"

namespace kova {

inline constexpr const char* kChkIfCaption =
    "Carry out Then statement only when If goes False to True";
inline constexpr const char* kChkEnableControlCaption = "Enable Control Language";

// Names of the text boxes, as the form remembers the one that last had the focus.
inline constexpr const char* kFocusIf = "IF";
inline constexpr const char* kFocusThen = "THEN";
inline constexpr const char* kFocusElse = "ELSE";

struct ControlForm {
    int LblLineNo = 1;                 // the shown line, 1..30
    std::string TxtIf;                 // IfText
    std::string TxtThen;               // ThenText, one assignment per text line
    std::string TxtElse;               // ElseText
    bool ChkIf = false;                // ThenOnRise
    bool ChkEnableControl = false;     // ControlsEnabled
    std::vector<std::string> CboTag;   // names of the used user tags, in tag order
    std::string LastFocus = kFocusIf;  // TxtIf has the focus when the window opens

    // After a failed CheckLine: the box whose text failed ("IF", "THEN", "ELSE"; "" when the
    // problem is the line as a whole), the token the message names ("" for none) and the
    // text line of the box (from 0) that failed. Cleared by a check that passes.
    std::string FailedBox;
    std::string FailedToken;
    int FailedLine = 0;

    // What ShowLine put in the three text boxes: boxes showing it were not typed in.
    std::string ShownIf{}, ShownThen{}, ShownElse{};
};

// Opening: fill CboTag, set ChkEnableControl from ControlsEnabled, show line 1.
ControlForm OpenControlForm(const Station& st);

// ShowLine: the shown line's number, texts and ThenOnRise into the controls.
void ShowControlLine(const Station& st, ControlForm& form);

// The names CboTag offers: the user tags 1..32 that have a name, in tag order.
std::vector<std::string> ControlTagChoices(const Station& st);

// The tag table or the whole configuration changed while the window is open; `form` holds
// what the controls show now. CboTag follows the table. When the user has not typed in the
// three boxes, they show the line as it is now (a rename rewrites the statements). A new
// configuration shows the line afresh, with the switch.
void ControlFormTablesChanged(const Station& st, ControlForm& form, TableChange change);

// CheckLine: compiles the shown texts (IF evaluated once, each assignment executed once,
// which really writes its tag) and stores the three codes in the shown line. On a problem
// shows its message titled "Error" and returns false, storing nothing.
bool CheckLine(Station& st, ControlForm& form);

// The buttons. Next, Prev and Exit do nothing more when CheckLine fails; Next and Prev
// return false then.
bool ControlFormNext(Station& st, ControlForm& form);
bool ControlFormPrev(Station& st, ControlForm& form);
void ControlFormInsert(Station& st, ControlForm& form);
void ControlFormDelete(Station& st, ControlForm& form);
// True when the window may close (ControlCount and ControlsEnabled then set).
bool ControlFormExit(Station& st, ControlForm& form);

// A text box got the focus ("IF", "THEN" or "ELSE").
void ControlFormFocus(ControlForm& form, const std::string& box);
// A name chosen in CboTag: "@" + name is appended to the box that last had the focus.
void ControlFormChooseTag(ControlForm& form, const std::string& name);

}  // namespace kova
