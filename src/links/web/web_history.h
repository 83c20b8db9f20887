#pragma once
// The history of the station's log folder for the web page: the log files there, their
// columns, and blocks of 200 rows read with the history reader. A file is named by its
// bare name and must be a regular *.CSV file directly in the log folder, so a request can
// reach no other file. Readers stay open between requests (a few files at most), so that
// stepping through a long file never starts again from its beginning.
#include <array>
#include <cstdint>
#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "displays/history_file.h"

namespace kova::web {

struct LogFileEntry {
    std::string name;
    std::uintmax_t bytes = 0;
};

// The folder the station's log files are in: the logging settings' folder, else the
// folder of the log file's name, else the working folder.
std::string LogFolder(const std::string& logDirectory, const std::string& logFileName);

// The log files of the folder (regular files ending ".CSV" in any case), by name; at most
// 2000. False with `error` when the folder cannot be read.
bool ListLogFiles(const std::string& folder, std::vector<LogFileEntry>& files, std::string& error);

// The path of a log file named by the page; "" with `error` when the name is not that of
// a log file directly in the folder.
std::string LogFilePath(const std::string& folder, const std::string& name, std::string& error);

struct HistoryRequest {
    std::string path;           // from LogFilePath
    std::vector<int> columns;   // header positions, up to four
    std::int64_t startRow = 1;  // data row the block starts at, from 1
};

struct HistoryAnswer {
    std::string error;  // "" when the block was read (or the end was reached)
    HistoryColumns columns;
    int rowsRead = 0;  // 0: "No More Points To Plot"
    HistoryBlock block;
};

class HistoryReaders {
  public:
    explicit HistoryReaders(std::size_t maxOpen = 8) : maxOpen_(maxOpen) {}
    // The header's columns of a file.
    HistoryAnswer columns(const std::string& path);
    // A block of up to 200 rows from startRow; columns must be offered by the header (not
    // DATE or TIME), at most four.
    HistoryAnswer block(const HistoryRequest& request);

  private:
    struct Open {
        std::string path;
        std::uintmax_t inode = 0;
        std::uintmax_t bytes = 0;
        HistoryFile file;
        HistoryColumns columns;
        std::mutex mutex;
    };
    std::shared_ptr<Open> reader(const std::string& path, std::string& error);
    std::size_t maxOpen_;
    std::mutex mutex_;
    std::list<std::shared_ptr<Open>> open_;  // most recently used first
};

}  // namespace kova::web
