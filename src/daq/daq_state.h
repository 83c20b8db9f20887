#pragma once
// Output image, pending flags and module summary shared by the scan, the control
// statements, the readings screens and the drivers.
#include <cstdint>

#include "core/one_based.h"
#include "daq/port_layer.h"

namespace kova {

struct ModuleSummary {
    std::int16_t InUse = 0;  // -1 when an input tag names this address
    std::int16_t LowestAnalogInput = 30000;
    std::int16_t HighestAnalogInput = -1;
    std::int16_t LowestDigitalInput = 30000;
    std::int16_t HighestDigitalInput = -1;
    std::int16_t AnalogOutputsPending = 0;  // -1: the analog output table changed
    std::int16_t Reserved7 = 0;
    std::int16_t DigitalOutputsPending = 0;  // -1: the digital output word changed
    std::int16_t Reserved9 = 0;
    std::int16_t Reserved10 = 0;
    bool operator==(const ModuleSummary&) const = default;
};

// The simulated TEST module's state: walking bit and ramp counter.
struct TestModuleState {
    std::int16_t Walk = 0;
    std::int16_t Ramp = 0;
    bool operator==(const TestModuleState&) const = default;
};

struct DaqState {
    PortState Port;
    ModuleSummary Summary;                       // of DAQ address 1, the only one
    Table<std::int16_t, 32> AnalogOutputValues;  // slot (address - 1) x 20 + channel
    std::uint16_t DigitalOutputImage = 0;        // bit 0 = DO-1
    TestModuleState Test;
    std::int16_t PrinterPortNumber = 1;  // LPT 1..3
    std::int16_t PrinterPortBase = 0;    // explicit base, 0 = from the LPT number
    bool SilenceTold = false;            // the user has heard that the module stopped answering
};

}  // namespace kova
