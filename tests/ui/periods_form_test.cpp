#include "core/forms/periods_form.h"

#include <gtest/gtest.h>

#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <sstream>

#include "support/test_support.h"
#include "ui/ui_support.h"

namespace kova {

namespace {
struct Rig {
    Station st;
    test::ScriptedPrompter prompt;
    test::RecordingStatus status;
    std::ostringstream errors;
    ErrorReport report{st.platform, errors};
    std::unique_ptr<PeriodsWindow> w;
    Rig(Periods p = {}) {
        st.platform.prompter = &prompt;
        st.platform.status = &status;
        st.periods = p;
        w = std::make_unique<PeriodsWindow>(st, report);
        w->show();
    }
    QLineEdit* box(const char* n) { return test::child<QLineEdit>(w.get(), n); }
    QRadioButton* opt(const char* n) { return test::child<QRadioButton>(w.get(), n); }
    void set(const char* io, const char* ioUnit, const char* log, const char* logUnit) {
        box("TxtIOPeriod")->setText(io);
        opt(ioUnit)->setChecked(true);
        box("TxtLogPeriod")->setText(log);
        opt(logUnit)->setChecked(true);
    }
    void exit() { test::child<QPushButton>(w.get(), "CmdExit")->click(); }
};

QGroupBox* frameOf(QWidget* control) {
    return qobject_cast<QGroupBox*>(control->parentWidget());
}
}  // namespace

TEST(PeriodsWindow, CaptionsAndFramesAreThoseOfTheWindow) {
    Rig r;
    EXPECT_EQ(r.w->windowTitle(), "I/O And Logging Periods");
    EXPECT_EQ(r.w->objectName(), "Periods");
    const std::vector<std::pair<const char*, const char*>> options = {
        {"OptIOmSecs", "mSeconds"},      {"OptIOSecs", "Seconds"},
        {"OptLogmSecs", "mSeconds"},     {"OptLogSecs", "Seconds"},
        {"OptLogTrend", "= Log Period"}, {"OptIOTrend", "= I/O Reading Period"}};
    for (const auto& [name, caption] : options) EXPECT_EQ(r.opt(name)->text(), caption) << name;
    EXPECT_EQ(test::child<QPushButton>(r.w.get(), "CmdExit")->text(), "E&xit");

    auto frame = [&](QWidget* c) {
        return frameOf(c) ? frameOf(c)->title().toStdString() : std::string("none");
    };
    EXPECT_EQ(frame(r.box("TxtIOPeriod")), "Period Between I/O Readings");
    EXPECT_EQ(frame(r.opt("OptIOmSecs")), "Period Between I/O Readings");
    EXPECT_EQ(frame(r.opt("OptIOSecs")), "Period Between I/O Readings");
    EXPECT_EQ(frame(r.box("TxtLogPeriod")), "Period Between Logged Readings");
    EXPECT_EQ(frame(r.opt("OptLogmSecs")), "Period Between Logged Readings");
    EXPECT_EQ(frame(r.opt("OptLogSecs")), "Period Between Logged Readings");
    EXPECT_EQ(frame(r.opt("OptLogTrend")), "Period For Trends");
    EXPECT_EQ(frame(r.opt("OptIOTrend")), "Period For Trends");
}

TEST(PeriodsWindow, OpensWithTheDefaults) {
    Rig r;
    EXPECT_EQ(r.box("TxtIOPeriod")->text(), "1");
    EXPECT_TRUE(r.opt("OptIOSecs")->isChecked());
    EXPECT_FALSE(r.opt("OptIOmSecs")->isChecked());
    EXPECT_EQ(r.box("TxtLogPeriod")->text(), "1");
    EXPECT_TRUE(r.opt("OptLogSecs")->isChecked());
    EXPECT_TRUE(r.opt("OptIOTrend")->isChecked());
    EXPECT_FALSE(r.opt("OptLogTrend")->isChecked());
}

TEST(PeriodsWindow, OpensWithTheStoredPeriods) {
    Rig r({250, kUnitMs, 5, kUnitSeconds, -1});
    EXPECT_EQ(r.box("TxtIOPeriod")->text(), "250");
    EXPECT_TRUE(r.opt("OptIOmSecs")->isChecked());
    EXPECT_EQ(r.box("TxtLogPeriod")->text(), "5");
    EXPECT_TRUE(r.opt("OptLogSecs")->isChecked());
    EXPECT_TRUE(r.opt("OptLogTrend")->isChecked());
}

TEST(PeriodsWindow, ExitStoresThePeriodsAndCloses) {
    Rig r;
    r.set("300", "OptIOmSecs", "2", "OptLogSecs");
    r.opt("OptLogTrend")->setChecked(true);
    r.exit();
    EXPECT_EQ(r.st.periods, (Periods{300, kUnitMs, 2, kUnitSeconds, -1}));
    EXPECT_FALSE(r.w->isVisible());
    EXPECT_TRUE(r.prompt.messages.empty());
}

TEST(PeriodsWindow, FortyNineMillisecondsIsRefusedTheBoxResetAndTheWindowStaysOpen) {
    Rig r;
    r.set("49", "OptIOmSecs", "1", "OptLogSecs");
    r.exit();
    ASSERT_EQ(r.prompt.messages.size(), 1u);
    EXPECT_EQ(r.prompt.messages[0],
              (test::Shown{"Time Between I/O Readings Cannot Be Less than 50mSecs", "Error"}));
    EXPECT_EQ(r.box("TxtIOPeriod")->text(), "50");
    EXPECT_TRUE(r.w->isVisible());
    EXPECT_EQ(r.st.periods.IOPeriod, 49);  // stored before the check, deliberately
}

TEST(PeriodsWindow, LoggingBelowFiftyMillisecondsIsRefused) {
    Rig r;
    r.set("50", "OptIOmSecs", "20", "OptLogmSecs");
    r.exit();
    ASSERT_EQ(r.prompt.messages.size(), 1u);
    EXPECT_EQ(r.prompt.messages[0],
              (test::Shown{"Time Between Logging Readings Cannot Be Less than 50mSecs", "Error"}));
    EXPECT_EQ(r.box("TxtLogPeriod")->text(), "50");
    EXPECT_TRUE(r.w->isVisible());
}

TEST(PeriodsWindow, IOPeriodLongerThanLoggingIsRefused) {
    Rig r;
    r.set("2", "OptIOSecs", "1000", "OptLogmSecs");
    r.exit();
    ASSERT_EQ(r.prompt.messages.size(), 1u);
    EXPECT_EQ(r.prompt.messages[0],
              (test::Shown{"Period for I/O Readings must be less than or equal to Logging Period",
                           "ERROR"}));
    EXPECT_TRUE(r.w->isVisible());
    EXPECT_EQ(r.box("TxtIOPeriod")->text(), "2");
}

TEST(PeriodsWindow, EqualPeriodsAreAccepted) {
    Rig r;
    r.set("500", "OptIOmSecs", "500", "OptLogmSecs");
    r.exit();
    EXPECT_TRUE(r.prompt.messages.empty());
    EXPECT_FALSE(r.w->isVisible());
}

TEST(PeriodsWindow, ZeroSecondsIsAccepted) {
    Rig r;
    r.set("0", "OptIOSecs", "1", "OptLogSecs");
    r.exit();
    EXPECT_TRUE(r.prompt.messages.empty());
    EXPECT_EQ(r.st.periods.IOPeriod, 0);
    EXPECT_FALSE(r.w->isVisible());
}

TEST(PeriodsWindow, ANonNumericPeriodGoesToTheGeneralErrorReportAndTheWindowStays) {
    Rig r;
    r.set("abc", "OptIOmSecs", "1", "OptLogSecs");
    r.exit();
    ASSERT_EQ(r.prompt.messages.size(), 1u);
    EXPECT_EQ(r.prompt.messages[0].title, "KOVA");
    EXPECT_NE(r.prompt.messages[0].text.find("Type mismatch"), std::string::npos);
    EXPECT_TRUE(r.w->isVisible());
    ASSERT_FALSE(r.status.texts.empty());
    EXPECT_NE(r.status.texts.back().find("Type mismatch"), std::string::npos);
}

TEST(PeriodsWindow, ClosingWithoutExitAppliesNothing) {
    Rig r;
    r.set("700", "OptIOmSecs", "9", "OptLogSecs");
    r.w->close();
    EXPECT_EQ(r.st.periods, Periods{});
}

}  // namespace kova
