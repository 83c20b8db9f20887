#pragma once
#include "core/station.h"

namespace kova {

// One trend sample: both ring indexes advance (200 wraps to 1) and every pen of every trend
// records its tag's value in the newest row, or 0 when the pen's tag is not 1..32; each pen
// counts the samples it holds of its present tag.
void SampleTrends(Station& st);

}  // namespace kova
