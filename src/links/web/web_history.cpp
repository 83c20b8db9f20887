#include "links/web/web_history.h"

#include <sys/stat.h>

#include <algorithm>
#include <cctype>
#include <filesystem>

#include "logging/log_file.h"

namespace kova::web {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kMaxListed = 2000;

bool endsWithCsv(const std::string& name) {
    if (name.size() < 5) return false;
    std::string ext = name.substr(name.size() - 4);
    for (char& c : ext) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return ext == ".CSV";
}

bool plainName(const std::string& name) {
    if (name.empty() || name.size() > 255 || name == "." || name == "..") return false;
    for (char c : name)
        if (c == '/' || c == '\\' || c == '\0' || static_cast<unsigned char>(c) < 0x20)
            return false;
    return true;
}

// A regular file itself, not a link, a pipe or a device: lstat, not stat.
bool regularFile(const std::string& path, struct stat& st) {
    return ::lstat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode);
}

}  // namespace

std::string LogFolder(const std::string& logDirectory, const std::string& logFileName) {
    if (!logDirectory.empty()) return NativeLogPath(logDirectory);
    const fs::path parent = fs::path(NativeLogPath(logFileName)).parent_path();
    return parent.empty() ? std::string(".") : parent.string();
}

bool ListLogFiles(const std::string& folder, std::vector<LogFileEntry>& files, std::string& error) {
    files.clear();
    std::error_code ec;
    fs::directory_iterator it(folder, ec);
    if (ec) {
        error = "the log folder " + folder + " cannot be read: " + ec.message();
        return false;
    }
    for (; it != fs::directory_iterator() && files.size() < kMaxListed; it.increment(ec)) {
        if (ec) break;
        const std::string name = it->path().filename().string();
        struct stat st {};
        if (!plainName(name) || !endsWithCsv(name) || !regularFile(it->path().string(), st))
            continue;
        files.push_back({name, static_cast<std::uintmax_t>(st.st_size)});
    }
    std::sort(files.begin(), files.end(),
              [](const LogFileEntry& a, const LogFileEntry& b) { return a.name < b.name; });
    return true;
}

std::string LogFilePath(const std::string& folder, const std::string& name, std::string& error) {
    if (!plainName(name) || !endsWithCsv(name)) {
        error = "not the name of a log file";
        return {};
    }
    const std::string path = (fs::path(folder) / name).string();
    struct stat st {};
    if (!regularFile(path, st)) {
        error = "there is no log file " + name;
        return {};
    }
    return path;
}

std::shared_ptr<HistoryReaders::Open> HistoryReaders::reader(const std::string& path,
                                                             std::string& error) {
    struct stat st {};
    if (!regularFile(path, st)) {
        error = "the log file is gone";
        return nullptr;
    }
    std::lock_guard lock(mutex_);
    for (auto it = open_.begin(); it != open_.end(); ++it) {
        if ((*it)->path != path) continue;
        std::shared_ptr<Open> o = *it;
        open_.erase(it);
        // A file that was replaced or shortened is read again from its start; one that
        // grew keeps the block starts already found.
        if (o->inode == static_cast<std::uintmax_t>(st.st_ino) &&
            o->bytes <= static_cast<std::uintmax_t>(st.st_size)) {
            open_.push_front(o);
            return o;
        }
        break;
    }
    auto o = std::make_shared<Open>();
    o->path = path;
    o->inode = static_cast<std::uintmax_t>(st.st_ino);
    o->bytes = static_cast<std::uintmax_t>(st.st_size);
    error = o->file.open(path);
    if (!error.empty()) {
        error = "the log file cannot be read: " + error;
        return nullptr;
    }
    std::string header;
    o->file.readLine(header);
    o->columns = ScanHeader(header);
    open_.push_front(o);
    while (open_.size() > maxOpen_) open_.pop_back();
    return o;
}

HistoryAnswer HistoryReaders::columns(const std::string& path) {
    HistoryAnswer a;
    const std::shared_ptr<Open> o = reader(path, a.error);
    if (!o) return a;
    std::lock_guard lock(o->mutex);
    a.columns = o->columns;
    return a;
}

HistoryAnswer HistoryReaders::block(const HistoryRequest& request) {
    HistoryAnswer a;
    if (request.columns.size() > kHistoryPens) {
        a.error = "at most four columns can be charted";
        return a;
    }
    if (request.startRow < 1) {
        a.error = "rows are counted from 1";
        return a;
    }
    const std::shared_ptr<Open> o = reader(request.path, a.error);
    if (!o) return a;
    std::lock_guard lock(o->mutex);
    a.columns = o->columns;
    BlockLayout layout;
    layout.timeColumn = o->columns.timeColumn;
    layout.periodColumn = o->columns.periodColumn;
    const auto& names = o->columns.names;
    for (std::size_t pen = 0; pen < request.columns.size(); ++pen) {
        const int c = request.columns[pen];
        const bool offered = c >= 1 && static_cast<std::size_t>(c) <= names.size() &&
                             names[static_cast<std::size_t>(c) - 1] != "DATE" &&
                             names[static_cast<std::size_t>(c) - 1] != "TIME";
        if (!offered) {
            a.error = "column " + std::to_string(c) + " is not one of the file's columns";
            return a;
        }
        layout.pens[pen] = static_cast<std::int16_t>(c);
    }
    if (!o->file.seekRow(request.startRow)) return a;  // past the end: no more points
    a.rowsRead = ReadBlock(o->file, layout, a.block);
    return a;
}

}  // namespace kova::web
