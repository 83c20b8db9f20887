#pragma once
// Running extremes of tags 1..14 (only the first fourteen are tracked, deliberately).
#include "core/one_based.h"

namespace kova {

inline constexpr int kMinMaxTags = 14;

struct MinMaxState {
    Table<float, kMinMaxTags> TagMaximum;  // 0 at program start; untouched by File New or load
    Table<float, kMinMaxTags> TagMinimum;
};

}  // namespace kova
