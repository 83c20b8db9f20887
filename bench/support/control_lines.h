#pragma once
// Puts control statements into a station for a benchmark, compiled as the editor would,
// with control switched on. A statement the editor would refuse stops the benchmark.
#include "core/station.h"

namespace kova::bench {

// lines[i] holds the IF, THEN and ELSE texts of control line i + 1.
void InstallControlLines(Station& st, const char* const (*lines)[3], int count);

}  // namespace kova::bench
