#include "daq/sim/qrt110_simulator.h"

namespace kova {

void Qrt110Simulator::dataChanged(std::uint8_t before, std::uint8_t after) {
    if (isSet(controlRegister(), 0) && rose(before, after, 0))
        shift_ = ((shift_ << 1) | (isSet(after, 1) ? 1u : 0u)) & 0xFFFFFFu;
    updateConverter();
}

void Qrt110Simulator::controlChanged(std::uint8_t before, std::uint8_t after) {
    if (fell(before, after, 0)) {
        ao2_ = static_cast<int>((shift_ >> 12) & 0xFFF);
        ao1_ = static_cast<int>(shift_ & 0xFFF);
        ++loads_;
    }
    updateConverter();
}

int Qrt110Simulator::latchedAnalogOutput(int n) const {
    if (n == 1) return ao1_;
    if (n == 2) return ao2_;
    return 0;
}

std::uint8_t Qrt110Simulator::statusPins() const {
    return converterPin();
}

}  // namespace kova
