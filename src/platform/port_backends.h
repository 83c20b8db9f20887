#pragma once
// Chooses how the program reaches the printer port. On Linux: ppdev first (no root
// needed), then direct port access; on Windows: the port-I/O DLL. When nothing works the
// port returned reads as a floating bus (0xFF), ignores writes, knows no LPT port, and its
// problem() is the clear message, so the drivers go on reading what a port without a
// module gives and the caller shows the message once.
#include <memory>
#include <string>

#include "platform/port_io.h"
#include "platform/port_system.h"

namespace kova {

// A port that cannot be reached: reads as a floating bus, ignores writes, lptBase 0,
// problem() says why.
class UnavailablePortIo final : public PortIo {
  public:
    explicit UnavailablePortIo(std::string why) : why_(std::move(why)) {}
    std::uint8_t read(std::uint16_t) override { return kFloatingBus; }
    void write(std::uint16_t, std::uint8_t) override {}
    std::uint16_t lptBase(int) override { return 0; }
    std::string problem() const override { return why_; }

  private:
    std::string why_;
};

// What the message says the modules will read when the port cannot be reached.
inline constexpr const char* kFloatingBusReadsText =
    "the modules will read every line high, as with nothing connected";

// Never null. problem is empty when a working back-end was found, else the message (the
// same text as the returned port's problem()).
std::unique_ptr<PortIo> OpenPortBackend(int lpt, std::string& problem);
// The same with the operating-system calls and paths given (tests).
std::unique_ptr<PortIo> OpenPortBackend(int lpt, std::string& problem,
                                        std::shared_ptr<PortSystem> sys, const PortPaths& paths);

}  // namespace kova
