#include "daq/sim/serial_converter12.h"

#include <algorithm>

#include "core/fault.h"

namespace kova {

namespace {
// Single-ended select code -> input index 0..7.
constexpr std::array<int, 8> kSingleEndedInput = {0, 2, 4, 6, 1, 3, 5, 7};
}  // namespace

void SerialConverter12::setInput(int n, int counts) {
    if (n < 1 || n > 8) throwBounds("converter input", n, 1, 8);
    inputs_[static_cast<std::size_t>(n - 1)] = std::clamp(counts, 0, 4095);
}

int SerialConverter12::input(int n) const {
    if (n < 1 || n > 8) throwBounds("converter input", n, 1, 8);
    return inputs_[static_cast<std::size_t>(n - 1)];
}

int SerialConverter12::convert(std::uint8_t command) const {
    const int select = (command >> 4) & 7;
    const bool singleEnded = (command & 0x04) != 0;
    if (singleEnded) return inputs_[static_cast<std::size_t>(kSingleEndedInput[select])];
    const int pair = select & 3;
    const int swap = (select >> 2) & 1;
    const int plus = inputs_[static_cast<std::size_t>(2 * pair + swap)];
    const int minus = inputs_[static_cast<std::size_t>(2 * pair + 1 - swap)];
    return std::max(0, plus - minus);
}

void SerialConverter12::update(bool selected, bool clock, bool dataIn) {
    const bool wasSelected = selected_;
    const bool wasClock = clock_;
    selected_ = selected;
    clock_ = clock;
    if (!selected) {
        phase_ = Phase::WaitStart;
        dataOut_ = false;
        return;
    }
    if (!wasSelected) {
        // A new selection: the next command starts with its start bit.
        phase_ = Phase::WaitStart;
        commandBits_ = 0;
        dataOut_ = false;
        return;
    }
    if (clock && !wasClock) {  // rising edge: command bits are sampled
        switch (phase_) {
            case Phase::WaitStart:
                if (dataIn) {
                    command_ = 1;
                    commandBits_ = 1;
                    phase_ = Phase::Command;
                }
                break;
            case Phase::Command:
                command_ = static_cast<std::uint8_t>(command_ * 2 + (dataIn ? 1 : 0));
                if (++commandBits_ == 8) {
                    commands_.push_back(command_);
                    result_ = convert(command_);
                    pulsesAfterCommand_ = 0;
                    phase_ = Phase::Output;
                }
                break;
            case Phase::Output:
                ++pulsesAfterCommand_;
                break;
        }
    } else if (!clock && wasClock && phase_ == Phase::Output) {  // falling edge: next bit out
        if (pulsesAfterCommand_ >= 1 && pulsesAfterCommand_ <= 12)
            dataOut_ = ((result_ >> (12 - pulsesAfterCommand_)) & 1) != 0;
        else
            dataOut_ = false;
    }
}

}  // namespace kova
