#pragma once
// Counts heap allocations made through the global operator new in a benchmark program
// (the counting operators are in allocation_counter.cpp, linked into every benchmark).

namespace kova::bench {

long long AllocationCount();

}  // namespace kova::bench
