#pragma once
// Reading a log file back for the history chart: the fields of a line, the header's
// column names, and blocks of 200 rows. The reader keeps the byte offset of every block
// start it has passed, so going back never re-reads the file from its beginning and the
// memory it holds stays small however long the file is.
#include <array>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kova {

inline constexpr int kHistoryBlockRows = 200;
inline constexpr int kHistoryPens = 4;
inline constexpr int kHistoryMaxColumns = 20;

// The n-th comma-separated field of a line (n from 1), trimmed of blanks; "" when the line
// has fewer than n-1 commas (or n < 1). The last field runs to the end of the line; no
// quoting is recognised.
std::string GetField(std::string_view line, int n);

// The number at the start of a field as the chart reads it: leading blanks skipped, the
// longest decimal prefix read with "." as the decimal point whatever the locale; 0 when
// there is none or when it does not fit a single-precision value.
float FieldNumber(std::string_view field);

// The columns a header line names.
struct HistoryColumns {
    std::vector<std::string> names;      // fields 1..k (k <= 20), up to the first empty one
    std::vector<std::string> listItems;  // the names offered for charting: not DATE, not TIME
    std::int16_t timeColumn = 0;         // position of "TIME", 0 when absent
    std::int16_t periodColumn = 0;       // position of "LOG PERIOD", 0 when absent
};

// Scans a header line as read from the file (Windows-1252 bytes); names come back in UTF-8.
HistoryColumns ScanHeader(std::string_view headerBytes);

// Which header position each pen charts; 0 = pen unused.
using PenColumns = std::array<std::int16_t, kHistoryPens>;

// One block of the chart: 200 rows of four pens, and each row's time and period texts.
struct HistoryBlock {
    std::array<std::array<float, kHistoryBlockRows>, kHistoryPens> values{};  // [pen][row]
    std::array<std::string, kHistoryBlockRows> timeTexts;
    std::array<std::string, kHistoryBlockRows> periodTexts;
};

// Where a block's fields come from.
struct BlockLayout {
    PenColumns pens{};
    std::int16_t timeColumn = 0;
    std::int16_t periodColumn = 0;
};

// A log file open for reading, line by line, with the offsets of the block starts passed.
class HistoryFile {
  public:
    // The longest line the reader takes: the log writer's longest record is well under
    // 4 KB (32 values) and its header under 5 KB, so 64 KB leaves room for any log edited
    // elsewhere while a step (200 lines) never reads more than 12.8 MB. A longer line is not
    // a log line: the reader stops before it rather than walk a file that may have no line
    // breaks at all (a sparse file of gigabytes, a disk image).
    static constexpr std::size_t kMaxLineBytes = 64 * 1024;

    // `maxLineBytes` other than kMaxLineBytes lets a test or a fuzzer meet overlong lines
    // in small files, and `readBytes` (0: as many as the file's size wants, 4 to 64 KB) lines
    // that span several reads.
    explicit HistoryFile(std::size_t maxLineBytes = kMaxLineBytes, std::size_t readBytes = 0)
        : maxLine_(maxLineBytes), readBytes_(readBytes) {}
    ~HistoryFile() { close(); }
    HistoryFile(const HistoryFile&) = delete;
    HistoryFile& operator=(const HistoryFile&) = delete;

    // Opens the file named by a UTF-8 path, positioned at its header. Returns "" on
    // success, otherwise the reason (the file stays closed): only a plain file is opened
    // ("it is a folder, not a log file"), and the open never waits (a FIFO, a device).
    // Outside Windows a "\" in the path separates folders just as "/" does.
    std::string open(const std::string& path);
    // Reads the header line (the file must be at its start). Returns "" on success (an
    // empty file has an empty header), otherwise why the file is not a log file: a first
    // line longer than the longest line or holding NUL bytes.
    std::string readHeader(std::string& header);
    void close();
    bool isOpen() const { return file_ != nullptr; }
    const std::string& path() const { return path_; }

    // The next line without its line break (LF or CR LF). False at the end of the file, on
    // a read fault (which then counts as the end of the file) and before a line longer than
    // the longest line (overlongRow() then tells which).
    bool readLine(std::string& line);
    // Skips the next line; false at the end of the file.
    bool skipLine();

    // Positions the reader so that the next line read is data row `row` (1 = the line after
    // the header). Starts from the nearest block start already passed; false when the file
    // ends before that row.
    bool seekRow(std::int64_t row);
    // The data row the next readLine returns (0 = the header).
    std::int64_t nextRow() const { return nextRow_; }
    // How many block starts the reader knows the offset of.
    std::size_t knownBlockStarts() const { return blockStarts_.size(); }
    // Bytes fetched from the file since it was opened (to show what a step costs).
    std::uint64_t bytesFetched() const { return fetched_; }
    // The longest line taken (kMaxLineBytes unless the constructor was given another).
    std::size_t maxLineBytes() const { return maxLine_; }
    // The row (0 = the header) of the first line found longer than that; -1 while
    // none was met. Reading never goes past it.
    std::int64_t overlongRow() const { return overlongRow_; }

  private:
    bool fill();
    bool seekTo(std::uint64_t offset, std::int64_t row);
    void noteBlockStart();
    // Reads one line into *line, or only moves past it when line is null.
    bool nextLine(std::string* line);
    bool blocked() const { return overlongRow_ >= 0 && nextRow_ >= overlongRow_; }

    std::size_t maxLine_;
    std::size_t readBytes_;
    std::FILE* file_ = nullptr;
    std::string path_;
    std::unique_ptr<char[]> buffer_;  // not cleared: only what was read is looked at
    std::size_t bufferBytes_ = 0;
    std::size_t pos_ = 0;             // next unread byte in buffer_
    std::size_t len_ = 0;             // bytes held in buffer_
    std::uint64_t bufferOffset_ = 0;  // file offset of buffer_[0]
    bool atEnd_ = false;
    std::int64_t nextRow_ = 0;
    std::uint64_t fetched_ = 0;
    std::int64_t overlongRow_ = -1;
    // blockStarts_[k] is the file offset of data row 1 + k * 200.
    std::vector<std::uint64_t> blockStarts_;
};

// Reads up to 200 rows from the file's position into the block. When no row can be read
// the block is left as it was and 0 is returned; otherwise rows not read get 0 and empty
// texts, and the number of rows read is returned.
int ReadBlock(HistoryFile& file, const BlockLayout& layout, HistoryBlock& block);

}  // namespace kova
