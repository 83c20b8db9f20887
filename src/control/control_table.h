#pragma once
// The control statement table: 30 lines of IF / THEN / ELSE with their compiled codes.
#include <cstdint>
#include <string>

#include "control/compiled_code.h"
#include "core/one_based.h"

namespace kova {

struct ControlLine {
    std::string IfText;
    std::string IfCode;
    std::string ThenText;
    std::string ThenCode;
    std::string ElseText;
    std::string ElseCode;
    std::int16_t LastResult = 0;
    std::int16_t ThenOnRise = 0;
    bool operator==(const ControlLine&) const = default;
};

inline constexpr int kControlLines = 30;

struct ControlState {
    Table<ControlLine, kControlLines> Lines;
    std::int16_t ControlCount = 0;  // lines 1..ControlCount run
    std::int16_t StartUpFlag = 0;   // 0 until the first pass completed, then 1
    // Decoded image of each line's codes for the scan; rebuilt by RunControls whenever a
    // line's code text differs from the text the image was decoded from. Not saved.
    Table<CompiledLine, kControlLines> Compiled;
};

}  // namespace kova
