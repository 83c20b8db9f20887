#include "platform/simulated_bus.h"

#include <algorithm>

namespace kova {

SimulatedBus::SimulatedBus() {
    lptBases_ = {0, 0x378, 0x278, 0};
}

BusDevice* SimulatedBus::deviceAt(std::uint16_t port) const {
    for (BusDevice* d : devices_)
        if (d->claims(port)) return d;
    return nullptr;
}

std::uint8_t SimulatedBus::read(std::uint16_t port) {
    if (BusDevice* d = deviceAt(port)) return d->read(port);
    return peek(port);
}

void SimulatedBus::write(std::uint16_t port, std::uint8_t value) {
    if (BusDevice* d = deviceAt(port)) {
        d->write(port, value);
        return;
    }
    latches_[port] = value;
}

std::uint8_t SimulatedBus::peek(std::uint16_t port) const {
    const auto it = latches_.find(port);
    return it == latches_.end() ? 0 : it->second;
}

std::uint16_t SimulatedBus::lptBase(int lpt) {
    if (lpt < 1 || lpt > 3) return 0;
    return lptBases_[static_cast<std::size_t>(lpt)];
}

void SimulatedBus::setLptBase(int lpt, std::uint16_t base) {
    if (lpt >= 1 && lpt <= 3) lptBases_[static_cast<std::size_t>(lpt)] = base;
}

void SimulatedBus::detach(BusDevice& device) {
    devices_.erase(std::remove(devices_.begin(), devices_.end(), &device), devices_.end());
}

}  // namespace kova
