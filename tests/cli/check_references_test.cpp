// kova-cli check on references that lost their tag when a tag was deleted without carrying
// them along, and the demonstration configuration's tag table.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <memory>

#include "cli_runner.h"
#include "core/configuration.h"
#include "core/setup_file.h"
#include "support/test_support.h"
#include "tags/tag_editor.h"
#include "tags/tag_name_index.h"
#include "tags/tag_table.h"

namespace kova::test {

namespace {
// Every slot named (V1..V31, analog variables) and slot 32 the place-holder that deleting a
// tag leaves: the table of a file saved after a delete.
std::unique_ptr<Station> AfterADelete() {
    auto st = std::make_unique<Station>();
    for (int n = 1; n <= kUserTags; ++n) {
        Tag& t = st->tags[n];
        t.TagName = "V" + std::to_string(n);
        BindIOName(t, "Analog Variable");
        t.Address = 1;
        t.RawValue2 = 1;
        t.EngValue2 = 1;
    }
    Tag& last = st->tags[kUserTags];
    last.TagName = "AVAR0";
    last.Address = 0;
    last.RawValue2 = 4000;
    last.EngValue2 = 4000;
    last.Units = "mV";
    RebuildTagNameIndex(st->tags, st->nameIndex);
    return st;
}

std::string CheckOf(const TempFolder& dir, const Station& st, std::string& path) {
    path = (dir / "PLANT.SUF").string();
    WriteFileBytes(dir / "PLANT.SUF", EncodeSetupFile(st));
    const CliResult r = RunCli({"check", path});
    EXPECT_EQ(r.exitCode, 1) << r.out << r.err;
    return r.out;
}
}  // namespace

TEST(CliCheckReferences, TrendPensAndTheLoggingConditionOnAPlaceHolderAreReported) {
    TempFolder dir;
    auto st = AfterADelete();
    st->trends.TrendTable(2, 3) = 32;
    st->logging.ConditionTag = 32;
    std::string path;
    const std::string out = CheckOf(dir, *st, path);
    const std::string lost =
        ": refers to AVAR0, the place-holder that deleting a tag leaves: the tag it followed was "
        "deleted, or moved up when a tag before it was deleted\n";
    // The place-holder itself has address 0, which the tag editor would not take.
    EXPECT_EQ(out,
              path + ": tag 32 (AVAR0): the tag editor refuses it (\"DAQ Address must be 1 \")\n" +
                  path + ": trend 2 pen 3 (tag 32)" + lost + path +
                  ": ConditionTag 32 (logging start/stop)" + lost);
}

TEST(CliCheckReferences, AnAlarmLeftOnTheOldNumberIsReported) {
    // The alarm still names V7, but V7 moved up to 6 when tag 5 went.
    TempFolder dir;
    auto st = AfterADelete();
    for (int n = 5; n < kUserTags; ++n) st->tags[n].TagName = "V" + std::to_string(n + 1);
    RebuildTagNameIndex(st->tags, st->nameIndex);
    st->alarms.Alarms[1].TagName = "V7";
    st->alarms.Alarms[1].TagNo = 7;
    st->alarms.Alarms[1].HiVal = 1;
    std::string path;
    const std::string out = CheckOf(dir, *st, path);
    EXPECT_NE(out.find(path + ": alarm 1: TagNo 7 is not the number of V7 (6)"), std::string::npos)
        << out;
}

TEST(CliCheckReferences, ALoggingConditionOnATagWithoutANameIsReported) {
    TempFolder dir;
    auto st = AfterADelete();
    st->tags[12].TagName = "";
    RebuildTagNameIndex(st->tags, st->nameIndex);
    st->logging.ConditionTag = 12;
    std::string path;
    const std::string out = CheckOf(dir, *st, path);
    EXPECT_NE(out.find(path + ": ConditionTag 12 (logging start/stop): the tag has no name, so the "
                              "logging start/stop window shows no condition tag\n"),
              std::string::npos)
        << out;
}

TEST(CliCheckReferences, TheDemonstrationNamesEveryTagSoLeavingTheTagWindowAsksNothing) {
    TempFolder dir;
    const char* src = std::getenv("KOVA_SOURCE_DIR");
    ASSERT_NE(src, nullptr) << "KOVA_SOURCE_DIR names the source folder";
    const std::string demo = (std::filesystem::path(src) / "examples" / "demo.json").string();
    const CliResult built = RunCli({"build", demo, "-o", (dir / "Default.Suf").string()});
    ASSERT_EQ(built.exitCode, 0) << built.err;
    Station st;
    ScriptedPrompter prompt;
    st.platform.prompter = &prompt;
    ASSERT_TRUE(LoadConfiguration(st, dir / "Default.Suf").ok);
    EXPECT_TRUE(CheckTagTable(st.tags).empty());
    // Every record as it stands passes the window's checks, and leaving asks nothing.
    TagForm form = OpenTagForm(st);
    for (int n = 1; n <= kUserTags; ++n) {
        form.LblTag = n;
        ShowTag(st, form);
        EXPECT_TRUE(AcceptTag(st, form)) << "tag " << n;
    }
    EXPECT_TRUE(TagFormExit(st, form));
    EXPECT_TRUE(prompt.messages.empty());
    EXPECT_TRUE(prompt.questions.empty());
}

}  // namespace kova::test
