// Port traffic and cost of the module drivers on the simulated bus, with the delay count 0
// so that only the register accesses and the module simulation are measured.
#include <benchmark/benchmark.h>

#include "daq/qrt105.h"
#include "daq/qrt110.h"
#include "daq/qrtu.h"
#include "daq/sim/qrt105_simulator.h"
#include "daq/sim/qrt110_simulator.h"
#include "daq/sim/qrtu_simulator.h"
#include "platform/recording_port_io.h"
#include "platform/simulated_bus.h"

namespace {

using benchmark::Counter;

// Register accesses of one QRT105 conversion, reported per conversion as the counters
// "writes" (46) and "reads" (12).
void BM_Qrt105ConversionPortOperations(benchmark::State& state) {
    kova::SimulatedBus bus;
    kova::Qrt105Simulator sim;
    sim.attach(bus, 0x378);
    kova::RecordingPortIo rec(bus);
    kova::PortState regs;
    kova::PortBus port(regs, rec);
    double writes = 0, reads = 0;
    std::int16_t next = 1;
    for (auto _ : state) {
        rec.clear();
        std::int16_t c = next;
        benchmark::DoNotOptimize(kova::Qrt105ReadAnalogInput(port, 1, c));
        writes += static_cast<double>(rec.writes());
        reads += static_cast<double>(rec.reads());
        next = static_cast<std::int16_t>(next % 8 + 1);
    }
    state.counters["writes"] = Counter(writes, Counter::kAvgIterations);
    state.counters["reads"] = Counter(reads, Counter::kAvgIterations);
}
BENCHMARK(BM_Qrt105ConversionPortOperations);

// One scan of the eight QRT105 analog inputs on the simulated bus, delay count 0.
void BM_Qrt105ScanOf8Channels(benchmark::State& state) {
    kova::SimulatedBus bus;
    kova::Qrt105Simulator sim;
    sim.attach(bus, 0x378);
    for (int n = 1; n <= 8; ++n) sim.setAnalogInput(n, n * 450 + 50);
    kova::PortState regs;
    regs.DelayCount = 0;
    kova::PortBus port(regs, bus);
    for (auto _ : state) {
        int sum = 0;
        for (std::int16_t n = 1; n <= 8; ++n) {
            std::int16_t c = n;
            sum += kova::Qrt105ReadAnalogInput(port, 1, c);
        }
        benchmark::DoNotOptimize(sum);
    }
    state.counters["conversions"] =
        Counter(8.0 * static_cast<double>(state.iterations()), Counter::kIsRate);
}
BENCHMARK(BM_Qrt105ScanOf8Channels);

// One QRT105 conversion at the delay count a current PC measures (about 2500): 61 bit
// times of busy-waiting, the conversion wait being twenty single bit times.
void BM_Qrt105ConversionAtACurrentPcsDelay(benchmark::State& state) {
    kova::SimulatedBus bus;
    kova::Qrt105Simulator sim;
    sim.attach(bus, 0x378);
    sim.setAnalogInput(3, 1400);
    kova::PortState regs;
    regs.DelayCount = static_cast<std::int32_t>(state.range(0));
    kova::PortBus port(regs, bus);
    for (auto _ : state) {
        std::int16_t c = 3;
        benchmark::DoNotOptimize(kova::Qrt105ReadAnalogInput(port, 1, c));
    }
}
BENCHMARK(BM_Qrt105ConversionAtACurrentPcsDelay)
    ->Arg(2500)
    ->Arg(8898)
    ->Unit(benchmark::kMicrosecond);

// One QRT110 output update (76 register writes).
void BM_Qrt110OutputUpdate(benchmark::State& state) {
    kova::SimulatedBus bus;
    kova::Qrt110Simulator sim;
    sim.attach(bus, 0x378);
    kova::RecordingPortIo rec(bus);
    kova::PortState regs;
    kova::PortBus port(regs, rec);
    double writes = 0;
    std::int16_t x = 0;
    for (auto _ : state) {
        rec.clear();
        kova::Qrt110WriteAnalogOutputs(port, x, static_cast<std::int16_t>(4095 - x));
        writes += static_cast<double>(rec.writes());
        x = static_cast<std::int16_t>((x + 37) % 4096);
    }
    benchmark::DoNotOptimize(sim.latchedAnalogOutput(1));
    state.counters["writes"] = Counter(writes, Counter::kAvgIterations);
}
BENCHMARK(BM_Qrt110OutputUpdate);

// One scan of the eight QRTU analog inputs and its digital inputs, delay count 0.
void BM_QrtuScan(benchmark::State& state) {
    kova::SimulatedBus bus;
    kova::QrtuSimulator sim;
    sim.attach(bus, 0x378);
    for (int n = 1; n <= 8; ++n) sim.setAnalogInput(n, n * 100 + 20);
    sim.setDigitalInputs(0x5AA5);
    kova::PortState regs;
    kova::PortBus port(regs, bus);
    for (auto _ : state) {
        int sum = kova::QrtuReadDigitalInputs(port);
        for (std::int16_t n = 1; n <= 8; ++n) {
            std::int16_t c = n;
            sum += kova::QrtuReadAnalogInput(port, c);
        }
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK(BM_QrtuScan);

}  // namespace
