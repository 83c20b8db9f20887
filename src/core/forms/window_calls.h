#pragma once
// A window's calls into its model. While one runs, every box the model raises belongs to
// the window (it opens over the window and gives the keyboard back to it), and a fault it
// raises goes to the general error report, in a box over the same window.
#include <QWidget>
#include <exception>
#include <utility>

#include "core/error_report.h"
#include "core/station.h"

namespace kova::forms {

class WindowCalls {
  public:
    WindowCalls(Station& st, ErrorReport& report, QWidget* window)
        : st_(st), report_(report), window_(window) {}

    // Runs f; true when it completed.
    template <typename F>
    bool operator()(F&& f) const {
        PromptOwner owner(*st_.platform.prompter, window_);
        return report_.guard(std::forward<F>(f));
    }
    // A fault the window caught itself.
    void report(const std::exception& e) const {
        PromptOwner owner(*st_.platform.prompter, window_);
        report_.report(e);
    }

  private:
    Station& st_;
    ErrorReport& report_;
    const QWidget* window_;
};

}  // namespace kova::forms
