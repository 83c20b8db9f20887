#include "daq/forms/printer_port_form.h"

#include <gtest/gtest.h>

#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <sstream>

#include "daq/sim/port_chip.h"
#include "platform/simulated_bus.h"
#include "support/test_support.h"
#include "ui/ui_support.h"

namespace kova {

namespace {
struct Rig {
    Station st;
    SimulatedBus bus;
    test::ScriptedPrompter prompt;
    std::ostringstream errors;
    ErrorReport report{st.platform, errors};
    std::unique_ptr<PrinterPortWindow> w;
    Rig() {
        st.platform.port = &bus;
        st.platform.prompter = &prompt;
    }
    void open() {
        w = std::make_unique<PrinterPortWindow>(st, report);
        w->show();
    }
    QLineEdit* box(const char* n) { return test::child<QLineEdit>(w.get(), n); }
    QRadioButton* opt(int lpt) {
        const std::string name = "OptLpt" + std::to_string(lpt);
        return test::child<QRadioButton>(w.get(), name.c_str());
    }
    void find() { test::child<QPushButton>(w.get(), "CmdFindPort")->click(); }
};
}  // namespace

TEST(PrinterPortWindow, CaptionsFrameBoxesAndButtons) {
    Rig r;
    r.open();
    EXPECT_EQ(r.w->windowTitle(), "Set Printer Port Address");
    EXPECT_EQ(r.w->objectName(), "PrinterAddr");
    auto* frame = test::child<QGroupBox>(r.w.get(), "FraPrinterPort");
    EXPECT_EQ(frame->title(), "Printer Port");
    for (int lpt = 1; lpt <= 3; ++lpt) {
        EXPECT_EQ(r.opt(lpt)->text(), QString("LPT %1").arg(lpt));
        EXPECT_EQ(r.opt(lpt)->parentWidget(), frame);
    }
    for (const char* name : {"TxtTypePort", "TxtMode", "TxtAddress"})
        EXPECT_TRUE(r.box(name)->isReadOnly());
    QStringList labels;
    for (auto* l : r.w->findChildren<QLabel*>()) labels << l->text();
    EXPECT_TRUE(labels.contains("Type of Port"));
    EXPECT_TRUE(labels.contains("Mode"));
    EXPECT_TRUE(labels.contains("Address"));
    EXPECT_EQ(test::child<QPushButton>(r.w.get(), "CmdFindPort")->text(), "&Find Port");
    EXPECT_EQ(test::child<QPushButton>(r.w.get(), "Exit")->text(), "E&xit");
}

TEST(PrinterPortWindow, OpensOnThePortInUse) {
    Rig r;
    r.st.daq.PrinterPortNumber = 2;
    r.open();
    EXPECT_TRUE(r.opt(2)->isChecked());
    EXPECT_EQ(r.box("TxtTypePort")->text(), "");
}

TEST(PrinterPortWindow, FindingAnEcpPortSwitchesItToStandardModeAndInitialisesIt) {
    Rig r;
    PortChip chip(0x278, PortChipKind::Ecp);
    chip.setEcpMode(3);
    r.bus.attach(chip);
    r.bus.setLptBase(2, 0x278);
    r.open();
    r.opt(2)->setChecked(true);
    r.find();
    EXPECT_TRUE(r.box("TxtTypePort")->text().startsWith("ECP"));
    EXPECT_EQ(r.box("TxtMode")->text(), "SPP");
    EXPECT_EQ(r.box("TxtAddress")->text(), "278");
    EXPECT_EQ(chip.ecpMode(), 0);
    EXPECT_EQ(r.st.daq.PrinterPortNumber, 2);
    EXPECT_EQ(r.st.daq.PrinterPortBase, 0x278);
    EXPECT_EQ(r.st.daq.Port.DataPort, 0x278);
    ASSERT_EQ(r.prompt.messages.size(), 1u);
    EXPECT_EQ(r.prompt.messages[0].text, "Printer Port Initialised");
}

TEST(PrinterPortWindow, AMissingPortIsNotFound) {
    Rig r;
    r.open();
    r.opt(3)->setChecked(true);
    r.find();
    EXPECT_EQ(r.box("TxtTypePort")->text(), "Not Found");
    EXPECT_EQ(r.box("TxtAddress")->text(), "");
    ASSERT_EQ(r.prompt.messages.size(), 1u);
    EXPECT_EQ(r.prompt.messages[0].text, "Port LPT 3 Not Found");
}

TEST(PrinterPortWindow, ExitCloses) {
    Rig r;
    r.open();
    test::child<QPushButton>(r.w.get(), "Exit")->click();
    EXPECT_FALSE(r.w->isVisible());
}

}  // namespace kova
