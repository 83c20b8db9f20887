#pragma once
// Printer ports through the Linux ppdev driver (/dev/parportN for LPT N+1). No root is
// needed, only membership of the device's group (lp). ppdev passes the registers through
// unchanged (status bit 7 and control bits 0, 1, 3 keep their hardware inversion), so the
// drivers see the same raw values as with direct port access:
//   base      read PPRDATA,    write PPWDATA
//   base + 1  read PPRSTATUS   (not writable through ppdev)
//   base + 2  read PPRCONTROL, write PPWCONTROL for bits 0..3; bit 5 (data direction)
//             goes through PPDATADIR; bits 4, 6, 7 are kept as written and read back.
// Every other address (EPP registers at base + 3.., the ECR at base + 0x402, addresses of
// no known port) is unreachable: reads give 0xFF as a floating bus would, writes are
// dropped, and the address is listed in unreachable().
#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/port_io.h"
#include "platform/port_system.h"

namespace kova {

// What a user who may not open /dev/parport* types (the devices belong to group lp).
inline constexpr const char* kJoinGroupLp = "sudo adduser $USER lp, then log in again";

// The clear text for a failed ppdev step on device path ("open", "PPEXCL", "PPCLAIM", a
// register request) with its errno value.
std::string PpdevProblemText(const std::string& path, const std::string& step, int err);

class PpdevPortIo final : public PortIo {
  public:
    // Claims the device of printer port lpt (1..3) at once (PPEXCL, then PPCLAIM); the
    // other ports are claimed when first addressed. problem() tells why the chosen port
    // cannot be used.
    PpdevPortIo(std::shared_ptr<PortSystem> sys, PortPaths paths, int lpt);
    ~PpdevPortIo() override;
    PpdevPortIo(const PpdevPortIo&) = delete;
    PpdevPortIo& operator=(const PpdevPortIo&) = delete;

    std::uint8_t read(std::uint16_t port) override;
    void write(std::uint16_t port, std::uint8_t value) override;
    // From the kernel's table; the chosen port falls back to its conventional base when
    // the table is missing but the device opened.
    std::uint16_t lptBase(int lpt) override;
    std::string problem() const override;

    bool ok() const { return problem().empty(); }
    // Addresses that were touched but cannot be reached, in the order first touched.
    const std::vector<std::uint16_t>& unreachable() const { return unreachable_; }
    // A sentence naming them ("" when none).
    std::string unreachableText() const;

  private:
    struct Device {
        std::string path;
        std::uint16_t base = 0;
        int fd = -1;
        bool tried = false;
        std::string problem;
        std::uint8_t controlHigh = 0;  // bits 4..7 as last written
    };
    // The device and register offset (0..2) of an address; nullptr when none claims it.
    Device* find(std::uint16_t port, int& offset);
    bool claim(Device& d);
    void note(std::uint16_t port);
    // A register request; false (problem noted) when the kernel refuses it.
    bool request(Device& d, PpRequest r, std::uint8_t& value);

    std::shared_ptr<PortSystem> sys_;
    int lpt_;
    std::array<Device, 3> devices_;
    std::vector<std::uint16_t> unreachable_;
};

}  // namespace kova
