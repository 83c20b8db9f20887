#pragma once
// The bounded queue of commands from the links to the station. A link's thread submits a
// command and may wait for its result; the scan's thread drains the queue after each tick
// and applies the commands in order. A full queue refuses at once, so a flood from outside
// can neither grow memory nor lengthen a tick by more than the queue's length.
#include <cstddef>
#include <functional>
#include <future>
#include <mutex>
#include <utility>
#include <vector>

#include "links/link_command.h"

namespace kova::links {

class CommandInbox {
  public:
    explicit CommandInbox(std::size_t capacity = 32) : capacity_(capacity) {}
    // Whatever is still queued is answered "the station is stopping".
    ~CommandInbox();
    CommandInbox(const CommandInbox&) = delete;
    CommandInbox& operator=(const CommandInbox&) = delete;

    // A link's thread. The future holds the result once the scan applied the command; a
    // full or closed inbox answers at once with a refusal.
    std::future<CommandResult> submit(LinkCommand command);

    // The scan's thread, after a tick: applies every queued command, oldest first, and
    // hands each result to `done` (which prints its line) before answering the link.
    // Returns how many commands were applied.
    std::size_t drain(Station& st, const std::function<void(const CommandResult&)>& done);

    // The station stops: queued commands are refused, and so is everything submitted later.
    void close();
    std::size_t queued() const;

  private:
    using Pending = std::pair<LinkCommand, std::promise<CommandResult>>;
    std::size_t capacity_;
    mutable std::mutex mutex_;
    std::vector<Pending> queue_;
    bool closed_ = false;
};

}  // namespace kova::links
