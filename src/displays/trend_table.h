#pragma once
// The trend table (10 trends x 4 pens of tag numbers) and the shared sample ring.
#include <cstdint>

#include "core/grid.h"
#include "core/one_based.h"

namespace kova {

inline constexpr int kTrendRows = 200;

struct TrendState {
    Grid<std::int16_t, 10, 4> TrendTable;      // (trend, pen) -> tag number, 0 = none
    Grid<float, kTrendRows, 40> TrendSamples;  // (row, column), column = (trend - 1) x 4 + pen
    std::int16_t NewestSample = kTrendRows;
    std::int16_t OldestSample = 1;
    std::int16_t CurrentTrend = 1;  // shared by the set-up and the view window
    // Per column: how many of the ring's rows (at most 200) hold samples of the tag the pen
    // had when they were taken, counted since the reset or since the pen last changed tag;
    // and that tag. A chart draws only these: the other rows are zeros nobody measured.
    Table<std::int16_t, 40> SamplesTaken;
    Table<std::int16_t, 40> SampledTag;
};

// Every cell 0, the first sample goes to row 1, no sample taken.
void ResetTrendSamples(TrendState& trends);

// The trend one step on (+1) or back (-1) from `trend`: after 10 comes 1, before 1 comes 10.
std::int16_t StepTrend(std::int16_t trend, int step);

}  // namespace kova
