#include "daq/port_layer.h"

#include "core/fault.h"

namespace kova {

std::int32_t DelayLoop(std::int32_t count) {
    if (count < 0) return 0;
    // The 16-bit counter starts at 1 and is incremented count + 1 times.
    if (count >= 32766) throwOverflow("DelayLoop count");
    // volatile keeps the optimiser from deleting the empty loop: the wait is its only purpose.
    volatile std::int32_t rounds = 0;
    volatile std::int16_t ticks = 1;
    for (std::int32_t i = 0; i <= count; ++i) {
        rounds = rounds + 1;
        ticks = static_cast<std::int16_t>(ticks + 1);
    }
    return rounds;
}

void PortBus::wait() {
    io_.noteWait(regs_.DelayCount);
    DelayLoop(regs_.DelayCount);
}

}  // namespace kova
