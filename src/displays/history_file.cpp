#include "displays/history_file.h"

#include <algorithm>
#include <cerrno>
#include <cfloat>
#include <charconv>
#include <cmath>
#include <cstring>
#include <system_error>

#include "core/plain_file.h"
#include "core/text_encoding.h"
#include "logging/log_file.h"

#include <filesystem>

namespace kova {

namespace {

constexpr std::size_t kBufferBytes = 64 * 1024;
constexpr std::size_t kSmallestBuffer = 4096;

std::string_view trimBlanks(std::string_view s) {
    while (!s.empty() && s.front() == ' ') s.remove_prefix(1);
    while (!s.empty() && s.back() == ' ') s.remove_suffix(1);
    return s;
}

// The field as a view into the line (see GetField).
std::string_view fieldView(std::string_view line, int n) {
    if (n < 1) return {};
    std::size_t start = 0;
    for (int k = 1; k < n; ++k) {
        const std::size_t comma = line.find(',', start);
        if (comma == std::string_view::npos) return {};
        start = comma + 1;
    }
    const std::size_t end = line.find(',', start);
    return trimBlanks(line.substr(start, end == std::string_view::npos ? line.npos : end - start));
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

std::string reasonOf(int err) {
    if (err == 0) return "unknown error";
    return std::generic_category().message(err);
}

int seekFile(std::FILE* f, std::uint64_t offset) {
#ifdef _WIN32
    return _fseeki64(f, static_cast<__int64>(offset), SEEK_SET);
#else
    return fseeko(f, static_cast<off_t>(offset), SEEK_SET);
#endif
}

}  // namespace

std::string GetField(std::string_view line, int n) {
    return std::string(fieldView(line, n));
}

float FieldNumber(std::string_view field) {
    std::size_t i = 0;
    while (i < field.size() && (field[i] == ' ' || field[i] == '\t')) ++i;
    const std::size_t start = i;
    if (i < field.size() && (field[i] == '+' || field[i] == '-')) ++i;
    std::size_t digits = 0;
    while (i < field.size() && isDigit(field[i])) ++i, ++digits;
    if (i < field.size() && field[i] == '.') {
        ++i;
        while (i < field.size() && isDigit(field[i])) ++i, ++digits;
    }
    if (digits == 0) return 0.0f;
    if (i < field.size() && (field[i] == 'E' || field[i] == 'e')) {
        std::size_t j = i + 1;
        if (j < field.size() && (field[j] == '+' || field[j] == '-')) ++j;
        std::size_t expDigits = 0;
        while (j < field.size() && isDigit(field[j])) ++j, ++expDigits;
        if (expDigits > 0) i = j;
    }
    // from_chars reads the C locale's notation and takes no leading "+".
    std::size_t from = start;
    if (field[from] == '+') ++from;
    double v = 0;
    const auto [end, ec] = std::from_chars(field.data() + from, field.data() + i, v);
    if (ec != std::errc() || end != field.data() + i) return 0.0f;
    if (!std::isfinite(v) || std::fabs(v) > static_cast<double>(FLT_MAX)) return 0.0f;
    return static_cast<float>(v);
}

HistoryColumns ScanHeader(std::string_view headerBytes) {
    const std::string header = Cp1252ToUtf8(std::string(headerBytes));
    HistoryColumns c;
    for (int n = 1; n <= kHistoryMaxColumns; ++n) {
        const std::string field = GetField(header, n);
        if (field.empty()) break;
        c.names.push_back(field);
        if (field != "DATE" && field != "TIME") c.listItems.push_back(field);
        if (field == "TIME") c.timeColumn = static_cast<std::int16_t>(n);
        if (field == "LOG PERIOD") c.periodColumn = static_cast<std::int16_t>(n);
    }
    return c;
}

std::string HistoryFile::open(const std::string& path) {
    close();
    if (path.empty()) return "no file name has been given";
    const std::string native = NativeLogPath(path);
    const OpenedForReading opened = OpenPlainFileForReading(std::filesystem::path(
        std::u8string(reinterpret_cast<const char8_t*>(native.data()), native.size())));
    if (!opened.notPlain.empty()) return "it is " + opened.notPlain + ", not a log file";
    if (opened.file == nullptr) return reasonOf(opened.error);
    file_ = opened.file;
    path_ = path;
    // A small file needs no more than its own length (plus one byte, to see its end).
    const unsigned long long wanted = opened.size + 1;
    bufferBytes_ = readBytes_ > 0 ? readBytes_
                                  : static_cast<std::size_t>(std::clamp<unsigned long long>(
                                        wanted, kSmallestBuffer, kBufferBytes));
    buffer_.reset(new char[bufferBytes_]);
    return {};
}

std::string HistoryFile::readHeader(std::string& header) {
    header.clear();
    const bool read = readLine(header);
    // A binary file is told as such, whether or not a line break came within the bound.
    std::string problem;
    if (header.find('\0') != std::string::npos)
        problem = "its first line holds NUL bytes: not a log file";
    else if (!read && overlongRow_ == 0)
        problem =
            "its first line is longer than " + std::to_string(maxLine_) + " bytes: not a log file";
    if (!problem.empty()) header.clear();
    return problem;  // an empty file names no columns
}

void HistoryFile::close() {
    if (file_ != nullptr) {
        std::fclose(file_);
        file_ = nullptr;
    }
    path_.clear();
    pos_ = len_ = 0;
    bufferOffset_ = 0;
    atEnd_ = false;
    nextRow_ = 0;
    fetched_ = 0;
    overlongRow_ = -1;
    blockStarts_.clear();
}

bool HistoryFile::fill() {
    if (atEnd_ || file_ == nullptr) return false;
    bufferOffset_ += len_;
    pos_ = 0;
    len_ = std::fread(buffer_.get(), 1, bufferBytes_, file_);
    fetched_ += len_;
    // A read fault ends the file for this reader, just as its end does.
    if (len_ == 0) atEnd_ = true;
    return len_ > 0;
}

bool HistoryFile::nextLine(std::string* line) {
    if (file_ == nullptr || blocked()) return false;
    if (line) line->clear();
    const std::uint64_t lineOffset = bufferOffset_ + pos_;
    bool any = false;
    std::size_t taken = 0;  // bytes of this line so far
    char last = 0;          // the last of them
    for (;;) {
        if (pos_ == len_ && !fill()) break;
        any = true;
        const char* from = buffer_.get() + pos_;
        const std::size_t avail = len_ - pos_;
        const void* nl = std::memchr(from, '\n', avail);
        const std::size_t chunk =
            nl ? static_cast<std::size_t>(static_cast<const char*>(nl) - from) : avail;
        // One byte more than a line may hold is let in: the CR of a CR LF line end.
        if (taken + chunk > maxLine_ + 1) {
            // Not a log line: reading stops here for good; what fitted is left in *line.
            if (line) line->append(from, maxLine_ + 1 - taken);
            overlongRow_ = nextRow_;
            return false;
        }
        if (line) line->append(from, chunk);
        if (chunk > 0) last = from[chunk - 1];
        taken += chunk;
        pos_ += chunk;
        if (nl) {
            ++pos_;
            break;
        }
    }
    if (!any) return false;
    if (line && !line->empty() && line->back() == '\r') line->pop_back();
    if (taken == maxLine_ + 1 && last != '\r') {
        overlongRow_ = nextRow_;  // that last byte was no CR: the line is one too long
        return false;
    }
    // Offsets are noted as block starts are passed, so a later step back can seek to them.
    if (nextRow_ >= 1 && (nextRow_ - 1) % kHistoryBlockRows == 0 &&
        static_cast<std::uint64_t>((nextRow_ - 1) / kHistoryBlockRows) == blockStarts_.size())
        blockStarts_.push_back(lineOffset);
    ++nextRow_;
    return true;
}

bool HistoryFile::readLine(std::string& line) {
    return nextLine(&line);
}

bool HistoryFile::skipLine() {
    return nextLine(nullptr);
}

bool HistoryFile::seekTo(std::uint64_t offset, std::int64_t row) {
    if (file_ == nullptr) return false;
    std::clearerr(file_);
    if (seekFile(file_, offset) != 0) {
        atEnd_ = true;
        return false;
    }
    bufferOffset_ = offset;
    pos_ = len_ = 0;
    atEnd_ = false;
    nextRow_ = row;
    return true;
}

bool HistoryFile::seekRow(std::int64_t row) {
    if (file_ == nullptr) return false;
    if (row < 0) row = 0;
    // The nearest known start at or before the row: a block start passed, or the file's
    // beginning; the reader's own position when that is nearer still.
    std::uint64_t offset = 0;
    std::int64_t startRow = 0;
    if (row >= 1 && !blockStarts_.empty()) {
        const std::uint64_t k = std::min<std::uint64_t>(
            static_cast<std::uint64_t>((row - 1) / kHistoryBlockRows), blockStarts_.size() - 1);
        offset = blockStarts_[k];
        startRow = 1 + static_cast<std::int64_t>(k) * kHistoryBlockRows;
    }
    if (!(nextRow_ <= row && nextRow_ >= startRow) || atEnd_) {
        if (!seekTo(offset, startRow)) return false;
    }
    while (nextRow_ < row)
        if (!skipLine()) return false;
    return true;
}

int ReadBlock(HistoryFile& file, const BlockLayout& layout, HistoryBlock& block) {
    std::string line;
    int rows = 0;
    while (rows < kHistoryBlockRows && file.readLine(line)) {
        for (int p = 0; p < kHistoryPens; ++p) {
            const int column = layout.pens[p];
            block.values[p][rows] = column > 0 ? FieldNumber(fieldView(line, column)) : 0.0f;
        }
        block.timeTexts[rows] = Cp1252ToUtf8(fieldView(line, layout.timeColumn));
        block.periodTexts[rows] = Cp1252ToUtf8(fieldView(line, layout.periodColumn));
        ++rows;
    }
    if (rows == 0) return 0;
    for (int r = rows; r < kHistoryBlockRows; ++r) {
        for (int p = 0; p < kHistoryPens; ++p) block.values[p][r] = 0.0f;
        block.timeTexts[r].clear();
        block.periodTexts[r].clear();
    }
    return rows;
}

}  // namespace kova
