#include "daq/sim/port_chip.h"

namespace kova {

PortChip::PortChip(std::uint16_t base, PortChipKind kind) : base_(base), kind_(kind) {}

bool PortChip::claims(std::uint16_t port) const {
    const unsigned p = port;
    return (p >= base_ && p <= base_ + 7u) || (p >= base_ + 0x400u && p <= base_ + 0x402u);
}

bool PortChip::dataLinesAreInputs() const {
    if ((control_ & 0x20) == 0) return false;
    switch (kind_) {
        case PortChipKind::Spp:
            return false;  // no direction control
        case PortChipKind::PS2:
        case PortChipKind::Epp:
            return true;
        case PortChipKind::Ecp:
            return ecpMode() != 0;  // standard mode ignores it
    }
    return false;
}

bool PortChip::eppActive() const {
    return kind_ == PortChipKind::Epp || (kind_ == PortChipKind::Ecp && ecpMode() == 4);
}

// One EPP address cycle: with a peripheral it completes, otherwise it times out and the
// data lines float.
std::uint8_t PortChip::eppCycle(std::uint8_t* written) {
    if (!eppPeripheral) {
        timeout_ = true;
        return 0xFF;
    }
    if (written) eppAddress_ = *written;
    return eppAddress_;
}

std::uint8_t PortChip::readEcr() const {
    return static_cast<std::uint8_t>((ecr_ & 0xFC) | (fifoFull ? 2 : 0) | (fifoEmpty ? 1 : 0));
}

std::uint8_t PortChip::read(std::uint16_t port) {
    const unsigned offset = port - base_;
    switch (offset) {
        case 0:
            return dataLinesAreInputs() ? externalData : data_;
        case 1: {
            const bool eppCapable = kind_ == PortChipKind::Epp || kind_ == PortChipKind::Ecp;
            const std::uint8_t status =
                static_cast<std::uint8_t>(((statusPins & 0xF8) ^ 0x80) | 0x06 | (timeout_ ? 1 : 0));
            if (eppCapable && timeoutClear == TimeoutClear::ByReadingStatus) timeout_ = false;
            return status;
        }
        case 2:
            return control_;
        case 3:
            return eppActive() ? eppCycle(nullptr) : 0xFF;
        case 4:
        case 5:
        case 6:
        case 7:
            return 0xFF;  // EPP data: no data peripheral
        case 0x400:
        case 0x401:
            return 0xFF;
        case 0x402:
            if (kind_ == PortChipKind::Ecp) return readEcr();
            if (ecrMirrorsControl) return static_cast<std::uint8_t>(control_ ^ 0x0B);
            return 0xFF;
        default:
            return 0xFF;
    }
}

void PortChip::write(std::uint16_t port, std::uint8_t value) {
    const unsigned offset = port - base_;
    switch (offset) {
        case 0:
            data_ = value;
            break;
        case 1:
            if (timeoutClear == TimeoutClear::ByWritingOne && (value & 1)) timeout_ = false;
            if (timeoutClear == TimeoutClear::ByWritingZero && !(value & 1)) timeout_ = false;
            break;
        case 2:
            control_ = value;
            break;
        case 3:
            if (eppActive()) eppCycle(&value);
            break;
        case 0x402:
            if (kind_ == PortChipKind::Ecp) {
                ecr_ = static_cast<std::uint8_t>(value & 0xFC);  // bits 0, 1 are read-only
                ++ecrWrites_;
            } else if (ecrMirrorsControl) {
                control_ = static_cast<std::uint8_t>(value ^ 0x0B);
            }
            break;
        default:
            break;
    }
}

}  // namespace kova
