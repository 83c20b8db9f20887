#include "tags/daq_profile.h"

#include <gtest/gtest.h>

#include <vector>

namespace kova {

namespace {
std::vector<std::string> names(const DaqProfile& p) {
    std::vector<std::string> out;
    for (int i = 1; i <= p.NumIONames; ++i) out.push_back(p.IONameList[i]);
    return out;
}
std::vector<std::string> seq(const std::string& prefix, int n) {
    std::vector<std::string> out;
    for (int i = 1; i <= n; ++i) out.push_back(prefix + std::to_string(i));
    return out;
}
std::vector<std::string> cat(std::initializer_list<std::vector<std::string>> parts) {
    std::vector<std::string> out = {"Analog Variable", "Digital Variable"};
    for (const auto& p : parts) out.insert(out.end(), p.begin(), p.end());
    return out;
}
}  // namespace

TEST(DaqCatalogue, EachTypeListsItsNamesInOrder) {
    DaqProfile p;
    BuildIOList(p, kDaqTest);
    EXPECT_EQ(p.TypeString, "TEST");
    EXPECT_EQ(names(p), cat({seq("AI-", 8), {"AO-1", "AO-2"}, seq("DI-", 4), seq("DO-", 4)}));
    EXPECT_EQ(p.NumIONames, 20);
    BuildIOList(p, kDaqQrt105);
    EXPECT_EQ(p.TypeString, "QRT105");
    EXPECT_EQ(names(p), cat({seq("AI-", 8), seq("DI-", 4), seq("DO-", 4)}));
    EXPECT_EQ(p.NumIONames, 18);
    BuildIOList(p, kDaqQrt110);
    EXPECT_EQ(names(p), cat({seq("AI-", 8), {"AO-1", "AO-2"}}));
    EXPECT_EQ(p.NumIONames, 12);
    BuildIOList(p, kDaqQrt115);
    EXPECT_EQ(names(p), cat({seq("DI-", 8), seq("DO-", 8)}));
    EXPECT_EQ(p.NumIONames, 18);
    BuildIOList(p, kDaqFieldRecorder);
    EXPECT_EQ(p.TypeString, "FIELD RECORDER");
    EXPECT_EQ(names(p), cat({{"AI-1"}}));
    EXPECT_EQ(p.NumIONames, 3);
    BuildIOList(p, kDaqQrtu);
    EXPECT_EQ(names(p), cat({seq("AI-", 8), {"AO-1"}, seq("DI-", 15), seq("DO-", 8)}));
    EXPECT_EQ(p.NumIONames, 34);
}

TEST(DaqCatalogue, CountsAndRanges) {
    struct Row {
        int code, ai, ao, di, dout, rawMin, rawMax;
    };
    const Row rows[] = {{1, 8, 0, 4, 4, 0, 4095},
                        {2, 8, 2, 0, 0, 0, 4095},
                        {3, 0, 0, 8, 8, 0, 0},
                        {5, 8, 1, 15, 8, 0, 255}};
    for (const Row& r : rows) {
        DaqProfile p;
        BuildIOList(p, r.code);
        EXPECT_EQ(p.AnalogInputs, r.ai) << r.code;
        EXPECT_EQ(p.AnalogOutputs, r.ao) << r.code;
        EXPECT_EQ(p.DigitalInputs, r.di) << r.code;
        EXPECT_EQ(p.DigitalOutputs, r.dout) << r.code;
        EXPECT_EQ(p.RawMin, r.rawMin) << r.code;
        EXPECT_EQ(p.RawMax, r.rawMax) << r.code;
    }
}

TEST(DaqCatalogue, FieldRecorderAfterQrtuKeepsTheQrtuCounts) {
    DaqProfile p;
    BuildIOList(p, kDaqQrtu);
    BuildIOList(p, kDaqFieldRecorder);
    EXPECT_EQ(p.AnalogInputs, 1);
    EXPECT_EQ(p.AnalogOutputs, 1);
    EXPECT_EQ(p.DigitalInputs, 15);
    EXPECT_EQ(p.DigitalOutputs, 8);
    EXPECT_EQ(p.RawMin, 0);
    EXPECT_EQ(p.RawMax, 4095);
    EXPECT_EQ(p.NumIONames, 3);  // the list, not the counts, restricts the choice
}

TEST(DaqCatalogue, TestKeepsTheRawRangeOfThePreviousType) {
    DaqProfile p;
    BuildIOList(p, kDaqTest);
    EXPECT_EQ(p.RawMin, 0);  // first type of the run
    EXPECT_EQ(p.RawMax, 0);
    BuildIOList(p, kDaqQrt105);
    BuildIOList(p, kDaqTest);
    EXPECT_EQ(p.RawMin, 0);
    EXPECT_EQ(p.RawMax, 4095);
    BuildIOList(p, kDaqQrtu);
    BuildIOList(p, kDaqTest);
    EXPECT_EQ(p.RawMax, 255);
}

TEST(DaqCatalogue, RebuildingTheSameTypeGivesTheSameList) {
    DaqProfile p;
    BuildIOList(p, kDaqQrt110);
    const DaqProfile before = p;
    BuildIOList(p, kDaqQrt110);
    EXPECT_EQ(p, before);
}

TEST(DaqCatalogue, UnknownCodeChangesNothing) {
    DaqProfile p;
    BuildIOList(p, kDaqQrt105);
    const DaqProfile before = p;
    BuildIOList(p, 9);
    EXPECT_EQ(p, before);
    EXPECT_STREQ(DaqTypeName(9), "");
}

}  // namespace kova
