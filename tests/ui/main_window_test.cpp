#include "app/main_window.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QAction>
#include <QCheckBox>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QTextBrowser>
#include <filesystem>
#include <sstream>

#include "app/help_window.h"
#include "core/configuration.h"
#include "core/fault.h"
#include "core/forms/periods_form.h"
#include "daq/driver_dispatch.h"
#include "daq/sim/qrtu_simulator.h"
#include "logging/log_switch.h"
#include "logging/log_writer.h"
#include "platform/simulated_bus.h"
#include "platform/steady_clock.h"
#include "platform/tick_trace.h"
#include "support/test_support.h"
#include "tags/tag_table.h"
#include "ui/ui_support.h"

namespace kova::app {

namespace {

struct Rig {
    test::TempFolder folder;
    Station st;
    test::ScriptedPrompter prompt;
    std::ostringstream errors;
    std::unique_ptr<MainWindow> w;
    Rig() {
        st.workingFolder = folder.path();
        w = std::make_unique<MainWindow>(st, &prompt, &errors);
    }
    QAction* action(const char* name) { return test::child<QAction>(w.get(), name); }
    QPushButton* button(const char* name) { return test::child<QPushButton>(w.get(), name); }
    QCheckBox* box(const char* name) { return test::child<QCheckBox>(w.get(), name); }
    QWidget* opened(const char* kind) { return w->windows().find(kind); }
    // The caption with the setup file's name; the temporary working folder is not under
    // the home folder, so it shows in full.
    QString title(const char* setup) const {
        return QString("KOVA - %1 - %2")
            .arg(setup, QString::fromStdString(folder.path().string()));
    }
};

void expectItems(QMenu* menu, const std::vector<std::pair<std::string, std::string>>& expected) {
    ASSERT_NE(menu, nullptr);
    const auto actions = menu->actions();
    ASSERT_EQ(actions.size(), static_cast<qsizetype>(expected.size()))
        << menu->title().toStdString();
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(actions[static_cast<qsizetype>(i)]->objectName().toStdString(),
                  expected[i].first);
        EXPECT_EQ(actions[static_cast<qsizetype>(i)]->text().toStdString(), expected[i].second);
        EXPECT_TRUE(actions[static_cast<qsizetype>(i)]->isEnabled()) << expected[i].first;
    }
}

}  // namespace

TEST(MainWindow, TitleNamesTheProgramTheSetupFileInUseAndTheWorkingFolder) {
    Rig r;
    r.w->startUp();
    EXPECT_EQ(r.w->windowTitle(), r.title("Default.Suf"));
    EXPECT_EQ(r.w->objectName(), "MainFrm");
}

TEST(MainWindow, MenuBarHasTheFiveMenusInOrder) {
    Rig r;
    const auto top = r.w->menuBar()->actions();
    ASSERT_EQ(top.size(), 5);
    EXPECT_EQ(top[0]->text(), "&File");
    EXPECT_EQ(top[1]->text(), "&SetUp");
    EXPECT_EQ(top[2]->text(), "&View");
    EXPECT_EQ(top[3]->text(), "&PrinterPort");
    EXPECT_EQ(top[4]->text(), "&Help");
    EXPECT_EQ(top[4]->objectName(), "Help");
    EXPECT_EQ(top[4]->menu(), nullptr);  // Help is a command of the menu bar itself
}

TEST(MainWindow, FileMenuItems) {
    Rig r;
    expectItems(r.w->menuBar()->actions()[0]->menu(), {{"FileNew", "&New"},
                                                       {"FileLoad", "&Load"},
                                                       {"FileSave", "&Save"},
                                                       {"FileSaveAs", "Save&As"},
                                                       {"FileExit", "E&xit"}});
}

TEST(MainWindow, SetUpMenuItemsWithTheLoggingSubmenu) {
    Rig r;
    QMenu* setup = r.w->menuBar()->actions()[1]->menu();
    expectItems(setup, {{"SetUpTags", "&Tags"},
                        {"SetPeriods", "&Periods"},
                        {"SetUpScreens", "&Screens"},
                        {"SetUpTrends", "T&rends"},
                        {"", "&Logging"},
                        {"Alarms", "&Alarms"},
                        {"Control", "&Control Language"},
                        {"Calibration", "C&alibration"}});
    QMenu* logging = setup->actions()[4]->menu();
    ASSERT_NE(logging, nullptr);
    EXPECT_EQ(logging->objectName(), "Logging");
    expectItems(logging, {{"Parameters", "&Parameters"}, {"StartStop", "&StartStop"}});
}

TEST(MainWindow, ViewMenuItems) {
    Rig r;
    expectItems(r.w->menuBar()->actions()[2]->menu(), {{"ViewReadings", "&Readings"},
                                                       {"MinMax", "&Min Max Readings"},
                                                       {"ViewTrends", "&Trends"},
                                                       {"AlarmView", "&Alarms"},
                                                       {"History", "&History"}});
}

TEST(MainWindow, PrinterPortMenuItems) {
    Rig r;
    expectItems(r.w->menuBar()->actions()[3]->menu(),
                {{"PrinterAddress", "&Address"}, {"SetupDAQ", "&DAQ Type"}});
}

