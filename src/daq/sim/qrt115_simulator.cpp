#include "daq/sim/qrt115_simulator.h"

namespace kova {

void Qrt115Simulator::controlChanged(std::uint8_t before, std::uint8_t after) {
    const bool sclBefore = !isSet(before, 0);
    const bool sclAfter = !isSet(after, 0);
    const bool sdaBefore = isSet(before, 1) && slaveSda_;
    const bool sdaAfter = isSet(after, 1) && slaveSda_;
    // When one write moves both lines, the clock falls before, or rises after, the data
    // changes: that is the reading that never makes a start or stop out of a data bit.
    if (sclBefore && !sclAfter) onClockFall();
    if (sclBefore && sclAfter && sdaBefore != sdaAfter) {
        if (sdaBefore)
            onStart();
        else
            onStop();
    }
    if (!sclBefore && sclAfter) onClockRise(isSet(after, 1) && slaveSda_);
}

void Qrt115Simulator::onStart() {
    ++starts_;
    state_ = State::Address;
    bits_ = 0;
    shift_ = 0;
    slaveSda_ = true;
}

void Qrt115Simulator::onStop() {
    ++stops_;
    state_ = State::Idle;
    slaveSda_ = true;
}

void Qrt115Simulator::onClockRise(bool sda) {
    switch (state_) {
        case State::Address:
        case State::Receive:
            shift_ = static_cast<std::uint8_t>(shift_ * 2 + (sda ? 1 : 0));
            ++bits_;
            break;
        case State::MasterAck:
            masterAcked_ = !sda;
            break;
        default:
            break;
    }
}

void Qrt115Simulator::onClockFall() {
    switch (state_) {
        case State::Address:
            if (bits_ < 8) break;
            addresses_.push_back(shift_);
            if ((shift_ >> 1) == kPortAddress) {
                slaveSda_ = false;  // acknowledge
                state_ = State::AckAddress;
            } else {
                state_ = State::Idle;
            }
            sending_ = shift_;  // remembers the read bit until the acknowledge ends
            break;
        case State::AckAddress:
            if ((sending_ & 1) != 0) {
                sending_ = inputs_;  // the port's pins are taken at the acknowledge
                bits_ = 0;
                slaveSda_ = (sending_ & 0x80) != 0;
                state_ = State::Send;
            } else {
                slaveSda_ = true;
                bits_ = 0;
                shift_ = 0;
                state_ = State::Receive;
            }
            break;
        case State::Send:
            if (++bits_ < 8) {
                slaveSda_ = ((sending_ << bits_) & 0x80) != 0;
            } else {
                ++bytesSent_;
                slaveSda_ = true;
                masterAcked_ = false;
                state_ = State::MasterAck;
            }
            break;
        case State::MasterAck:
            if (masterAcked_) {
                sending_ = inputs_;
                bits_ = 0;
                slaveSda_ = (sending_ & 0x80) != 0;
                state_ = State::Send;
            } else {
                state_ = State::Idle;
            }
            break;
        case State::Receive:
            if (bits_ < 8) break;
            written_.push_back(shift_);
            slaveSda_ = false;
            state_ = State::AckReceive;
            break;
        case State::AckReceive:
            slaveSda_ = true;
            bits_ = 0;
            shift_ = 0;
            state_ = State::Receive;
            break;
        case State::Idle:
            break;
    }
}

}  // namespace kova
