#include "daq/sim/qrt110_simulator.h"

namespace kova {

void Qrt110Simulator::updateConverter() {
    converter_.update(isSet(controlRegister(), 1), isSet(dataRegister(), 0),
                      isSet(dataRegister(), 1));
}

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
    return converter_.dataOut() ? 0x08 : 0x00;
}

}  // namespace kova
