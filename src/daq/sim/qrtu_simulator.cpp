#include "daq/sim/qrtu_simulator.h"

#include <algorithm>

#include "core/fault.h"

namespace kova {

void QrtuSimulator::setAnalogInput(int n, int counts) {
    if (n < 1 || n > 8) throwBounds("QRTU input", n, 1, 8);
    analog_[static_cast<std::size_t>(n - 1)] = std::clamp(counts, 0, 1023);
}

void QrtuSimulator::startCycle() {
    cycleEdges_ = 0;
    address_ = 0;
    addressBits_ = 0;
    outShift_ = result_;
}

void QrtuSimulator::dataChanged(std::uint8_t before, std::uint8_t after) {
    const bool clockRose = rose(before, after, 1);
    const bool clockFell = fell(before, after, 1);
    const bool dataIn = isSet(after, 0);

    if (clockRose) {
        if (!dataIn) {
            // Load: first stage DI-1..DI-8 (DI-8 at the output end), then the spare input
            // and DI-9..DI-15.
            const std::uint16_t first = inputs_ & 0xFF;
            const std::uint16_t second = static_cast<std::uint16_t>(0x80 | ((inputs_ >> 8) & 0x7F));
            chain_ = static_cast<std::uint16_t>((first << 8) | second);
        } else {
            chain_ = static_cast<std::uint16_t>(chain_ << 1);
        }
    }

    if (!selected() || converting_) return;
    if (clockRose && addressBits_ < 4) {
        address_ = address_ * 2 + (dataIn ? 1 : 0);
        ++addressBits_;
    }
    if (clockFell) {
        outShift_ = (outShift_ << 1) & 0x3FF;
        if (++cycleEdges_ == 10) {
            converting_ = true;
            endOfConversion_ = false;
            busyLeft_ = conversionReads_;
            pendingAddress_ = address_;
            addresses_.push_back(address_);
        }
    }
}

void QrtuSimulator::controlChanged(std::uint8_t before, std::uint8_t after) {
    if (rose(before, after, 0)) digitalOutputs_ = dataRegister();
    if (rose(before, after, 1)) analogOutput_ = dataRegister();
    if (rose(before, after, 3)) {
        // Far more time passes between two selections than a conversion takes.
        if (converting_ && busyLeft_ >= 0) finishConversion();
        if (!converting_) startCycle();
    }
}

void QrtuSimulator::finishConversion() {
    converting_ = false;
    endOfConversion_ = true;
    result_ = pendingAddress_ < 8 ? analog_[static_cast<std::size_t>(pendingAddress_)] : 0;
    startCycle();
}

void QrtuSimulator::statusRead() {
    if (!converting_ || busyLeft_ < 0) return;
    if (busyLeft_ > 0) {
        --busyLeft_;
        return;
    }
    finishConversion();
}

std::uint8_t QrtuSimulator::statusPins() const {
    std::uint8_t pins = 0;
    if (selected() && !converting_ && (outShift_ & 0x200) != 0) pins |= 0x10;
    if ((chain_ & 0x8000) != 0) pins |= 0x20;
    if (endOfConversion_) pins |= 0x40;
    return pins;
}

}  // namespace kova
