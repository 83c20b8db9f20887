#include "core/atomic_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "core/fault.h"
#include "support/test_support.h"

namespace kova {
namespace {

namespace fs = std::filesystem;

TEST(AtomicFile, NeverReplacesADeviceOrAFifo) {
    test::TempFolder dir;
    fs::create_symlink("/dev/null", dir / "null.SUF");
    ASSERT_EQ(::mkfifo((dir / "f.SUF").c_str(), 0600), 0);
    for (const char* name : {"null.SUF", "f.SUF"}) {
        try {
            WriteFileAtomically(dir / name, "bytes");
            ADD_FAILURE() << name << " was written";
        } catch (const Fault& f) {
            EXPECT_EQ(std::string(f.what()),
                      (dir / name).string() + ": cannot replace: not a plain file");
        }
    }
    EXPECT_TRUE(fs::is_symlink(dir / "null.SUF"));
    EXPECT_TRUE(fs::is_fifo(dir / "f.SUF"));
    EXPECT_FALSE(fs::exists(dir / "null.SUF.tmp"));
}

TEST(AtomicFile, ReadsOnlyPlainFilesAndNoMoreThanTheLimit) {
    test::TempFolder dir;
    fs::create_symlink("/dev/zero", dir / "zero");
    ASSERT_EQ(::mkfifo((dir / "fifo").c_str(), 0600), 0);
    std::string bytes, error;
    EXPECT_FALSE(ReadWholeFile(dir / "zero", bytes, error, 100));
    EXPECT_EQ(error, (dir / "zero").string() + ": not a plain file");
    EXPECT_FALSE(ReadWholeFile(dir / "fifo", bytes, error, 100));
    EXPECT_EQ(error, (dir / "fifo").string() + ": not a plain file");
    test::WriteFileBytes(dir / "big", std::string(100000, 'x'));
    EXPECT_FALSE(ReadWholeFile(dir / "big", bytes, error, 100));
    EXPECT_EQ(error, (dir / "big").string() + ": file is too large");
    EXPECT_LE(bytes.size(), 101u);  // never read further than one byte past the limit
    test::WriteFileBytes(dir / "ok", std::string(100, 'y'));
    EXPECT_TRUE(ReadWholeFile(dir / "ok", bytes, error, 100));
    EXPECT_EQ(bytes, std::string(100, 'y'));
}

}  // namespace
}  // namespace kova
