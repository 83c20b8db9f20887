#pragma once
// The seam to the printer port: byte reads and writes of I/O addresses and the base address
// of an LPT number. Back-ends: the simulated bus (tests, TEST runs), Linux ppdev, Linux
// direct I/O, the Windows port DLL; a recording decorator logs every access.
#include <cstdint>
#include <string>

namespace kova {

class PortIo {
  public:
    virtual ~PortIo() = default;
    virtual std::uint8_t read(std::uint16_t port) = 0;
    virtual void write(std::uint16_t port, std::uint8_t value) = 0;
    // Base address of printer port lpt (1..3); 0 when absent.
    virtual std::uint16_t lptBase(int lpt) = 0;
    // A clear text when the back-end cannot reach the port (empty when it can).
    virtual std::string problem() const { return {}; }
    // The drivers' busy-wait tells the port of each wait of one bit time (count: the loop
    // rounds) just before it runs; only the recording decorator listens.
    virtual void noteWait(std::int32_t /*count*/) {}
};

// What every input line gives when nothing drives it: a floating bus reads all ones.
inline constexpr std::uint8_t kFloatingBus = 0xFF;

// A port with nothing on it: reads as a floating bus, ignores writes, knows no LPT port.
class NullPortIo final : public PortIo {
  public:
    std::uint8_t read(std::uint16_t) override { return kFloatingBus; }
    void write(std::uint16_t, std::uint8_t) override {}
    std::uint16_t lptBase(int) override { return 0; }
};

}  // namespace kova
