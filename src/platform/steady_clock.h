#pragma once
// A clock that never jumps: the bound on how long a driver waits for a module that does
// not answer. Tests give one that moves a fixed step at every reading, so a bounded wait
// ends after a known number of port reads without really waiting.
#include <chrono>

namespace kova {

class SteadyClock {
  public:
    using time_point = std::chrono::steady_clock::time_point;
    virtual ~SteadyClock() = default;
    virtual time_point now() = 0;
};

// The machine's steady clock.
class MachineSteadyClock final : public SteadyClock {
  public:
    time_point now() override { return std::chrono::steady_clock::now(); }
};

// Moves by step at every reading, starting from the steady clock's epoch.
class SteppingSteadyClock final : public SteadyClock {
  public:
    explicit SteppingSteadyClock(std::chrono::microseconds step) : step_(step) {}
    time_point now() override {
        const time_point t = now_;
        now_ += step_;
        ++readings_;
        return t;
    }
    long readings() const { return readings_; }

  private:
    std::chrono::microseconds step_;
    time_point now_{};
    long readings_ = 0;
};

// One machine clock for everyone who has not been given another.
MachineSteadyClock& TheSteadyClock();

}  // namespace kova
