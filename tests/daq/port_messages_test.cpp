#include "daq/port_messages.h"

#include <gtest/gtest.h>

#include "daq/driver_dispatch.h"
#include "daq/sim/qrtu_simulator.h"
#include "platform/port_backends.h"
#include "platform/simulated_bus.h"
#include "platform/steady_clock.h"

namespace kova {

TEST(FloatingBusReadings, EachModuleSaysWhatItReadsWithNothingOnThePort) {
    EXPECT_EQ(FloatingBusReadingsText(kDaqTest), "");
    EXPECT_EQ(FloatingBusReadingsText(kDaqQrt105),
              "The QRT105 will read 4095 on every analog input and 7 on its digital inputs.");
    EXPECT_EQ(FloatingBusReadingsText(kDaqQrt110),
              "The QRT110 will read 4095 on every analog input.");
    EXPECT_EQ(FloatingBusReadingsText(kDaqQrt115),
              "The QRT115 will read 255 on its digital inputs.");
    EXPECT_EQ(FloatingBusReadingsText(kDaqFieldRecorder),
              "The FIELD RECORDER will read -1 on its analog input.");
    EXPECT_EQ(FloatingBusReadingsText(kDaqQrtu),
              "The QRTU will read 1023 on every analog input and 32767 on its digital inputs.");
    EXPECT_EQ(FloatingBusReadingsText(9), "");
}

namespace {
// A QRTU whose conversion-done bit never comes, on the simulated bus at LPT 1.
struct SilentQrtu {
    Station st;
    SimulatedBus bus;
    QrtuSimulator sim;
    SteppingSteadyClock clock{std::chrono::milliseconds(1)};
    SilentQrtu() {
        st.platform.port = &bus;
        st.platform.steady = &clock;
        BuildIOList(st.profile, kDaqQrtu);
        st.switches.PollEnabled = true;
        SelectPort(st, 1, 0);
        sim.attach(bus, 0x378);
        sim.setConversionReads(-1);
    }
    ~SilentQrtu() { sim.detach(); }
    std::int16_t read(std::int16_t channel) { return ReadAnalogInput(st, 1, channel); }
};
}  // namespace

TEST(ModuleSilence, AQrtuThatDoesNotAnswerIsToldOnceNamingThePort) {
    SilentQrtu q;
    EXPECT_EQ(ModuleSilenceToTell(q.st), "");
    for (std::int16_t ch = 1; ch <= 8; ++ch) EXPECT_EQ(q.read(ch), -1);
    EXPECT_EQ(q.st.daq.Port.PortError, 1);
    EXPECT_EQ(ModuleSilenceToTell(q.st),
              "The QRTU on LPT 1 (0x378) is not answering: its analog inputs read -1");
    EXPECT_EQ(q.read(1), -1);
    EXPECT_EQ(ModuleSilenceToTell(q.st), "");  // once
    // Eight reads of a silent module: one full wait of 100 ms, then a 1 ms look each.
    EXPECT_LT(q.clock.readings(), 100 + 2 * 9 + 2);
}

TEST(ModuleSilence, IsToldAgainAfterTheModuleAnsweredInBetween) {
    SilentQrtu q;
    q.read(1);
    EXPECT_NE(ModuleSilenceToTell(q.st), "");
    q.st.daq.Port.NotAnswering = 0;  // a conversion came
    EXPECT_EQ(ModuleSilenceToTell(q.st), "");
    q.read(1);
    EXPECT_NE(ModuleSilenceToTell(q.st), "");
}

TEST(ModuleSilence, NamesTheFieldRecordersOneInputAndAnExplicitBase) {
    Station st;
    SimulatedBus bus;
    bus.poke(0x279, 0x08);  // never ready
    st.platform.port = &bus;
    BuildIOList(st.profile, kDaqFieldRecorder);
    st.switches.PollEnabled = true;
    st.daq.PrinterPortNumber = 2;
    SelectPort(st, 2, 0x278);
    std::int16_t ch = 1;
    EXPECT_EQ(ReadAnalogInput(st, 1, ch), -1);
    EXPECT_EQ(ModuleSilenceToTell(st),
              "The FIELD RECORDER on LPT 2 (0x278) is not answering: its analog input reads -1");
}

TEST(ModuleSilence, APortThatCannotBeReachedSpeaksForItself) {
    Station st;
    UnavailablePortIo none("no port");
    st.platform.port = &none;
    BuildIOList(st.profile, kDaqQrtu);
    st.daq.Port.NotAnswering = 1;
    EXPECT_EQ(ModuleSilenceToTell(st), "");
}

TEST(ModuleSilence, SelectingAPortForgetsTheSilence) {
    SilentQrtu q;
    q.read(1);
    SelectPort(q.st, 1, 0);
    EXPECT_EQ(q.st.daq.Port.NotAnswering, 0);
}

}  // namespace kova
