#pragma once
// Running extremes of tags 1..14 (only the first fourteen are tracked, deliberately), kept
// by the scan whether or not the min/max window is open.
#include "core/one_based.h"

namespace kova {

inline constexpr int kMinMaxTags = 14;

struct MinMaxState {
    Table<float, kMinMaxTags> TagMaximum;  // 0 at program start; untouched by File New or load
    Table<float, kMinMaxTags> TagMinimum;
};

struct Station;

// After the inputs were read: for tags 1..14, a Value at or above the maximum becomes the
// maximum, a Value below the minimum becomes the minimum. Tags from 15 on are never
// tracked.
void UpdateMinMax(Station& st);

// "&Reset Min/Max": maximum and minimum of tags 1..14 become the tag's present Value.
void ResetMinMax(Station& st);

}  // namespace kova
