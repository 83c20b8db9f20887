// Where the drivers busy-wait. A delay count of 32766 or more overflows the busy-wait's
// counter, so with such a count a driver faults at its first bit time: the trace ends with
// that wait, after the register accesses made before it. (Every wait of every transfer is
// asserted where it stands in the drivers' own trace tests.)
#include <gtest/gtest.h>

#include "core/fault.h"
#include "daq/field_recorder.h"
#include "daq/qrt105.h"
#include "daq/qrt110.h"
#include "daq/qrt115.h"
#include "daq/qrtu.h"
#include "port_rig.h"

namespace kova {

using test::PortRig;
using test::Trace;

namespace {
struct SlowRig : PortRig {
    explicit SlowRig(std::int32_t count) {
        regs.DelayCount = count;
        status(0x40);
    }
};
}  // namespace

TEST(BitTiming, Qrt105WaitsOneBitTimeAfterClearingTheDataLines) {
    SlowRig r(32766);
    std::int16_t c = 1;
    EXPECT_THROW(Qrt105ReadAnalogInput(r.port, 1, c), Fault);
    EXPECT_EQ(r.rec.log(), Trace().wd(0).d(32766).items);
}

TEST(BitTiming, Qrt105DigitalTransfersDoNotWait) {
    SlowRig r(32766);
    EXPECT_NO_THROW(Qrt105ReadDigitalInputs(r.port, 3));
    EXPECT_NO_THROW(Qrt105WriteDigitalOutputs(r.port, 3));
}

TEST(BitTiming, Qrt110OutputUpdateWaitsAfterItsFirstWrite) {
    SlowRig r(32766);
    EXPECT_THROW(Qrt110WriteAnalogOutputs(r.port, 1, 2), Fault);
    EXPECT_EQ(r.rec.log(), Trace().wd(0).d(32766).items);
}

TEST(BitTiming, Qrt115StartWaitsWithBothLinesHigh) {
    SlowRig r(32766);
    EXPECT_THROW(Qrt115ReadDigitalInputs(r.port), Fault);
    EXPECT_EQ(r.rec.log(), Trace().wc(0x0A).wc(0x0A).d(32766).items);
}

TEST(BitTiming, Qrt115OutputsDoNotWait) {
    SlowRig r(32766);
    EXPECT_NO_THROW(Qrt115WriteDigitalOutputs(r.port, 200));
}

TEST(BitTiming, FieldRecorderWaitsAfterWriting4) {
    SlowRig r(32766);
    EXPECT_THROW(FieldRecorderReadAnalogInput(r.port), Fault);
    EXPECT_EQ(r.rec.log(), Trace().wc(4).d(32766).items);
}

TEST(BitTiming, QrtuAnalogReadWaitsBeforeEachChannelBit) {
    SlowRig r(32766);
    std::int16_t c = 1;
    EXPECT_THROW(QrtuReadAnalogInput(r.port, c), Fault);
    EXPECT_EQ(r.rec.log(), Trace().wc(8).d(32766).items);
}

TEST(BitTiming, QrtuDigitalReadLoadsWithoutWaiting) {
    SlowRig r(32766);
    EXPECT_THROW(QrtuReadDigitalInputs(r.port), Fault);
    EXPECT_EQ(r.rec.log(), Trace().wd(0).wd(2).wd(0).wd(1).rs(0x40).wd(3).d(32766).items);
}

TEST(BitTiming, QrtuOutputsWaitAfterClearingTheControlRegister) {
    SlowRig a(32766);
    EXPECT_THROW(QrtuWriteDigitalOutputs(a.port, 1), Fault);
    EXPECT_EQ(a.rec.log(), Trace().wc(0).d(32766).items);
    SlowRig b(32766);
    EXPECT_THROW(QrtuWriteAnalogOutputs(b.port, 1), Fault);
    EXPECT_EQ(b.rec.log(), Trace().wc(0).d(32766).items);
}

}  // namespace kova
