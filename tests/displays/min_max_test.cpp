#include "displays/min_max.h"

#include <gtest/gtest.h>

#include "core/station.h"
#include "displays/min_max_view.h"

namespace kova {

namespace {
void setValues(Station& st, float v) {
    for (int i = 1; i <= 42; ++i) st.tags[i].Value = v;
}
}  // namespace

TEST(MinMax, BothArraysStartAtZero) {
    Station st;
    for (int i = 1; i <= kMinMaxTags; ++i) {
        EXPECT_EQ(st.minMax.TagMaximum[i], 0.0f);
        EXPECT_EQ(st.minMax.TagMinimum[i], 0.0f);
    }
}

TEST(MinMax, BeforeAnyResetATagThatOnlyReadPositiveValuesShowsAMinimumOfZero) {
    Station st;
    for (float v : {5.0f, 12.5f, 3.0f}) {
        st.tags[1].Value = v;
        UpdateMinMax(st);
    }
    const MinMaxRows rows = MinMaxView(st);
    EXPECT_EQ(rows[1].Reading, " 3");
    EXPECT_EQ(rows[1].Maximum, " 12.5");
    EXPECT_EQ(rows[1].Minimum, " 0");
}

TEST(MinMax, BeforeAnyResetAMaximumNeverFallsBelowZero) {
    Station st;
    st.tags[2].Value = -4;
    UpdateMinMax(st);
    st.tags[2].Value = -1.5f;
    UpdateMinMax(st);
    EXPECT_EQ(st.minMax.TagMaximum[2], 0.0f);
    EXPECT_EQ(st.minMax.TagMinimum[2], -4.0f);
    EXPECT_EQ(MinMaxView(st)[2].Minimum, "-4");
    EXPECT_EQ(MinMaxView(st)[2].Reading, "-1.5");
}

TEST(MinMax, AValueEqualToTheMaximumIsStoredAndAnEqualMinimumIsNot) {
    Station st;
    st.minMax.TagMaximum[3] = 7;
    st.minMax.TagMinimum[3] = 7;
    st.tags[3].Value = 7;
    UpdateMinMax(st);
    EXPECT_EQ(st.minMax.TagMaximum[3], 7.0f);
    EXPECT_EQ(st.minMax.TagMinimum[3], 7.0f);
    st.tags[3].Value = 7.5f;
    UpdateMinMax(st);
    EXPECT_EQ(st.minMax.TagMaximum[3], 7.5f);
    st.tags[3].Value = 6.5f;
    UpdateMinMax(st);
    EXPECT_EQ(st.minMax.TagMinimum[3], 6.5f);
    EXPECT_EQ(st.minMax.TagMaximum[3], 7.5f);
}

TEST(MinMax, AfterAResetMaximumMinimumAndReadingAreEqualUntilTheNextScan) {
    Station st;
    setValues(st, 9);
    UpdateMinMax(st);
    for (int i = 1; i <= kMinMaxTags; ++i) st.tags[i].Value = 2.25f * static_cast<float>(i) - 10;
    ResetMinMax(st);
    const MinMaxRows rows = MinMaxView(st);
    for (int i = 1; i <= kMinMaxTags; ++i) {
        EXPECT_EQ(rows[i].Reading, rows[i].Maximum) << i;
        EXPECT_EQ(rows[i].Reading, rows[i].Minimum) << i;
    }
    EXPECT_EQ(rows[1].Maximum, "-7.75");
    EXPECT_EQ(rows[14].Minimum, " 21.5");
    st.tags[1].Value = -8;
    UpdateMinMax(st);
    EXPECT_EQ(MinMaxView(st)[1].Minimum, "-8");
    EXPECT_EQ(MinMaxView(st)[1].Maximum, "-7.75");  // a reset lets the maximum go below 0
}

TEST(MinMax, TagFifteenIsNeverTrackedOrShown) {
    Station st;
    const MinMaxState before = st.minMax;
    for (int i = 15; i <= 42; ++i) st.tags[i].Value = 1000;
    st.tags[15].Label = "Fifteen";
    UpdateMinMax(st);
    EXPECT_EQ(st.minMax.TagMaximum, before.TagMaximum);
    EXPECT_EQ(st.minMax.TagMinimum, before.TagMinimum);
    st.tags[15].Value = -1000;
    UpdateMinMax(st);
    ResetMinMax(st);
    for (int i = 1; i <= kMinMaxTags; ++i) {
        EXPECT_EQ(st.minMax.TagMaximum[i], 0.0f);
        EXPECT_EQ(st.minMax.TagMinimum[i], 0.0f);
    }
    const MinMaxRows rows = MinMaxView(st);
    EXPECT_EQ(MinMaxRows::last, 14);
    EXPECT_FALSE(MinMaxRows::inRange(15));
    for (const MinMaxRow& row : rows) EXPECT_NE(row.Label, "Fifteen");
}

TEST(MinMax, RowsShowTheLabelsOfTagsOneToFourteen) {
    Station st;
    st.tags[1].Label = "Tank level";
    st.tags[14].Label = "Last tracked";
    st.tags[14].Value = 0.02442002f;
    const MinMaxRows rows = MinMaxView(st);
    EXPECT_EQ(rows[1].Label, "Tank level");
    EXPECT_EQ(rows[14].Label, "Last tracked");
    EXPECT_EQ(rows[14].Reading, " 0.02442002");
    EXPECT_EQ(rows[2], (MinMaxRow{"", " 0", " 0", " 0"}));
}

TEST(MinMax, TheWindowTextsAreTheSystemsOwn) {
    EXPECT_STREQ(kMinMaxCaption, "Maximum And Minimum Readings");
    EXPECT_STREQ(kMinMaxHeadings[0], "Label");
    EXPECT_STREQ(kMinMaxHeadings[1], "Reading");
    EXPECT_STREQ(kMinMaxHeadings[2], "Maximum");
    EXPECT_STREQ(kMinMaxHeadings[3], "Minimum");
    EXPECT_STREQ(kMinMaxResetCaption, "&Reset Min/Max");
    EXPECT_STREQ(kMinMaxExitCaption, "E&xit");
    EXPECT_EQ(kMinMaxRefreshMs, 1000);
}

}  // namespace kova
