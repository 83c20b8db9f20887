#pragma once
// Opening a file for reading only when it is a plain file, and never waiting to do so: a
// FIFO nobody writes would block the open, a device (a link to /dev/zero) would never end,
// and opening a terminal line can change its signals. A link is followed and what it points
// to is checked.
#include <cstdio>
#include <filesystem>
#include <string>

namespace kova {

struct OpenedForReading {
    std::FILE* file = nullptr;  // binary, owned by the caller; null when not opened
    std::string notPlain;       // what the path names when it is not a plain file
                                // ("a folder", "a FIFO (named pipe)", "a device", "a socket")
    int error = 0;              // the system's error number when it could not be opened
    unsigned long long size = 0;  // the file's length when it was opened
};

OpenedForReading OpenPlainFileForReading(const std::filesystem::path& path);

}  // namespace kova
