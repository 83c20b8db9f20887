#include "tags/daq_type_model.h"

#include <gtest/gtest.h>

namespace kova {

namespace {
DaqTypeForm only(int code) {
    DaqTypeForm f;
    f.OptDaqType[static_cast<std::size_t>(code)] = true;
    return f;
}
}  // namespace

TEST(DaqTypeModel, CaptionsAreTheTypeNames) {
    EXPECT_EQ(DaqTypeCaption(kDaqTest), "TEST");
    EXPECT_EQ(DaqTypeCaption(kDaqFieldRecorder), "FIELD RECORDER");
    EXPECT_EQ(DaqTypeCaption(kDaqQrtu), "QRTU");
    for (int code : {kDaqQrt105, kDaqQrt110, kDaqQrt115}) {
        const std::string caption = DaqTypeCaption(code);
        EXPECT_EQ(caption.rfind(DaqTypeName(code), 0), 0u) << caption;
        EXPECT_NE(caption.find('('), std::string::npos) << caption;
        EXPECT_EQ(caption.back(), ')') << caption;
    }
}

TEST(DaqTypeModel, OpensWithTheCurrentTypeSelected) {
    Station st;
    BuildIOList(st.profile, kDaqQrt110);
    const DaqTypeForm f = OpenDaqTypeForm(st);
    for (int i = 0; i < kDaqTypeCount; ++i)
        EXPECT_EQ(f.OptDaqType[static_cast<std::size_t>(i)], i == kDaqQrt110);
}

TEST(DaqTypeModel, AnUnknownTypeCodeSelectsNothing) {
    Station st;
    st.profile.TypeCode = 9;
    const DaqTypeForm f = OpenDaqTypeForm(st);
    for (bool b : f.OptDaqType) EXPECT_FALSE(b);
}

TEST(DaqTypeModel, ExitMakesTheSelectedTypeTheModule) {
    Station st;
    ExitDaqTypeForm(st, only(kDaqQrtu));
    EXPECT_EQ(st.profile.TypeCode, kDaqQrtu);
    EXPECT_EQ(st.profile.TypeString, "QRTU");
    EXPECT_EQ(st.profile.NumIONames, 34);
    EXPECT_EQ(st.profile.IONameList[34], "DO-8");
    EXPECT_EQ(st.profile.RawMax, 255);
    EXPECT_EQ(st.scan.NumDigitalInputs, 15);
}

TEST(DaqTypeModel, TheLastSelectedButtonWins) {
    Station st;
    DaqTypeForm f;
    f.OptDaqType[kDaqQrt105] = true;
    f.OptDaqType[kDaqQrt115] = true;
    ExitDaqTypeForm(st, f);
    EXPECT_EQ(st.profile.TypeCode, kDaqQrt115);
}

TEST(DaqTypeModel, NothingSelectedKeepsTheType) {
    Station st;
    BuildIOList(st.profile, kDaqQrt110);
    ExitDaqTypeForm(st, DaqTypeForm{});
    EXPECT_EQ(st.profile.TypeCode, kDaqQrt110);
}

TEST(DaqTypeModel, QrtuThenFieldRecorderKeepsTheOutputCountsAndRawMax) {
    Station st;
    ExitDaqTypeForm(st, only(kDaqQrtu));
    ExitDaqTypeForm(st, only(kDaqFieldRecorder));
    EXPECT_EQ(st.profile.AnalogInputs, 1);
    EXPECT_EQ(st.profile.AnalogOutputs, 1);
    EXPECT_EQ(st.profile.DigitalInputs, 15);
    EXPECT_EQ(st.profile.DigitalOutputs, 8);
    EXPECT_EQ(st.profile.RawMax, 4095);
    EXPECT_EQ(st.profile.NumIONames, 3);  // the list offers only AI-1
}

TEST(DaqTypeModel, Qrt105ThenTestKeepsTheRawRange) {
    Station st;
    ExitDaqTypeForm(st, only(kDaqQrt105));
    ExitDaqTypeForm(st, only(kDaqTest));
    EXPECT_EQ(st.profile.RawMin, 0);
    EXPECT_EQ(st.profile.RawMax, 4095);
}

TEST(DaqTypeModel, Qrt115GivesRawMaxZero) {
    Station st;
    ExitDaqTypeForm(st, only(kDaqQrt115));
    EXPECT_EQ(st.profile.RawMax, 0);
}

TEST(DaqTypeModel, ExitWithoutAChangeRebuildsTheSameList) {
    Station st;
    ExitDaqTypeForm(st, only(kDaqQrt105));
    st.profile.IONameList[3] = "stale";
    st.profile.NumIONames = 0;
    ExitDaqTypeForm(st, OpenDaqTypeForm(st));
    EXPECT_EQ(st.profile.TypeCode, kDaqQrt105);
    EXPECT_EQ(st.profile.IONameList[3], "AI-1");
    EXPECT_EQ(st.profile.NumIONames, 18);
}

TEST(DaqTypeModel, ExitRebuildsTheModuleSummaryFromTheInputTags) {
    Station st;
    Tag& t = st.tags[1];
    t.TagName = "TANK";
    t.Kind = kAnalog;
    t.Direction = kInput;
    t.Address = 1;
    t.IONumber = 3;
    ExitDaqTypeForm(st, only(kDaqQrt105));
    EXPECT_EQ(st.daq.Summary.InUse, -1);
    EXPECT_EQ(st.daq.Summary.LowestAnalogInput, 3);
    EXPECT_EQ(st.daq.Summary.HighestAnalogInput, 3);
}

TEST(DaqTypeModel, TheTagsAreNotCheckedAgainstTheNewType) {
    Station st;
    st.tags[1].TagName = "VALVE";
    st.tags[1].IOName = "AO-2";
    st.tags[1].Kind = kAnalog;
    st.tags[1].Direction = kOutput;
    ExitDaqTypeForm(st, only(kDaqQrt115));
    EXPECT_EQ(st.tags[1].IOName, "AO-2");
    EXPECT_EQ(st.tags[1].TagName, "VALVE");
}

TEST(DaqTypeModel, TheTestModulesTipSaysWhatEachInputAndOutputDoes) {
    const std::string tip = DaqTypeTip(kDaqTest);
    // Every kind of channel, with its range and period.
    for (const char* part :
         {"AI-1 to AI-8", "n x 200 to n x 200 + 198", "AI-1 200 to 398", "100 reads",
          "100 I/O periods", "DI-1 to DI-4", "one poll in four", "AO-1, AO-2, DO-1 to DO-4",
          "nothing goes anywhere", "raw 200 = 0, raw 398 = 100"})
        EXPECT_NE(tip.find(part), std::string::npos) << part;
    for (int code = 1; code < kDaqTypeCount; ++code) EXPECT_EQ(DaqTypeTip(code), "") << code;
}

}  // namespace kova
