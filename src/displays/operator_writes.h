#pragma once
// What the operator sets from a readings screen reaches the output image and the pending
// flags here; the next timer tick (or the scan) sends it. These writes are deliberately
// not the control statements' assignments: an analog output clamps to RawMin first, and
// every write sets its pending flag, whether or not the output changed.
#include <cstdint>

#include "core/station.h"

namespace kova {

// The raw count an operator's analog value gives: (value - Offset) / Slope, raised to
// rawMin when below it, then lowered to rawMax when above it, rounded half to even.
// Faults (division by zero) when the tag's slope is 0.
std::int16_t OperatorRawValue(const Tag& tag, float value, std::int16_t rawMin,
                              std::int16_t rawMax);

// An analog line's value typed by the operator: stored as the tag's Value for an output or
// a variable; an output's raw count also goes into its slot and marks the analog outputs
// pending. Inputs are left alone. Returns true when the tag took the value.
bool OperatorWriteAnalog(Station& st, int tagNumber, float value);

// A digital line's tick box set by the operator: Value 1 or 0 for an output or a variable;
// an output's bit is set (OR mask) or cleared (AND with mask XOR 255, which also clears
// bits 8..15 of the word) and the digital outputs are marked pending. Inputs are left
// alone. Returns true when the tag took the value.
bool OperatorWriteDigital(Station& st, int tagNumber, bool ticked);

}  // namespace kova
