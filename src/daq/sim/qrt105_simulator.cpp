#include "daq/sim/qrt105_simulator.h"

namespace kova {

void Qrt105Simulator::dataChanged(std::uint8_t, std::uint8_t) {
    updateConverter();
}

void Qrt105Simulator::controlChanged(std::uint8_t before, std::uint8_t after) {
    if (rose(before, after, 0)) {
        outputs_ = static_cast<std::uint8_t>(dataRegister() & 15);
        sampled_ = inputs_;
        ++strobes_;
    }
    updateConverter();
}

std::uint8_t Qrt105Simulator::statusPins() const {
    std::uint8_t pins = static_cast<std::uint8_t>(sampled_ << 4);  // DI-1..DI-3, DI-4 on BUSY
    pins |= converterPin();
    return pins;
}

}  // namespace kova