TEST(MainWindow, FourRunButtonsWithTheirCaptions) {
    Rig r;
    EXPECT_EQ(r.button("CmdPoll")->text(), "Poll I/O");
    EXPECT_EQ(r.button("CmdLog")->text(), "Log Data");
    EXPECT_EQ(r.button("CmdAlarms")->text(), "Alarms");
    EXPECT_EQ(r.button("CmdControl")->text(), "Control");
    EXPECT_NE(r.w->findChild<QLabel*>("StatusBar1"), nullptr);
    EXPECT_NE(r.w->findChild<QLabel*>("LogStatus"), nullptr);
}

TEST(MainWindow, CheckBoxesCannotBeSetByTheUser) {
    Rig r;
    r.w->show();
    QCheckBox* opt = r.box("OptPoll");
    QTest::mouseClick(opt, Qt::LeftButton);
    EXPECT_FALSE(opt->isChecked());
    EXPECT_FALSE(r.st.switches.PollEnabled);
    EXPECT_EQ(opt->focusPolicy(), Qt::NoFocus);
}

TEST(MainWindow, PollButtonTogglesPollingAndItsBox) {
    Rig r;
    r.w->show();
    QTest::mouseClick(r.button("CmdPoll"), Qt::LeftButton);
    EXPECT_TRUE(r.st.switches.PollEnabled);
    EXPECT_TRUE(r.box("OptPoll")->isChecked());
    QTest::mouseClick(r.button("CmdPoll"), Qt::LeftButton);
    EXPECT_FALSE(r.st.switches.PollEnabled);
    EXPECT_FALSE(r.box("OptPoll")->isChecked());
}

TEST(MainWindow, AlarmsButtonTogglesAlarmsAndItsBox) {
    Rig r;
    r.button("CmdAlarms")->click();
    EXPECT_EQ(r.st.switches.AlarmsEnabled, 1);
    EXPECT_TRUE(r.box("OptAlarm")->isChecked());
    r.button("CmdAlarms")->click();
    EXPECT_EQ(r.st.switches.AlarmsEnabled, 0);
    EXPECT_FALSE(r.box("OptAlarm")->isChecked());
}

TEST(MainWindow, ControlButtonTogglesControlAndItsBox) {
    Rig r;
    r.button("CmdControl")->click();
    EXPECT_EQ(r.st.switches.ControlsEnabled, 1);
    EXPECT_TRUE(r.box("OptControl")->isChecked());
    r.button("CmdControl")->click();
    EXPECT_EQ(r.st.switches.ControlsEnabled, 0);
    EXPECT_FALSE(r.box("OptControl")->isChecked());
}

TEST(MainWindow, LogDataWithoutALogFileNameSaysSoAndLeavesLoggingOff) {
    Rig r;
    r.st.logging.LogFileName.clear();
    r.button("CmdLog")->click();
    ASSERT_EQ(r.prompt.messages.size(), 1u);
    EXPECT_EQ(r.prompt.messages[0].text, "Error No Log File Name Has Been Entered");
    EXPECT_FALSE(r.st.switches.LoggingEnabled.isOn());
    EXPECT_FALSE(r.box("OptLog")->isChecked());
}

TEST(MainWindow, EveryTickMirrorsTheSwitchesChangedElsewhere) {
    Rig r;
    r.st.periods.LogPeriod = 100;  // no log record (and no log file) is due in this test
    r.st.switches.PollEnabled = true;
    r.st.switches.LoggingEnabled = Variant::integer(1);
    r.st.switches.AlarmsEnabled = 1;
    r.st.switches.ControlsEnabled = 1;
    EXPECT_FALSE(r.box("OptPoll")->isChecked());
    r.w->tick();
    EXPECT_TRUE(r.box("OptPoll")->isChecked());
    EXPECT_TRUE(r.box("OptLog")->isChecked());
    EXPECT_TRUE(r.box("OptAlarm")->isChecked());
    EXPECT_TRUE(r.box("OptControl")->isChecked());
    r.st.switches.AlarmsEnabled = 0;
    r.st.switches.LoggingEnabled = Variant::integer(0);
    r.w->tick();
    EXPECT_FALSE(r.box("OptAlarm")->isChecked());
    EXPECT_FALSE(r.box("OptLog")->isChecked());
    EXPECT_TRUE(r.box("OptControl")->isChecked());
}

TEST(MainWindow, TheScanTimerIsPreciseAndTheScanSetsItsInterval) {
    Rig r;
    EXPECT_EQ(r.w->scanTimer()->timerType(), Qt::PreciseTimer);
    EXPECT_EQ(r.w->scanTimer()->objectName(), "HiTime2");
    r.st.periods.IOPeriod = 250;
    r.st.periods.IOUnits = kUnitMs;
    r.w->tick();
    EXPECT_EQ(r.w->scanTimer()->interval(), 250);
    r.st.periods.IOPeriod = 5;
    r.st.periods.IOUnits = kUnitSeconds;
    r.w->tick();
    EXPECT_EQ(r.w->scanTimer()->interval(), 1000);
}

