#include "tags/tag_name_index.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "tags/tag_table.h"

namespace kova {

namespace {
struct Indexed {
    TagTable tags;
    TagNameIndex index;
    explicit Indexed(const std::vector<std::string>& names) {
        InitSystemTags(tags);
        for (std::size_t i = 0; i < names.size(); ++i)
            tags[static_cast<int>(i) + 1].TagName = names[i];
        RebuildTagNameIndex(tags, index);
    }
};
}  // namespace

TEST(TagNameIndex, IsSortedDescendingWithEmptyNamesLast) {
    Indexed t({"B", "", "a2", "C", "A1"});
    EXPECT_EQ(t.index[1].Name, "C");
    EXPECT_EQ(t.index[2].Name, "B");
    EXPECT_EQ(t.index[3].Name, "a2");
    EXPECT_EQ(t.index[4].Name, "A1");
    for (int i = 5; i <= 32; ++i) EXPECT_EQ(t.index[i].Name, "");
    EXPECT_EQ(t.index[1].Number, 4);
}

TEST(FindTag, SystemVariablesWinWithoutTheIndex) {
    Indexed t({"TS"});  // a user tag named TS is shadowed by the system variable
    EXPECT_EQ(FindTag(t.index, "TS"), 33);
    EXPECT_EQ(FindTag(t.index, "HR"), 34);
    EXPECT_EQ(FindTag(t.index, "MN"), 35);
    EXPECT_EQ(FindTag(t.index, "SC"), 36);
    EXPECT_EQ(FindTag(t.index, "DW"), 37);
    EXPECT_EQ(FindTag(t.index, "SU"), 38);
    EXPECT_EQ(FindTag(t.index, ""), 0);
}

TEST(FindTag, LowerCaseTsIsSearchedInTheIndex) {
    Indexed none({"PUMP"});
    EXPECT_EQ(FindTag(none.index, "ts"), 0);
    Indexed lower({"PUMP", "ts"});
    EXPECT_EQ(FindTag(lower.index, "ts"), 2);
}

TEST(FindTag, FewerThanSixteenNamesAreAllFound) {
    const std::vector<std::string> names = {"TANK1", "PUMP", "VALVE", "LEVEL", "A", "ZED", "M2"};
    Indexed t(names);
    for (std::size_t i = 0; i < names.size(); ++i)
        EXPECT_EQ(FindTag(t.index, names[i]), static_cast<int>(i) + 1) << names[i];
    EXPECT_EQ(FindTag(t.index, "NOSUCH"), 0);
    EXPECT_EQ(FindTag(t.index, "tank1"), 0);  // names are compared as stored, in upper case
}

TEST(FindTag, FullTableFindsEveryNameIncludingPositionThirtyTwo) {
    std::vector<std::string> names;
    for (int i = 0; i < 32; ++i)
        names.push_back("T" + std::string(1, static_cast<char>('A' + i % 26)) + std::to_string(i));
    Indexed t(names);
    for (std::size_t i = 0; i < names.size(); ++i)
        EXPECT_EQ(FindTag(t.index, names[i]), static_cast<int>(i) + 1) << names[i];
    // The lowest name sorts into position 32, which only the final comparison reaches.
    const std::string lowest = *std::min_element(names.begin(), names.end());
    EXPECT_EQ(t.index[32].Name, lowest);
    EXPECT_NE(FindTag(t.index, lowest), 0);
    EXPECT_EQ(FindTag(t.index, "ZZZ"), 0);
    EXPECT_EQ(FindTag(t.index, "A"), 0);
}

TEST(FindTag, RandomTablesAgreeWithALinearSearch) {
    std::mt19937 rng(7);
    for (int round = 0; round < 300; ++round) {
        std::vector<std::string> names;
        const int n = static_cast<int>(rng() % 33);
        while (static_cast<int>(names.size()) < n) {
            std::string s;
            const int len = 1 + static_cast<int>(rng() % 5);
            for (int k = 0; k < len; ++k) s += "ABCXYZ019"[rng() % 9];
            if (std::find(names.begin(), names.end(), s) == names.end()) names.push_back(s);
        }
        Indexed t(names);
        for (std::size_t i = 0; i < names.size(); ++i) {
            if (names[i] == "TS" || names[i] == "HR" || names[i] == "MN" || names[i] == "SC" ||
                names[i] == "DW" || names[i] == "SU")
                continue;
            EXPECT_EQ(FindTag(t.index, names[i]), static_cast<int>(i) + 1) << names[i];
        }
    }
}

}  // namespace kova
