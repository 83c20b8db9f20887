#include "control/line_check.h"

#include <string_view>

#include "control/compiler.h"
#include "control/control_messages.h"
#include "control/evaluator.h"
#include "core/fault.h"
#include "core/text_encoding.h"
#include "tags/tag_table.h"

namespace kova {

namespace {

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

std::string prepared(const std::string& text) {
    std::string s = ToUpper(text);
    std::size_t b = 0;
    std::size_t e = s.size();
    while (b < e && isBlank(s[b])) ++b;
    while (e > b && isBlank(s[e - 1])) --e;
    return s.substr(b, e - b);
}

PartCheck failed(std::string message, std::string token = "", int textLine = 0) {
    PartCheck p;
    p.message = std::move(message);
    p.token = std::move(token);
    p.textLine = textLine;
    return p;
}

}  // namespace

PartCheck CheckIfText(const Station& st, const std::string& text) {
    using namespace control_text;
    std::string code;
    std::string token;
    const std::int16_t r = CompileIf(st, prepared(text), code, token);
    if (r == kCodeSyntaxError) return failed(SyntaxError(kIf));
    if (r == kCodeUnknownToken) return failed(UnknownToken(kIf, token), token);
    const std::int16_t v = EvaluateIf(st, code);
    if (v == -1) return failed(SyntaxError(kIf));
    if (v == -2) return failed(UnknownTokenAtRun(kIf));
    PartCheck p;
    p.ok = true;
    p.code = std::move(code);
    return p;
}

PartCheck CheckAssignmentText(const Station& st, Station* exec, const std::string& text,
                              const char* part) {
    using namespace control_text;
    PartCheck result;
    // Text lines are counted in the text as typed, so the window can point at the one that
    // failed; blank lines (and the blanks around each line) are skipped.
    const std::string all = ToUpper(text);
    std::size_t pos = 0;
    int textLine = -1;
    while (pos <= all.size()) {
        std::size_t nl = all.find('\n', pos);
        if (nl == std::string::npos) nl = all.size();
        const std::string line = prepared(all.substr(pos, nl - pos));  // drops the CR of CR LF
        pos = nl + 1;
        ++textLine;
        if (line.empty()) continue;
        std::string code;
        std::string token;
        const std::int16_t r = CompileAssignment(st, line, code, token);
        if (r == kCodeSyntaxError) return failed(SyntaxError(part), "", textLine);
        if (r == kCodeUnknownToken) return failed(UnknownToken(part, token), token, textLine);
        if (exec != nullptr) {
            const std::int16_t x = ExecuteAssignment(*exec, code);
            if (x == -1) return failed(SyntaxError(part), "", textLine);
            if (x == -2) return failed(UnknownTokenAtRun(part), "", textLine);
        }
        result.code += code;
        result.code += '!';
    }
    result.ok = true;
    return result;
}

LineCheck CheckLineTexts(const Station& st, Station* exec, const std::string& ifText,
                         const std::string& thenText, const std::string& elseText) {
    LineCheck out;
    auto fail = [&out](PartCheck& p, const char* box) {
        out.message = std::move(p.message);
        out.failedPart = box;
        out.token = std::move(p.token);
        out.textLine = p.textLine;
        return out;
    };
    PartCheck p = CheckIfText(st, ifText);
    if (!p.ok) return fail(p, "IF");
    out.ifCode = std::move(p.code);
    p = CheckAssignmentText(st, exec, thenText, control_text::kThen);
    if (!p.ok) return fail(p, "THEN");
    out.thenCode = std::move(p.code);
    p = CheckAssignmentText(st, exec, elseText, control_text::kElse);
    if (!p.ok) return fail(p, "ELSE");
    out.elseCode = std::move(p.code);
    out.ok = true;
    return out;
}

std::optional<std::size_t> ControlRecordBytes(const ControlLine& line) {
    std::size_t total = 2 * sizeof(std::int16_t);  // LastResult, ThenOnRise
    for (const std::string* s : {&line.IfText, &line.IfCode, &line.ThenText, &line.ThenCode,
                                 &line.ElseText, &line.ElseCode}) {
        const auto n = Cp1252Length(*s);
        if (!n) return std::nullopt;
        total += 2 + *n;
    }
    return total;
}

std::vector<ControlLineProblem> FindControlLineProblems(const Station& st, Station* exec) {
    using namespace control_text;
    std::vector<ControlLineProblem> problems;
    for (int i = 1; i <= kControlLines; ++i) {
        const ControlLine& line = st.control.Lines[i];
        if (line.IfText.empty() && line.ThenText.empty() && line.ElseText.empty()) continue;
        auto add = [&](std::string message, bool editorRefuses = true) {
            problems.push_back({i, std::move(message), editorRefuses});
        };
        const PartCheck ifPart = CheckIfText(st, line.IfText);
        PartCheck thenPart;
        PartCheck elsePart;
        try {
            thenPart = CheckAssignmentText(st, exec, line.ThenText, kThen);
            elsePart = CheckAssignmentText(st, exec, line.ElseText, kElse);
        } catch (const Fault& f) {
            // A target the program cannot write (a tag whose channel no module has): the
            // editor would end in a run-time error. Say so, and check the texts compiled only.
            add(std::string("executing it fails: ") + f.what(), false);
            thenPart = CheckAssignmentText(st, nullptr, line.ThenText, kThen);
            elsePart = CheckAssignmentText(st, nullptr, line.ElseText, kElse);
        }
        const PartCheck* parts[] = {&ifPart, &thenPart, &elsePart};
        for (const PartCheck* p : parts)
            if (!p->ok) add(p->message);
        const auto bytes = ControlRecordBytes(line);
        if (!bytes)
            add(kCannotEncode);
        else if (*bytes > kControlRecordBytes)
            add(kLineTooLong);
        // Codes that no longer match their texts (a tag renamed since the line was checked):
        // the scan runs the stored codes, so the line does not do what its texts say.
        // A part whose text is "" never runs, so its code does not matter.
        const bool stale = ifPart.code != line.IfCode ||
                           (!line.ThenText.empty() && thenPart.code != line.ThenCode) ||
                           (!line.ElseText.empty() && elsePart.code != line.ElseCode);
        if (ifPart.ok && thenPart.ok && elsePart.ok && stale) add(kStaleCode, false);
    }
    return problems;
}

std::vector<std::string> CheckControlTable(const Station& st) {
    std::vector<std::string> out;
    for (const ControlLineProblem& p : FindControlLineProblems(st, nullptr))
        out.push_back("Control line " + std::to_string(p.line) + ": " + p.message);
    return out;
}

}  // namespace kova
