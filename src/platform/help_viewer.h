#pragma once
// The help viewer, opened at a named topic.
#include <string>

namespace kova {

inline constexpr const char* kHelpIntroduction = "Introduction";

class HelpViewer {
  public:
    virtual ~HelpViewer() = default;
    virtual void showTopic(const std::string& topic) = 0;
};

}  // namespace kova
