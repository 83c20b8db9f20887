#include "platform/port_probe.h"

namespace kova {

bool DataRegisterReadsBack(PortIo& io, std::uint16_t base) {
    const auto control = static_cast<std::uint16_t>(base + 2);
    constexpr std::uint8_t kDirectionIn = 0x20;
    const std::uint8_t savedControl = io.read(control);
    const std::uint8_t savedData = io.read(base);
    // A port left with its data lines as inputs would not read back; turn them round.
    const bool turned = (savedControl & kDirectionIn) != 0 && savedControl != kFloatingBus;
    if (turned) io.write(control, static_cast<std::uint8_t>(savedControl & ~kDirectionIn));
    bool answers = true;
    for (const std::uint8_t pattern : {std::uint8_t{0x55}, std::uint8_t{0xAA}}) {
        io.write(base, pattern);
        if (io.read(base) != pattern) answers = false;
    }
    io.write(base, savedData);
    if (turned) io.write(control, savedControl);
    return answers;
}

}  // namespace kova
