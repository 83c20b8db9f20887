#pragma once
// The station's store and forward: records wait here, on disk, until every link that reads
// them has delivered them. The scan appends and never waits for the disk (a writer thread
// of the outbox writes the files); links read the records in order, with their original
// times, on their own threads and say which ones were delivered.
//
// On disk the outbox is a folder of segment files, "q-<first sequence>.kq", each a run of
// framed records (length, check sum, sequence, times, body). A record reaches its file
// within milliseconds of being appended (the writer is woken at once), so a station that is
// killed loses nothing that was queued; the files are flushed to the disk once a second, so
// a power cut loses at most the last second. A torn record at the end of the last file (the
// station died while writing it) is cut off when the outbox is opened again. Each reader
// keeps the sequence it delivered up to in "delivered-<name>", so a restarted station sends
// on from there (a record in flight when it died is sent again: a consumer sees it twice,
// with the same sequence and time).
//
// The outbox is bounded by bytes and by age. When a bound is passed the oldest records are
// dropped first; the user hears it once when it starts and once, with the count, when the
// queue has drained again. A disk that cannot be written (full, gone) is said once; the
// records are then kept in memory (within the same byte bound) and written when it can be.
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace kova::links {

struct OutboxRecord {
    std::uint64_t sequence = 0;  // per station: 1, 2, 3, ..., kept across restarts
    std::int64_t timeMs = 0;     // the record's own time, milliseconds since 1970 UTC
    std::string body;            // what the links send (for log records: RecordJson's object)
};

struct OutboxLimits {
    std::uint64_t maxBytes = 64ull << 20;        // the records kept, on disk and in memory
    std::chrono::seconds maxAge{7 * 24 * 3600};  // since a record was appended
};

class Outbox {
  public:
    class Reader;

    // Opens (making it when needed) the folder and loads what a previous run left there;
    // nullptr and a reason naming the folder when it cannot be used.
    static std::unique_ptr<Outbox> Open(const std::filesystem::path& folder, OutboxLimits limits,
                                        std::string& error);
    // Writes what is still waiting, saves the readers' positions and stops the writer.
    ~Outbox();
    Outbox(const Outbox&) = delete;
    Outbox& operator=(const Outbox&) = delete;

    // The scan's thread: gives the record the next sequence number (returned) and queues it.
    // Takes a lock held only for memory work, never for the disk.
    std::uint64_t append(std::int64_t timeMs, std::string body);

    // A reader with a name of its own ("mqtt", "sparkplug"): it starts after the last record
    // it delivered in an earlier run (or at the oldest record kept). Records leave the outbox
    // once every reader opened in this run delivered them. One reader per name; a reader
    // goes before its outbox.
    std::unique_ptr<Reader> reader(const std::string& name);

    // What the user must hear (the disk cannot be written, records dropped), a line each.
    std::vector<std::string> takeNotices();

    struct Stats {
        std::uint64_t records = 0;  // kept (not yet delivered by every reader)
        std::uint64_t bytes = 0;
        std::uint64_t dropped = 0;    // by the bounds, since the outbox was opened
        std::uint64_t newest = 0;     // the last sequence given out, 0 before the first
        std::uint64_t unwritten = 0;  // appended but not in a file yet
    };
    Stats stats() const;
    const std::filesystem::path& folder() const { return folder_; }
    // Waits until every record appended so far is in its file (tests; a clean stop).
    void flush();

  private:
    struct Entry {
        OutboxRecord record;
        std::int64_t storedMs = 0;  // when it was appended (the real clock), for the age bound
        std::size_t bytes = 0;
    };
    struct Segment {
        std::filesystem::path path;
        std::uint64_t first = 0;
        std::uint64_t last = 0;  // 0 while it holds no record
        std::uint64_t bytes = 0;
    };
    struct ReaderState {
        std::uint64_t handedOut = 0;
        std::uint64_t delivered = 0;
        std::uint64_t savedDelivered = 0;
    };

    Outbox(std::filesystem::path folder, OutboxLimits limits);
    bool load(std::string& error);
    void run();
    void writeWaiting();
    void saveReaders();
    void saveReader(const std::string& name, std::uint64_t delivered) const;
    void enforceBounds(std::int64_t nowMs);                     // under mutex_
    void dropFront(std::size_t count, const std::string& why);  // under mutex_
    void trimDelivered();                                       // under mutex_
    void note(const std::string& line);                         // under mutex_
    void startSegment(std::uint64_t first);                     // writer thread
    std::uint64_t lowestDelivered() const;                      // under mutex_

    std::filesystem::path folder_;
    OutboxLimits limits_;
    std::uint64_t segmentBytes_;

    mutable std::mutex mutex_;
    std::condition_variable wakeWriter_;
    std::condition_variable changed_;  // a record appended, written, or the outbox closing
    std::deque<Entry> queue_;          // in sequence order, without gaps
    std::uint64_t bytes_ = 0;
    std::uint64_t nextSequence_ = 1;
    std::uint64_t written_ = 0;  // every record up to this sequence is in a file (or gone)
    std::map<std::string, ReaderState> readers_;
    std::uint64_t dropped_ = 0;
    std::uint64_t droppedInEpisode_ = 0;
    std::uint64_t droppedFirst_ = 0, droppedLast_ = 0;
    bool diskFailing_ = false;
    std::vector<std::string> notices_;
    bool closing_ = false;

    // The writer thread's own.
    std::vector<Segment> segments_;
    int fd_ = -1;
    std::chrono::steady_clock::time_point lastSync_{};
    bool unsynced_ = false;
    std::thread writer_;

    friend class Reader;
};

class Outbox::Reader {
  public:
    ~Reader();
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

    // The next record after those handed out, in sequence order; waits up to `wait` for one
    // (nullopt when none came, or the outbox is closing).
    std::optional<OutboxRecord> next(std::chrono::milliseconds wait);
    // Every record up to and including `sequence` was delivered: it is not handed out again,
    // not even after a restart.
    void delivered(std::uint64_t sequence);
    // Hands records out again from the first one not delivered (the link lost those in flight).
    void rewind();
    std::uint64_t deliveredUpTo() const;
    // The last sequence appended so far: records up to it that are not delivered yet are a
    // backlog (what a link marks replayed after a reconnect).
    std::uint64_t newest() const;

  private:
    friend class Outbox;
    Reader(Outbox& outbox, std::string name) : outbox_(outbox), name_(std::move(name)) {}
    Outbox& outbox_;
    std::string name_;
};

}  // namespace kova::links
