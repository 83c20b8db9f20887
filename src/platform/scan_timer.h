#pragma once

namespace kova {

// The periodic timer that fires the scan. Only the scan sets its interval.
class ScanTimer {
  public:
    virtual ~ScanTimer() = default;
    virtual void setInterval(int milliseconds) = 0;
};

}  // namespace kova
