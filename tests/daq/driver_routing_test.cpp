// Which driver serves which operation for each DAQ type.
#include <gtest/gtest.h>

#include "daq/driver_dispatch.h"
#include "platform/recording_port_io.h"
#include "platform/simulated_bus.h"
#include "port_rig.h"
#include "tags/daq_profile.h"

namespace kova {

namespace {

struct Routed {
    Station st;
    SimulatedBus bus;
    RecordingPortIo rec{bus};
    explicit Routed(int type) {
        st.switches.PollEnabled = true;
        BuildIOList(st.profile, type);
        st.platform.port = &rec;
        SelectPort(st, 1, 0);
        bus.poke(0x379, 0x40);  // ready / end of conversion, every data bit 0
        rec.clear();
    }
    bool touched() const { return !rec.log().empty(); }
};

}  // namespace

TEST(DriverRouting, AnalogInputsAreReadByTypes0To2And4And5) {
    const bool served[] = {false, true, true, false, true, true};  // TEST never uses the port
    for (int type = 0; type < kDaqTypeCount; ++type) {
        Routed r(type);
        std::int16_t c = 3;
        const std::int16_t v = ReadAnalogInput(r.st, 1, c);
        EXPECT_EQ(r.touched(), served[type]) << type;
        if (type == kDaqQrt115) {
            EXPECT_EQ(v, 0);
        }
        if (type == kDaqTest) {
            EXPECT_EQ(v, 600);
        }
    }
}

TEST(DriverRouting, ChannelIsCountedDownByTheQrt105FamilyAndTheQrtuOnly) {
    const std::int16_t after[] = {3, 2, 2, 3, 3, 2};
    for (int type = 0; type < kDaqTypeCount; ++type) {
        Routed r(type);
        std::int16_t c = 3;
        ReadAnalogInput(r.st, 1, c);
        EXPECT_EQ(c, after[type]) << type;
    }
}

TEST(DriverRouting, Qrt105ChannelsAbove4LeavePortErrorSet) {
    Routed r(kDaqQrt105);
    std::int16_t c = 5;
    ReadAnalogInput(r.st, 1, c);
    EXPECT_EQ(r.st.daq.Port.PortError, 1);
    c = 4;
    ReadAnalogInput(r.st, 1, c);
    EXPECT_EQ(r.st.daq.Port.PortError, 0);
}

TEST(DriverRouting, PairReadingFlagReachesTheDriver) {
    Routed r(kDaqQrt105);
    std::int16_t n = 1;
    ReadAnalogInput(r.st, 0, n);
    EXPECT_EQ(r.rec.writes(), 92u);  // two conversions
    EXPECT_EQ(n, 1);
}

TEST(DriverRouting, FieldRecorderReportsAMissingModuleAsMinusOne) {
    Routed r(kDaqFieldRecorder);
    r.bus.poke(0x379, 0x08);
    std::int16_t c = 1;
    EXPECT_EQ(ReadAnalogInput(r.st, 1, c), -1);
    EXPECT_EQ(r.rec.reads(), 30u);
}

TEST(DriverRouting, DigitalInputsAreReadByTypes1And3And5AndTypes2And4GiveOne) {
    for (int type = 0; type < kDaqTypeCount; ++type) {
        Routed r(type);
        const std::uint16_t v = ReadDigitalInputs(r.st);
        const bool port = type == kDaqQrt105 || type == kDaqQrt115 || type == kDaqQrtu;
        EXPECT_EQ(r.touched(), port) << type;
        if (type == kDaqQrt110 || type == kDaqFieldRecorder) {
            EXPECT_EQ(v, 1) << type;
        }
    }
}

TEST(DriverRouting, Qrt105DigitalReadPresentsTheSystemsOutputWord) {
    Routed r(kDaqQrt105);
    r.st.daq.DigitalOutputImage = 0x0B;
    r.bus.poke(0x379, 0x78);
    EXPECT_EQ(ReadDigitalInputs(r.st), 15);
    EXPECT_EQ(r.rec.writesTo(0x378), std::vector<std::uint8_t>{0x0B});
}

TEST(DriverRouting, AnalogOutputsAreSentByTheQrt110AndTheQrtuOnly) {
    for (int type = 0; type < kDaqTypeCount; ++type) {
        Routed r(type);
        r.st.daq.AnalogOutputValues[1] = 200;
        r.st.daq.AnalogOutputValues[2] = 100;
        WriteAnalogOutputs(r.st);
        EXPECT_EQ(r.touched(), type == kDaqQrt110 || type == kDaqQrtu) << type;
    }
}

TEST(DriverRouting, Qrt110SendsSlots2Then1) {
    Routed r(kDaqQrt110);
    r.st.daq.AnalogOutputValues[1] = 0xABC;
    r.st.daq.AnalogOutputValues[2] = 0x123;
    r.st.daq.AnalogOutputValues[3] = 0xFFF;
    WriteAnalogOutputs(r.st);
    const auto bits = test::BitsAtRisingEdges(r.rec.writesTo(0x378), 0, 1);
    ASSERT_EQ(bits.size(), 24u);
    EXPECT_EQ(test::BitsToNumber(bits, 0, 12), 0x123);
    EXPECT_EQ(test::BitsToNumber(bits, 12, 12), 0xABC);
}

TEST(DriverRouting, QrtuSendsSlot1AndRefusesValuesAbove255) {
    Routed r(kDaqQrtu);
    r.st.daq.AnalogOutputValues[1] = 255;
    r.st.daq.AnalogOutputValues[2] = 17;
    WriteAnalogOutputs(r.st);
    EXPECT_EQ(r.rec.writesTo(0x378), std::vector<std::uint8_t>{255});
    EXPECT_EQ(r.st.daq.Port.PortError, 0);
    r.rec.clear();
    r.st.daq.AnalogOutputValues[1] = 256;
    WriteAnalogOutputs(r.st);
    EXPECT_EQ(r.st.daq.Port.PortError, 1);
    EXPECT_FALSE(r.touched());
}

TEST(DriverRouting, DigitalOutputsAreSentByTypes1And3And5) {
    for (int type = 0; type < kDaqTypeCount; ++type) {
        Routed r(type);
        WriteDigitalOutputs(r.st, 5);
        const bool port = type == kDaqQrt105 || type == kDaqQrt115 || type == kDaqQrtu;
        EXPECT_EQ(r.touched(), port) << type;
        if (port) {
            EXPECT_EQ(r.rec.writesTo(0x378), std::vector<std::uint8_t>{5}) << type;
        }
    }
}

TEST(DriverRouting, OutOfRangeDigitalWordsPerType) {
    Routed q105(kDaqQrt105);
    WriteDigitalOutputs(q105.st, 16);
    EXPECT_EQ(q105.st.daq.Port.PortError, 1);
    EXPECT_FALSE(q105.touched());

    Routed q115(kDaqQrt115);
    WriteDigitalOutputs(q115.st, 256);
    EXPECT_EQ(q115.st.daq.Port.PortError, 0);
    EXPECT_FALSE(q115.touched());

    Routed qrtu(kDaqQrtu);
    WriteDigitalOutputs(qrtu.st, 256);
    EXPECT_EQ(qrtu.st.daq.Port.PortError, 1);
    EXPECT_FALSE(qrtu.touched());
}

TEST(DriverRouting, DriversUseTheSelectedPortBase) {
    Routed r(kDaqQrt115);
    SelectPort(r.st, 2, 0);
    r.rec.clear();
    ReadDigitalInputs(r.st);
    WriteDigitalOutputs(r.st, 1);
    for (const PortAccess& a : test::Accesses(r.rec.log())) {
        EXPECT_GE(a.port, 0x278);
        EXPECT_LE(a.port, 0x27A);
    }
    EXPECT_FALSE(r.rec.log().empty());
}

}  // namespace kova
