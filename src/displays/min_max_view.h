#pragma once
// The "Maximum And Minimum Readings" window (MinMaxFrm) as a model: what each of its
// fourteen rows shows.
#include <string>

#include "core/one_based.h"
#include "core/station.h"

namespace kova {

inline constexpr const char* kMinMaxCaption = "Maximum And Minimum Readings";
inline constexpr const char* kMinMaxHeadings[4] = {"Label", "Reading", "Maximum", "Minimum"};
inline constexpr const char* kMinMaxResetCaption = "&Reset Min/Max";
inline constexpr const char* kMinMaxExitCaption = "E&xit";
inline constexpr int kMinMaxRefreshMs = 1000;

struct MinMaxRow {
    std::string Label;    // Label1: the tag's label
    std::string Reading;  // LblRead
    std::string Maximum;  // LblMax
    std::string Minimum;  // LblMin
    bool operator==(const MinMaxRow&) const = default;
};

// Row i is tag i, 1..14; the numbers as the ordinary number-to-text conversion.
using MinMaxRows = Table<MinMaxRow, kMinMaxTags>;

MinMaxRows MinMaxView(const Station& st);

}  // namespace kova
