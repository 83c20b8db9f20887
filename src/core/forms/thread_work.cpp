#include "core/forms/thread_work.h"

#include <QMetaObject>
#include <mutex>
#include <thread>

namespace kova::forms {

// Where a finished thread posts its ending: the owner while it is there, nobody after.
struct ThreadWork::Mailbox {
    std::mutex mutex;
    QObject* owner = nullptr;
};

ThreadWork::ThreadWork(QObject* owner, Finish finish)
    : mailbox_(std::make_shared<Mailbox>()), finish_(std::move(finish)) {
    mailbox_->owner = owner;
}

ThreadWork::~ThreadWork() {
    std::lock_guard lock(mailbox_->mutex);
    mailbox_->owner = nullptr;
}

void ThreadWork::run(std::function<void()> work, std::function<void()> done) {
    // The ending goes through the owner's event queue: once the owner is destroyed, Qt
    // drops what was posted to it and never ran.
    auto ending = [finish = finish_, done = std::move(done)] {
        if (finish)
            finish(done);
        else
            done();
    };
    std::thread([mailbox = mailbox_, work = std::move(work), ending = std::move(ending)] {
        try {
            work();
        } catch (...) {
            // The work reports through what it was given; nothing may escape a thread.
        }
        std::lock_guard lock(mailbox->mutex);
        if (mailbox->owner) QMetaObject::invokeMethod(mailbox->owner, ending, Qt::QueuedConnection);
    }).detach();
}

}  // namespace kova::forms
