#include "daq/qrt115.h"

namespace kova {

namespace {

constexpr int kClockBit = 0;
constexpr int kDataBit = 1;
constexpr std::uint8_t kDataIn = 0x40;  // status bit 6

void setBit(PortBus& bus, int bit, bool on) {
    if (on)
        bus.setControlBit(bit);
    else
        bus.clearControlBit(bit);
    bus.writeControlShadow();
}

}  // namespace

void Qrt115SendStart(PortBus& bus, std::uint8_t address) {
    setBit(bus, kDataBit, true);
    setBit(bus, kClockBit, false);
    bus.wait();
    setBit(bus, kDataBit, false);
    bus.wait();
    setBit(bus, kClockBit, true);
    bus.wait();
    Qrt115SendByte(bus, address);
}

int Qrt115SendByte(PortBus& bus, std::uint8_t byte) {
    for (int mask = 128; mask >= 1; mask /= 2) {
        setBit(bus, kDataBit, (byte & mask) != 0);
        setBit(bus, kClockBit, false);
        bus.wait();
        setBit(bus, kClockBit, true);
        bus.wait();
    }
    setBit(bus, kDataBit, true);
    setBit(bus, kClockBit, false);
    bus.wait();
    const int ack = (bus.readStatus() & kDataIn) != 0 ? 1 : 0;
    setBit(bus, kClockBit, true);
    bus.wait();
    return ack;
}

std::uint8_t Qrt115ReceiveByte(PortBus& bus, int lastByte) {
    int value = 0;
    for (int bit = 0; bit < 8; ++bit) {
        setBit(bus, kClockBit, false);
        bus.wait();
        value = value * 2 + ((bus.readStatus() & kDataIn) != 0 ? 1 : 0);
        setBit(bus, kClockBit, true);
        bus.wait();
    }
    setBit(bus, kDataBit, lastByte == 1);
    setBit(bus, kClockBit, false);
    bus.wait();
    setBit(bus, kClockBit, true);
    setBit(bus, kDataBit, true);
    bus.wait();
    return static_cast<std::uint8_t>(value);
}

void Qrt115SendStop(PortBus& bus) {
    setBit(bus, kDataBit, false);
    setBit(bus, kClockBit, false);
    bus.wait();
    setBit(bus, kDataBit, true);
}

std::uint16_t Qrt115ReadDigitalInputs(PortBus& bus) {
    const std::uint8_t address = kQrt115InputAddress;  // set before every transfer
    Qrt115SendStart(bus, address);
    const std::uint8_t value = Qrt115ReceiveByte(bus, 1);
    Qrt115SendStop(bus);
    return value;
}

void Qrt115WriteDigitalOutputs(PortBus& bus, int word) {
    if (word < 0 || word > 255) return;  // unlike the QRT105, no PortError
    bus.regs().DataShadow = static_cast<std::uint8_t>(word);
    bus.writeData(static_cast<std::uint8_t>(word));
}

}  // namespace kova
