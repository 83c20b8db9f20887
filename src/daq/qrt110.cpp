#include "daq/qrt110.h"

#include "daq/qrt105.h"

namespace kova {

namespace {

constexpr int kFrameBit = 0;

void putData(PortBus& bus, std::uint8_t value) {
    bus.regs().DataShadow = value;
    bus.writeData(value);
    bus.wait();
}

// One full clock pulse with the data bit held: 2, 3, 2 for a 1, 0, 1, 0 for a 0.
void sendBit(PortBus& bus, bool one) {
    const std::uint8_t data = one ? 2 : 0;
    putData(bus, data);
    putData(bus, static_cast<std::uint8_t>(data | 1));
    putData(bus, data);
}

}  // namespace

std::int16_t Qrt110ReadAnalogInput(PortBus& bus, std::int16_t singleEnded, std::int16_t& channel) {
    return Qrt105ReadAnalogInput(bus, singleEnded, channel);
}

void Qrt110WriteAnalogOutputs(PortBus& bus, std::int16_t ao1, std::int16_t ao2) {
    putData(bus, 0);
    bus.setControlBit(kFrameBit);
    bus.writeControlShadow();
    bus.wait();

    for (int mask = 0x800; mask >= 1; mask /= 2) sendBit(bus, (ao2 & mask) != 0);

    // AO-1: the same, except that the last bit leaves the clock high.
    for (int mask = 0x800; mask >= 2; mask /= 2) sendBit(bus, (ao1 & mask) != 0);
    const std::uint8_t last = (ao1 & 1) != 0 ? 2 : 0;
    putData(bus, last);
    putData(bus, static_cast<std::uint8_t>(last | 1));

    // The last clock edge falls while the frame is 0: that loads both outputs.
    bus.clearControlBit(kFrameBit);
    bus.writeControlShadow();
    bus.wait();
    putData(bus, static_cast<std::uint8_t>(bus.regs().DataShadow & ~1u));
    bus.setControlBit(kFrameBit);
    bus.writeControlShadow();
    bus.wait();
}

}  // namespace kova
