// The program under a comma-decimal user locale writes the same CSV bytes and reads the
// same numbers from its boxes as anywhere else.
#include <gtest/gtest.h>

#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QRadioButton>
#include <cstdio>
#include <sstream>

#include "core/error_report.h"
#include "core/forms/periods_form.h"
#include "locale_rig.h"
#include "logging/log_writer.h"
#include "platform/clock.h"
#include "support/test_support.h"

namespace kova::test {
namespace {

TEST(ProgramLocale, TheUserLocaleReallyIsCommaDecimal) {
    KOVA_NEED_COMMA_LOCALE();
    // What the user's settings say; the program must not follow them for numbers.
    EXPECT_EQ(QLocale::system().decimalPoint(), QString(","));
}

TEST(ProgramLocale, TheCLibraryAndQtWriteThePoint) {
    KOVA_NEED_COMMA_LOCALE();
    char buf[16];
    std::snprintf(buf, sizeof buf, "%g", 2.5);
    EXPECT_STREQ(buf, "2.5");
    EXPECT_EQ(QLocale().toString(2.5), "2.5");
    EXPECT_EQ(QLocale().toString(1234567), "1234567");  // no grouping either
}

TEST(ProgramLocale, LogFileBytesAreTheSameAsEverywhere) {
    KOVA_NEED_COMMA_LOCALE();
    TempFolder dir;
    Station st;
    SimulatedClock clock({2026, 11, 15, 10, 15, 0, 0});
    st.platform.clock = &clock;
    const float values[] = {2.5f, 10.25f, -0.125f};
    for (int n = 1; n <= 3; ++n) {
        st.tags[n].Label = std::string(1, static_cast<char>('A' + n - 1));
        st.tags[n].Log = 1;
        st.tags[n].Value = values[n - 1];
    }
    st.periods = {500, kUnitMs, 500, kUnitMs, 0};
    st.logging.LogFileName = (dir / "LOG.CSV").string();
    st.logging.OverwriteFile = 1;
    st.logging.LogTimeColumn = Variant::integer(1);
    st.switches.LoggingEnabled = Variant::integer(1);
    OpenLogFile(st);
    for (int i = 0; i < 2; ++i) {
        AdvanceLogClock(st, 500);
        WriteLogRecord(st);
    }
    CloseLogFile(st);
    EXPECT_EQ(ReadFileBytes(dir / "LOG.CSV"),
              "LOG PERIOD,TIME,A,B,C\r\n"
              "0.500,10:15:00.500, 2.5 , 10.25 ,-0.125 \r\n"
              "1.000,10:15:01.000, 2.5 , 10.25 ,-0.125 \r\n");
}

TEST(ProgramLocale, ThePeriodsBoxReadsADecimalPoint) {
    KOVA_NEED_COMMA_LOCALE();
    Station st;
    ScriptedPrompter prompt;
    st.platform.prompter = &prompt;
    std::ostringstream errors;
    ErrorReport report(st.platform, errors);
    PeriodsWindow w(st, report);
    w.show();
    w.findChild<QLineEdit*>("TxtIOPeriod")->setText("75.6");
    w.findChild<QRadioButton*>("OptIOmSecs")->setChecked(true);
    w.findChild<QLineEdit*>("TxtLogPeriod")->setText("2");
    w.findChild<QRadioButton*>("OptLogSecs")->setChecked(true);
    w.findChild<QPushButton*>("CmdExit")->click();
    EXPECT_TRUE(prompt.messages.empty());
    EXPECT_EQ(st.periods.IOPeriod, 76);  // 75.6 rounded, not 75 read up to the "."
    EXPECT_EQ(st.periods.IOUnits, kUnitMs);
    EXPECT_EQ(errors.str(), "");
}

}  // namespace
}  // namespace kova::test
