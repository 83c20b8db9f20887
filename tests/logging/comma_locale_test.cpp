// Under a comma-decimal C library locale the engine still writes and reads "." as the
// decimal point: log records, number texts, the text boxes' number conversion.
#include <gtest/gtest.h>

#include <clocale>
#include <cstdio>
#include <string>

#include "core/numeric.h"
#include "log_rig.h"
#include "logging/log_format.h"
#include "logging/log_writer.h"
#include "support/comma_locale.h"

namespace kova::test {
namespace {

// Switches the C library's number locale to de_DE for the test, and back afterwards.
class CommaLocale : public ::testing::Test {
  protected:
    void SetUp() override {
        std::string why;
        if (!PrepareCommaLocale(why)) GTEST_SKIP() << why;
        if (std::setlocale(LC_NUMERIC, kCommaLocale) == nullptr)
            GTEST_SKIP() << "setlocale cannot load " << kCommaLocale;
        char buf[16];
        std::snprintf(buf, sizeof buf, "%g", 2.5);
        ASSERT_STREQ(buf, "2,5") << "the locale is not comma-decimal: the test would prove nothing";
    }
    void TearDown() override { std::setlocale(LC_NUMERIC, "C"); }
};

TEST_F(CommaLocale, NumberTextKeepsThePoint) {
    EXPECT_EQ(numberText(2.5), " 2.5");
    EXPECT_EQ(numberText(-10.25), "-10.25");
    EXPECT_EQ(numberText(12345678.0f), " 1.234568E+07");
    EXPECT_EQ(plainNumberText(0.02442002), "0.02442002");
    EXPECT_EQ(fixedText(1.5, 3), "1.500");
}

TEST_F(CommaLocale, TextBoxNumbersReadThePoint) {
    EXPECT_DOUBLE_EQ(leadingNumber("75.6"), 75.6);
    EXPECT_EQ(strictTextToInt16("75.6"), 76);
    EXPECT_EQ(textToInt16("49.5"), 50);  // halves to even
    EXPECT_DOUBLE_EQ(leadingNumber("+1.5E2x"), 150.0);
    EXPECT_DOUBLE_EQ(leadingNumber("1e-400"), 0.0);
    EXPECT_THROW(textToInt16("1e400"), Fault);
}

TEST_F(CommaLocale, LogFileBytesAreTheSameAsEverywhere) {
    LogRig r;
    r.tag(1, "A", "A", true, 2.5f);
    r.tag(2, "B", "B", true, 10.25f);
    r.tag(3, "C", "C", true, -0.125f);
    r.st.periods = {500, kUnitMs, 500, kUnitMs, 0};
    r.st.logging.LogFileName = r.path("LOG.CSV");
    r.st.logging.OverwriteFile = 1;
    r.st.logging.LogTimeColumn = Variant::integer(1);
    r.st.logging.LogDateColumn = Variant::integer(1);
    r.st.switches.LoggingEnabled = Variant::integer(1);
    OpenLogFile(r.st);
    r.scans(3);
    CloseLogFile(r.st);
    EXPECT_EQ(ReadFileBytes(r.folder / "LOG.CSV"),
              "LOG PERIOD,TIME,DATE,A,B,C\r\n"
              "0.500,10:15:00.500,15/11/26, 2.5 , 10.25 ,-0.125 \r\n"
              "1.000,10:15:01.000,15/11/26, 2.5 , 10.25 ,-0.125 \r\n"
              "1.500,10:15:01.500,15/11/26, 2.5 , 10.25 ,-0.125 \r\n");
}

}  // namespace
}  // namespace kova::test
