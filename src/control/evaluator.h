#pragma once
// The evaluator of the compiled codes: the IF of a line, the assignments of its THEN and
// ELSE parts, and the reading and writing of tag values they do.
#include <cstdint>
#include <string>
#include <vector>

#include "control/compiled_code.h"
#include "core/station.h"

namespace kova {

// Evaluates an IF code: 1 true, 0 false, -1 when the final value is not 0 or 1 (or not a
// number, or the code is malformed), -2 when an operand tag was not found. "," is true.
std::int16_t EvaluateIf(const Station& st, const std::string& code);

// Carries out one assignment code ("@X,1,0,SIN,"): 1 when the value was stored, -1 on any
// failure (unknown tag, a value the target refuses, a negative root or logarithm, a power
// with no real result, a value too large for a tag).
std::int16_t ExecuteAssignment(Station& st, const std::string& code);

// The Value of the tag named by reference ("@" + name; the first character is skipped).
// A name that is not found gives 0 and sets `error`.
double GetTagValue(const Station& st, const std::string& reference, bool& error);

// Stores v into the tag named by reference, with the output rules: an analog output is
// scaled, clamped to the module's raw range and written to its slot (pending flag set when
// the slot changes); digital tags and analog inputs take only 0 or 1, a digital output also
// sets or clears its bit. 1 on success, -1 on failure.
std::int16_t SetTagValue(Station& st, const std::string& reference, double v);

// Decoding of stored codes into their compiled image, and its evaluation. EvaluateIf and
// ExecuteAssignment above are exactly decode-then-run.
void DecodeIfCode(const std::string& code, CompiledExpression& out);
void DecodeAssignment(const std::string& code, CompiledAssignment& out);
// A THEN or ELSE code: the assignment codes, each followed by "!"; empty pieces are skipped.
void DecodeAssignmentList(const std::string& code, std::vector<CompiledAssignment>& out);

std::int16_t EvaluateCompiledIf(const Station& st, const CompiledExpression& expr);
std::int16_t ExecuteCompiledAssignment(Station& st, const CompiledAssignment& assignment);

}  // namespace kova
