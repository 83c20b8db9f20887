// What the station prints of what came from the network, and which tag names a topic can
// carry.
#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>

#include "links/mqtt/mqtt_client_id.h"
#include "links/mqtt/mqtt_station.h"
#include "links/mqtt/printable_text.h"
#include "support/test_support.h"

namespace kova::mqtt {
namespace {

TEST(Printable, ControlCharactersBytesBeyondAsciiAndBackslashesAreEscaped) {
    EXPECT_EQ(Printable("12.5"), "12.5");
    EXPECT_EQ(Printable("1\nkova-cli: forged"), "1\\x0Akova-cli: forged");
    EXPECT_EQ(Printable("\x1b[2J\r"), "\\x1B[2J\\x0D");
    EXPECT_EQ(Printable("caf\xC3\xA9"), "caf\\xC3\\xA9");
    EXPECT_EQ(Printable(std::string("a\0b", 3)), "a\\x00b");
    EXPECT_EQ(Printable("a\\x0A"), "a\\x5Cx0A");  // a backslash cannot fake an escape
}

TEST(Printable, ALongTextIsCutAfterSixtyFourBytes) {
    const std::string shown = Printable(std::string(1 << 20, 'x'));
    EXPECT_EQ(shown, std::string(64, 'x') + "...");
    EXPECT_EQ(Printable(std::string(64, 'y')), std::string(64, 'y'));
}

TEST(TopicLevel, WildcardsSlashesAndControlCharactersCannotBeATopicLevel) {
    EXPECT_EQ(TopicLevelProblem("TANK_1"), "");
    EXPECT_EQ(TopicLevelProblem("TEMP \xC2\xB0"
                                "C"),
              "");
    EXPECT_NE(TopicLevelProblem("A+B"), "");
    EXPECT_NE(TopicLevelProblem("A#"), "");
    EXPECT_NE(TopicLevelProblem("LINE/2"), "");
    EXPECT_NE(TopicLevelProblem(std::string("A\0B", 3)), "");
    EXPECT_NE(TopicLevelProblem("A\tB"), "");
}

TEST(ClientId, TheDefaultIsPrefixHostAndARandomPartKeptInTheWorkingFolder) {
    test::TempFolder a, b;
    const ClientId first = DefaultClientId("kova/PLANT", a.path());
    EXPECT_EQ(first.note, "");
    EXPECT_EQ(first.id.rfind("kova/PLANT@", 0), 0u) << first.id;
    const std::string kept = test::ReadFileBytes(a / "KOVA_MQTT.ID");
    ASSERT_EQ(kept.size(), 17u);  // 16 hex digits and a line break
    EXPECT_EQ(first.id.substr(first.id.size() - 16), kept.substr(0, 16));
    // The same station started again: the same ID.
    EXPECT_EQ(DefaultClientId("kova/PLANT", a.path()).id, first.id);
    // Another station (another folder, or another prefix): another ID.
    EXPECT_NE(DefaultClientId("kova/PLANT", b.path()).id, first.id);
    EXPECT_NE(DefaultClientId("kova/LINE2", a.path()).id.substr(0, 11), first.id.substr(0, 11));
}

TEST(ClientId, AFileThatHoldsNoRandomPartIsMadeAgain) {
    test::TempFolder a;
    test::WriteFileBytes(a / "KOVA_MQTT.ID", "not hex\n");
    const ClientId id = DefaultClientId("p", a.path());
    EXPECT_EQ(id.note, "");
    EXPECT_EQ(test::ReadFileBytes(a / "KOVA_MQTT.ID").size(), 17u);
    EXPECT_EQ(DefaultClientId("p", a.path()).id, id.id);
}

TEST(ClientId, AFolderThatCannotKeepItGivesANoteAndStillAnId) {
    if (::geteuid() == 0) GTEST_SKIP() << "root writes into a read-only folder";
    test::TempFolder a;
    std::filesystem::permissions(
        a.path(), std::filesystem::perms::owner_read | std::filesystem::perms::owner_exec);
    const ClientId id = DefaultClientId("p", a.path());
    std::filesystem::permissions(a.path(), std::filesystem::perms::owner_all);
    EXPECT_NE(id.note, "");
    EXPECT_EQ(id.id.rfind("p@", 0), 0u);
}

TEST(ClientId, AGivenIdMustBeText) {
    EXPECT_EQ(ClientIdProblem("station-7"), "");
    EXPECT_NE(ClientIdProblem(""), "");
    EXPECT_NE(ClientIdProblem("a\nb"), "");
    EXPECT_NE(ClientIdProblem(std::string(300, 'x')), "");
}

}  // namespace
}  // namespace kova::mqtt
