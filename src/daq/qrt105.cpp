#include "daq/qrt105.h"

#include "core/numeric.h"

namespace kova {

namespace {

constexpr int kStrobeBit = 0;
constexpr int kSelectBit = 1;
// The converter needs twenty bit times after the command. They are waited one by one: one
// wait of twenty times the delay count would pass the busy-wait's limit on a fast PC.
constexpr int kConversionBitTimes = 20;

// The single-ended channel selects of the converter: for 0-based channel c the select is
// (c bit 0) x 4 + (c bit 1) x 1 + (c bit 2) x 2, giving 0, 4, 1, 5, 2, 6, 3, 7.
std::int16_t singleEndedSelect(std::int16_t c) {
    return static_cast<std::int16_t>(((c & 1) != 0 ? 4 : 0) + ((c & 2) != 0 ? 1 : 0) +
                                     ((c & 4) != 0 ? 2 : 0));
}

void strobe(PortBus& bus) {
    bus.clearControlBit(kStrobeBit);
    bus.writeControlShadow();
    bus.setControlBit(kStrobeBit);
    bus.writeControlShadow();
}

}  // namespace

std::int16_t Qrt105Convert(PortBus& bus, std::int16_t mode, std::int16_t& channel) {
    PortState& regs = bus.regs();
    regs.PortError = 0;
    bus.writeData(0);
    bus.wait();
    bus.clearControlBit(kSelectBit);
    bus.writeControlShadow();

    // The check only reports; nothing stops the conversion.
    bool valid = false;
    if (mode == 0)
        valid = channel >= 0 && channel <= 8;
    else if (mode == 1)
        valid = channel >= 0 && channel <= 4;
    if (!valid) regs.PortError = 1;

    channel = sub16(channel, 1);
    const std::int16_t select = mode == 1 ? singleEndedSelect(channel) : channel;
    const std::int16_t command = add16(add16(mul16(select, 16), mul16(mode, 4)), 0x8A);

    bus.setControlBit(kSelectBit);
    bus.writeData(0);
    bus.writeControlShadow();

    // Command byte, most significant bit first: data set with the clock low, then the
    // clock rises with the data held.
    for (int mask = 128; mask >= 1; mask /= 2) {
        if ((command & mask) != 0) {
            bus.writeData(2);
            bus.wait();
            bus.writeData(3);
            bus.wait();
        } else {
            bus.writeData(0);
            bus.wait();
            bus.writeData(1);
            bus.wait();
        }
    }

    bus.writeData(0);
    for (int i = 0; i < kConversionBitTimes; ++i) bus.wait();

    std::int16_t value = 0;
    for (int bit = 0; bit < 12; ++bit) {
        value = static_cast<std::int16_t>(value * 2);
        bus.writeData(1);
        bus.wait();
        bus.writeData(0);
        bus.wait();
        if ((bus.readStatus() & 0x08) != 0) value = static_cast<std::int16_t>(value + 1);
    }

    bus.clearControlBit(kSelectBit);
    bus.writeControlShadow();
    return value;
}

std::int16_t Qrt105ReadAnalogInput(PortBus& bus, std::int16_t singleEnded, std::int16_t& channel) {
    if (singleEnded != 0) return Qrt105Convert(bus, 1, channel);
    // The pair reading works on copies (2n - 1 and 2n), so the caller's channel stays.
    std::int16_t first = sub16(mul16(channel, 2), 1);
    std::int16_t second = mul16(channel, 2);
    const std::int16_t a = Qrt105Convert(bus, 1, first);
    const std::int16_t b = Qrt105Convert(bus, 1, second);
    return sub16(a, b);
}

std::uint16_t Qrt105ReadDigitalInputs(PortBus& bus, std::uint16_t outputWord) {
    // The strobe also clocks the output latch, so the present outputs go out with it.
    bus.writeData(static_cast<std::uint8_t>(outputWord & 0xFF));
    strobe(bus);
    const std::uint8_t s = bus.readStatus();
    // Status bits 4..6 are DI-1..DI-3 as they are; bit 7 (DI-4) is inverted by the port.
    return static_cast<std::uint16_t>(((s ^ 0x8F) >> 4) & 15);
}

void Qrt105WriteDigitalOutputs(PortBus& bus, int word) {
    PortState& regs = bus.regs();
    regs.PortError = 0;
    if (word < 0 || word > 15) {
        regs.PortError = 1;
        return;
    }
    regs.DataShadow = static_cast<std::uint8_t>(word);
    bus.writeData(static_cast<std::uint8_t>(word));
    strobe(bus);
}

}  // namespace kova