TEST(MainWindow, TheScanRunsFromTheTimerWhileTheGuiStaysLive) {
    Rig r;
    r.st.periods.IOPeriod = 50;
    r.st.periods.IOUnits = kUnitMs;
    r.w->show();
    r.w->startScan();
    EXPECT_TRUE(r.w->scanTimer()->isActive());
    r.st.switches.AlarmsEnabled = 1;
    EXPECT_TRUE(QTest::qWaitFor([&] { return r.box("OptAlarm")->isChecked(); }, 2000));
    EXPECT_EQ(r.w->scanTimer()->interval(), 50);
    // A button still works between ticks.
    QTest::mouseClick(r.button("CmdControl"), Qt::LeftButton);
    EXPECT_EQ(r.st.switches.ControlsEnabled, 1);
}

TEST(MainWindow, AQrtuThatStopsAnsweringIsToldOnceInTheStatusBarAndTheScanGoesOn) {
    Rig r;
    SimulatedBus bus;
    QrtuSimulator sim;
    SteppingSteadyClock clock(std::chrono::milliseconds(1));
    r.st.platform.port = &bus;
    r.st.platform.steady = &clock;
    BuildIOList(r.st.profile, kDaqQrtu);
    Tag& t = r.st.tags[1];
    t.TagName = "IN1";
    BindIOName(t, "AI-1");
    t.Address = 1;
    RebuildModuleSummary(r.st);
    SelectPort(r.st, 1, 0);
    sim.attach(bus, 0x378);
    sim.setConversionReads(-1);  // its conversion-done bit never comes
    r.st.switches.PollEnabled = true;
    r.w->tick();
    EXPECT_EQ(r.w->statusText(),
              "The QRTU on LPT 1 (0x378) is not answering: its analog inputs read -1");
    EXPECT_TRUE(r.prompt.messages.empty());  // the status bar only: no box in the way
    r.w->findChild<QLabel*>("StatusBar1")->clear();
    r.w->tick();
    r.w->tick();
    EXPECT_EQ(r.w->statusText(), "");  // told once
    EXPECT_TRUE(r.box("OptPoll")->isChecked());
    sim.detach();
}

TEST(MainWindow, ALogFileDeletedWhileLoggingIsToldOnceInTheStatusBar) {
    Rig r;
    r.st.tags[1].TagName = "TANK";
    r.st.tags[1].Label = "Tank";
    r.st.tags[1].Log = 1;
    r.st.logging.LogFileName = (r.folder / "PLANT.CSV").string();
    r.st.logging.OverwriteFile = 1;
    ASSERT_TRUE(ToggleLogging(r.st));
    WriteLogRecord(r.st);
    std::filesystem::remove(r.folder / "PLANT.CSV");
    WriteLogRecord(r.st);  // as the scan writes its next record
    r.w->tick();
    const std::string told = "Log file \"" + r.st.logging.LogFileName +
                             "\" was renamed or deleted while logging: it was started again "
                             "with its header, and logging goes on";
    EXPECT_EQ(r.w->statusText().toStdString(), told);
    EXPECT_NE(r.errors.str().find(told), std::string::npos);
    EXPECT_TRUE(r.prompt.messages.empty());  // no box in the way of the scan
    r.w->findChild<QLabel*>("StatusBar1")->clear();
    r.w->tick();
    EXPECT_EQ(r.w->statusText(), "");  // told once
    EXPECT_EQ(test::ReadFileBytes(r.folder / "PLANT.CSV").rfind("LOG PERIOD,Tank\r\n", 0), 0u);
}

TEST(MainWindow, AFaultInTheScanIsReportedOnceWhileItRepeats) {
    Rig r;
    // A digital input tag on channel 17 faults on every scan.
    auto faulting = [&] {
        r.w->errorReport().guardTick([] { throwBounds("DigitalInputs", 17, 1, 16); });
    };
    faulting();
    faulting();
    faulting();
    QTest::qWait(20);  // the box opens from the event loop
    ASSERT_EQ(r.prompt.messages.size(), 1u);
    EXPECT_EQ(r.prompt.messages[0].title, "KOVA");
    EXPECT_NE(r.prompt.messages[0].text.find("Subscript out of range"), std::string::npos);
    EXPECT_TRUE(r.w->statusText().startsWith("Run-time error: Subscript out of range"));
    EXPECT_NE(r.errors.str().find("Subscript out of range"), std::string::npos);
    r.w->tick();  // a tick that completes clears it
    faulting();
    QTest::qWait(20);
    EXPECT_EQ(r.prompt.messages.size(), 2u);
}

