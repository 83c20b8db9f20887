#pragma once
// The station's change notice: after the tag table, the DAQ type or the whole configuration
// changed, the engine says so once, and every window that shows lists of tags or I/O names
// refreshes them. No window polls the tables. Everything runs on the user-interface thread.
#include <functional>
#include <map>
#include <memory>

namespace kova {

enum class TableChange {
    Tags,           // a tag stored, renamed or deleted
    DaqType,        // another module type (its I/O names) selected
    Configuration,  // every table replaced: File New, File Load
};

class ChangeNotice {
  public:
    using Listener = std::function<void(TableChange)>;

    // A listener stays subscribed while its subscription lives.
    class Subscription {
      public:
        Subscription() = default;
        Subscription(Subscription&& other) noexcept;
        Subscription& operator=(Subscription&& other) noexcept;
        Subscription(const Subscription&) = delete;
        Subscription& operator=(const Subscription&) = delete;
        ~Subscription();

      private:
        friend class ChangeNotice;
        using Listeners = std::map<int, Listener>;
        Subscription(std::weak_ptr<Listeners> listeners, int id)
            : listeners_(std::move(listeners)), id_(id) {}
        void release();
        std::weak_ptr<Listeners> listeners_;
        int id_ = 0;
    };

    // Listening changes nothing of the station: a window that only reads it may listen.
    [[nodiscard]] Subscription subscribe(Listener listener) const;
    // Tells every listener subscribed now, in the order they subscribed. A listener that
    // leaves while others are being told is not told.
    void raise(TableChange change);
    // How many times each kind of change was raised (for tests and the command line).
    int count(TableChange change) const;

  private:
    std::shared_ptr<Subscription::Listeners> listeners_ =
        std::make_shared<Subscription::Listeners>();
    mutable int nextId_ = 1;
    std::map<TableChange, int> counts_;
};

}  // namespace kova
