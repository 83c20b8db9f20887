#pragma once
// The ten readings screens: a header and twenty lines each (1..10 analog, 11..20 digital).
#include <cstdint>
#include <string>

#include "core/grid.h"
#include "core/one_based.h"

namespace kova {

struct ScreenHeader {
    std::string Title;
    std::int16_t JumpTo = 0;
    bool operator==(const ScreenHeader&) const = default;
};

struct ScreenLine {
    std::string TagName;
    std::int16_t TagNumber = 0;
    std::int16_t Editing = 0;
    bool operator==(const ScreenLine&) const = default;
};

struct ScreenTable {
    Table<ScreenHeader, 10> Headers;
    Grid<ScreenLine, 10, 20> Lines;  // (screen, line)
    // The screen whose jump target of 0 reads as 1 only while the set-up window shows it
    // with an empty box (saving it stores 0 again); 0 = none. Not part of the file.
    int JumpShownEmpty = 0;
};

}  // namespace kova
