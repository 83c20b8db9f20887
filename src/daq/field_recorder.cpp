#include "daq/field_recorder.h"

namespace kova {

std::int16_t FieldRecorderReadAnalogInput(PortBus& bus) {
    const std::uint16_t control = bus.regs().ControlPort;
    bus.out(control, 4);
    bus.wait();
    bus.out(control, 2);
    bus.out(control, 3);
    bus.out(control, 6);

    bool ready = false;
    for (int poll = 0; poll < kFieldRecorderPolls && !ready; ++poll) {
        ready = (bus.readStatus() & 0x08) == 0;
        bus.wait();
    }
    PortState& regs = bus.regs();
    if (!ready) {
        bus.out(control, 3);
        regs.NotAnswering = 1;
        regs.PortError = 1;
        return -1;
    }
    regs.NotAnswering = 0;

    bus.out(control, 2);
    const std::uint8_t s1 = bus.readStatus();  // lower nibble
    bus.out(control, 3);
    const std::uint8_t s2 = bus.readStatus();  // upper nibble
    bus.out(control, 3);
    // Status bit 7 is inverted by the port: XOR 0x88 puts the top bit of each nibble back.
    return static_cast<std::int16_t>(((s2 & 0xF0) | ((s1 & 0xF0) / 16)) ^ 0x88);
}

}  // namespace kova
