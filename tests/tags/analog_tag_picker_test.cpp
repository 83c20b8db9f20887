#include "tags/analog_tag_picker.h"

#include <gtest/gtest.h>

#include "core/station.h"

namespace kova {

TEST(AnalogTagPicker, ListsTheAnalogUserTagsInTagOrderWithEmptyLinesForUnusedTags) {
    Station st;
    st.tags[1].TagName = "TANK";
    st.tags[2].TagName = "PUMP";
    st.tags[2].Kind = kDigital;
    st.tags[3].TagName = "FLOW";
    const auto choices = AnalogTagChoices(st.tags);
    ASSERT_EQ(choices.size(), 31u);  // 32 user tags less the digital one
    EXPECT_EQ(choices[0], "TANK");
    EXPECT_EQ(choices[1], "FLOW");
    EXPECT_EQ(choices[2], "");
    EXPECT_EQ(choices[30], "");
}

TEST(AnalogTagPicker, SystemVariablesAreNotOffered) {
    Station st;
    for (const auto& name : AnalogTagChoices(st.tags)) EXPECT_EQ(name, "");
}

TEST(AnalogTagPicker, ChoosingAnEntryGivesItsText) {
    Station st;
    st.tags[5].TagName = "TEMP";
    const auto choices = AnalogTagChoices(st.tags);
    EXPECT_EQ(PickAnalogTag(choices, 4), "TEMP");
    EXPECT_EQ(PickAnalogTag(choices, 0), "");
    EXPECT_EQ(PickAnalogTag(choices, -1), "");
    EXPECT_EQ(PickAnalogTag(choices, 99), "");
}

}  // namespace kova
