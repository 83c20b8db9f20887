#include "app/file_commands.h"

#include <gtest/gtest.h>

#include "support/test_support.h"

namespace kova::app {

namespace {
struct Rig {
    test::TempFolder folder;
    Station st;
    test::ScriptedPrompter prompt;
    Rig() {
        st.platform.prompter = &prompt;
        st.workingFolder = folder.path();
        st.setupFileName = (folder / "Default.Suf").string();
    }
};
}  // namespace

TEST(FileCommands, NewShowsConfigurationSetToDefault) {
    Rig r;
    FileNew(r.st);
    ASSERT_EQ(r.prompt.messages.size(), 1u);
    EXPECT_EQ(r.prompt.messages[0], (test::Shown{"Configuration Set to Default", "KOVA"}));
}

TEST(FileCommands, LoadCancelledChangesNothing) {
    Rig r;
    const std::string before = r.st.setupFileName;
    EXPECT_FALSE(FileLoad(r.st));
    ASSERT_EQ(r.prompt.fileDialogs.size(), 1u);
    EXPECT_EQ(r.prompt.fileDialogs[0],
              (test::Shown{"Open SetUp File", "All Files (*.SUF)|*.SUF|"}));
    EXPECT_EQ(r.st.setupFileName, before);
    EXPECT_TRUE(r.prompt.messages.empty());
}

TEST(FileCommands, ABadFileChosenWithLoadGivesAClearErrorNamingIt) {
    Rig r;
    const auto bad = r.folder / "BROKEN.SUF";
    test::WriteFileBytes(bad, "not a setup file");
    r.prompt.fileAnswers.push_back(bad.string());
    EXPECT_FALSE(FileLoad(r.st));
    ASSERT_EQ(r.prompt.messages.size(), 1u);
    EXPECT_NE(r.prompt.messages[0].text.find("BROKEN.SUF"), std::string::npos)
        << r.prompt.messages[0].text;
    EXPECT_EQ(r.prompt.messages[0].title, "KOVA");
    EXPECT_EQ(r.st.setupFileName, bad.string());  // the chosen file is the setup file now
}

TEST(FileCommands, SaveAndSaveAsAskWithTheSaveDialog) {
    Rig r;
    EXPECT_FALSE(FileSave(r.st));
    EXPECT_FALSE(FileSaveAs(r.st));
    ASSERT_EQ(r.prompt.fileDialogs.size(), 2u);
    for (const auto& d : r.prompt.fileDialogs)
        EXPECT_EQ(d, (test::Shown{"Save SetUp File", "All Files (*.SUF)|*.SUF"}));
}

TEST(FileCommands, SaveAsMakesTheChosenFileTheSetupFile) {
    Rig r;
    const auto chosen = r.folder / "PLANT.SUF";
    r.prompt.fileAnswers.push_back(chosen.string());
    EXPECT_TRUE(FileSaveAs(r.st));
    EXPECT_EQ(r.st.setupFileName, chosen.string());
}

}  // namespace kova::app
