// The "View Readings" window: live values from its own timer, the operator's writes from
// value boxes and tick boxes, the navigation, keyboard use, and its place in the menus.
#include "displays/forms/readings_view_form.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QFocusEvent>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <sstream>

#include "app/main_window.h"
#include "daq/driver_dispatch.h"
#include "daq/sim/module_simulators.h"
#include "displays/forms/readings_setup_form.h"
#include "displays/screen_rig.h"
#include "platform/simulated_bus.h"
#include "support/test_support.h"
#include "ui/ui_support.h"

namespace kova {

namespace {
// Alt + key as the keyboard gives it: the button whose caption marks that letter is
// pressed. (Qt's offscreen platform delivers no shortcut events, so the mnemonic is looked
// up as Qt registers it; the real program is driven with Alt keys under Xvfb.)
void pressMnemonic(QWidget* window, Qt::Key key) {
    const QKeySequence wanted(QKeyCombination(Qt::AltModifier, key));
    for (QPushButton* b : window->findChildren<QPushButton*>())
        if (b->isVisible() && b->isEnabled() && QKeySequence::mnemonic(b->text()) == wanted) {
            b->animateClick();
            QTest::qWait(200);
            return;
        }
    ADD_FAILURE() << "no button answers Alt+" << QKeySequence(key).toString().toStdString();
}

struct Rig {
    test::ScreenRig r;
    std::ostringstream errors;
    ErrorReport report{r.st.platform, errors};
    std::unique_ptr<ReadingsViewWindow> w;
    explicit Rig(int daqType = kDaqQrt105) : r(daqType) {
        r.st.tags[test::kLevel].Value = 12.5f;
        r.st.tags[test::kValve].Value = 10.0f;
        r.st.tags[test::kDoor].Value = 1.0f;
        w = std::make_unique<ReadingsViewWindow>(r.st, report);
        w->show();
    }
    QLineEdit* box(const QString& name) {
        return test::child<QLineEdit>(w.get(), name.toLatin1().constData());
    }
    QLineEdit* value(int i) { return box(QString("TxtAn%1").arg(i)); }
    QCheckBox* tick(int i) {
        return test::child<QCheckBox>(w.get(), QString("ChkDig%1").arg(i).toLatin1().constData());
    }
    void click(const char* name) { test::child<QPushButton>(w.get(), name)->click(); }
    // The cursor goes into a value box, the operator types, and the cursor leaves by Tab.
    void type(int row, const QString& text) {
        QFocusEvent in(QEvent::FocusIn, Qt::TabFocusReason);
        QApplication::sendEvent(value(row), &in);
        value(row)->setText(text);
        QFocusEvent out(QEvent::FocusOut, Qt::TabFocusReason);
        QApplication::sendEvent(value(row), &out);
    }
};
}  // namespace

TEST(ReadingsViewWindow, CaptionControlsAndButtonsAreThoseOfTheWindow) {
    Rig g;
    EXPECT_EQ(g.w->objectName(), "ViewRead");
    EXPECT_EQ(g.w->windowTitle(), "Screen 1     Plant");
    EXPECT_EQ(g.box("TxtScreen")->text(), "Plant");
    EXPECT_EQ(test::child<QCheckBox>(g.w.get(), "VOptLog")->text(), "Logging Data");
    EXPECT_EQ(test::child<QPushButton>(g.w.get(), "CmdPrev")->text(), "&Previous");
    EXPECT_EQ(test::child<QPushButton>(g.w.get(), "CmdNext")->text(), "&Next");
    EXPECT_EQ(test::child<QPushButton>(g.w.get(), "CmdJump")->text(), "&Jump To");
    EXPECT_EQ(test::child<QPushButton>(g.w.get(), "ComExit")->text(), "E&xit");
    for (int i = 0; i < 10; ++i) {
        EXPECT_NE(g.w->findChild<QLineEdit*>(QString("TxtLabel%1").arg(i)), nullptr);
        EXPECT_NE(g.w->findChild<QLineEdit*>(QString("TxtUnits%1").arg(i)), nullptr);
        EXPECT_NE(g.w->findChild<QLabel*>(QString("LblDIP%1").arg(i)), nullptr);
        EXPECT_NE(g.w->findChild<QLineEdit*>(QString("TxtDig%1").arg(i)), nullptr);
    }
    EXPECT_EQ(g.w->readTimer()->objectName(), "ReadTimer");
    EXPECT_EQ(g.w->readTimer()->interval(), 1000);
    EXPECT_TRUE(g.w->readTimer()->isActive());
}

TEST(ReadingsViewWindow, ShowsTheScreensLines) {
    Rig g;
    EXPECT_EQ(g.box("TxtLabel0")->text(), "I-Tank Level");
    EXPECT_EQ(g.value(0)->text(), " 12.5");
    EXPECT_EQ(g.box("TxtUnits0")->text(), "%");
    EXPECT_EQ(g.box("TxtLabel1")->text(), "O-Valve Position");
    EXPECT_EQ(g.box("TxtLabel2")->text(), "V-Level Setpoint");
    EXPECT_EQ(g.box("TxtLabel9")->text(), "");
    EXPECT_EQ(g.value(9)->text(), "");
    EXPECT_EQ(test::child<QLabel>(g.w.get(), "LblDIP0")->text(), "I-Door Switch");
    EXPECT_EQ(g.box("TxtDig0")->text(), "CLOSED");
    EXPECT_TRUE(g.tick(0)->isChecked());
    EXPECT_EQ(g.box("TxtDig1")->text(), "OFF");
    EXPECT_FALSE(g.tick(1)->isChecked());
}

TEST(ReadingsViewWindow, EachTimerTickShowsTheNewValues) {
    Rig g;
    g.r.st.tags[test::kLevel].Value = 80.25f;
    g.r.st.tags[test::kDoor].Value = 0.0f;
    g.r.st.switches.LoggingEnabled = Variant::integer(1);
    g.r.st.logRun.LogState = 1;
    g.w->readTimerTick();
    EXPECT_EQ(g.value(0)->text(), " 80.25");
    EXPECT_EQ(g.box("TxtDig0")->text(), "OPEN");
    EXPECT_FALSE(g.tick(0)->isChecked());
    EXPECT_TRUE(test::child<QCheckBox>(g.w.get(), "VOptLog")->isChecked());
}

TEST(ReadingsViewWindow, TheTimerItselfRefreshesTheWindow) {
    Rig g;
    g.r.st.tags[test::kLevel].Value = 33.0f;
    g.w->readTimer()->setInterval(10);
    QTest::qWait(60);
    EXPECT_EQ(g.value(0)->text(), " 33");
}

TEST(ReadingsViewWindow, TypingIntoAnOutputWritesItAndTheNextTickSendsIt) {
    Rig g;
    g.type(1, "25");
    EXPECT_EQ(g.r.st.tags[test::kValve].Value, 25.0f);
    EXPECT_EQ(g.r.st.daq.AnalogOutputValues[1], 1000);
    EXPECT_EQ(g.r.st.daq.Summary.AnalogOutputsPending, -1);
    EXPECT_EQ(g.value(1)->text(), " 25");
    g.w->readTimerTick();
    EXPECT_EQ(g.r.st.daq.Summary.AnalogOutputsPending, 0);
}

TEST(ReadingsViewWindow, TextThatIsNoNumberIsIgnoredAndTheValueRestored) {
    Rig g;
    g.type(1, "lots");
    EXPECT_EQ(g.r.st.tags[test::kValve].Value, 10.0f);
    EXPECT_EQ(g.value(1)->text(), " 10");
    EXPECT_EQ(g.r.st.daq.Summary.AnalogOutputsPending, 0);
    EXPECT_TRUE(g.errors.str().empty());
}

TEST(ReadingsViewWindow, TheBoxBeingTypedInIsNotRefreshed) {
    Rig g;
    QFocusEvent in(QEvent::FocusIn, Qt::TabFocusReason);
    QApplication::sendEvent(g.value(2), &in);
    g.value(2)->setText("4");
    g.r.st.tags[test::kSetpt].Value = 99;
    g.r.st.tags[test::kLevel].Value = 7;
    g.w->readTimerTick();
    EXPECT_EQ(g.value(2)->text(), "4");
    EXPECT_EQ(g.value(0)->text(), " 7");
    // Another window taking the focus leaves the entry as it is.
    QFocusEvent away(QEvent::FocusOut, Qt::ActiveWindowFocusReason);
    QApplication::sendEvent(g.value(2), &away);
    g.w->readTimerTick();
    EXPECT_EQ(g.value(2)->text(), "4");
    EXPECT_EQ(g.r.st.tags[test::kSetpt].Value, 99.0f);
}

TEST(ReadingsViewWindow, EnterFinishesTheEntry) {
    Rig g;
    QApplication::setActiveWindow(g.w.get());
    g.value(2)->setFocus();
    g.value(2)->selectAll();
    QTest::keyClicks(g.value(2), "55");
    QTest::keyClick(g.value(2), Qt::Key_Return);
    EXPECT_EQ(g.r.st.tags[test::kSetpt].Value, 55.0f);
    EXPECT_FALSE(g.value(2)->hasFocus());
}

TEST(ReadingsViewWindow, TickingADigitalOutputSetsItsBitForTheNextTick) {
    Rig g;
    g.tick(2)->click();  // HEATER, DO-3
    EXPECT_EQ(g.r.st.tags[test::kHeater].Value, 1.0f);
    EXPECT_EQ(g.r.st.daq.DigitalOutputImage, 0x04);
    EXPECT_EQ(g.r.st.daq.Summary.DigitalOutputsPending, -1);
    g.w->readTimerTick();
    EXPECT_EQ(g.r.st.daq.Summary.DigitalOutputsPending, 0);
    EXPECT_EQ(g.box("TxtDig2")->text(), "HOT");
    g.tick(2)->click();
    EXPECT_EQ(g.r.st.daq.DigitalOutputImage, 0x00);
}

TEST(ReadingsViewWindow, AnInputsTickBoxTakesNoClick) {
    Rig g;
    EXPECT_FALSE(g.tick(0)->isEnabled());  // DOOR, an input: it only shows its state
    QTest::mouseClick(g.tick(0), Qt::LeftButton);
    EXPECT_TRUE(g.tick(0)->isChecked());
    EXPECT_EQ(g.r.st.tags[test::kDoor].Value, 1.0f);
    EXPECT_TRUE(g.tick(1)->isEnabled());  // PUMP, an output
}

TEST(ReadingsViewWindow, NextPreviousAndJumpTo) {
    Rig g;
    g.click("CmdJump");
    EXPECT_EQ(g.w->windowTitle(), "Screen 3     ");
    EXPECT_EQ(g.value(0)->text(), "");
    g.click("CmdPrev");
    g.click("CmdPrev");
    EXPECT_EQ(g.w->windowTitle(), "Screen 1     Plant");
    g.click("CmdPrev");
    EXPECT_EQ(g.w->windowTitle(), "Screen 10     ");
    g.click("CmdJump");  // screen 10 has no target
    EXPECT_EQ(g.w->windowTitle(), "Screen 10     ");
    g.click("CmdNext");
    EXPECT_EQ(g.w->windowTitle(), "Screen 1     Plant");
}

TEST(ReadingsViewWindow, BoxesAreNamedAfterTheirLabels) {
    Rig g;
    EXPECT_EQ(g.value(0)->accessibleName(), "I-Tank Level");
    EXPECT_EQ(g.box("TxtUnits0")->accessibleName(), "I-Tank Level units");
    EXPECT_EQ(g.tick(1)->accessibleName(), "O-Feed Pump");
    EXPECT_EQ(g.box("TxtDig1")->accessibleName(), "O-Feed Pump state");
    EXPECT_EQ(g.value(9)->accessibleName(), "Analog 10");
    g.click("CmdNext");
    EXPECT_EQ(g.value(0)->accessibleName(), "Analog 1");
}

TEST(ReadingsViewWindow, TheKeyboardAloneWorksTheWindow) {
    Rig g;
    g.w->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(g.w.get()));
    // The cursor does not start in a value box, which would stop its refresh.
    EXPECT_FALSE(g.value(0)->hasFocus());
    pressMnemonic(g.w.get(), Qt::Key_J);
    EXPECT_EQ(g.w->windowTitle(), "Screen 3     ");
    pressMnemonic(g.w.get(), Qt::Key_P);
    pressMnemonic(g.w.get(), Qt::Key_P);
    EXPECT_EQ(g.w->windowTitle(), "Screen 1     Plant");
    g.tick(1)->setFocus();
    QTest::keyClick(g.tick(1), Qt::Key_Space);
    EXPECT_EQ(g.r.st.daq.DigitalOutputImage, 0x01);
    pressMnemonic(g.w.get(), Qt::Key_X);
    EXPECT_FALSE(g.w->isVisible());
    EXPECT_FALSE(g.w->readTimer()->isActive());
}