TEST(MainWindow, TheScanGoesOnWhileAFaultsMessageIsUp) {
    test::TempFolder folder;
    Station st;
    st.workingFolder = folder.path();
    // A prompter whose message box stays up for 400 ms, running the event loop meanwhile.
    struct SlowPrompter final : Prompter {
        int shown = 0;
        void message(const std::string&, const std::string&) override {
            ++shown;
            QTest::qWait(400);
        }
        bool askYesNo(const std::string&, const std::string&, DefaultAnswer) override {
            return false;
        }
        SaveChoice askSaveDiscardCancel(const std::string&, const std::string&) override {
            return SaveChoice::Cancel;
        }
        std::optional<std::string> input(const std::string&, const std::string&) override {
            return {};
        }
        std::optional<std::string> chooseFile(const std::string&, const std::string&,
                                              const std::string&, bool) override {
            return {};
        }
    } slow;
    std::ostringstream errors;
    MainWindow w(st, &slow, &errors);
    w.startUp();
    st.periods = {50, kUnitMs, 1, kUnitSeconds, 0};
    // A digital input tag on channel 17: every scan faults (the inputs are 1..16).
    st.tags[1].TagName = "BAD";
    st.tags[1].Kind = kDigital;
    st.tags[1].Direction = kInput;
    st.tags[1].Address = 1;
    st.tags[1].IONumber = 17;
    int ticks = 0;
    QObject::connect(w.scanTimer(), &QTimer::timeout, [&] { ++ticks; });
    w.startScan();
    QTest::qWait(700);
    w.scanTimer()->stop();
    EXPECT_EQ(slow.shown, 1);
    EXPECT_GE(ticks, 8);  // about 14 ticks of 50 ms, most of them while the box was up
}

TEST(MainWindow, PeriodsOpensOnceAndASecondClickBringsItToTheFront) {
    Rig r;
    r.w->show();
    r.action("SetPeriods")->trigger();
    QWidget* first = r.opened("Periods");
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->windowTitle(), "I/O And Logging Periods");
    EXPECT_TRUE(first->isVisible());
    EXPECT_FALSE(first->isModal());
    r.action("SetPeriods")->trigger();
    EXPECT_EQ(r.opened("Periods"), first);
    EXPECT_EQ(r.w->findChildren<PeriodsWindow*>().size(), 1);
}

TEST(MainWindow, DaqTypeOpensFromThePrinterPortMenu) {
    Rig r;
    r.action("SetupDAQ")->trigger();
    QWidget* w = r.opened("DaqType");
    ASSERT_NE(w, nullptr);
    EXPECT_EQ(w->windowTitle(), "DAQ Type");
    EXPECT_FALSE(w->isModal());
}

TEST(MainWindow, AClosedWindowOpensAfreshNextTime) {
    Rig r;
    r.action("SetupDAQ")->trigger();
    QWidget* first = r.opened("DaqType");
    ASSERT_NE(first, nullptr);
    first->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(r.opened("DaqType"), nullptr);
    r.action("SetupDAQ")->trigger();
    EXPECT_NE(r.opened("DaqType"), nullptr);
}

TEST(MainWindow, ChangingTheDaqTypeShowsOnTheMainWindow) {
    Rig r;
    r.action("SetupDAQ")->trigger();
    QWidget* w = r.opened("DaqType");
    ASSERT_NE(w, nullptr);
    test::child<QRadioButton>(w, "OptDaqType1")->setChecked(true);
    test::child<QPushButton>(w, "CmdExit")->click();
    EXPECT_EQ(r.st.profile.TypeString, "QRT105");
    EXPECT_EQ(test::child<QLabel>(r.w.get(), "LblModule")->text(), "DAQ Type: QRT105");
}

TEST(MainWindow, CalibrationWithAModuleWithoutAnalogInputsShowsTheMessageAndOpensNothing) {
    Rig r;
    BuildIOList(r.st.profile, kDaqQrt115);
    r.action("Calibration")->trigger();
    ASSERT_EQ(r.prompt.messages.size(), 1u);
    EXPECT_EQ(r.prompt.messages[0],
              (test::Shown{"The QRT115 Module Has No Analog Inputs", "ERROR"}));
    EXPECT_EQ(r.w->windows().openCount(), 0);
}

TEST(MainWindow, EveryWindowItemOpensItsWindowOnceAndASecondClickRaisesIt) {
    Rig r;
    r.w->startUp();
    const char* items[] = {"SetUpTags",   "SetPeriods",   "SetUpScreens",   "SetUpTrends",
                           "Parameters",  "StartStop",    "Alarms",         "Control",
                           "Calibration", "ViewReadings", "MinMax",         "ViewTrends",
                           "AlarmView",   "History",      "PrinterAddress", "SetupDAQ"};
    int open = 0;
    for (const char* name : items) {
        QAction* a = r.action(name);
        ASSERT_NE(a, nullptr) << name;
        a->trigger();
        EXPECT_EQ(r.w->windows().openCount(), ++open) << name << " opened no window";
        a->trigger();
        EXPECT_EQ(r.w->windows().openCount(), open) << name << " opened a second window";
        EXPECT_FALSE(r.w->statusText().contains("not part of this version")) << name;
    }
    EXPECT_TRUE(r.prompt.messages.empty());
}

TEST(MainWindow, TheControlBoxFollowsTheControlWindowAtOnce) {
    Rig r;
    r.w->startUp();
    r.st.switches.ControlsEnabled = 1;
    r.button("CmdControl")->click();  // off
    r.button("CmdControl")->click();  // on again
    ASSERT_TRUE(r.box("OptControl")->isChecked());
    r.action("Control")->trigger();
    QWidget* w = r.opened("ControlLanguage");
    ASSERT_NE(w, nullptr);
    EXPECT_EQ(w->windowTitle(), "Control Language");
    test::child<QCheckBox>(w, "ChkEnableControl")->setChecked(false);
    test::child<QPushButton>(w, "CmdExit")->click();
    EXPECT_EQ(r.st.switches.ControlsEnabled, 0);
    EXPECT_FALSE(r.box("OptControl")->isChecked());  // without waiting for a tick
}

