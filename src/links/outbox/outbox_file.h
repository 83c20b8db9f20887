#pragma once
// The outbox's files: how one record is framed on disk, how a segment file is read back
// (stopping at a torn or damaged record), and the few file calls the writer needs, on
// POSIX and on Windows.
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace kova::links::outbox_file {

struct Frame {
    std::uint64_t sequence = 0;
    std::int64_t timeMs = 0;
    std::int64_t storedMs = 0;
    std::string body;
};

// The longest body a frame may carry; a longer length field means a damaged file.
inline constexpr std::uint32_t kMaxBody = 1u << 20;

// Appends the frame's bytes to `out`.
void Encode(const Frame& frame, std::string& out);

struct ReadBack {
    std::vector<Frame> frames;
    std::uint64_t goodBytes = 0;  // the length of the file up to the last whole record
    bool torn = false;            // bytes after it (a record cut short or damaged)
};
// Reads a segment file; false with a reason naming the file when it cannot be read.
bool ReadSegment(const std::filesystem::path& path, ReadBack& out, std::string& error);

// "q-00000000000000000042.kq" for the segment whose first record is 42; 0 when the name is
// not a segment's.
std::string SegmentName(std::uint64_t first);
std::uint64_t SegmentFirst(const std::string& fileName);

// Opens a file for appending (made when missing); -1 and errno's words in `error`.
int OpenForAppend(const std::filesystem::path& path, std::string& error);
// Writes all of the bytes; "" or the reason.
std::string WriteAll(int fd, const std::string& bytes);
// The written bytes reach the disk (a power cut keeps them).
void SyncToDisk(int fd);
void CloseFile(int fd);
// Cuts the file to `bytes`.
bool Truncate(const std::filesystem::path& path, std::uint64_t bytes, std::string& error);

}  // namespace kova::links::outbox_file
