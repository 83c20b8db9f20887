#pragma once

namespace kova {

// A short audible signal (alarms).
class Beeper {
  public:
    virtual ~Beeper() = default;
    virtual void beep() = 0;
};

class SilentBeeper final : public Beeper {
  public:
    void beep() override {}
};

}  // namespace kova
