#include "daq/calibration_model.h"

#include <gtest/gtest.h>

#include <deque>

#include "core/fault.h"
#include "support/test_support.h"

namespace kova {

namespace {
// Channel 1 of a module whose readings are given in advance; it counts what is read.
struct ScriptedChannel {
    std::deque<std::int16_t> values;
    int reads = 0;
    CalibrationReader reader() {
        return [this](Station&) {
            ++reads;
            if (values.empty()) return std::int16_t{0};
            const std::int16_t v = values.front();
            values.pop_front();
            return v;
        };
    }
    void steady(std::int16_t v, int n) {
        values.insert(values.end(), static_cast<std::size_t>(n), v);
    }
};

struct CalRig {
    Station st;
    test::ScriptedPrompter prompt;
    test::TempFolder folder;
    ScriptedChannel channel;
    CalibrationForm form;
    CalRig() {
        st.platform.prompter = &prompt;
        st.workingFolder = folder.path();
        BuildIOList(st.profile, kDaqQrt105);
        form = OpenCalibrationForm(st);
    }
    bool offset(const std::string& input) {
        form.TxtInput = input;
        return CalibrateOffset(st, form, channel.reader());
    }
    bool gain(const std::string& input) {
        form.TxtInput = input;
        return CalibrateGain(st, form, channel.reader());
    }
    bool calFileExists() const { return std::filesystem::exists(folder / "KOVA_P.CAL"); }
};
}  // namespace

TEST(CalibrationForm, OpensShowingCalInput) {
    Station st;
    st.calibration.CalInput = 3950;
    const CalibrationForm f = OpenCalibrationForm(st);
    EXPECT_EQ(f.TxtInput, "3950");
    EXPECT_EQ(f.TxtOffset, "");
    EXPECT_EQ(f.TxtMeasure, "");
}

TEST(CalibrationForm, InstructionTextIsKeptWordForWord) {
    EXPECT_STREQ(
        kCalibrationInstructions,
        "To calibrate the QRT105 ADC first connect a voltage of approx 30mV to Channel 1. "
        "Enter the value into the Input Voltage box . Press the Offset Button. Next change "
        "the voltage to approx 3950 mV, enter the value into the Input Voltage box and "
        "press the Gain button.");
}

// --- offset ------------------------------------------------------------------------------

TEST(CalibrationOffset, FiftyIsAccepted) {
    CalRig r;
    r.channel.steady(26, 8);
    EXPECT_TRUE(r.offset("50"));
    EXPECT_EQ(r.st.calibration.CalInput, 50);
    EXPECT_EQ(r.st.calibration.CalOffset, 24);
    EXPECT_EQ(r.form.TxtOffset, "24");
    EXPECT_TRUE(r.prompt.messages.empty());
    EXPECT_EQ(r.channel.reads, 8);  // no settling read in the offset step
}

TEST(CalibrationOffset, FiftyOneIsRefusedBeforeAnyReading) {
    CalRig r;
    const CalibrationData before = r.st.calibration;
    r.channel.steady(26, 8);
    EXPECT_FALSE(r.offset("51"));
    EXPECT_EQ(r.prompt.messages,
              (std::vector<test::Shown>{{"The input voltage box is greater than 50mV", "KOVA"}}));
    EXPECT_EQ(r.st.calibration, before);
    EXPECT_EQ(r.channel.reads, 0);
    EXPECT_EQ(r.form.TxtOffset, "");
}

TEST(CalibrationOffset, InputIsRoundedToAWholeNumberFirst) {
    CalRig r;
    r.channel.steady(20, 16);
    EXPECT_TRUE(r.offset("50.5"));  // half to even: 50
    EXPECT_EQ(r.st.calibration.CalInput, 50);
    EXPECT_FALSE(r.offset("50.51"));
    EXPECT_FALSE(r.offset("99999999"));
    EXPECT_EQ(r.prompt.messages.size(), 2u);
}

TEST(CalibrationOffset, NotANumberIsRefused) {
    CalRig r;
    for (const char* text : {"", "abc", "30mV", " "}) {
        r.prompt.messages.clear();
        EXPECT_FALSE(r.offset(text));
        EXPECT_EQ(r.prompt.messages,
                  (std::vector<test::Shown>{{"The input voltage value is not valid", "KOVA"}}))
            << text;
    }
    EXPECT_EQ(r.channel.reads, 0);
}

TEST(CalibrationOffset, AverageOf50Point5RoundsTo50AndIsAccepted) {
    CalRig r;
    r.channel.values = {50, 51, 50, 51, 50, 51, 50, 51};  // sum 404, / 8 = 50.5
    EXPECT_TRUE(r.offset("30"));
    EXPECT_EQ(r.st.calibration.CalOffset, -20);
    EXPECT_EQ(r.form.TxtOffset, "-20");
}

TEST(CalibrationOffset, AverageOf51IsRefusedWithTitleError) {
    CalRig r;
    const CalibrationData before = r.st.calibration;
    r.channel.values = {51, 51, 51, 51, 51, 51, 51, 52};  // 51.125 -> 51
    EXPECT_FALSE(r.offset("30"));
    EXPECT_EQ(r.prompt.messages,
              (std::vector<test::Shown>{{"Channel 1 is greater than 50mV", "Error"}}));
    EXPECT_EQ(r.st.calibration, before);
    EXPECT_EQ(r.channel.reads, 8);
}

TEST(CalibrationOffset, WritesNoFile) {
    CalRig r;
    r.channel.steady(26, 8);
    EXPECT_TRUE(r.offset("30"));
    EXPECT_FALSE(r.calFileExists());
}

// --- gain --------------------------------------------------------------------------------

TEST(CalibrationGain, BoundsOf3800And4000AreAccepted) {
    for (const char* text : {"3800", "4000"}) {
        CalRig r;
        r.channel.steady(3900, 9);
        EXPECT_TRUE(r.gain(text)) << text;
        EXPECT_TRUE(r.prompt.messages.empty());
    }
}

TEST(CalibrationGain, JustOutsideTheBoundsIsRefusedBeforeAnyReading) {
    for (const char* text : {"3799", "4001", "-5", "99999"}) {
        CalRig r;
        const CalibrationData before = r.st.calibration;
        r.channel.steady(3900, 9);
        EXPECT_FALSE(r.gain(text)) << text;
        EXPECT_EQ(r.prompt.messages,
                  (std::vector<test::Shown>{
                      {"The input voltage box must be between 3800 and 4000mV", "KOVA"}}));
        EXPECT_EQ(r.channel.reads, 0);
        EXPECT_EQ(r.st.calibration, before);
        EXPECT_FALSE(r.calFileExists());
    }
}

TEST(CalibrationGain, NotANumberIsRefused) {
    CalRig r;
    EXPECT_FALSE(r.gain("3,950"));
    EXPECT_EQ(r.prompt.messages,
              (std::vector<test::Shown>{{"The input voltage box isn't valid", "KOVA"}}));
}

TEST(CalibrationGain, DiscardsOneSettlingReadingThenAveragesEight) {
    CalRig r;
    r.channel.values = {0, 3930, 3930, 3930, 3930, 3931, 3931, 3931, 3931};
    EXPECT_TRUE(r.gain("3950"));
    EXPECT_EQ(r.channel.reads, 9);
    EXPECT_EQ(r.st.calibration.CalMeasured, 3930);  // 3930.5 rounds half to even
}

TEST(CalibrationGain, AverageBelow3700IsRefusedWithTitleError) {
    CalRig r;
    const CalibrationData before = r.st.calibration;
    r.channel.values = {3900, 3699, 3699, 3699, 3699, 3699, 3699, 3699, 3699};
    EXPECT_FALSE(r.gain("3950"));
    EXPECT_EQ(r.prompt.messages,
              (std::vector<test::Shown>{{"Channel 1 is less than 3700mV", "Error"}}));
    EXPECT_EQ(r.st.calibration, before);
    EXPECT_EQ(r.form.TxtMeasure, "");
    EXPECT_FALSE(r.calFileExists());
}

TEST(CalibrationGain, SumOfEightReadingsNearFullScaleDoesNotOverflow) {
    CalRig r;
    r.channel.steady(4095, 9);  // 8 x 4095 = 32760; 8 x 4100 would pass 32767
    r.channel.values.back() = 4200;
    EXPECT_TRUE(r.gain("4000"));
    EXPECT_EQ(r.st.calibration.CalMeasured, 4108);  // (7 x 4095 + 4200) / 8 = 4108.125
}

TEST(Calibration, DocumentedExampleOffset30Measured26Gain3950Measured3930) {
    CalRig r;
    r.channel.steady(26, 8);
    ASSERT_TRUE(r.offset("30"));
    EXPECT_EQ(r.form.TxtOffset, "4");
    EXPECT_EQ(r.st.calibration.CalInput, 30);  // until the gain step is done
    EXPECT_FALSE(r.calFileExists());

    r.channel.steady(3930, 9);
    ASSERT_TRUE(r.gain("3950"));
    EXPECT_EQ(r.st.calibration, (CalibrationData{3950, 3930, 4}));
    EXPECT_EQ(r.form.TxtMeasure, "1.004067");  // 3950 / 3934
    EXPECT_EQ(test::ReadFileBytes(r.folder / "KOVA_P.CAL"), " 3950  3930  4 \r\n");
    EXPECT_EQ(CorrectReading(r.st.calibration, 2000), 2012);
    EXPECT_TRUE(r.prompt.messages.empty());
}

TEST(CalibrationGain, RewritesTheFileEachTime) {
    CalRig r;
    test::WriteFileBytes(r.folder / "KOVA_P.CAL", "1,2,3\r\n");
    r.channel.steady(3800, 9);
    ASSERT_TRUE(r.gain("3800"));
    EXPECT_EQ(test::ReadFileBytes(r.folder / "KOVA_P.CAL"), " 3800  3800  0 \r\n");
    EXPECT_EQ(r.form.TxtMeasure, "1");
}

TEST(CalibrationGain, AZeroGainDivisorIsARunTimeFault) {
    CalRig r;
    r.st.calibration.CalOffset = -3800;
    r.channel.steady(3800, 9);
    EXPECT_THROW(r.gain("3900"), Fault);
}

// --- readings through the driver ---------------------------------------------------------

TEST(CalibrationReadings, ComeFromChannel1OfTheSelectedModule) {
    Station st;
    st.switches.PollEnabled = true;  // the TEST module: channel 1 reads 200 + ramp
    EXPECT_EQ(ReadCalibrationChannel(st), 200);
    EXPECT_EQ(ReadCalibrationChannel(st), 202);
    st.switches.PollEnabled = false;  // I/O off: the driver gives 0
    EXPECT_EQ(ReadCalibrationChannel(st), 0);
}

TEST(CalibrationReadings, DefaultReaderFeedsTheSteps) {
    Station st;
    test::ScriptedPrompter prompt;
    st.platform.prompter = &prompt;
    st.switches.PollEnabled = true;
    CalibrationForm f = OpenCalibrationForm(st);
    f.TxtInput = "30";
    EXPECT_FALSE(CalibrateOffset(st, f));  // 200 + ramp is far above 50 mV
    EXPECT_EQ(prompt.messages,
              (std::vector<test::Shown>{{"Channel 1 is greater than 50mV", "Error"}}));
    EXPECT_EQ(st.daq.Test.Ramp, 16);  // eight readings taken
}

// --- the menu ----------------------------------------------------------------------------

TEST(CalibrationMenu, ModuleWithoutAnalogInputsKeepsTheWindowShut) {
    Station st;
    test::ScriptedPrompter prompt;
    st.platform.prompter = &prompt;
    BuildIOList(st.profile, kDaqQrt115);
    EXPECT_FALSE(MayOpenCalibration(st));
    EXPECT_EQ(prompt.messages,
              (std::vector<test::Shown>{{"The QRT115 Module Has No Analog Inputs", "ERROR"}}));
}

TEST(CalibrationMenu, EveryModuleWithAnalogInputsMayOpenIt) {
    Station st;
    test::ScriptedPrompter prompt;
    st.platform.prompter = &prompt;
    for (int type : {kDaqTest, kDaqQrt105, kDaqQrt110, kDaqFieldRecorder, kDaqQrtu}) {
        BuildIOList(st.profile, type);
        EXPECT_TRUE(MayOpenCalibration(st)) << type;
    }
    EXPECT_TRUE(prompt.messages.empty());
}

}  // namespace kova
