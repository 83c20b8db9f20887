#pragma once
// Fixed tables keep the domain's 1-based numbering (tag 1..42, alarm 1..20), so a number in
// the code is the number the user sees. Every access is range-checked.
#include <array>
#include <cstddef>

#include "core/fault.h"

namespace kova {

template <typename T, int N, int First = 1>
class Table {
  public:
    static constexpr int first = First;
    static constexpr int last = First + N - 1;
    static constexpr int size = N;

    T& operator[](int i) { return items_[slot(i)]; }
    const T& operator[](int i) const { return items_[slot(i)]; }
    static bool inRange(int i) { return i >= First && i <= last; }

    auto begin() { return items_.begin(); }
    auto end() { return items_.end(); }
    auto begin() const { return items_.begin(); }
    auto end() const { return items_.end(); }
    void fill(const T& v) { items_.fill(v); }
    bool operator==(const Table&) const = default;

  private:
    static std::size_t slot(int i) {
        if (!inRange(i)) throwBounds("table", i, First, last);
        return static_cast<std::size_t>(i - First);
    }
    std::array<T, N> items_{};
};

}  // namespace kova
