#include "tags/tag_table.h"

#include <gtest/gtest.h>

#include <cmath>

#include "core/fault.h"
#include "support/test_support.h"

namespace kova {

TEST(SystemTags, HaveTheirNamesLabelsAndUnits) {
    TagTable tags;
    InitSystemTags(tags);
    EXPECT_EQ(tags[33].TagName, "TS");
    EXPECT_EQ(tags[33].Label, "Time In Secs");
    EXPECT_EQ(tags[33].Units, "Secs");
    EXPECT_EQ(tags[34].Label, "Hour Of Day");
    EXPECT_EQ(tags[34].Units, "Hours");
    EXPECT_EQ(tags[35].Label, "Minutes of Day");  // the value is minute-of-hour all the same
    EXPECT_EQ(tags[35].Units, "Mins");
    EXPECT_EQ(tags[36].Label, "Secs of Day");  // the value is second-of-minute all the same
    EXPECT_EQ(tags[37].Label, "Day of Week");
    EXPECT_EQ(tags[37].Units, "");
    EXPECT_EQ(tags[38].TagName, "SU");
    EXPECT_EQ(tags[38].Label, "Start Up Flag");
    for (int i = 33; i <= 38; ++i) {
        EXPECT_EQ(tags[i].Kind, kAnalog);
        EXPECT_EQ(tags[i].Address, 1);
        EXPECT_EQ(tags[i].IONumber, 0);
        EXPECT_EQ(tags[i].RawValue2, 1);
        EXPECT_EQ(tags[i].EngValue2, 1.0f);
    }
    EXPECT_EQ(tags[39].TagName, "");
}

TEST(IONames, AreClassifiedByTheirCharacters) {
    auto c = ClassifyIOName("AI-3");
    EXPECT_EQ(c.Kind, kAnalog);
    EXPECT_EQ(c.Direction, kInput);
    EXPECT_EQ(c.IONumber, 3);
    c = ClassifyIOName("DO-12");
    EXPECT_EQ(c.Kind, kDigital);
    EXPECT_EQ(c.Direction, kOutput);
    EXPECT_EQ(c.IONumber, 12);
    c = ClassifyIOName("AO-2");
    EXPECT_EQ(c.Direction, kOutput);
    EXPECT_EQ(c.IONumber, 2);
    c = ClassifyIOName("Analog Variable");  // second character "n"
    EXPECT_EQ(c.Kind, kAnalog);
    EXPECT_EQ(c.Direction, kVariable);
    EXPECT_EQ(c.IONumber, 0);
    c = ClassifyIOName("Digital Variable");  // second character "i"
    EXPECT_EQ(c.Kind, kDigital);
    EXPECT_EQ(c.Direction, kVariable);
    EXPECT_EQ(c.IONumber, 0);
}

TEST(Scaling, TwoPointSlopeAndOffset) {
    Tag t;
    t.RawValue1 = 0;
    t.RawValue2 = 4095;
    t.EngValue1 = 0;
    t.EngValue2 = 100;
    ComputeScaling(t);
    EXPECT_EQ(t.Slope, 100.0f / 4095.0f);
    EXPECT_EQ(t.Slope, 0.024420025f);
    EXPECT_EQ(t.Offset, 0.0f);
    EXPECT_FLOAT_EQ(ScaleInput(t, 4095), 100.0f);
}

TEST(Scaling, EqualRawNumbersNeverStoreANonFiniteSlope) {
    Tag t;
    t.RawValue1 = 1;  // typed as "1" and "01": the texts differ, the numbers do not
    t.RawValue2 = 1;
    t.EngValue1 = 0;
    t.EngValue2 = 10;
    ComputeScaling(t);
    EXPECT_TRUE(std::isfinite(t.Slope));
    EXPECT_TRUE(std::isfinite(t.Offset));
}

TEST(Scaling, EqualEngineeringNumbersGiveZeroSlope) {
    Tag t;
    t.RawValue1 = 0;
    t.RawValue2 = 100;
    t.EngValue1 = 5;
    t.EngValue2 = 5;
    ComputeScaling(t);
    EXPECT_EQ(t.Slope, 0.0f);
    EXPECT_EQ(t.Offset, 5.0f);
}

TEST(Scaling, OutputClampsToTheRawRangeAndRoundsHalfToEven) {
    Tag t;
    t.Slope = 1;
    t.Offset = 0;
    EXPECT_EQ(ScaleOutput(t, 4095.6, 0, 4095), 4095);
    EXPECT_EQ(ScaleOutput(t, -3, 0, 4095), 0);
    EXPECT_EQ(ScaleOutput(t, 2.5, 0, 4095), 2);
    EXPECT_EQ(ScaleOutput(t, 3.5, 0, 4095), 4);
    EXPECT_EQ(ScaleOutput(t, 1e6, 0, 255), 255);
    EXPECT_EQ(ScaleOutput(t, 100, 0, 0), 0);  // QRT115: everything clamps to 0
}

TEST(Scaling, OutputSlotIsAddressAndChannel) {
    Tag t;
    t.Address = 1;
    t.IONumber = 2;
    EXPECT_EQ(OutputSlot(t), 2);
    t.IONumber = 0;
    EXPECT_THROW(OutputSlot(t), Fault);
    t.Address = 3;
    t.IONumber = 1;
    EXPECT_THROW(OutputSlot(t), Fault);  // slot 41
}

TEST(TagNames, InUseShowsTheMessageWithTheRecordNumber) {
    TagTable tags;
    tags[7].TagName = "PUMP";
    test::ScriptedPrompter p;
    EXPECT_FALSE(IsTagNameInUse(tags, p, "PUMP", 7));
    EXPECT_TRUE(p.messages.empty());
    EXPECT_TRUE(IsTagNameInUse(tags, p, "PUMP", 3));
    ASSERT_EQ(p.messages.size(), 1u);
    EXPECT_EQ(p.messages[0].text, "Variable PUMP already in use in Record Number 7");
    EXPECT_EQ(p.messages[0].title, "ERROR");
    EXPECT_EQ(NormalizeTagName("  tank1 "), "TANK1");
}

}  // namespace kova

namespace kova {
TEST(IONames, BindingATagStoresTheNameAndItsClassification) {
    Tag t;
    BindIOName(t, "DO-3");
    EXPECT_EQ(t.IOName, "DO-3");
    EXPECT_EQ(t.Kind, kDigital);
    EXPECT_EQ(t.Direction, kOutput);
    EXPECT_EQ(t.IONumber, 3);
}
}  // namespace kova
