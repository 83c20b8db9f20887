#pragma once
// The two compilers of the control language: IF text to IfCode, one assignment of a THEN
// or ELSE part to its code. Both are operator-precedence parsers over "#" + text + "#"
// that emit the textual postfix codes the evaluator runs.
#include <cstdint>
#include <string>
#include <string_view>

#include "core/station.h"

namespace kova {

// Result codes of the language.
inline constexpr std::int16_t kCodeOk = 1;
inline constexpr std::int16_t kCodeSyntaxError = -1;
inline constexpr std::int16_t kCodeUnknownToken = -2;

// IF text (already upper-cased and trimmed) to its postfix code ("@A,1,>,@B,2,<,&,"; ","
// for an empty text). 1 compiled; -1 syntax error; -2 unknown token or tag, with the
// offending token in `token`. On failure `code` is emptied. Tags are looked up with
// FindTag in st.nameIndex; nothing is changed.
std::int16_t CompileIf(const Station& st, const std::string& text, std::string& code,
                       std::string& token);

// One assignment "@TAG = expression" to its code: target, then the expression in postfix
// ("@X,1,0,SIN,"). Results as CompileIf.
std::int16_t CompileAssignment(const Station& st, const std::string& text, std::string& code,
                               std::string& token);

// True for exactly SIN, COS, TAN, ATN, LOG, ABS, EXP, SQR.
bool IsFunctionName(std::string_view name);

// True when an entry of a code reads as a number: digits with at most one "." and at least
// one digit, whose value is a finite double (stored in `value`).
bool ReadCodeNumber(std::string_view entry, double& value);

}  // namespace kova
