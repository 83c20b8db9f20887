// The program's command line (kova [FOLDER], --help, --version) and its start in the
// working folder.
#include "app/command_line.h"

#include <gtest/gtest.h>

#include <sstream>

#include "app/working_folder_entry.h"
#include "kova_version.h"
#include "support/test_support.h"

namespace kova::app {
namespace {

using Action = CommandLine::Action;

TEST(CommandLine, NothingMeansRunWhereTheRulesSay) {
    const CommandLine line = ReadCommandLine({});
    EXPECT_EQ(line.action, Action::Run);
    EXPECT_FALSE(line.folder);
}

TEST(CommandLine, AFolderIsTheWorkingFolder) {
    EXPECT_EQ(ReadCommandLine({"/srv/plant"}).folder, std::filesystem::path("/srv/plant"));
    // After "--" a folder may start with "-".
    EXPECT_EQ(ReadCommandLine({"--", "-odd"}).folder, std::filesystem::path("-odd"));
}

TEST(CommandLine, HelpAndVersionWinWhereverTheyStand) {
    EXPECT_EQ(ReadCommandLine({"/srv/plant", "--help"}).action, Action::Help);
    EXPECT_EQ(ReadCommandLine({"-h"}).action, Action::Help);
    EXPECT_EQ(ReadCommandLine({"--version"}).action, Action::Version);
    EXPECT_EQ(ReadCommandLine({"-v", "--bogus"}).action, Action::Version);
    EXPECT_EQ(HelpOrVersionAsked({"--", "--help"}), Action::Run);
}

TEST(CommandLine, UnknownOptionsAndASecondFolderAreRefused) {
    const CommandLine bogus = ReadCommandLine({"--bogus"});
    EXPECT_EQ(bogus.action, Action::Error);
    EXPECT_EQ(bogus.error, "unknown option --bogus");
    const CommandLine two = ReadCommandLine({"a", "b"});
    EXPECT_EQ(two.action, Action::Error);
    EXPECT_EQ(two.error, "one working folder only, not also b");
}

TEST(CommandLine, TickTraceTakesTheNextArgumentOrTheTextAfterTheEqualsSign) {
    const CommandLine next = ReadCommandLine({"--tick-trace", "ticks.txt", "/srv/plant"});
    EXPECT_EQ(next.action, Action::Run);
    EXPECT_EQ(next.tickTrace, "ticks.txt");
    EXPECT_EQ(next.folder, std::filesystem::path("/srv/plant"));
    EXPECT_EQ(ReadCommandLine({"--tick-trace=/tmp/a b.txt"}).tickTrace, "/tmp/a b.txt");
    EXPECT_FALSE(ReadCommandLine({}).tickTrace);
    EXPECT_NE(CommandLineHelp().find("--tick-trace FILE"), std::string::npos);
}

TEST(CommandLine, ATickTraceWithoutAFileNameIsRefused) {
    for (const auto& args : {std::vector<std::string>{"--tick-trace"},
                             std::vector<std::string>{"--tick-trace="}}) {
        const CommandLine line = ReadCommandLine(args);
        EXPECT_EQ(line.action, Action::Error);
        EXPECT_EQ(line.error, "--tick-trace needs the name of the file to write the trace to");
    }
}

TEST(CommandLine, VersionAndHelpNameTheProjectVersion) {
    EXPECT_EQ(VersionLine(), std::string("kova ") + kVersion);
    EXPECT_NE(CommandLineHelp().find(std::string("KOVA ") + kVersion), std::string::npos);
    EXPECT_NE(CommandLineHelp().find("~/Documents/KOVA"), std::string::npos);
}

// Each case enters a folder; the test's own current folder comes back afterwards.
struct WorkingFolderRig {
    test::TempFolder dir;
    std::filesystem::path before = std::filesystem::current_path();
    std::string problem;
    std::ostringstream notes;
    ~WorkingFolderRig() { std::filesystem::current_path(before); }
};

TEST(EnterWorkingFolder, TheDocumentsFolderIsMadeSeededAndEntered) {
    WorkingFolderRig r;
    test::WriteFileBytes(r.dir / "demo.Suf", "demonstration");
    std::filesystem::create_directory(r.dir / "start");
    std::filesystem::current_path(r.dir / "start");
    const auto folder =
        EnterWorkingFolder({}, r.dir / "Documents", r.dir / "demo.Suf", r.problem, r.notes);
    ASSERT_TRUE(folder) << r.problem;
    EXPECT_EQ(*folder, r.dir / "Documents" / "KOVA");
    EXPECT_EQ(std::filesystem::current_path(), *folder);
    EXPECT_EQ(test::ReadFileBytes(*folder / "Default.Suf"), "demonstration");
    EXPECT_EQ(r.notes.str(), "");
}

TEST(EnterWorkingFolder, ANamedFolderThatIsNotThereIsAProblem) {
    WorkingFolderRig r;
    CommandLine line;
    line.folder = r.dir / "missing";
    EXPECT_FALSE(
        EnterWorkingFolder(line, r.dir / "Documents", r.dir / "demo.Suf", r.problem, r.notes));
    EXPECT_EQ(r.problem, (r.dir / "missing").string() + ": no such folder");
    EXPECT_EQ(std::filesystem::current_path(), r.before);
    EXPECT_FALSE(std::filesystem::exists(r.dir / "Documents"));
}

TEST(EnterWorkingFolder, DocumentsThatCannotBeMadeLeaveTheCurrentFolder) {
    WorkingFolderRig r;
    test::WriteFileBytes(r.dir / "Documents", "a file, not a folder");
    std::filesystem::current_path(r.dir.path());
    const auto folder =
        EnterWorkingFolder({}, r.dir / "Documents", r.dir / "demo.Suf", r.problem, r.notes);
    ASSERT_TRUE(folder) << r.problem;
    EXPECT_EQ(*folder, r.dir.path());
    EXPECT_NE(r.notes.str().find("cannot make the working folder"), std::string::npos)
        << r.notes.str();
    EXPECT_NE(r.notes.str().find("working in " + r.dir.path().string() + " instead"),
              std::string::npos)
        << r.notes.str();
}

}  // namespace
}  // namespace kova::app
