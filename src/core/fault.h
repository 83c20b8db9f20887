#pragma once
// A run-time fault of the system (overflow, bounds, file errors). It is not caught where it
// happens: it travels to the general error report, which shows it once and keeps running.
#include <stdexcept>
#include <string>

namespace kova {

enum class FaultKind { Overflow, Bounds, DivisionByZero, File, Invalid };

class Fault : public std::runtime_error {
  public:
    Fault(FaultKind kind, const std::string& what) : std::runtime_error(what), kind_(kind) {}
    FaultKind kind() const { return kind_; }

  private:
    FaultKind kind_;
};

[[noreturn]] void throwOverflow(const char* what);
[[noreturn]] void throwBounds(const char* table, long index, long low, long high);

}  // namespace kova
