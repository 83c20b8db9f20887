#include "core/text_encoding.h"

#include <gtest/gtest.h>

namespace kova {

TEST(TextEncoding, RoundTripsEveryWindows1252Byte) {
    std::string all;
    for (int b = 1; b < 256; ++b) all += static_cast<char>(b);
    const std::string utf8 = Cp1252ToUtf8(all);
    const auto back = Utf8ToCp1252(utf8);
    ASSERT_TRUE(back.has_value());
    EXPECT_EQ(*back, all);
}

TEST(TextEncoding, KnownCharacters) {
    EXPECT_EQ(Utf8ToCp1252("\xE2\x82\xAC"), std::string("\x80"));  // euro sign
    EXPECT_EQ(Utf8ToCp1252("\xC2\xB0"
                           "C"),
              std::string("\xB0"
                          "C"));                  // degree sign
    EXPECT_EQ(Cp1252ToUtf8("\xB5"), "\xC2\xB5");  // micro sign
    EXPECT_EQ(Cp1252Length("Tank \xC2\xB0"), 6u);
}

TEST(TextEncoding, CharactersOutsideWindows1252AreRefused) {
    EXPECT_FALSE(Utf8ToCp1252("\xE4\xB8\xAD").has_value());      // a CJK character
    EXPECT_FALSE(Utf8ToCp1252("\xF0\x9F\x98\x80").has_value());  // an emoji
    EXPECT_FALSE(Utf8ToCp1252("\xC3").has_value());              // cut short
    EXPECT_FALSE(Cp1252Length("\xCE\xA9").has_value());          // Greek omega
}

}  // namespace kova
