#include "core/change_notice.h"

#include <vector>

namespace kova {

ChangeNotice::Subscription::Subscription(Subscription&& other) noexcept
    : listeners_(std::move(other.listeners_)), id_(other.id_) {
    other.id_ = 0;
}

ChangeNotice::Subscription& ChangeNotice::Subscription::operator=(Subscription&& other) noexcept {
    if (this != &other) {
        release();
        listeners_ = std::move(other.listeners_);
        id_ = other.id_;
        other.id_ = 0;
    }
    return *this;
}

ChangeNotice::Subscription::~Subscription() {
    release();
}

void ChangeNotice::Subscription::release() {
    if (id_ == 0) return;
    if (const auto listeners = listeners_.lock()) listeners->erase(id_);
    id_ = 0;
}

ChangeNotice::Subscription ChangeNotice::subscribe(Listener listener) const {
    const int id = nextId_++;
    listeners_->emplace(id, std::move(listener));
    return Subscription(listeners_, id);
}

void ChangeNotice::raise(TableChange change) {
    ++counts_[change];
    // A listener may subscribe or leave while it is told: walk a list of the ids.
    std::vector<int> ids;
    for (const auto& [id, listener] : *listeners_) ids.push_back(id);
    for (const int id : ids) {
        const auto it = listeners_->find(id);
        if (it == listeners_->end()) continue;
        const Listener listener = it->second;  // the listener may leave while it runs
        listener(change);
    }
}

int ChangeNotice::count(TableChange change) const {
    const auto it = counts_.find(change);
    return it == counts_.end() ? 0 : it->second;
}

}  // namespace kova
