#pragma once
// The operating-system calls the Linux port back-ends make, behind one small interface so
// that tests can stand in for a kernel with or without a parallel port. Failures come back
// as a negative errno value, never through the global errno.
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace kova {

// Where the back-ends look for device nodes and kernel tables; tests point them at a
// temporary folder.
struct PortPaths {
    std::string dev = "/dev";
    std::string proc = "/proc";
};

// The ppdev requests the back-end uses, each on one byte (DataDir: 1 = data lines in).
enum class PpRequest {
    Exclusive,
    Claim,
    Release,
    ReadData,
    WriteData,
    ReadStatus,
    ReadControl,
    WriteControl,
    DataDir
};

class PortSystem {
  public:
    virtual ~PortSystem() = default;
    // open(path, O_RDWR): a descriptor, or -errno.
    virtual int open(const std::string& path) = 0;
    virtual void close(int fd) = 0;
    // One ppdev ioctl. value is read for the write requests and set by the read requests.
    // 0, or -errno.
    virtual int ppdev(int fd, PpRequest request, std::uint8_t& value) = 0;
    // ioperm(from, count, 1): 0, or -errno (-EOPNOTSUPP where the CPU has no I/O ports).
    virtual int ioperm(std::uint16_t from, std::uint16_t count) = 0;
    virtual std::uint8_t inb(std::uint16_t port) = 0;
    virtual void outb(std::uint16_t port, std::uint8_t value) = 0;
    // The whole text of a small file (a kernel table); nullopt when it cannot be read.
    virtual std::optional<std::string> readText(const std::string& path) = 0;
};

// The real calls of this machine (ppdev and ioperm on Linux; elsewhere they fail with
// -ENOSYS / -EOPNOTSUPP).
std::shared_ptr<PortSystem> MakeRealPortSystem();

// The conventional base of a printer port: 0x378, 0x278, 0x3BC for LPT 1..3, else 0.
std::uint16_t ConventionalLptBase(int lpt);

// Parses the kernel's base-addr text: decimal "base<TAB>base_hi" ("888\t1912" -> 0x378).
// nullopt when the first field is not a decimal number from 1 to 65535.
std::optional<std::uint16_t> ParseBaseAddr(const std::string& text);

// <proc>/sys/dev/parport/parport<lpt-1>/base-addr of LPT lpt (1..3), parsed; 0 when the
// table is missing or unreadable.
std::uint16_t KernelLptBase(PortSystem& sys, const PortPaths& paths, int lpt);

// "/dev/parport<lpt-1>" under paths.dev.
std::string PpdevPath(const PortPaths& paths, int lpt);

// Hexadecimal with a 0x prefix ("0x378"), for messages.
std::string HexAddress(std::uint16_t address);

}  // namespace kova
