#pragma once
// Printer ports through direct port access on Linux x86 (ioperm, then in/out
// instructions). Reaches every register, the EPP registers and the ECR included, but needs
// root (CAP_SYS_RAWIO) and a kernel built with I/O port permissions.
#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/port_io.h"
#include "platform/port_system.h"

namespace kova {

// The clear text for a refused ioperm call on the given range with its errno value.
std::string IopermProblemText(std::uint16_t from, std::uint16_t count, int err);

class DirectPortIo final : public PortIo {
  public:
    // Asks at once for the registers of printer port lpt: base .. base + 7 and
    // base + 0x400 .. base + 0x402. Other addresses are asked for when first used.
    DirectPortIo(std::shared_ptr<PortSystem> sys, PortPaths paths, int lpt);

    std::uint8_t read(std::uint16_t port) override;
    void write(std::uint16_t port, std::uint8_t value) override;
    // From the kernel's table when its parport driver is loaded; otherwise the
    // conventional base (0x378, 0x278, 0x3BC) when a port answers there (its data register
    // reads back what was written; tried once per LPT), else 0.
    std::uint16_t lptBase(int lpt) override;
    std::string problem() const override { return problem_; }

    bool ok() const { return problem_.empty(); }
    // Addresses that were touched but refused, in the order first touched.
    const std::vector<std::uint16_t>& unreachable() const { return unreachable_; }

  private:
    bool grant(std::uint16_t from, std::uint16_t count, std::string* why);
    bool access(std::uint16_t port);

    std::shared_ptr<PortSystem> sys_;
    PortPaths paths_;
    std::vector<bool> granted_;  // one flag per I/O address
    std::vector<bool> refused_;
    std::vector<std::uint16_t> unreachable_;
    std::array<int, 4> probed_{-1, -1, -1, -1};  // per LPT: the base confirmed, 0, -1 untried
    std::string problem_;
};

}  // namespace kova