TEST(MainWindow, TheAlarmsBoxFollowsTheAlarmSetUpWindowAtOnce) {
    Rig r;
    r.w->startUp();
    ASSERT_FALSE(r.box("OptAlarm")->isChecked());
    r.action("Alarms")->trigger();
    QWidget* w = r.opened("AlarmSetup");
    ASSERT_NE(w, nullptr);
    EXPECT_EQ(w->windowTitle(), "Alarm Set Up");
    test::child<QCheckBox>(w, "ChkEnableAlm")->setChecked(true);
    test::child<QPushButton>(w, "Exit")->click();
    EXPECT_EQ(r.st.switches.AlarmsEnabled, 1);
    EXPECT_TRUE(r.box("OptAlarm")->isChecked());  // without waiting for a tick
}

TEST(MainWindow, TheAlarmListAndMinMaxWindowsOpenFromTheViewMenu) {
    Rig r;
    r.w->startUp();
    r.action("AlarmView")->trigger();
    ASSERT_NE(r.opened("AlarmList"), nullptr);
    EXPECT_EQ(r.opened("AlarmList")->windowTitle(), "Alarms");
    r.action("MinMax")->trigger();
    ASSERT_NE(r.opened("MinMax"), nullptr);
    EXPECT_EQ(r.opened("MinMax")->windowTitle(), "Maximum And Minimum Readings");
    EXPECT_TRUE(r.prompt.messages.empty());
}

TEST(MainWindow, HelpOpensTheHelpDocumentAtItsIntroduction) {
    Rig r;
    r.action("Help")->trigger();
    auto* help = qobject_cast<HelpWindow*>(r.opened("Help"));
    ASSERT_NE(help, nullptr);
    EXPECT_EQ(help->windowTitle(), "KOVA Help");
    EXPECT_EQ(help->browser()->source().fragment(), "Introduction");
    EXPECT_TRUE(help->browser()->toPlainText().contains("Introduction"));
    r.action("Help")->trigger();
    EXPECT_EQ(r.opened("Help"), help);
}

TEST(MainWindow, FileNewSaysTheConfigurationIsSetToDefault) {
    Rig r;
    r.action("FileNew")->trigger();
    ASSERT_EQ(r.prompt.messages.size(), 1u);
    EXPECT_EQ(r.prompt.messages[0], (test::Shown{"Configuration Set to Default", "KOVA"}));
}

TEST(MainWindow, FileLoadAsksWithTheOpenSetUpDialog) {
    Rig r;
    r.action("FileLoad")->trigger();  // cancelled
    ASSERT_EQ(r.prompt.fileDialogs.size(), 1u);
    EXPECT_EQ(r.prompt.fileDialogs[0],
              (test::Shown{"Open SetUp File", "All Files (*.SUF)|*.SUF|"}));
    EXPECT_TRUE(r.prompt.messages.empty());
}

TEST(MainWindow, FileSaveAndSaveAsAskWithTheSaveSetUpDialog) {
    Rig r;
    r.action("FileSave")->trigger();
    r.action("FileSaveAs")->trigger();
    ASSERT_EQ(r.prompt.fileDialogs.size(), 2u);
    EXPECT_EQ(r.prompt.fileDialogs[0], (test::Shown{"Save SetUp File", "All Files (*.SUF)|*.SUF"}));
    EXPECT_EQ(r.prompt.fileDialogs[1], (test::Shown{"Save SetUp File", "All Files (*.SUF)|*.SUF"}));
}

TEST(MainWindow, FileExitClosesTheMainWindowAndEveryOpenWindow) {
    Rig r;
    r.w->show();
    r.w->startScan();
    r.action("SetPeriods")->trigger();
    r.action("SetupDAQ")->trigger();
    r.action("FileExit")->trigger();
    EXPECT_FALSE(r.w->isVisible());
    EXPECT_FALSE(r.w->scanTimer()->isActive());
    EXPECT_EQ(r.w->windows().openCount(), 0);
}

TEST(MainWindow, TheMainWindowPlugsItsSeamsIntoTheStationAndGivesThemBack) {
    test::TempFolder folder;
    Station st;
    Prompter* before = st.platform.prompter;
    {
        test::ScriptedPrompter prompt;
        MainWindow w(st, &prompt);
        EXPECT_EQ(st.platform.prompter, &prompt);
        st.platform.status->setStatusText("ALARM TANK HIGH");
        EXPECT_EQ(w.statusText(), "ALARM TANK HIGH");
        st.platform.timer->setInterval(300);
        EXPECT_EQ(w.scanTimer()->interval(), 300);
    }
    EXPECT_EQ(st.platform.prompter, before);
}

