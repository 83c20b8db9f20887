#include "logging/forms/set_logging_form.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <sstream>

#include "platform/clock.h"
#include "support/test_support.h"
#include "ui/ui_support.h"

namespace kova {

namespace {
// Answers file dialogs from a script and remembers the name each one proposed.
class FilePrompter final : public Prompter {
  public:
    void message(const std::string& text, const std::string& title) override {
        inner.message(text, title);
    }
    bool askYesNo(const std::string& t, const std::string& ti, DefaultAnswer enter) override {
        return inner.askYesNo(t, ti, enter);
    }
    SaveChoice askSaveDiscardCancel(const std::string& t, const std::string& ti) override {
        return inner.askSaveDiscardCancel(t, ti);
    }
    std::optional<std::string> input(const std::string& p, const std::string& t) override {
        return inner.input(p, t);
    }
    std::optional<std::string> chooseFile(const std::string& title, const std::string& filter,
                                          const std::string& proposed, bool save) override {
        proposals.push_back(proposed);
        return inner.chooseFile(title, filter, proposed, save);
    }
    std::optional<std::string> chooseFileToWrite(const std::string& title,
                                                 const std::string& filter,
                                                 const std::string& proposed) override {
        ++toWrite;
        return chooseFile(title, filter, proposed, false);
    }
    test::ScriptedPrompter inner;
    std::vector<std::string> proposals;
    int toWrite = 0;
};

LocalDateTime At(int y, int mo, int d, int h, int mi) {
    LocalDateTime t;
    t.year = y, t.month = mo, t.day = d, t.hour = h, t.minute = mi;
    return t;
}

struct Rig {
    Station st;
    FilePrompter prompt;
    SimulatedClock clock{At(2026, 11, 15, 9, 30)};
    test::RecordingStatus status;
    std::ostringstream errors;
    ErrorReport report{st.platform, errors};
    std::unique_ptr<SetLoggingWindow> w;
    Rig() {
        st.platform.prompter = &prompt;
        st.platform.status = &status;
        st.platform.clock = &clock;
    }
    void open() {
        w = std::make_unique<SetLoggingWindow>(st, report);
        w->show();
    }
    QLineEdit* fileBox() { return test::child<QLineEdit>(w.get(), "TxtFileName"); }
    QCheckBox* check(const char* n) { return test::child<QCheckBox>(w.get(), n); }
    QRadioButton* opt(const char* n) { return test::child<QRadioButton>(w.get(), n); }
    QPushButton* button(const char* n) { return test::child<QPushButton>(w.get(), n); }
    const std::vector<test::Shown>& dialogs() const { return prompt.inner.fileDialogs; }
};

// The controls that Tab visits, in order, from the first.
QStringList tabOrder(QWidget* window, QWidget* first) {
    QStringList names;
    QWidget* w = first;
    do {
        if ((w->focusPolicy() & Qt::TabFocus) && w->isVisible() && w->isEnabled() &&
            !w->objectName().isEmpty() && w->window() == window)
            names << w->objectName();
        w = w->nextInFocusChain();
    } while (w && w != first);
    return names;
}
}  // namespace

TEST(SetLoggingWindow, ControlsHaveTheirNamesAndCaptions) {
    Rig r;
    r.open();
    EXPECT_EQ(r.w->objectName(), "SetLogging");
    EXPECT_EQ(r.w->windowTitle(), "Logging Parameters");
    EXPECT_EQ(r.button("ComFile")->text(), "Choose &File...");
    EXPECT_EQ(r.button("ComExit")->text(), "E&xit");
    EXPECT_EQ(r.opt("OptDateFormat1")->text(), "&Day/Month/Year");
    EXPECT_EQ(r.opt("OptDateFormat2")->text(), "&Month/Day/Year");
    EXPECT_EQ(r.check("ChkTime")->text(), "&Time column");
    EXPECT_EQ(r.check("ChkDate")->text(), "D&ate column");
    EXPECT_TRUE(r.check("ChkDaily")->text().startsWith("Dail&y files"));
    EXPECT_TRUE(r.check("NewFile")->text().startsWith("Start a &new file"));
    EXPECT_TRUE(r.fileBox()->isReadOnly());
}

TEST(SetLoggingWindow, TheFileBoxCarriesItsLabelAsItsName) {
    Rig r;
    r.open();
    EXPECT_EQ(r.fileBox()->accessibleName(), "Log file");
    QLabel* label = nullptr;
    for (QLabel* l : r.w->findChildren<QLabel*>())
        if (l->buddy() == r.fileBox()) label = l;
    ASSERT_NE(label, nullptr);
    EXPECT_EQ(label->text(), "&Log file:");
}

TEST(SetLoggingWindow, TabFollowsTheLayout) {
    Rig r;
    r.open();
    EXPECT_EQ(tabOrder(r.w.get(), r.fileBox()),
              (QStringList{"TxtFileName", "ComFile", "OptDateFormat1", "OptDateFormat2", "ChkTime",
                           "ChkDate", "ChkDaily", "NewFile", "ComExit"}));
}

TEST(SetLoggingWindow, OpensWithTheCurrentSettings) {
    Rig r;
    LogSettings& l = r.st.logging;
    l.LogFileName = "C:\\LOG\\PLANT.CSV";
    l.DateFormatUS = -1;
    l.LogTimeColumn = Variant::integer(1);
    l.LogDateColumn = Variant::integer(0);
    l.DailyFiles = 0;
    l.OverwriteFile = 1;
    r.open();
    EXPECT_EQ(r.fileBox()->text(), "C:\\LOG\\PLANT.CSV");
    EXPECT_TRUE(r.opt("OptDateFormat2")->isChecked());
    EXPECT_FALSE(r.opt("OptDateFormat1")->isChecked());
    EXPECT_TRUE(r.check("ChkTime")->isChecked());
    EXPECT_FALSE(r.check("ChkDate")->isChecked());
    EXPECT_FALSE(r.check("ChkDaily")->isChecked());
    EXPECT_TRUE(r.check("NewFile")->isChecked());
}

TEST(SetLoggingWindow, OpensDayFirstWithNothingTicked) {
    Rig r;
    r.open();
    EXPECT_EQ(r.fileBox()->text(), "");
    EXPECT_TRUE(r.opt("OptDateFormat1")->isChecked());
    for (const char* n : {"ChkTime", "ChkDate", "ChkDaily", "NewFile"})
        EXPECT_FALSE(r.check(n)->isChecked()) << n;
}

TEST(SetLoggingWindow, ChooseFileOpensTheDialogAndTakesThePathAndItsFolder) {
    Rig r;
    r.open();
    r.prompt.inner.fileAnswers = {"C:\\LOG\\PLANT.CSV"};
    r.button("ComFile")->click();
    ASSERT_EQ(r.dialogs().size(), 1u);
    EXPECT_EQ(r.dialogs()[0], (test::Shown{"Open Logging File", "All Files (*.CSV)|*.CSV|"}));
    EXPECT_EQ(r.prompt.proposals.at(0), "*.CSV");
    EXPECT_EQ(r.prompt.toWrite, 1);  // a dialog that takes a file not made yet
    EXPECT_EQ(r.st.logging.LogFileName, "C:\\LOG\\PLANT.CSV");
    EXPECT_EQ(r.st.logging.LogDirectory, "C:\\LOG\\");
    EXPECT_EQ(r.fileBox()->text(), "C:\\LOG\\PLANT.CSV");
    EXPECT_TRUE(r.w->isVisible());
}

TEST(SetLoggingWindow, APathWithoutAFolderLeavesTheFolderEmpty) {
    Rig r;
    r.st.logging.LogDirectory = "C:\\OLD\\";
    r.open();
    r.prompt.inner.fileAnswers = {"PLANT.CSV"};
    r.button("ComFile")->click();
    EXPECT_EQ(r.st.logging.LogDirectory, "");
    EXPECT_EQ(r.fileBox()->text(), "PLANT.CSV");
}

TEST(SetLoggingWindow, InDailyModeTheDialogProposesTheCurrentNameAndTheLoggingDateIsToday) {
    Rig r;
    r.st.logging.DailyFiles = 1;
    r.st.logging.LogFileName = "C:\\LOG\\DA011126.CSV";
    r.st.logRun.LogDate = dateSerial(2026, 11, 1);
    r.open();
    r.prompt.inner.fileAnswers = {"C:\\LOG\\DA151126.CSV"};
    r.button("ComFile")->click();
    EXPECT_EQ(r.prompt.proposals.at(0), "C:\\LOG\\DA011126.CSV");
    EXPECT_EQ(r.st.logRun.LogDate, dateSerial(2026, 11, 15));
    EXPECT_EQ(r.fileBox()->text(), "C:\\LOG\\DA151126.CSV");
}

TEST(SetLoggingWindow, DailyBoxTickedJustBeforeChoosingProposesTheCurrentName) {
    Rig r;
    r.st.logging.LogFileName = "/data/PLANT.CSV";
    r.open();
    r.check("ChkDaily")->click();
    r.button("ComFile")->click();  // cancelled
    EXPECT_EQ(r.prompt.proposals.at(0), "/data/PLANT.CSV");
}

TEST(SetLoggingWindow, ACancelledDialogChangesNothing) {
    Rig r;
    r.st.logging.LogFileName = "C:\\LOG\\PLANT.CSV";
    r.st.logging.LogDirectory = "C:\\LOG\\";
    r.open();
    r.button("ComFile")->click();
    EXPECT_EQ(r.st.logging.LogFileName, "C:\\LOG\\PLANT.CSV");
    EXPECT_EQ(r.st.logging.LogDirectory, "C:\\LOG\\");
    EXPECT_EQ(r.fileBox()->text(), "C:\\LOG\\PLANT.CSV");
}

TEST(SetLoggingWindow, TheDailyBoxAppliesAtOnceFromTheMouseAndTheKeyboard) {
    Rig r;
    r.open();
    r.check("ChkDaily")->click();
    EXPECT_EQ(r.st.logging.DailyFiles, 1);
    QTest::keyClick(r.check("ChkDaily"), Qt::Key_Space);
    EXPECT_EQ(r.st.logging.DailyFiles, 0);
    r.check("ChkDaily")->click();
    r.w->close();  // without Exit: the daily box has already taken effect
    EXPECT_EQ(r.st.logging.DailyFiles, 1);
}

TEST(SetLoggingWindow, TheOtherBoxesWaitForExit) {
    Rig r;
    r.open();
    r.opt("OptDateFormat2")->setChecked(true);
    r.check("ChkTime")->click();
    r.check("ChkDate")->click();
    r.check("NewFile")->click();
    EXPECT_EQ(r.st.logging.DateFormatUS, 0);
    EXPECT_EQ(r.st.logging.OverwriteFile, 0);
    r.button("ComExit")->click();
    const LogSettings& l = r.st.logging;
    EXPECT_EQ(l.DateFormatUS, -1);
    EXPECT_EQ(l.LogTimeColumn, Variant::integer(1));
    EXPECT_EQ(l.LogDateColumn, Variant::integer(1));
    EXPECT_EQ(l.OverwriteFile, 1);
    EXPECT_EQ(l.DailyFiles, 0);
    EXPECT_FALSE(r.w->isVisible());
    EXPECT_TRUE(r.prompt.inner.messages.empty());
}

TEST(SetLoggingWindow, ExitStoresClearedBoxesToo) {
    Rig r;
    r.st.logging.DateFormatUS = -1;
    r.st.logging.LogTimeColumn = Variant::integer(1);
    r.st.logging.LogDateColumn = Variant::integer(1);
    r.st.logging.OverwriteFile = 1;
    r.open();
    r.opt("OptDateFormat1")->setChecked(true);
    r.check("ChkTime")->click();
    r.check("ChkDate")->click();
    r.check("NewFile")->click();
    r.button("ComExit")->click();
    EXPECT_EQ(r.st.logging.DateFormatUS, 0);
    EXPECT_EQ(r.st.logging.LogTimeColumn, Variant::integer(0));
    EXPECT_EQ(r.st.logging.LogDateColumn, Variant::integer(0));
    EXPECT_EQ(r.st.logging.OverwriteFile, 0);
}

TEST(SetLoggingWindow, ClosingWithoutExitKeepsTheColumnsAsTheyWere) {
    Rig r;
    r.open();
    r.check("ChkTime")->click();
    r.opt("OptDateFormat2")->setChecked(true);
    r.w->close();
    EXPECT_EQ(r.st.logging.LogTimeColumn, Variant::integer(0));
    EXPECT_EQ(r.st.logging.DateFormatUS, 0);
}

}  // namespace kova
