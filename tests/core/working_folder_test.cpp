// Where the program works: a named folder, the current folder holding a Default.Suf, or the
// KOVA folder in the user's documents, made on first start with the demonstration in it.
#include "core/working_folder.h"

#include <gtest/gtest.h>

#include "support/test_support.h"

namespace kova {
namespace {

TEST(WorkingFolder, AFolderNamedOnTheCommandLineWins) {
    test::TempFolder dir;
    test::WriteFileBytes(dir / "Default.Suf", "x");
    const auto choice = ChooseWorkingFolder(dir / "plant", dir.path(), dir / "Documents");
    EXPECT_EQ(choice.folder, dir / "plant");
    EXPECT_FALSE(choice.inDocuments);
}

TEST(WorkingFolder, TheCurrentFolderWithADefaultSufIsKept) {
    test::TempFolder dir;
    test::WriteFileBytes(dir / "Default.Suf", "x");
    const auto choice = ChooseWorkingFolder(std::nullopt, dir.path(), dir / "Documents");
    EXPECT_EQ(choice.folder, dir.path());
    EXPECT_FALSE(choice.inDocuments);
}

TEST(WorkingFolder, OtherwiseTheKovaFolderInTheDocuments) {
    test::TempFolder dir;
    test::WriteFileBytes(dir / "DEFAULT.SUF.bak", "x");
    const auto choice = ChooseWorkingFolder(std::nullopt, dir.path(), dir / "Documents");
    EXPECT_EQ(choice.folder, dir / "Documents" / "KOVA");
    EXPECT_TRUE(choice.inDocuments);
}

TEST(WorkingFolder, AFolderCalledDefaultSufIsNotASetupFile) {
    test::TempFolder dir;
    std::filesystem::create_directory(dir / "Default.Suf");
    EXPECT_TRUE(ChooseWorkingFolder(std::nullopt, dir.path(), dir / "Documents").inDocuments);
}

TEST(WorkingFolder, FirstStartMakesTheFolderWithTheDemonstration) {
    test::TempFolder dir;
    test::WriteFileBytes(dir / "demo.Suf", "demonstration");
    const auto folder = dir / "Documents" / "KOVA";
    EXPECT_EQ(PrepareDocumentsFolder(folder, dir / "demo.Suf"), "");
    EXPECT_EQ(test::ReadFileBytes(folder / "Default.Suf"), "demonstration");
}

TEST(WorkingFolder, AnExistingFolderIsLeftAsItIs) {
    test::TempFolder dir;
    test::WriteFileBytes(dir / "demo.Suf", "demonstration");
    const auto folder = dir / "KOVA";
    std::filesystem::create_directory(folder);
    EXPECT_EQ(PrepareDocumentsFolder(folder, dir / "demo.Suf"), "");
    EXPECT_FALSE(std::filesystem::exists(folder / "Default.Suf"));
}

TEST(WorkingFolder, AMissingDemonstrationIsNamedAndTheFolderStillMade) {
    test::TempFolder dir;
    const auto folder = dir / "KOVA";
    const std::string problem = PrepareDocumentsFolder(folder, dir / "none.Suf");
    EXPECT_NE(problem.find((dir / "none.Suf").string()), std::string::npos) << problem;
    EXPECT_TRUE(std::filesystem::is_directory(folder));
}

TEST(WorkingFolder, AFolderThatCannotBeMadeIsNamed) {
    test::TempFolder dir;
    test::WriteFileBytes(dir / "file", "not a folder");
    const std::string problem = PrepareDocumentsFolder(dir / "file" / "KOVA", dir / "demo.Suf");
    EXPECT_NE(problem.find("cannot make the working folder"), std::string::npos) << problem;
}

TEST(WorkingFolder, TheHomeFolderShowsAsTilde) {
    EXPECT_EQ(FolderForDisplay("/home/op/Documents/KOVA", "/home/op"), "~/Documents/KOVA");
    EXPECT_EQ(FolderForDisplay("/home/op/Documents/KOVA/", "/home/op/"), "~/Documents/KOVA");
    EXPECT_EQ(FolderForDisplay("/home/op", "/home/op"), "~");
    EXPECT_EQ(FolderForDisplay("/home/operator/KOVA", "/home/op"), "/home/operator/KOVA");
    EXPECT_EQ(FolderForDisplay("/srv/plant", "/home/op"), "/srv/plant");
    EXPECT_EQ(FolderForDisplay("/srv/plant", ""), "/srv/plant");
}

}  // namespace
}  // namespace kova
