#include "daq/qrtu.h"

#include "core/numeric.h"

namespace kova {

namespace {

constexpr std::uint8_t kConverterData = 0x10;   // status bit 4
constexpr std::uint8_t kInputData = 0x20;       // status bit 5
constexpr std::uint8_t kConversionDone = 0x40;  // status bit 6

void writeControl(PortBus& bus, std::uint8_t value) {
    bus.regs().ControlShadow = value;
    bus.writeControlShadow();
}

// Waits for the end of conversion, at most the bound (a short look while the module has
// already been found silent). False when it never came.
bool conversionDone(PortBus& bus) {
    const auto bound = bus.regs().NotAnswering != 0 ? kQrtuSilentLook : kQrtuAnswerBound;
    const auto deadline = bus.clock().now() + bound;
    while ((bus.readStatus() & kConversionDone) == 0)
        if (bus.clock().now() >= deadline) return false;
    return true;
}

// Seven clocked bits of the input register, weights 64 down to 1.
int shiftSevenBits(PortBus& bus) {
    int value = 0;
    for (int weight = 64; weight >= 1; weight /= 2) {
        bus.writeData(3);
        bus.wait();
        bus.writeData(1);
        bus.wait();
        if ((bus.readStatus() & kInputData) != 0) value += weight;
    }
    return value;
}

// Latches value into the output selected by control value strobe (1: DO, 2: AO).
void latch(PortBus& bus, int value, std::uint8_t strobe, bool waitAfterData) {
    PortState& regs = bus.regs();
    regs.PortError = 0;
    if (value < 0 || value > 255) {
        regs.PortError = 1;
        return;
    }
    writeControl(bus, 0);
    bus.wait();
    regs.DataShadow = static_cast<std::uint8_t>(value);
    bus.writeData(static_cast<std::uint8_t>(value));
    if (waitAfterData) bus.wait();
    writeControl(bus, strobe);
    bus.wait();
    writeControl(bus, 0);
}

}  // namespace

std::int16_t QrtuReadAnalogInput(PortBus& bus, std::int16_t& channel) {
    const std::uint16_t control = bus.regs().ControlPort;
    bus.out(control, 8);

    channel = sub16(channel, 1);
    // The channel number goes out on data bit 0, most significant of four bits first,
    // followed by six 0 bits; data bit 1 is the clock.
    std::int16_t c = channel;
    for (int round = 0; round < 10; ++round) {
        bus.wait();
        if ((c & 8) != 0) {
            bus.writeData(1);
            bus.wait();
            bus.writeData(3);
        } else {
            bus.writeData(0);
            bus.wait();
            bus.writeData(2);
        }
        bus.wait();
        c = mul16(c, 2);
    }
    bus.writeData(0);
    bus.wait();

    // A module that does not answer must not hold the scan: past the bound the reading is
    // -1, as a missing FIELD RECORDER reads, and the transfer is ended.
    PortState& regs = bus.regs();
    if (!conversionDone(bus)) {
        regs.NotAnswering = 1;
        regs.PortError = 1;
        bus.out(control, 0);
        return -1;
    }
    regs.NotAnswering = 0;

    std::int16_t result = 0;
    for (int weight = 512; weight >= 1; weight /= 2) {
        if ((bus.readStatus() & kConverterData) != 0)
            result = static_cast<std::int16_t>(result + weight);
        bus.writeData(2);
        bus.wait();
        bus.writeData(0);
        bus.wait();
    }
    bus.out(control, 0);
    return result;
}

std::uint16_t QrtuReadDigitalInputs(PortBus& bus) {
    // Data bit 1 clocks the register with data bit 0 low (load), then bit 0 high (shift).
    bus.writeData(0);
    bus.writeData(2);
    bus.writeData(0);
    bus.writeData(1);

    int first = (bus.readStatus() & kInputData) != 0 ? 128 : 0;
    first += shiftSevenBits(bus);

    bus.writeData(3);
    bus.writeData(1);
    int second = (bus.readStatus() & kInputData) != 0 ? 128 : 0;
    second += shiftSevenBits(bus);

    return static_cast<std::uint16_t>((second & 0x7F) * 256 | first);
}

void QrtuWriteDigitalOutputs(PortBus& bus, int word) {
    latch(bus, word, 1, false);
}

void QrtuWriteAnalogOutputs(PortBus& bus, int value) {
    latch(bus, value, 2, true);
}

}  // namespace kova
