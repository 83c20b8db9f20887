#include "displays/trend_setup.h"

#include <gtest/gtest.h>

#include "support/test_support.h"
#include "tags/tag_name_index.h"

namespace kova {

namespace {
struct Rig {
    Station st;
    test::ScriptedPrompter prompt;
    Rig() {
        st.platform.prompter = &prompt;
        const char* names[] = {"LEVEL", "TEMP", "FLOW", "PRESS", "PUMP"};
        for (int i = 1; i <= 5; ++i) {
            st.tags[i].TagName = names[i - 1];
            st.tags[i].Label = std::string("Label of ") + names[i - 1];
        }
        st.tags[5].Kind = kDigital;
        st.tags[5].Direction = kOutput;
        RebuildTagNameIndex(st.tags, st.nameIndex);
    }
    void pens(int trend, std::int16_t a, std::int16_t b, std::int16_t c, std::int16_t d) {
        st.trends.TrendTable(trend, 1) = a;
        st.trends.TrendTable(trend, 2) = b;
        st.trends.TrendTable(trend, 3) = c;
        st.trends.TrendTable(trend, 4) = d;
    }
    std::array<int, 4> stored(int trend) const {
        std::array<int, 4> p{};
        for (int pen = 1; pen <= 4; ++pen) p[pen - 1] = st.trends.TrendTable(trend, pen);
        return p;
    }
};
}  // namespace

TEST(SetTrend, OpeningShowsTrendOneAndSetsTheSharedCurrentTrend) {
    Rig r;
    r.st.trends.CurrentTrend = 7;
    r.pens(1, 2, 0, 5, 1);
    const SetTrendForm f = OpenSetTrend(r.st);
    EXPECT_EQ(r.st.trends.CurrentTrend, 1);
    EXPECT_EQ(f.LblTrendNo, "1");
    EXPECT_EQ(f.CboTagNo, (std::array<std::string, 4>{"TEMP", "", "PUMP", "LEVEL"}));
}

TEST(SetTrend, EveryListHoldsTheNamesOfTagsOneToThirtyTwoEmptyOnesIncluded) {
    Rig r;
    const SetTrendForm f = OpenSetTrend(r.st);
    ASSERT_EQ(f.TagList.size(), 32u);
    EXPECT_EQ(f.TagList[0], "LEVEL");
    EXPECT_EQ(f.TagList[4], "PUMP");
    EXPECT_EQ(f.TagList[5], "");
    EXPECT_EQ(f.TagList[31], "");
}

TEST(SetTrend, APenOnASystemVariableShowsItsName) {
    Rig r;
    r.pens(1, 33, 38, 0, 0);
    const SetTrendForm f = OpenSetTrend(r.st);
    EXPECT_EQ(f.CboTagNo[0], "TS");
    EXPECT_EQ(f.CboTagNo[1], "SU");
}

TEST(SetTrend, APenNumberNoTagHasShowsAnEmptyBox) {
    Rig r;
    r.pens(1, 99, -4, 1, 0);
    const SetTrendForm f = OpenSetTrend(r.st);
    EXPECT_EQ(f.CboTagNo, (std::array<std::string, 4>{"", "", "LEVEL", ""}));
}

TEST(SetTrend, SaveStoresTrimmedUpperCasedNamesAndEmptyBoxesAsNoTag) {
    Rig r;
    r.pens(1, 1, 2, 3, 4);
    SetTrendForm f = OpenSetTrend(r.st);
    f.CboTagNo = {"  press ", "", "Flow", "pump"};
    EXPECT_FALSE(SaveTrend(r.st, f));
    EXPECT_EQ(r.stored(1), (std::array<int, 4>{4, 0, 3, 5}));
    EXPECT_TRUE(r.prompt.messages.empty());
}

TEST(SetTrend, TSIsAcceptedOnAPen) {
    Rig r;
    SetTrendForm f = OpenSetTrend(r.st);
    f.CboTagNo = {"ts", "HR", "", ""};
    EXPECT_FALSE(SaveTrend(r.st, f));
    EXPECT_EQ(r.stored(1), (std::array<int, 4>{33, 34, 0, 0}));
    EXPECT_TRUE(r.prompt.messages.empty());
}

TEST(SetTrend, AMisspeltPenTwoStoresZeroKeepsPenOneAndLeavesPensThreeAndFour) {
    Rig r;
    r.pens(1, 1, 2, 3, 4);
    SetTrendForm f = OpenSetTrend(r.st);
    f.CboTagNo = {"PUMP", "tmep", "LEVEL", "LEVEL"};
    EXPECT_TRUE(SaveTrend(r.st, f));
    ASSERT_EQ(r.prompt.messages.size(), 1u);
    EXPECT_EQ(r.prompt.messages[0], (test::Shown{"Tag Name TMEP not Found", "ERROR"}));
    EXPECT_EQ(r.stored(1), (std::array<int, 4>{5, 0, 3, 4}));
}

TEST(SetTrend, NextStoresMovesOnAndShowsTheNextTrend) {
    Rig r;
    r.pens(2, 3, 0, 0, 0);
    SetTrendForm f = OpenSetTrend(r.st);
    f.CboTagNo = {"LEVEL", "", "", ""};
    SetTrendNext(r.st, f);
    EXPECT_EQ(r.stored(1), (std::array<int, 4>{1, 0, 0, 0}));
    EXPECT_EQ(r.st.trends.CurrentTrend, 2);
    EXPECT_EQ(f.LblTrendNo, "2");
    EXPECT_EQ(f.CboTagNo, (std::array<std::string, 4>{"FLOW", "", "", ""}));
}

TEST(SetTrend, NavigationWrapsBothWays) {
    Rig r;
    SetTrendForm f = OpenSetTrend(r.st);
    SetTrendPrevious(r.st, f);
    EXPECT_EQ(r.st.trends.CurrentTrend, 10);
    EXPECT_EQ(f.LblTrendNo, "10");
    SetTrendNext(r.st, f);
    EXPECT_EQ(r.st.trends.CurrentTrend, 1);
    EXPECT_EQ(f.LblTrendNo, "1");
}

TEST(SetTrend, PreviousStoresTheTrendItLeaves) {
    Rig r;
    SetTrendForm f = OpenSetTrend(r.st);
    f.CboTagNo = {"", "", "", "temp"};
    SetTrendPrevious(r.st, f);
    EXPECT_EQ(r.stored(1), (std::array<int, 4>{0, 0, 0, 2}));
    EXPECT_EQ(r.st.trends.CurrentTrend, 10);
}

TEST(SetTrend, ANameNotFoundKeepsTheFormOnItsTrend) {
    Rig r;
    SetTrendForm f = OpenSetTrend(r.st);
    f.CboTagNo = {"NOSUCH", "", "", ""};
    SetTrendNext(r.st, f);
    EXPECT_EQ(r.st.trends.CurrentTrend, 1);
    EXPECT_EQ(f.LblTrendNo, "1");
    EXPECT_EQ(f.CboTagNo[0], "NOSUCH");  // the text stays for the user to correct
    SetTrendPrevious(r.st, f);
    EXPECT_EQ(r.st.trends.CurrentTrend, 1);
    EXPECT_EQ(r.prompt.messages.size(), 2u);
}

TEST(SetTrend, ExitClosesOnlyWhenEveryNameWasFound) {
    Rig r;
    SetTrendForm f = OpenSetTrend(r.st);
    f.CboTagNo = {"LEVEL", "BAD NAME", "", ""};
    EXPECT_FALSE(SetTrendExit(r.st, f));
    EXPECT_EQ(r.prompt.messages.back(), (test::Shown{"Tag Name BAD NAME not Found", "ERROR"}));
    f.CboTagNo[1] = "flow";
    EXPECT_TRUE(SetTrendExit(r.st, f));
    EXPECT_EQ(r.stored(1), (std::array<int, 4>{1, 3, 0, 0}));
}

TEST(SetTrend, AnEditedTrendShowsItsNamesWhenTheFormComesBackToIt) {
    Rig r;
    SetTrendForm f = OpenSetTrend(r.st);
    f.CboTagNo = {"pump", "", "press", ""};
    SetTrendNext(r.st, f);
    SetTrendPrevious(r.st, f);
    EXPECT_EQ(f.CboTagNo, (std::array<std::string, 4>{"PUMP", "", "PRESS", ""}));
}

}  // namespace kova
