#pragma once
// Checking a control line's three texts: compile each part in the editor's order, evaluate
// the IF once and (when asked) execute each assignment once, and make sure the line fits
// its record of the setup file.
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "control/control_table.h"
#include "core/station.h"

namespace kova {

struct PartCheck {
    bool ok = false;
    std::string code;     // the compiled code of the part when ok
    std::string message;  // the message of the first problem otherwise
    std::string token;    // the unknown token the message names ("" when it names none)
    int textLine = 0;     // the text line of the part (from 0) that failed
};

// The IF text as the editor checks it: upper-cased and trimmed, compiled, evaluated once.
PartCheck CheckIfText(const Station& st, const std::string& text);

// A THEN or ELSE text (part is "Then" or "Else"): upper-cased and trimmed; "" gives the
// code "". Otherwise split into text lines at CR LF (a bare LF too; blank lines are
// skipped), each compiled and, when `exec` is given (the same station), executed once.
// The code is each assignment's code followed by "!".
PartCheck CheckAssignmentText(const Station& st, Station* exec, const std::string& text,
                              const char* part);

struct LineCheck {
    bool ok = false;
    std::string message;
    std::string failedPart;  // "IF", "THEN" or "ELSE": the box whose text failed
    std::string token;       // as in PartCheck
    int textLine = 0;
    std::string ifCode;
    std::string thenCode;
    std::string elseCode;
};

// IF, then THEN, then ELSE, stopping at the first problem.
LineCheck CheckLineTexts(const Station& st, Station* exec, const std::string& ifText,
                         const std::string& thenText, const std::string& elseText);

// The setup file keeps a line in one record of this size.
inline constexpr std::size_t kControlRecordBytes = 128;

// The bytes the line takes in its record: six texts in Windows-1252 with a 2-byte length
// each, and two 16-bit integers. nullopt when a text has a character Windows-1252 lacks.
std::optional<std::size_t> ControlRecordBytes(const ControlLine& line);

// One problem of a stored line.
struct ControlLineProblem {
    int line = 0;               // 1..30
    std::string message;        // the editor's message, kStaleCode, or a failed execution
    bool editorRefuses = true;  // false for the two others
};

// Every stored line whose three texts are not all empty, checked part by part as the editor
// checks it (every failing part is reported, not only the first). When `exec` is given (a
// station of its own, holding the same tags) each assignment is also executed once there, as
// the editor does, so an assignment the target refuses is found; `st` is never changed. An
// execution that faults (a target no module has) is reported, and the line compiled only.
std::vector<ControlLineProblem> FindControlLineProblems(const Station& st, Station* exec);

// The same, compiled only (nothing is executed, no tag or output changes); one entry per
// problem, such as "Control line 3: Syntax Error in Then Statement".
std::vector<std::string> CheckControlTable(const Station& st);

}  // namespace kova