TEST(MainWindow, AZeroIntervalFromAFileRunsAtOneMillisecond) {
    Rig r;
    r.st.platform.timer->setInterval(0);
    EXPECT_EQ(r.w->scanTimer()->interval(), 1);
}

}  // namespace kova::app

namespace kova::app {

TEST(MainWindow, CalibrationOpensForTheTestModule) {
    Rig r;
    r.action("Calibration")->trigger();
    QWidget* w = r.opened("Calibration");
    ASSERT_NE(w, nullptr);
    EXPECT_EQ(w->windowTitle(), "Calibrate QRT105 Analog To Digital Convertor");
    EXPECT_TRUE(r.prompt.messages.empty());
}

TEST(MainWindow, PrinterAddressOpensTheSetPrinterPortAddressWindow) {
    Rig r;
    r.action("PrinterAddress")->trigger();
    QWidget* w = r.opened("PrinterAddress");
    ASSERT_NE(w, nullptr);
    EXPECT_EQ(w->windowTitle(), "Set Printer Port Address");
}

TEST(MainWindow, StartUpWithoutDefaultSufUsesTheDefaultsSilentlyAndMakesTheCalibrationFile) {
    Rig r;
    r.w->startUp();
    EXPECT_TRUE(r.prompt.messages.empty());
    EXPECT_EQ(r.st.periods, Periods{});
    EXPECT_EQ(r.st.profile.TypeString, "TEST");
    EXPECT_EQ(r.st.setupFileName, (r.folder / "Default.Suf").string());
    EXPECT_TRUE(std::filesystem::exists(r.folder / "KOVA_P.CAL"));
}

TEST(MainWindow, ABadDefaultSufIsSilentAndGivesTheDefaults) {
    Rig r;
    test::WriteFileBytes(r.folder / "Default.Suf", "garbage");
    r.w->startUp();
    EXPECT_TRUE(r.prompt.messages.empty());
    EXPECT_NE(r.errors.str().find("Default.Suf"), std::string::npos);  // noted for whoever looks
    EXPECT_EQ(r.st.periods, Periods{});
    EXPECT_EQ(r.w->windowTitle(), r.title("Default.Suf"));
}

TEST(MainWindow, StartUpLoadsDefaultSufFromTheWorkingFolder) {
    Rig r;
    {
        Station saved;
        saved.periods = {250, kUnitMs, 2, kUnitSeconds, -1};
        BuildIOList(saved.profile, kDaqQrtu);
        saved.tags[1].TagName = "TANK";
        SaveConfiguration(saved, r.folder / "Default.Suf");
    }
    r.w->startUp();
    EXPECT_EQ(r.st.periods, (Periods{250, kUnitMs, 2, kUnitSeconds, -1}));
    EXPECT_EQ(r.st.profile.TypeString, "QRTU");
    EXPECT_EQ(r.st.tags[1].TagName, "TANK");
    EXPECT_EQ(test::child<QLabel>(r.w.get(), "LblModule")->text(), "DAQ Type: QRTU");
    r.w->tick();
    EXPECT_EQ(r.w->scanTimer()->interval(), 250);
}

TEST(MainWindow, AnUnreadableCalibrationFileIsNamed) {
    Rig r;
    test::WriteFileBytes(r.folder / "KOVA_P.CAL", "four thousand\r\n");
    r.w->startUp();
    ASSERT_EQ(r.prompt.messages.size(), 1u);
    EXPECT_NE(r.prompt.messages[0].text.find("KOVA_P.CAL"), std::string::npos);
    EXPECT_EQ(r.st.calibration, CalibrationData{});
}

TEST(MainWindow, FileLoadThenSaveAsRoundTripsAndRetitles) {
    Rig r;
    r.w->startUp();
    r.st.periods = {500, kUnitMs, 5, kUnitSeconds, 0};
    const auto plant = r.folder / "PLANT.SUF";
    r.prompt.fileAnswers.push_back(plant.string());
    r.action("FileSaveAs")->trigger();
    EXPECT_EQ(r.w->windowTitle(), r.title("PLANT.SUF"));
    EXPECT_EQ(std::filesystem::file_size(plant) % 128, 0u);
    r.action("FileNew")->trigger();
    EXPECT_EQ(r.st.periods, Periods{});
    r.prompt.fileAnswers.push_back(plant.string());
    r.prompt.saveAnswers = {SaveChoice::Discard};  // the defaults New set are not kept
    r.action("FileLoad")->trigger();
    EXPECT_EQ(r.prompt.saveQuestions.size(), 1u);
    EXPECT_EQ(r.st.periods, (Periods{500, kUnitMs, 5, kUnitSeconds, 0}));
    EXPECT_EQ(r.w->windowTitle(), r.title("PLANT.SUF"));
}

TEST(MainWindow, LoggingStartsWithALogFileNameAndFileExitClosesTheFile) {
    Rig r;
    r.w->startUp();
    r.st.logging.LogDirectory = r.folder.path().string() + "/";
    r.st.logging.LogFileName = (r.folder / "RUN.CSV").string();
    r.button("CmdLog")->click();
    EXPECT_TRUE(r.st.switches.LoggingEnabled.isOn());
    EXPECT_TRUE(r.box("OptLog")->isChecked());
    EXPECT_TRUE(std::filesystem::exists(r.folder / "RUN.CSV"));
    r.action("FileExit")->trigger();
    EXPECT_FALSE(r.w->isVisible());
    // The file was closed: logging on again reopens it without a fault.
    r.prompt.messages.clear();
    r.button("CmdLog")->click();
    r.button("CmdLog")->click();
    EXPECT_TRUE(r.prompt.messages.empty());
}

TEST(MainWindow, PollingTheTestModuleMovesAnAnalogTag) {
    Rig r;
    r.w->startUp();
    Tag& t = r.st.tags[1];
    t.TagName = "LEVEL";
    t.IOName = "AI-1";
    t.Address = 1;
    t.Kind = kAnalog;
    t.Direction = kInput;
    t.IONumber = 1;
    t.RawValue1 = 0;
    t.EngValue1 = 0;
    t.RawValue2 = 4095;
    t.EngValue2 = 4095;
    ComputeScaling(t);
    r.st.periods = {50, kUnitMs, 50, kUnitMs, 0};
    r.button("CmdPoll")->click();
    r.w->tick();
    const float first = t.Value;
    r.w->tick();
    EXPECT_NE(t.Value, first);
    EXPECT_GE(t.Value, 200.0f);  // AI-1 of the TEST module reads 200 upwards
}

namespace {
// True when a status field shows its whole text at its present size: wrapped onto as many
// lines as it needs, with nothing cut off.
bool readWhole(QLabel* field) {
    const int inner = field->contentsRect().width();
    const QRect needed = field->fontMetrics().boundingRect(QRect(0, 0, inner, 10000),
                                                           Qt::TextWordWrap, field->text());
    return field->wordWrap() && needed.width() <= inner &&
           needed.height() <= field->contentsRect().height();
}
QString accessibleText(QWidget* w, QAccessible::Text which) {
    QAccessibleInterface* a = QAccessible::queryAccessibleInterface(w);
    return a ? a->text(which) : QString();
}
}  // namespace

TEST(MainWindow, EveryStatusFieldIsReadWholeAtTheDefaultSizeAlsoWhileAnAlarmShows) {
    Rig r;
    r.w->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(r.w.get()));
    const QSize size = r.w->size();
    auto* status = r.w->findChild<QLabel*>("StatusBar1");
    auto* logging = r.w->findChild<QLabel*>("LogStatus");
    const QString port =
        "Printer port LPT 1 cannot be reached, the modules will read every line high, as with "
        "nothing connected. /dev/parport0: no such port (no parallel port driver loaded or no "
        "printer port). Direct port access at 0x378-0x37F: not available: this kernel is "
        "built without I/O port access. The QRT105 will read 4095 on every analog input and 7 "
        "on its digital inputs.";
    const QString alarm = "ALARM 11-15-2026 14:05:09 Oven temperature far too high";
    const QString log = "Logging: waiting for start condition, 32000 records to OVENLAB.CSV";
    for (const QString& line : {alarm, port}) {
        status->setText(line);
        logging->setText(log);
        r.w->fitStatusFields();  // as every tick does
        QTest::qWait(30);        // the layout settles
        // An alarm line fits the default size; a port that cannot be reached may take more
        // lines: the window grows taller for it, never narrower.
        EXPECT_EQ(r.w->width(), size.width());
        if (line == alarm) {
            EXPECT_EQ(r.w->size(), size);
        }
        EXPECT_TRUE(readWhole(status)) << line.toStdString();
        EXPECT_TRUE(readWhole(logging));
        EXPECT_TRUE(status->isVisible());
        EXPECT_TRUE(logging->isVisible());
        // A screen reader reads each field's text, and what the field is for.
        EXPECT_EQ(accessibleText(status, QAccessible::Name), line);
        EXPECT_EQ(accessibleText(logging, QAccessible::Name), log);
        EXPECT_EQ(accessibleText(logging, QAccessible::Description), "Logging status");
    }
}

