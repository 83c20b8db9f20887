#include "daq/sim/module_simulators.h"

#include "daq/sim/field_recorder_simulator.h"
#include "daq/sim/qrt105_simulator.h"
#include "daq/sim/qrt110_simulator.h"
#include "daq/sim/qrt115_simulator.h"
#include "daq/sim/qrtu_simulator.h"
#include "tags/daq_profile.h"

namespace kova {

std::unique_ptr<ModuleSimulator> MakeModuleSimulator(int typeCode) {
    switch (typeCode) {
        case kDaqQrt105: {
            auto sim = std::make_unique<Qrt105Simulator>();
            for (int n = 1; n <= 8; ++n) sim->setAnalogInput(n, n * 450 + 50);
            sim->setDigitalInputs(10);
            return sim;
        }
        case kDaqQrt110: {
            auto sim = std::make_unique<Qrt110Simulator>();
            for (int n = 1; n <= 8; ++n) sim->setAnalogInput(n, n * 450 + 50);
            return sim;
        }
        case kDaqQrt115: {
            auto sim = std::make_unique<Qrt115Simulator>();
            sim->setDigitalInputs(0xA5);
            return sim;
        }
        case kDaqFieldRecorder: {
            auto sim = std::make_unique<FieldRecorderSimulator>();
            sim->setAnalogInput(165);
            return sim;
        }
        case kDaqQrtu: {
            auto sim = std::make_unique<QrtuSimulator>();
            for (int n = 1; n <= 8; ++n) sim->setAnalogInput(n, n * 100 + 20);
            sim->setDigitalInputs(0x5AA5);
            return sim;
        }
        default:
            return nullptr;
    }
}

}  // namespace kova