TEST(ReadingsViewWindow, OnAQrtuTheOperatorsOutputsReachTheModuleLatches) {
    Rig g(kDaqQrtu);
    SimulatedBus bus;
    g.r.st.switches.PollEnabled = true;
    g.r.st.platform.port = &bus;
    SelectPort(g.r.st, 1, 0);
    auto sim = MakeModuleSimulator(kDaqQrtu);
    sim->attach(bus, g.r.st.daq.Port.DataPort);
    g.type(1, "5");
    g.tick(1)->click();
    g.w->readTimerTick();
    EXPECT_EQ(sim->LatchedOutputsLine(), "outputs: DO=0x01 AO-1=200 AO-2=0");
    sim->detach();
    g.r.st.platform.port = Platform().port;
}

namespace {
struct MainRig {
    test::TempFolder folder;
    test::ScreenRig r;
    std::ostringstream errors;
    std::unique_ptr<app::MainWindow> w;
    MainRig() {
        r.st.workingFolder = folder.path();
        w = std::make_unique<app::MainWindow>(r.st, &r.prompt, &errors);
    }
};
}  // namespace

TEST(ReadingsViewWindow, TheMenusOpenBothWindows) {
    MainRig m;
    test::child<QAction>(m.w.get(), "SetUpScreens")->trigger();
    auto* setup = qobject_cast<ReadingsSetupWindow*>(m.w->windows().find("Screens"));
    ASSERT_NE(setup, nullptr);
    EXPECT_EQ(setup->windowTitle(), "Set Up Screens");
    test::child<QAction>(m.w.get(), "ViewReadings")->trigger();
    auto* view = qobject_cast<ReadingsViewWindow*>(m.w->windows().find("Readings"));
    ASSERT_NE(view, nullptr);
    EXPECT_EQ(view->windowTitle(), "Screen 1     Plant");
    EXPECT_TRUE(view->isVisible());
}

}  // namespace kova
