#pragma once
// Background work for a window: each piece of work runs on a thread of its own and what
// follows it is posted back to the window's thread. A thread that never comes back (a file
// on a network share that stopped answering) holds up nothing: the window and the scan go
// on, and when the window has gone, what would have followed is dropped.
#include <QObject>
#include <functional>
#include <memory>

#include "platform/background_work.h"

namespace kova::forms {

class ThreadWork final : public BackgroundWork {
  public:
    // How `done` is run on the window's thread (for example inside the window's error
    // report); by default it is called as it is.
    using Finish = std::function<void(const std::function<void()>& done)>;
    // `owner` receives the posted endings; it must outlive this object.
    explicit ThreadWork(QObject* owner, Finish finish = {});
    // From here on no ending is posted; a thread still running finishes on its own.
    ~ThreadWork() override;
    ThreadWork(const ThreadWork&) = delete;
    ThreadWork& operator=(const ThreadWork&) = delete;

    void run(std::function<void()> work, std::function<void()> done) override;

  private:
    struct Mailbox;
    std::shared_ptr<Mailbox> mailbox_;
    Finish finish_;
};

}  // namespace kova::forms