TEST(MainWindow, TheLoggingFieldShowsWhatLoggingDoes) {
    Rig r;
    r.w->startUp();
    auto* logging = r.w->findChild<QLabel*>("LogStatus");
    EXPECT_EQ(logging->text(), "Logging off");
    EXPECT_EQ(accessibleText(logging, QAccessible::Name), "Logging off");
}

namespace {
// A main window whose configuration was loaded from PLANT.SUF and then changed.
struct Changed : Rig {
    std::filesystem::path file;
    Changed() {
        file = folder / "PLANT.SUF";
        st.tags[1].TagName = "LEVEL";
        SaveConfiguration(st, file);
        LoadConfiguration(st, file);
        st.tags[1].Label = "Tank level";  // typed in the tag editor
        w->show();
    }
    std::vector<test::Shown> saveQuestions() const { return prompt.saveQuestions; }
};
const test::Shown kQuestion{"Save changes to PLANT.SUF?", "KOVA"};
}  // namespace

TEST(MainWindow, NewLoadAndExitAskNothingWhenNothingChanged) {
    Rig r;
    r.w->show();
    r.action("FileNew")->trigger();
    r.action("FileLoad")->trigger();
    r.action("FileExit")->trigger();
    EXPECT_TRUE(r.prompt.saveQuestions.empty());
    EXPECT_FALSE(r.w->isVisible());
}

