#include "daq/sim/field_recorder_simulator.h"

namespace kova {

void FieldRecorderSimulator::controlChanged(std::uint8_t before, std::uint8_t after) {
    if (rose(before, after, 2)) {
        busy_ = true;
        busyLeft_ = busyReads_;
        ++started_;
    }
}

void FieldRecorderSimulator::statusRead() {
    if (!busy_) return;
    if (busyLeft_ < 0) return;  // never finishes
    if (busyLeft_ == 0) {
        busy_ = false;
        result_ = input_;
    } else {
        --busyLeft_;
    }
}

std::uint8_t FieldRecorderSimulator::statusPins() const {
    std::uint8_t pins = busy_ ? 0x08 : 0x00;
    const std::uint8_t control = controlRegister();
    if (isSet(control, 1)) {
        const int nibble = isSet(control, 0) ? (result_ >> 4) : (result_ & 0x0F);
        pins = static_cast<std::uint8_t>(pins | (nibble << 4));
    }
    return pins;
}

}  // namespace kova
