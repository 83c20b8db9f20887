#pragma once
// A stand-in for the kernel: device nodes that exist or fail with a chosen errno, ppdev
// requests answered from a simulated bus the way the parport driver does (control reads
// give the low four bits, the direction bit moves only through PPDATADIR), ioperm with a
// chosen result, and small text files.
#include <cerrno>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/port_system.h"
#include "platform/simulated_bus.h"

namespace kova::test {

class FakePortSystem final : public PortSystem {
  public:
    struct Node {
        int openErrno = 0;  // 0: opens
        std::uint16_t base = 0;
        std::map<PpRequest, int> requestErrno;  // requests that fail
    };

    SimulatedBus bus;
    std::map<std::string, Node> nodes;
    std::map<std::string, std::string> files;
    int iopermErrno = 0;
    std::vector<std::string> calls;  // "open /dev/parport0", "ReadData 3", "ioperm 0x378 8"
    std::vector<int> openFds;

    int open(const std::string& path) override {
        calls.push_back("open " + path);
        const auto it = nodes.find(path);
        if (it == nodes.end()) return -ENOENT;
        if (it->second.openErrno) return -it->second.openErrno;
        const int fd = 3 + static_cast<int>(fdPaths_.size());
        fdPaths_.push_back(path);
        openFds.push_back(fd);
        return fd;
    }

    void close(int fd) override {
        calls.push_back("close " + std::to_string(fd));
        std::erase(openFds, fd);
    }

    int ppdev(int fd, PpRequest r, std::uint8_t& value) override {
        calls.push_back(name(r) + " " + std::to_string(fd) +
                        (writes(r) ? " " + HexAddress(value) : ""));
        const Node& node = nodes.at(fdPaths_.at(static_cast<std::size_t>(fd - 3)));
        if (const auto e = node.requestErrno.find(r); e != node.requestErrno.end())
            return -e->second;
        const std::uint16_t b = node.base;
        const std::uint16_t ctl = static_cast<std::uint16_t>(b + 2);
        switch (r) {
            case PpRequest::ReadData:
                value = bus.read(b);
                break;
            case PpRequest::WriteData:
                bus.write(b, value);
                break;
            case PpRequest::ReadStatus:
                value = bus.read(static_cast<std::uint16_t>(b + 1));
                break;
            case PpRequest::ReadControl:
                value = bus.read(ctl) & 0x0F;
                break;
            case PpRequest::WriteControl:
                bus.write(ctl, static_cast<std::uint8_t>((bus.read(ctl) & 0xF0) | (value & 0x0F)));
                break;
            case PpRequest::DataDir:
                bus.write(ctl,
                          static_cast<std::uint8_t>((bus.read(ctl) & ~0x20) | (value ? 0x20 : 0)));
                break;
            default:
                break;
        }
        return 0;
    }

    int ioperm(std::uint16_t from, std::uint16_t count) override {
        calls.push_back("ioperm " + HexAddress(from) + " " + std::to_string(count));
        return -iopermErrno;
    }
    std::uint8_t inb(std::uint16_t port) override { return bus.read(port); }
    void outb(std::uint16_t port, std::uint8_t value) override { bus.write(port, value); }

    std::optional<std::string> readText(const std::string& path) override {
        const auto it = files.find(path);
        if (it == files.end()) return std::nullopt;
        return it->second;
    }

    // A device node with its kernel base-addr entry ("888\t1912\n" for 0x378).
    void addPort(int lpt, std::uint16_t base) {
        const std::string n = std::to_string(lpt - 1);
        nodes["/dev/parport" + n].base = base;
        files["/proc/sys/dev/parport/parport" + n + "/base-addr"] =
            std::to_string(base) + "\t" + std::to_string(base + 0x400) + "\n";
    }

    static std::string name(PpRequest r) {
        switch (r) {
            case PpRequest::Exclusive:
                return "PPEXCL";
            case PpRequest::Claim:
                return "PPCLAIM";
            case PpRequest::Release:
                return "PPRELEASE";
            case PpRequest::ReadData:
                return "PPRDATA";
            case PpRequest::WriteData:
                return "PPWDATA";
            case PpRequest::ReadStatus:
                return "PPRSTATUS";
            case PpRequest::ReadControl:
                return "PPRCONTROL";
            case PpRequest::WriteControl:
                return "PPWCONTROL";
            case PpRequest::DataDir:
                return "PPDATADIR";
        }
        return "?";
    }
    static bool writes(PpRequest r) {
        return r == PpRequest::WriteData || r == PpRequest::WriteControl || r == PpRequest::DataDir;
    }

  private:
    std::vector<std::string> fdPaths_;
};

}  // namespace kova::test
