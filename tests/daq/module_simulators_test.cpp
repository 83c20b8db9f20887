#include "daq/sim/module_simulators.h"

#include <gtest/gtest.h>

#include "daq/driver_dispatch.h"
#include "platform/recording_port_io.h"
#include "platform/simulated_bus.h"
#include "tags/daq_profile.h"

namespace kova {

namespace {

// A station polling a module of one type on the simulated bus, set up the way a run on the
// simulated port does it.
struct SimulatedStation {
    Station st;
    SimulatedBus bus;
    std::unique_ptr<ModuleSimulator> sim;

    explicit SimulatedStation(int type, bool selectPortOnTheBus = false) {
        st.switches.PollEnabled = true;
        BuildIOList(st.profile, type);
        if (!selectPortOnTheBus) SelectPort(st, 1, 0);
        st.platform.port = &bus;
        sim = MakeModuleSimulator(type);
        sim->attach(bus, st.daq.Port.DataPort);
        if (selectPortOnTheBus) SelectPort(st, 1, 0);
    }
    ~SimulatedStation() { sim.reset(); }  // off the bus before the bus goes

    std::int16_t analog(std::int16_t channel) {
        std::int16_t c = channel;
        return ReadAnalogInput(st, 1, c);
    }
};

}  // namespace

TEST(ModuleSimulators, OneForEachRealModuleTypeAndNoneForTest) {
    EXPECT_EQ(MakeModuleSimulator(kDaqTest), nullptr);
    EXPECT_EQ(MakeModuleSimulator(6), nullptr);
    EXPECT_EQ(MakeModuleSimulator(-1), nullptr);
    for (int type = 1; type <= 5; ++type) {
        auto sim = MakeModuleSimulator(type);
        ASSERT_NE(sim, nullptr);
        EXPECT_EQ(sim->typeCode(), type);
        EXPECT_EQ(sim->LatchedOutputsLine(), "outputs: DO=0x00 AO-1=0 AO-2=0");
    }
}

TEST(ModuleSimulators, AttachesAtTheStationsPortBase) {
    Station st;
    SelectPort(st, 2, 0);
    SimulatedBus bus;
    auto sim = MakeModuleSimulator(kDaqQrt115);
    sim->attach(bus, st.daq.Port.DataPort);
    EXPECT_TRUE(sim->claims(0x278));
    EXPECT_TRUE(sim->claims(0x279));
    EXPECT_TRUE(sim->claims(0x27A));
    EXPECT_FALSE(sim->claims(0x277));
    EXPECT_FALSE(sim->claims(0x27B));
    EXPECT_FALSE(sim->claims(0x378));
    sim->detach();
    EXPECT_FALSE(sim->claims(0x278));
}

TEST(ModuleSimulatorsEndToEnd, Qrt105) {
    SimulatedStation s(kDaqQrt105);
    for (std::int16_t n = 1; n <= 8; ++n) EXPECT_EQ(s.analog(n), n * 450 + 50) << n;
    EXPECT_EQ(ReadDigitalInputs(s.st), 10);
    WriteDigitalOutputs(s.st, 0x0D);
    WriteAnalogOutputs(s.st);  // none on this module
    EXPECT_EQ(s.sim->LatchedOutputsLine(), "outputs: DO=0x0D AO-1=0 AO-2=0");
}

TEST(ModuleSimulatorsEndToEnd, Qrt110) {
    SimulatedStation s(kDaqQrt110);
    for (std::int16_t n = 1; n <= 8; ++n) EXPECT_EQ(s.analog(n), n * 450 + 50) << n;
    EXPECT_EQ(ReadDigitalInputs(s.st), 1);
    s.st.daq.AnalogOutputValues[1] = 1234;
    s.st.daq.AnalogOutputValues[2] = 4095;
    WriteAnalogOutputs(s.st);
    WriteDigitalOutputs(s.st, 3);  // none on this module
    EXPECT_EQ(s.sim->LatchedOutputsLine(), "outputs: DO=0x00 AO-1=1234 AO-2=4095");
}

TEST(ModuleSimulatorsEndToEnd, Qrt115) {
    SimulatedStation s(kDaqQrt115);
    EXPECT_EQ(s.analog(1), 0);
    EXPECT_EQ(ReadDigitalInputs(s.st), 0xA5);
    WriteDigitalOutputs(s.st, 0xC3);
    EXPECT_EQ(s.sim->LatchedOutputsLine(), "outputs: DO=0xC3 AO-1=0 AO-2=0");
    WriteDigitalOutputs(s.st, 256);  // ignored
    EXPECT_EQ(s.sim->LatchedOutputsLine(), "outputs: DO=0xC3 AO-1=0 AO-2=0");
}

TEST(ModuleSimulatorsEndToEnd, FieldRecorder) {
    SimulatedStation s(kDaqFieldRecorder);
    std::int16_t c = 1;
    EXPECT_EQ(ReadAnalogInput(s.st, 1, c), 165);
    EXPECT_EQ(c, 1);
    EXPECT_EQ(ReadDigitalInputs(s.st), 1);
    WriteDigitalOutputs(s.st, 5);
    WriteAnalogOutputs(s.st);
    EXPECT_EQ(s.sim->LatchedOutputsLine(), "outputs: DO=0x00 AO-1=0 AO-2=0");
}

TEST(ModuleSimulatorsEndToEnd, Qrtu) {
    SimulatedStation s(kDaqQrtu);
    for (std::int16_t n = 1; n <= 8; ++n) EXPECT_EQ(s.analog(n), n * 100 + 20) << n;
    EXPECT_EQ(ReadDigitalInputs(s.st), 0x5AA5);
    WriteDigitalOutputs(s.st, 0x81);
    s.st.daq.AnalogOutputValues[1] = 200;
    s.st.daq.AnalogOutputValues[2] = 99;  // only AO-1 exists
    WriteAnalogOutputs(s.st);
    EXPECT_EQ(s.sim->LatchedOutputsLine(), "outputs: DO=0x81 AO-1=200 AO-2=0");
}

TEST(ModuleSimulatorsEndToEnd, SelectPortSeenByTheModuleChangesNoReading) {
    for (int type = 1; type <= 5; ++type) {
        SimulatedStation s(type, true);
        // Scan order: analog inputs, then digital inputs, twice.
        for (int scan = 0; scan < 2; ++scan) {
            if (type == kDaqQrt105 || type == kDaqQrt110) {
                EXPECT_EQ(s.analog(8), 3650) << type;
            } else if (type == kDaqQrtu) {
                EXPECT_EQ(s.analog(8), 820);
            } else if (type == kDaqFieldRecorder) {
                EXPECT_EQ(s.analog(1), 165);
            }
            const std::uint16_t di[] = {0, 10, 1, 0xA5, 1, 0x5AA5};
            EXPECT_EQ(ReadDigitalInputs(s.st), di[type]) << type;
        }
        EXPECT_EQ(s.sim->LatchedOutputsLine(), "outputs: DO=0x00 AO-1=0 AO-2=0") << type;
    }
}

TEST(ModuleSimulatorsEndToEnd, QrtuConverterSelectedBySelectPortCountsTheClocksOfADigitalRead) {
    // SelectPort's 0x0A has control bit 3 set, which selects the QRTU's converter; a
    // digital read before the first analog read clocks the converter's I/O cycle, so that
    // first analog reading is taken out of step (here: of an unwired address, 0). The
    // analog read ends by deselecting the converter, and every later reading is right.
    SimulatedStation s(kDaqQrtu, true);
    EXPECT_EQ(ReadDigitalInputs(s.st), 0x5AA5);
    EXPECT_EQ(s.analog(1), 0);
    for (int scan = 0; scan < 3; ++scan) {
        EXPECT_EQ(ReadDigitalInputs(s.st), 0x5AA5);
        for (std::int16_t n = 1; n <= 8; ++n) EXPECT_EQ(s.analog(n), n * 100 + 20);
    }
}

TEST(ModuleSimulatorsEndToEnd, AScanOfEveryChannelRepeatedGivesTheSameValues) {
    for (int type : {1, 2, 5}) {
        SimulatedStation s(type);
        for (int scan = 0; scan < 5; ++scan) {
            ReadDigitalInputs(s.st);
            for (std::int16_t n = 1; n <= 8; ++n)
                ASSERT_EQ(s.analog(n), type == kDaqQrtu ? n * 100 + 20 : n * 450 + 50);
        }
    }
}

}  // namespace kova
