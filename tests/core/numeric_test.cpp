#include "core/numeric.h"

#include <gtest/gtest.h>

#include "core/fault.h"

namespace kova {

TEST(Numeric, SixteenBitArithmeticFaultsOnOverflow) {
    EXPECT_EQ(add16(32000, 767), 32767);
    EXPECT_THROW(add16(32000, 768), Fault);
    EXPECT_THROW(sub16(-32768, 1), Fault);
    EXPECT_THROW(mul16(200, 200), Fault);
    EXPECT_EQ(mul16(-128, 256), -32768);
}

TEST(Numeric, ConversionTo16BitRoundsHalvesToEven) {
    EXPECT_EQ(toInt16(2.5), 2);
    EXPECT_EQ(toInt16(3.5), 4);
    EXPECT_EQ(toInt16(-2.5), -2);
    EXPECT_EQ(toInt16(4095.6), 4096);
    EXPECT_EQ(toInt16(32767.4), 32767);
    EXPECT_THROW(toInt16(32767.5), Fault);
    EXPECT_THROW(toInt16(-32769), Fault);
    EXPECT_THROW(toInt16(std::numeric_limits<double>::quiet_NaN()), Fault);
}

TEST(Numeric, SingleRefusesValuesItCannotHold) {
    EXPECT_FLOAT_EQ(toSingle(0.1), 0.1f);
    EXPECT_THROW(toSingle(1e39), Fault);
    EXPECT_THROW(toSingle(std::numeric_limits<double>::infinity()), Fault);
}

TEST(Numeric, NumberTextHasSevenDigitsAndLeadingBlank) {
    EXPECT_EQ(numberText(12.5f), " 12.5");
    EXPECT_EQ(numberText(-3.0f), "-3");
    EXPECT_EQ(numberText(100.0f / 4095.0f), " 0.02442002");
    EXPECT_EQ(numberText(0.0f), " 0");
    EXPECT_EQ(numberText(1234567.0f), " 1234567");
    EXPECT_EQ(numberText(12345678.0f), " 1.234568E+07");
    EXPECT_EQ(numberText(0.1f), " 0.1");
    EXPECT_EQ(plainNumberText(4095), "4095");
}

TEST(Numeric, TextToNumberReadsTheLeadingNumber) {
    EXPECT_DOUBLE_EQ(leadingNumber(" 12.5abc"), 12.5);
    EXPECT_DOUBLE_EQ(leadingNumber("abc"), 0);
    EXPECT_DOUBLE_EQ(leadingNumber("-3"), -3);
    EXPECT_TRUE(isNumeric(" 1.5 "));
    EXPECT_TRUE(isNumeric("1E3"));
    EXPECT_FALSE(isNumeric("ten"));
    EXPECT_FALSE(isNumeric(""));
    EXPECT_FALSE(isNumeric("1.5x"));
    EXPECT_EQ(textToInt16("49"), 49);
    EXPECT_THROW(textToInt16("40000"), Fault);
}

}  // namespace kova
