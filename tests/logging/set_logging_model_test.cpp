#include "logging/set_logging_model.h"

#include <gtest/gtest.h>

#include "log_rig.h"

namespace kova {

using test::Shown;

TEST(SetLogging, OpensWithTheCurrentSettings) {
    test::LogRig r;
    LogSettings& l = r.st.logging;
    l.LogFileName = "C:\\LOG\\PLANT.CSV";
    l.DateFormatUS = -1;
    l.LogTimeColumn = Variant::integer(1);
    l.LogDateColumn = Variant::integer(0);
    l.DailyFiles = 0;
    l.OverwriteFile = 1;
    const SetLoggingForm f = OpenSetLoggingForm(r.st);
    EXPECT_EQ(f.TxtFileName, "C:\\LOG\\PLANT.CSV");
    EXPECT_TRUE(f.OptDateFormat2);
    EXPECT_TRUE(f.ChkTime);
    EXPECT_FALSE(f.ChkDate);
    EXPECT_FALSE(f.ChkDaily);
    EXPECT_TRUE(f.NewFile);
}

TEST(SetLogging, DailyBoxTakesEffectAtOnce) {
    test::LogRig r;
    SetLoggingForm f = OpenSetLoggingForm(r.st);
    ClickDailyFiles(r.st, f, true);
    EXPECT_EQ(r.st.logging.DailyFiles, 1);
    ClickDailyFiles(r.st, f, false);
    EXPECT_EQ(r.st.logging.DailyFiles, 0);
}

TEST(SetLogging, ChoosingAFileShowsTheDialogAndTakesThePathAndFolder) {
    test::LogRig r;
    r.prompt.inner.fileAnswers = {"C:\\LOG\\PLANT.CSV"};
    SetLoggingForm f = OpenSetLoggingForm(r.st);
    EXPECT_TRUE(ChooseLogFile(r.st, f));
    ASSERT_EQ(r.prompt.inner.fileDialogs.size(), 1u);
    EXPECT_EQ(r.prompt.inner.fileDialogs[0],
              (Shown{"Open Logging File", "All Files (*.CSV)|*.CSV|"}));
    EXPECT_EQ(r.prompt.proposals.at(0), "*.CSV");
    EXPECT_FALSE(r.prompt.saves.at(0));
    EXPECT_EQ(r.st.logging.LogFileName, "C:\\LOG\\PLANT.CSV");
    EXPECT_EQ(r.st.logging.LogDirectory, "C:\\LOG\\");
    EXPECT_EQ(f.TxtFileName, "C:\\LOG\\PLANT.CSV");
}

TEST(SetLogging, SlashPathsGiveTheirFolder) {
    test::LogRig r;
    r.prompt.inner.fileAnswers = {"/home/op/logs/PLANT.CSV"};
    SetLoggingForm f;
    ASSERT_TRUE(ChooseLogFile(r.st, f));
    EXPECT_EQ(r.st.logging.LogDirectory, "/home/op/logs/");
}

TEST(SetLogging, ABareNameHasNoFolder) {
    test::LogRig r;
    r.st.logging.LogDirectory = "C:\\OLD\\";
    r.prompt.inner.fileAnswers = {"PLANT.CSV"};
    SetLoggingForm f;
    ASSERT_TRUE(ChooseLogFile(r.st, f));
    EXPECT_EQ(r.st.logging.LogDirectory, "");
}

TEST(SetLogging, DailyModeProposesTheCurrentNameAndSetsTheLoggingDateToToday) {
    test::LogRig r;
    r.st.logging.DailyFiles = 1;
    r.st.logging.LogFileName = "C:\\LOG\\DA011126.CSV";
    r.st.logRun.LogDate = dateSerial(2026, 11, 1);
    r.clock.set(test::At(2026, 11, 15, 9, 0, 0));
    r.prompt.inner.fileAnswers = {"C:\\LOG\\DA011126.CSV"};
    SetLoggingForm f = OpenSetLoggingForm(r.st);
    ASSERT_TRUE(ChooseLogFile(r.st, f));
    EXPECT_EQ(r.prompt.proposals.at(0), "C:\\LOG\\DA011126.CSV");
    EXPECT_EQ(r.st.logRun.LogDate, dateSerial(2026, 11, 15));
}

TEST(SetLogging, CancelledDialogChangesNothing) {
    test::LogRig r;
    r.st.logging.LogFileName = "C:\\LOG\\PLANT.CSV";
    r.st.logging.LogDirectory = "C:\\LOG\\";
    SetLoggingForm f = OpenSetLoggingForm(r.st);
    EXPECT_FALSE(ChooseLogFile(r.st, f));
    EXPECT_EQ(r.st.logging.LogFileName, "C:\\LOG\\PLANT.CSV");
    EXPECT_EQ(r.st.logging.LogDirectory, "C:\\LOG\\");
    EXPECT_EQ(f.TxtFileName, "C:\\LOG\\PLANT.CSV");
}

TEST(SetLogging, ExitStoresTheControls) {
    test::LogRig r;
    SetLoggingForm f;
    f.OptDateFormat2 = true;
    f.ChkTime = true;
    f.ChkDate = true;
    f.ChkDaily = true;
    f.NewFile = true;
    ExitSetLoggingForm(r.st, f);
    const LogSettings& l = r.st.logging;
    EXPECT_EQ(l.DateFormatUS, -1);
    EXPECT_EQ(l.LogTimeColumn, Variant::integer(1));
    EXPECT_EQ(l.LogDateColumn, Variant::integer(1));
    EXPECT_EQ(l.DailyFiles, 1);
    EXPECT_EQ(l.OverwriteFile, 1);
    f = {};
    ExitSetLoggingForm(r.st, f);
    EXPECT_EQ(l.DateFormatUS, 0);
    EXPECT_EQ(l.LogTimeColumn, Variant::integer(0));
    EXPECT_EQ(l.LogDateColumn, Variant::integer(0));
    EXPECT_EQ(l.DailyFiles, 0);
    EXPECT_EQ(l.OverwriteFile, 0);
}

}  // namespace kova
