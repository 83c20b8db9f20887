#include "daq/forms/calibration_form.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <sstream>

#include "support/test_support.h"
#include "ui/ui_support.h"

namespace kova {

namespace {
struct Rig {
    test::TempFolder folder;
    Station st;
    test::ScriptedPrompter prompt;
    std::ostringstream errors;
    ErrorReport report{st.platform, errors};
    std::int16_t reading = 0;
    int reads = 0;
    std::unique_ptr<CalibrationWindow> w;
    Rig() {
        st.platform.prompter = &prompt;
        st.workingFolder = folder.path();
        w = std::make_unique<CalibrationWindow>(st, report, nullptr, [this](Station&) {
            ++reads;
            return reading;
        });
        w->show();
    }
    QLineEdit* box(const char* n) { return test::child<QLineEdit>(w.get(), n); }
    void press(const char* n) { test::child<QPushButton>(w.get(), n)->click(); }
};
}  // namespace

TEST(CalibrationWindow, CaptionLabelsButtonsAndTheInstructionWordForWord) {
    Rig r;
    EXPECT_EQ(r.w->windowTitle(), "Calibrate QRT105 Analog To Digital Convertor");
    EXPECT_EQ(r.w->objectName(), "Calibrat");
    EXPECT_EQ(test::child<QLabel>(r.w.get(), "LblInstructions")->text(),
              "To calibrate the QRT105 ADC first connect a voltage of approx 30mV to Channel 1. "
              "Enter the value into the Input Voltage box . Press the Offset Button. Next change "
              "the voltage to approx 3950 mV, enter the value into the Input Voltage box and press "
              "the Gain button.");
    EXPECT_EQ(test::child<QPushButton>(r.w.get(), "CmdOffset")->text(), "&Offset");
    EXPECT_EQ(test::child<QPushButton>(r.w.get(), "ComCalibrate")->text(), "&Gain");
    EXPECT_EQ(test::child<QPushButton>(r.w.get(), "ComExit")->text(), "E&xit");
    QStringList labels;
    for (auto* l : r.w->findChildren<QLabel*>()) labels << l->text();
    EXPECT_TRUE(labels.contains("Input Voltage in mVs"));
    EXPECT_TRUE(labels.contains("Offset Voltage in mVs"));
    EXPECT_TRUE(labels.contains("Gain"));
}

TEST(CalibrationWindow, OpensWithTheCalibrationInputInTheInputBox) {
    Rig r;
    EXPECT_EQ(r.box("TxtInput")->text(), "4000");
    EXPECT_EQ(r.box("TxtOffset")->text(), "");
    EXPECT_EQ(r.box("TxtMeasure")->text(), "");
}

TEST(CalibrationWindow, OffsetThenGainCalibratesAndWritesTheFile) {
    Rig r;
    r.box("TxtInput")->setText("30");
    r.reading = 26;
    r.press("CmdOffset");
    EXPECT_EQ(r.box("TxtOffset")->text(), "4");
    EXPECT_EQ(r.st.calibration.CalOffset, 4);
    EXPECT_EQ(r.reads, 8);
    EXPECT_FALSE(
        std::filesystem::exists(r.folder / "KOVA_P.CAL"));  // the offset step writes nothing

    r.box("TxtInput")->setText("3950");
    r.reading = 3930;
    r.press("ComCalibrate");
    EXPECT_EQ(r.reads, 8 + 9);  // one settling reading, then eight
    EXPECT_EQ(r.st.calibration, (CalibrationData{3950, 3930, 4}));
    EXPECT_EQ(r.box("TxtMeasure")->text(), "1.004067");  // 3950 / 3934
    EXPECT_EQ(test::ReadFileBytes(r.folder / "KOVA_P.CAL"), " 3950  3930  4 \r\n");
    EXPECT_EQ(CorrectReading(r.st.calibration, 2000), 2012);
    EXPECT_TRUE(r.prompt.messages.empty());
}

TEST(CalibrationWindow, OffsetMessages) {
    Rig r;
    r.box("TxtInput")->setText("abc");
    r.press("CmdOffset");
    r.box("TxtInput")->setText("51");
    r.press("CmdOffset");
    r.box("TxtInput")->setText("50");
    r.reading = 60;
    r.press("CmdOffset");
    ASSERT_EQ(r.prompt.messages.size(), 3u);
    EXPECT_EQ(r.prompt.messages[0], (test::Shown{"The input voltage value is not valid", "KOVA"}));
    EXPECT_EQ(r.prompt.messages[1],
              (test::Shown{"The input voltage box is greater than 50mV", "KOVA"}));
    EXPECT_EQ(r.prompt.messages[2], (test::Shown{"Channel 1 is greater than 50mV", "Error"}));
    EXPECT_EQ(r.st.calibration, CalibrationData{});  // a refused step changes nothing
    EXPECT_EQ(r.box("TxtOffset")->text(), "");
}

TEST(CalibrationWindow, GainMessages) {
    Rig r;
    r.box("TxtInput")->setText("x");
    r.press("ComCalibrate");
    r.box("TxtInput")->setText("3799");
    r.press("ComCalibrate");
    r.box("TxtInput")->setText("4001");
    r.press("ComCalibrate");
    r.box("TxtInput")->setText("3800");
    r.reading = 3699;
    r.press("ComCalibrate");
    ASSERT_EQ(r.prompt.messages.size(), 4u);
    EXPECT_EQ(r.prompt.messages[0].text, "The input voltage box isn't valid");
    EXPECT_EQ(r.prompt.messages[1].text, "The input voltage box must be between 3800 and 4000mV");
    EXPECT_EQ(r.prompt.messages[2].text, "The input voltage box must be between 3800 and 4000mV");
    EXPECT_EQ(r.prompt.messages[3], (test::Shown{"Channel 1 is less than 3700mV", "Error"}));
    EXPECT_FALSE(std::filesystem::exists(r.folder / "KOVA_P.CAL"));
}

TEST(CalibrationWindow, ExitCloses) {
    Rig r;
    r.press("ComExit");
    EXPECT_FALSE(r.w->isVisible());
}

}  // namespace kova
