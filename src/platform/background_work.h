#pragma once
// Work that may take long (reading a file on a slow disk or a network share) is done away
// from the thread that the scan and the windows share; what follows it (showing the result)
// comes back on that thread.
#include <functional>

namespace kova {

class BackgroundWork {
  public:
    virtual ~BackgroundWork() = default;
    // Runs `work` away from the caller's thread, then `done` on the caller's thread. `work`
    // touches only what it was given, never the station or a window. `done` is dropped when
    // whoever asked for the work has gone in the meantime.
    virtual void run(std::function<void()> work, std::function<void()> done) = 0;
};

// Runs both at once, in order, on the caller's thread: a fault `done` throws reaches the
// caller. For the command line, the tests and the fuzzers.
class InlineWork final : public BackgroundWork {
  public:
    void run(std::function<void()> work, std::function<void()> done) override {
        work();
        done();
    }
};

}  // namespace kova
