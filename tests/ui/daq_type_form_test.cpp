#include "tags/forms/daq_type_form.h"

#include <gtest/gtest.h>

#include <QGroupBox>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <sstream>

#include "support/test_support.h"
#include "tags/daq_type_model.h"
#include "ui/ui_support.h"

namespace kova {

namespace {
struct Rig {
    Station st;
    test::ScriptedPrompter prompt;
    std::ostringstream errors;
    ErrorReport report{st.platform, errors};
    std::unique_ptr<DaqTypeWindow> w;
    explicit Rig(int type = kDaqTest) {
        st.platform.prompter = &prompt;
        BuildIOList(st.profile, type);
        w = std::make_unique<DaqTypeWindow>(st, report);
        w->show();
    }
    QRadioButton* opt(int i) {
        const std::string name = "OptDaqType" + std::to_string(i);
        return test::child<QRadioButton>(w.get(), name.c_str());
    }
    void exit() { test::child<QPushButton>(w.get(), "CmdExit")->click(); }
};
}  // namespace

TEST(DaqTypeWindow, CaptionsFrameAndOneButtonPerType) {
    Rig r;
    EXPECT_EQ(r.w->windowTitle(), "DAQ Type");
    EXPECT_EQ(r.w->objectName(), "FrmDaqType");
    auto* frame = test::child<QGroupBox>(r.w.get(), "FraDaqType");
    EXPECT_EQ(frame->title(), "DAQ Type");
    for (int i = 0; i < kDaqTypeCount; ++i) {
        EXPECT_EQ(r.opt(i)->text().toStdString(), DaqTypeCaption(i));
        EXPECT_EQ(r.opt(i)->parentWidget(), frame);
    }
    EXPECT_EQ(r.opt(0)->text(), "TEST");
    EXPECT_EQ(r.opt(4)->text(), "FIELD RECORDER");
    EXPECT_EQ(test::child<QPushButton>(r.w.get(), "CmdExit")->text(), "E&xit");
}

TEST(DaqTypeWindow, OpensWithTheCurrentTypeSelected) {
    Rig r(kDaqQrt110);
    for (int i = 0; i < kDaqTypeCount; ++i) EXPECT_EQ(r.opt(i)->isChecked(), i == kDaqQrt110) << i;
}

TEST(DaqTypeWindow, ExitMakesTheChosenTypeTheModuleAndCloses) {
    Rig r;
    QSignalSpy applied(r.w.get(), &DaqTypeWindow::daqTypeApplied);
    r.opt(kDaqQrt115)->setChecked(true);
    EXPECT_FALSE(r.opt(kDaqTest)->isChecked());  // one choice at a time
    r.exit();
    EXPECT_EQ(r.st.profile.TypeCode, kDaqQrt115);
    EXPECT_EQ(r.st.profile.TypeString, "QRT115");
    EXPECT_EQ(r.st.profile.IONameList[3], "DI-1");
    EXPECT_FALSE(r.w->isVisible());
    EXPECT_EQ(applied.count(), 1);
    EXPECT_TRUE(r.prompt.messages.empty());
}

TEST(DaqTypeWindow, QrtuThenFieldRecorderKeepsTheOtherCounts) {
    Rig r(kDaqQrtu);
    r.opt(kDaqFieldRecorder)->setChecked(true);
    r.exit();
    EXPECT_EQ(r.st.profile.AnalogOutputs, 1);
    EXPECT_EQ(r.st.profile.DigitalInputs, 15);
    EXPECT_EQ(r.st.profile.DigitalOutputs, 8);
    EXPECT_EQ(r.st.profile.RawMax, 4095);
}

TEST(DaqTypeWindow, ExitWithoutAChangeRebuildsTheSameList) {
    Rig r(kDaqQrt105);
    r.st.profile.NumIONames = 0;
    r.exit();
    EXPECT_EQ(r.st.profile.TypeCode, kDaqQrt105);
    EXPECT_EQ(r.st.profile.NumIONames, 18);
}

TEST(DaqTypeWindow, ClosingWithoutExitChangesNothing) {
    Rig r;
    r.opt(kDaqQrtu)->setChecked(true);
    r.w->close();
    EXPECT_EQ(r.st.profile.TypeCode, kDaqTest);
}

}  // namespace kova
