#pragma once
// The general error report: a run-time fault (or any exception) from the scan, a window
// or a file is shown in a message box, put in the status bar and written to the error
// stream, and the program goes on. A fault that repeats on every tick is shown once and
// not again until a tick has completed without it.
#include <exception>
#include <functional>
#include <ostream>
#include <string>

namespace kova {

struct Platform;

class ErrorReport {
  public:
    ErrorReport(Platform& platform, std::ostream& log) : platform_(platform), log_(log) {}

    // How the message box of a scan fault is shown. By default at once; the program posts
    // it to its event loop so that the tick returns first and the scan goes on while the
    // box is up. The status bar and the error stream are written at once either way.
    using Post = std::function<void(std::function<void()>)>;
    void setPost(Post post) { post_ = std::move(post); }

    // A fault from a window, a menu command or a file: reported every time.
    void report(const std::exception& e);
    // A fault from the scan: reported unless it is the one already reported by the
    // previous failing ticks.
    void tickFailed(const std::exception& e);
    // A tick ran to its end: the next scan fault is reported again.
    void tickCompleted() { repeating_.clear(); }

    // Runs f; a fault it raises is reported. True when f completed.
    template <typename F>
    bool guard(F&& f) {
        try {
            f();
            return true;
        } catch (const std::exception& e) {
            report(e);
            return false;
        }
    }
    // Runs one tick through f with the repeat rule above.
    template <typename F>
    bool guardTick(F&& f) {
        try {
            f();
        } catch (const std::exception& e) {
            tickFailed(e);
            return false;
        }
        tickCompleted();
        return true;
    }

    int reportedCount() const { return reported_; }

  private:
    void show(const std::string& what, bool fromScan);

    Platform& platform_;
    std::ostream& log_;
    Post post_;
    std::string repeating_;  // text of the scan fault already shown, "" when none
    int reported_ = 0;
};

// The text the report shows for a fault.
std::string FaultText(const std::exception& e);

}  // namespace kova
