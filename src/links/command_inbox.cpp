#include "links/command_inbox.h"

namespace kova::links {

namespace {

std::future<CommandResult> refusedAtOnce(const LinkCommand& command, const std::string& why) {
    std::promise<CommandResult> answer;
    answer.set_value({false, command.source + ": refused: " + why});
    return answer.get_future();
}

}  // namespace

CommandInbox::~CommandInbox() {
    close();
}

std::future<CommandResult> CommandInbox::submit(LinkCommand command) {
    std::lock_guard lock(mutex_);
    if (closed_) return refusedAtOnce(command, "the station is stopping");
    if (queue_.size() >= capacity_)
        return refusedAtOnce(command, "too many commands waiting for the scan; try again");
    std::promise<CommandResult> answer;
    std::future<CommandResult> result = answer.get_future();
    queue_.emplace_back(std::move(command), std::move(answer));
    return result;
}

std::size_t CommandInbox::drain(Station& st,
                                const std::function<void(const CommandResult&)>& done) {
    std::vector<Pending> batch;
    {
        std::lock_guard lock(mutex_);
        if (queue_.empty()) return 0;
        batch.swap(queue_);
    }
    for (Pending& p : batch) {
        const CommandResult result = ApplyLinkCommand(st, p.first);
        if (done) done(result);
        p.second.set_value(result);
    }
    return batch.size();
}

void CommandInbox::close() {
    std::vector<Pending> left;
    {
        std::lock_guard lock(mutex_);
        closed_ = true;
        left.swap(queue_);
    }
    for (Pending& p : left)
        p.second.set_value({false, p.first.source + ": refused: the station is stopping"});
}

std::size_t CommandInbox::queued() const {
    std::lock_guard lock(mutex_);
    return queue_.size();
}

}  // namespace kova::links
