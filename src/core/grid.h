#pragma once
// A fixed 2-D table with 1-based, range-checked (row, column) access.
#include <array>
#include <cstddef>

#include "core/fault.h"

namespace kova {

template <typename T, int Rows, int Cols>
class Grid {
  public:
    static constexpr int rows = Rows;
    static constexpr int cols = Cols;
    T& operator()(int r, int c) { return cells_[slot(r, c)]; }
    const T& operator()(int r, int c) const { return cells_[slot(r, c)]; }
    static bool inRange(int r, int c) { return r >= 1 && r <= Rows && c >= 1 && c <= Cols; }
    void fill(const T& v) { cells_.fill(v); }
    bool operator==(const Grid&) const = default;

  private:
    static std::size_t slot(int r, int c) {
        if (r < 1 || r > Rows) throwBounds("table row", r, 1, Rows);
        if (c < 1 || c > Cols) throwBounds("table column", c, 1, Cols);
        return static_cast<std::size_t>((r - 1) * Cols + (c - 1));
    }
    std::array<T, static_cast<std::size_t>(Rows) * Cols> cells_{};
};

}  // namespace kova
