#include "daq/sim/module_simulator.h"

#include <cstdio>

namespace kova {

ModuleSimulator::~ModuleSimulator() {
    detach();
}

void ModuleSimulator::attach(SimulatedBus& bus, std::uint16_t base) {
    detach();
    bus_ = &bus;
    base_ = base;
    bus.attach(*this);
}

void ModuleSimulator::detach() {
    if (bus_ != nullptr) bus_->detach(*this);
    bus_ = nullptr;
}

bool ModuleSimulator::claims(std::uint16_t port) const {
    return bus_ != nullptr && port >= base_ && port - base_ <= 2;
}

std::uint8_t ModuleSimulator::read(std::uint16_t port) {
    switch (port - base_) {
        case 0:
            return data_;
        case 1:
            ++statusReads_;
            statusRead();
            return peekStatus();
        default:
            return control_;
    }
}

void ModuleSimulator::write(std::uint16_t port, std::uint8_t value) {
    if (port == base_) {
        const std::uint8_t before = data_;
        data_ = value;
        if (before != value) dataChanged(before, value);
    } else if (port == base_ + 2) {
        const std::uint8_t before = control_;
        control_ = value;
        if (before != value) controlChanged(before, value);
    }
    // The status register is read-only: writes to it go nowhere.
}

std::string ModuleSimulator::LatchedOutputsLine() const {
    char line[80];
    std::snprintf(line, sizeof line, "outputs: DO=0x%02X AO-1=%d AO-2=%d",
                  static_cast<unsigned>(latchedDigitalOutputs()), latchedAnalogOutput(1),
                  latchedAnalogOutput(2));
    return line;
}

}  // namespace kova
