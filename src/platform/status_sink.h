#pragma once
#include <string>

namespace kova {

// The main window's status bar (its first panel).
class StatusSink {
  public:
    virtual ~StatusSink() = default;
    virtual void setStatusText(const std::string& text) = 0;
};

}  // namespace kova
