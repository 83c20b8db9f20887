#include "links/outbox/outbox.h"

#include <algorithm>
#include <fstream>
#include <system_error>

#include "links/outbox/outbox_file.h"

namespace kova::links {

namespace fs = std::filesystem;
namespace of = outbox_file;

namespace {

// How often the written records are flushed to the disk, and the readers' positions saved.
constexpr auto kSyncEvery = std::chrono::seconds(1);
constexpr auto kSaveReadersEvery = std::chrono::milliseconds(200);
// How long the writer waits before trying a disk that failed again.
constexpr auto kRetryDisk = std::chrono::seconds(1);
// Bytes a record costs besides its body, in memory and in its file.
constexpr std::size_t kRecordOverhead = 64;

std::int64_t NowMs() {
    return std::chrono::duration_cast<std::chrono::milliseconds>(
               std::chrono::system_clock::now().time_since_epoch())
        .count();
}

std::string DeliveredFile(const std::string& reader) {
    return "delivered-" + reader;
}

std::string MiB(std::uint64_t bytes) {
    return std::to_string((bytes + (1u << 19)) >> 20) + " MB";
}

std::string AgeText(std::chrono::seconds age) {
    if (age.count() > 0 && age.count() % 3600 == 0)
        return std::to_string(age.count() / 3600) + " hours";
    return std::to_string(age.count()) + " s";
}

}  // namespace

Outbox::Outbox(fs::path folder, OutboxLimits limits)
    : folder_(std::move(folder)),
      limits_(limits),
      // Small enough that dropping the oldest segment frees a small part of the bound.
      segmentBytes_(std::clamp<std::uint64_t>(limits.maxBytes / 16, 4096, 4u << 20)) {}

std::unique_ptr<Outbox> Outbox::Open(const fs::path& folder, OutboxLimits limits,
                                     std::string& error) {
    std::error_code ec;
    fs::create_directories(folder, ec);
    if (ec || !fs::is_directory(folder, ec)) {
        error = folder.string() + ": cannot be used as the outbox folder (" +
                (ec ? ec.message() : std::string("not a folder")) + ")";
        return nullptr;
    }
    std::unique_ptr<Outbox> box(new Outbox(folder, limits));
    if (!box->load(error)) return nullptr;
    box->writer_ = std::thread(&Outbox::run, box.get());
    return box;
}

bool Outbox::load(std::string& error) {
    std::vector<std::pair<std::uint64_t, fs::path>> found;
    std::error_code ec;
    for (const auto& e : fs::directory_iterator(folder_, ec)) {
        const std::uint64_t first = of::SegmentFirst(e.path().filename().string());
        if (first > 0) found.emplace_back(first, e.path());
    }
    if (ec) {
        error = folder_.string() + ": cannot read the outbox folder (" + ec.message() + ")";
        return false;
    }
    std::sort(found.begin(), found.end());
    for (std::size_t i = 0; i < found.size(); ++i) {
        const auto& [first, path] = found[i];
        of::ReadBack back;
        if (!of::ReadSegment(path, back, error)) return false;
        if (back.torn) {
            // The station died while writing this record: it never was queued.
            if (!of::Truncate(path, back.goodBytes, error)) return false;
            notices_.push_back(path.string() +
                               ": a record cut short by a stop of the station "
                               "was removed from the end of the outbox file");
        }
        Segment seg{path, first, 0, back.goodBytes};
        nextSequence_ = std::max(nextSequence_, first);
        for (of::Frame& f : back.frames) {
            // Records keep their order across files; anything out of order is not trusted.
            if (f.sequence < nextSequence_) continue;
            if (!queue_.empty() && f.sequence != queue_.back().record.sequence + 1)
                queue_.clear(), bytes_ = 0;  // a gap: the older ones were dropped
            Entry entry{{f.sequence, f.timeMs, std::move(f.body)}, f.storedMs, 0};
            entry.bytes = entry.record.body.size() + kRecordOverhead;
            bytes_ += entry.bytes;
            nextSequence_ = f.sequence + 1;
            seg.last = f.sequence;
            queue_.push_back(std::move(entry));
        }
        segments_.push_back(seg);
    }
    written_ = nextSequence_ - 1;
    // Every run appends to a segment of its own, named for the next sequence: an empty one
    // still tells the next run where the numbering stands.
    startSegment(nextSequence_);
    if (fd_ < 0) {
        error = folder_.string() + ": cannot write to the outbox folder";
        return false;
    }
    return true;
}

Outbox::~Outbox() {
    {
        std::lock_guard lock(mutex_);
        closing_ = true;
    }
    wakeWriter_.notify_all();
    changed_.notify_all();
    if (writer_.joinable()) writer_.join();
    if (fd_ >= 0) {
        of::SyncToDisk(fd_);
        of::CloseFile(fd_);
    }
}

void Outbox::startSegment(std::uint64_t first) {
    if (fd_ >= 0) {
        of::SyncToDisk(fd_);
        of::CloseFile(fd_);
        fd_ = -1;
    }
    if (!segments_.empty() && segments_.back().first == first && segments_.back().last == 0) {
        // Reuse the empty segment left by the last run.
    } else {
        segments_.push_back({folder_ / of::SegmentName(first), first, 0, 0});
    }
    std::string why;
    fd_ = of::OpenForAppend(segments_.back().path, why);
}

std::uint64_t Outbox::append(std::int64_t timeMs, std::string body) {
    std::uint64_t sequence;
    {
        std::lock_guard lock(mutex_);
        sequence = nextSequence_++;
        Entry entry{{sequence, timeMs, std::move(body)}, NowMs(), 0};
        entry.bytes = entry.record.body.size() + kRecordOverhead;
        bytes_ += entry.bytes;
        queue_.push_back(std::move(entry));
        enforceBounds(queue_.back().storedMs);
    }
    wakeWriter_.notify_one();
    changed_.notify_all();
    return sequence;
}

void Outbox::note(const std::string& line) {
    notices_.push_back(line);
}

void Outbox::dropFront(std::size_t count, const std::string& why) {
    for (std::size_t i = 0; i < count && !queue_.empty(); ++i) {
        const std::uint64_t s = queue_.front().record.sequence;
        if (droppedInEpisode_ == 0) {
            droppedFirst_ = s;
            note("the outbox in " + folder_.string() + " is full (" + why +
                 "): the oldest records are dropped until its records can be sent again");
        }
        droppedLast_ = s;
        ++droppedInEpisode_;
        ++dropped_;
        bytes_ -= queue_.front().bytes;
        queue_.pop_front();
        // A reader never gets a dropped record.
        for (auto& [name, r] : readers_) {
            r.handedOut = std::max(r.handedOut, s);
            r.delivered = std::max(r.delivered, s);
        }
    }
    written_ =
        std::max(written_, queue_.empty() ? nextSequence_ - 1 : queue_.front().record.sequence - 1);
}

void Outbox::enforceBounds(std::int64_t nowMs) {
    const std::int64_t oldest = nowMs - static_cast<std::int64_t>(limits_.maxAge.count()) * 1000;
    std::size_t n = 0;
    std::uint64_t left = bytes_;
    const bool tooBig = bytes_ > limits_.maxBytes;
    // The newest record always stays: the bound is on what waits, not on one record.
    for (const Entry& e : queue_) {
        if (n + 1 >= queue_.size()) break;
        if (left <= limits_.maxBytes && e.storedMs >= oldest) break;
        left -= e.bytes;
        ++n;
    }
    if (n > 0)
        dropFront(n, tooBig
                         ? "it holds " + MiB(limits_.maxBytes) + ", --outbox-max-mb"
                         : "records older than " + AgeText(limits_.maxAge) + ", --outbox-max-age");
}

std::uint64_t Outbox::lowestDelivered() const {
    std::uint64_t low = nextSequence_ - 1;
    for (const auto& [name, r] : readers_) low = std::min(low, r.delivered);
    return low;
}

void Outbox::trimDelivered() {
    if (readers_.empty()) return;
    const std::uint64_t low = lowestDelivered();
    while (!queue_.empty() && queue_.front().record.sequence <= low) {
        // Delivered before the writer got to it: it need not reach a file any more.
        written_ = std::max(written_, queue_.front().record.sequence);
        bytes_ -= queue_.front().bytes;
        queue_.pop_front();
    }
    if (queue_.empty() && droppedInEpisode_ > 0) {
        note(std::to_string(droppedInEpisode_) + " records (" + std::to_string(droppedFirst_) +
             " to " + std::to_string(droppedLast_) +
             ") were dropped from the outbox while it was full; it is empty again");
        droppedInEpisode_ = 0;
    }
}

void Outbox::run() {
    auto lastSave = std::chrono::steady_clock::now();
    std::unique_lock lock(mutex_);
    while (true) {
        wakeWriter_.wait_for(lock, diskFailing_ ? kRetryDisk : kSaveReadersEvery, [this] {
            return closing_ || (!diskFailing_ && written_ + 1 < nextSequence_);
        });
        const bool closing = closing_;
        lock.unlock();
        writeWaiting();
        const auto now = std::chrono::steady_clock::now();
        if (closing || now - lastSave >= kSaveReadersEvery) {
            saveReaders();
            lastSave = now;
        }
        if (unsynced_ && (closing || now - lastSync_ >= kSyncEvery)) {
            of::SyncToDisk(fd_);
            unsynced_ = false;
            lastSync_ = now;
        }
        lock.lock();
        if (closing) break;
        enforceBounds(NowMs());
    }
}

void Outbox::writeWaiting() {
    std::string bytes;
    std::uint64_t upTo = 0, from = 0;
    {
        std::lock_guard lock(mutex_);
        for (const Entry& e : queue_) {
            if (e.record.sequence <= written_) continue;
            if (from == 0) from = e.record.sequence;
            of::Encode({e.record.sequence, e.record.timeMs, e.storedMs, e.record.body}, bytes);
            upTo = e.record.sequence;
            if (bytes.size() >= segmentBytes_) break;
        }
    }
    if (upTo == 0) {
        // Segments whose records are all gone (delivered or dropped) are removed.
    } else {
        Segment& seg = segments_.back();
        if (seg.bytes > 0 && seg.bytes + bytes.size() > segmentBytes_) startSegment(from);
        Segment& cur = segments_.back();
        std::string why = fd_ < 0 ? std::string("cannot be opened") : of::WriteAll(fd_, bytes);
        if (!why.empty() && fd_ >= 0) {
            // A record half written would hide every later one: cut it off again.
            std::string ignored;
            of::Truncate(cur.path, cur.bytes, ignored);
        }
        std::lock_guard lock(mutex_);
        if (why.empty()) {
            cur.bytes += bytes.size();
            if (cur.last == 0 && cur.first < from) cur.first = from;
            cur.last = upTo;
            written_ = std::max(written_, upTo);
            unsynced_ = true;
            if (diskFailing_) {
                diskFailing_ = false;
                note("the outbox file " + cur.path.string() +
                     " can be written again; the records kept in memory meanwhile are in it");
            }
        } else if (!diskFailing_) {
            diskFailing_ = true;
            note("cannot write to the outbox file " + cur.path.string() + " (" + why +
                 "): records are kept in memory (up to " + MiB(limits_.maxBytes) +
                 ") until it can be written; the scan goes on");
        }
        changed_.notify_all();
    }
    // Remove the files of segments whose records all left the outbox.
    std::vector<fs::path> remove;
    {
        std::lock_guard lock(mutex_);
        trimDelivered();
        const std::uint64_t keepFrom =
            queue_.empty() ? nextSequence_ : queue_.front().record.sequence;
        while (segments_.size() > 1 && segments_.front().last < keepFrom) {
            remove.push_back(segments_.front().path);
            segments_.erase(segments_.begin());
        }
    }
    for (const fs::path& p : remove) {
        std::error_code ec;
        fs::remove(p, ec);
    }
}

void Outbox::saveReaders() {
    std::vector<std::pair<std::string, std::uint64_t>> save;
    {
        std::lock_guard lock(mutex_);
        for (auto& [name, r] : readers_)
            if (r.delivered != r.savedDelivered) {
                save.emplace_back(name, r.delivered);
                r.savedDelivered = r.delivered;
            }
    }
    for (const auto& [name, seq] : save) saveReader(name, seq);
}

void Outbox::saveReader(const std::string& name, std::uint64_t delivered) const {
    // Written beside and renamed over, so a stop half-way never leaves a broken number.
    const fs::path target = folder_ / DeliveredFile(name);
    const fs::path temp = folder_ / (DeliveredFile(name) + ".new");
    {
        std::ofstream out(temp, std::ios::binary | std::ios::trunc);
        out << delivered << "\n";
        if (!out) return;
    }
    std::error_code ec;
    fs::rename(temp, target, ec);
}

void Outbox::flush() {
    wakeWriter_.notify_one();
    std::unique_lock lock(mutex_);
    changed_.wait(lock,
                  [this] { return closing_ || diskFailing_ || written_ + 1 >= nextSequence_; });
}

std::vector<std::string> Outbox::takeNotices() {
    std::lock_guard lock(mutex_);
    std::vector<std::string> out;
    out.swap(notices_);
    return out;
}

Outbox::Stats Outbox::stats() const {
    std::lock_guard lock(mutex_);
    Stats s;
    s.records = queue_.size();
    s.bytes = bytes_;
    s.dropped = dropped_;
    s.newest = nextSequence_ - 1;
    s.unwritten = nextSequence_ - 1 - std::min(written_, nextSequence_ - 1);
    return s;
}

std::unique_ptr<Outbox::Reader> Outbox::reader(const std::string& name) {
    std::uint64_t delivered = 0;
    {
        std::ifstream in(folder_ / DeliveredFile(name));
        unsigned long long v = 0;
        if (in >> v) delivered = v;
    }
    std::lock_guard lock(mutex_);
    if (readers_.count(name)) return nullptr;
    // A position beyond the numbering (a file from another station) starts at the oldest kept.
    if (delivered >= nextSequence_) delivered = 0;
    if (!queue_.empty()) delivered = std::max(delivered, queue_.front().record.sequence - 1);
    readers_[name] = {delivered, delivered, delivered};
    return std::unique_ptr<Reader>(new Reader(*this, name));
}

Outbox::Reader::~Reader() {
    std::uint64_t delivered;
    {
        std::lock_guard lock(outbox_.mutex_);
        delivered = outbox_.readers_[name_].delivered;
        outbox_.readers_.erase(name_);
    }
    outbox_.saveReader(name_, delivered);
}

std::optional<OutboxRecord> Outbox::Reader::next(std::chrono::milliseconds wait) {
    std::unique_lock lock(outbox_.mutex_);
    ReaderState* r = &outbox_.readers_[name_];
    const auto ready = [&] { return outbox_.closing_ || r->handedOut + 1 < outbox_.nextSequence_; };
    if (!outbox_.changed_.wait_for(lock, wait, ready) || outbox_.closing_) return std::nullopt;
    r = &outbox_.readers_[name_];
    const auto& q = outbox_.queue_;
    if (q.empty()) return std::nullopt;
    const std::uint64_t want = std::max(r->handedOut + 1, q.front().record.sequence);
    const std::uint64_t index = want - q.front().record.sequence;
    if (index >= q.size()) return std::nullopt;
    r->handedOut = want;
    return q[index].record;
}

void Outbox::Reader::delivered(std::uint64_t sequence) {
    std::lock_guard lock(outbox_.mutex_);
    ReaderState& r = outbox_.readers_[name_];
    r.delivered = std::max(r.delivered, std::min(sequence, outbox_.nextSequence_ - 1));
    r.handedOut = std::max(r.handedOut, r.delivered);
    outbox_.trimDelivered();
}

void Outbox::Reader::rewind() {
    std::lock_guard lock(outbox_.mutex_);
    ReaderState& r = outbox_.readers_[name_];
    r.handedOut = r.delivered;
}

std::uint64_t Outbox::Reader::deliveredUpTo() const {
    std::lock_guard lock(outbox_.mutex_);
    return outbox_.readers_[name_].delivered;
}

std::uint64_t Outbox::Reader::newest() const {
    std::lock_guard lock(outbox_.mutex_);
    return outbox_.nextSequence_ - 1;
}

}  // namespace kova::links
