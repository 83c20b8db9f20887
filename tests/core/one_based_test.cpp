#include "core/one_based.h"

#include <gtest/gtest.h>

#include "core/grid.h"
#include "core/station.h"

namespace kova {

TEST(Tables, KeepTheDomainNumberingAndCheckTheRange) {
    Table<int, 20> alarms;
    alarms[1] = 5;
    alarms[20] = 7;
    EXPECT_EQ(alarms[1], 5);
    EXPECT_EQ(alarms[20], 7);
    EXPECT_THROW(alarms[0], Fault);
    EXPECT_THROW(alarms[21], Fault);
    Table<int, 51, 0> history;
    history[0] = 1;
    history[50] = 2;
    EXPECT_THROW(history[51], Fault);
    Grid<int, 10, 4> trends;
    trends(10, 4) = 3;
    EXPECT_EQ(trends(10, 4), 3);
    EXPECT_THROW(trends(11, 1), Fault);
    EXPECT_THROW(trends(1, 0), Fault);
}

TEST(Station, StartsWithSystemTagsAndTheTestModule) {
    Station st;
    EXPECT_EQ(st.tag(33).TagName, "TS");
    EXPECT_EQ(st.tag(38).TagName, "SU");
    EXPECT_EQ(st.profile.TypeCode, kDaqTest);
    EXPECT_EQ(st.profile.TypeString, "TEST");
    EXPECT_THROW(st.tag(43), Fault);
    EXPECT_THROW(st.tag(0), Fault);
    EXPECT_EQ(st.trends.NewestSample, 200);
    EXPECT_EQ(st.trends.OldestSample, 1);
    EXPECT_EQ(st.periods.IOPeriod, 1);
    EXPECT_EQ(st.periods.IOUnits, 1000);
}

}  // namespace kova