TEST(MainWindow, CancelLeavesEverythingAsItWas) {
    Changed r;
    r.action("FileNew")->trigger();
    r.action("FileLoad")->trigger();
    r.action("FileExit")->trigger();
    EXPECT_EQ(r.saveQuestions(), (std::vector<test::Shown>{kQuestion, kQuestion, kQuestion}));
    EXPECT_TRUE(r.prompt.messages.empty());     // no "Configuration Set to Default"
    EXPECT_TRUE(r.prompt.fileDialogs.empty());  // no "Open SetUp File"
    EXPECT_EQ(r.st.tags[1].Label, "Tank level");
    EXPECT_TRUE(r.w->isVisible());  // still running
}

TEST(MainWindow, DiscardGoesOnWithoutSaving) {
    Changed r;
    r.prompt.saveAnswers = {SaveChoice::Discard};
    r.action("FileNew")->trigger();
    EXPECT_EQ(r.prompt.messages,
              (std::vector<test::Shown>{{"Configuration Set to Default", "KOVA"}}));
    EXPECT_EQ(r.st.tags[1].TagName, "");
    Station reread;
    LoadConfiguration(reread, r.file);
    EXPECT_EQ(reread.tags[1].Label, "");  // the file was not written
}

TEST(MainWindow, SaveSavesThroughTheSaveDialogAndGoesOn) {
    Changed r;
    r.prompt.saveAnswers = {SaveChoice::Save};
    r.prompt.fileAnswers = {r.file.string()};
    r.action("FileExit")->trigger();
    EXPECT_EQ(r.prompt.fileDialogs,
              (std::vector<test::Shown>{{"Save SetUp File", "All Files (*.SUF)|*.SUF"}}));
    EXPECT_FALSE(r.w->isVisible());
    Station reread;
    LoadConfiguration(reread, r.file);
    EXPECT_EQ(reread.tags[1].Label, "Tank level");
}

TEST(MainWindow, ASaveThatIsCancelledStopsTheCommand) {
    Changed r;
    r.prompt.saveAnswers = {SaveChoice::Save};  // then the save dialog is cancelled
    r.action("FileNew")->trigger();
    EXPECT_EQ(r.prompt.fileDialogs.size(), 1u);
    EXPECT_TRUE(r.prompt.messages.empty());
    EXPECT_EQ(r.st.tags[1].TagName, "LEVEL");
}

TEST(MainWindow, ASaveThatFailsStopsTheCommand) {
    Changed r;
    r.prompt.saveAnswers = {SaveChoice::Save};
    r.prompt.fileAnswers = {(r.folder / "no such folder" / "PLANT.SUF").string()};
    r.action("FileExit")->trigger();
    EXPECT_TRUE(r.w->isVisible());
    ASSERT_EQ(r.prompt.messages.size(), 1u);  // the general error report names the file
    EXPECT_NE(r.prompt.messages[0].text.find("no such folder"), std::string::npos);
}

TEST(MainWindow, AfterSavingNothingIsAsked) {
    Changed r;
    r.prompt.fileAnswers = {r.file.string()};
    r.action("FileSave")->trigger();
    r.action("FileExit")->trigger();
    EXPECT_TRUE(r.prompt.saveQuestions.empty());
    EXPECT_FALSE(r.w->isVisible());
}

TEST(MainWindow, ReadingsThatMoveAreNoChangeToSave) {
    Changed r;
    r.st.switches.PollEnabled = true;
    BindIOName(r.st.tags[1], "AI-1");
    r.st.tags[1].Address = 1;
    r.st.tags[1].RawValue2 = 4095;
    r.st.tags[1].EngValue2 = 100;
    ComputeScaling(r.st.tags[1]);
    RebuildModuleSummary(r.st);
    r.st.periods.IOPeriod = 50;  // every tick scans
    r.st.periods.IOUnits = kUnitMs;
    RememberConfigurationAsSaved(r.st);
    const float before = r.st.tags[1].Value;
    for (int i = 0; i < 5; ++i) r.w->tick();  // the TEST module's values move
    EXPECT_NE(r.st.tags[1].Value, before);
    r.action("FileExit")->trigger();
    EXPECT_TRUE(r.prompt.saveQuestions.empty());
}

}  // namespace kova::app

namespace kova::app {

TEST(MainWindow, EachTickGoesToTheTickTraceWhenOneIsGiven) {
    Rig r;
    r.w->startUp();
    TickTrace trace;
    const auto path = r.folder / "ticks.txt";
    ASSERT_EQ(trace.open(path.string()), "");
    r.w->tick();  // not traced yet
    r.w->setTickTrace(&trace);
    r.w->tick();
    r.w->tick();
    r.w->setTickTrace(nullptr);
    r.w->tick();
    const std::string text = test::ReadFileBytes(path);
    int lines = 0;
    for (char c : text) lines += c == '\n';
    EXPECT_EQ(lines, 3);  // the heading and two ticks
    EXPECT_EQ(text.rfind(TickTrace::heading(), 0), 0u);
}

}  // namespace kova::app
