#pragma once
// Helpers for driver tests: a port (registers at 0x378, delay count 0) over a simulated bus
// with every access recorded, a status register that answers from a script, and decoders
// of serial lines in a register trace.
#include <cstdint>
#include <deque>
#include <vector>

#include "daq/port_layer.h"
#include "platform/recording_port_io.h"
#include "platform/simulated_bus.h"

namespace kova::test {

struct PortRig {
    SimulatedBus bus;
    RecordingPortIo rec{bus};
    PortState regs;  // data 0x378, status 0x379, control 0x37A, ControlShadow 0x0A
    PortBus port{regs, rec};

    static constexpr std::uint16_t kData = 0x378;
    static constexpr std::uint16_t kStatus = 0x379;
    static constexpr std::uint16_t kControl = 0x37A;

    // Makes the status register read value until told otherwise.
    void status(std::uint8_t value) { bus.poke(kStatus, value); }
};

// A status register answering from a script: each read takes the next byte; when the script
// runs out the last byte repeats.
class ScriptedStatus final : public BusDevice {
  public:
    explicit ScriptedStatus(std::vector<std::uint8_t> script, std::uint16_t port = PortRig::kStatus)
        : script_(script.begin(), script.end()), port_(port) {}
    bool claims(std::uint16_t port) const override { return port == port_; }
    std::uint8_t read(std::uint16_t) override {
        ++reads;
        if (script_.size() > 1) {
            const std::uint8_t v = script_.front();
            script_.pop_front();
            return v;
        }
        return script_.empty() ? 0 : script_.front();
    }
    void write(std::uint16_t, std::uint8_t) override {}
    int reads = 0;

  private:
    std::deque<std::uint8_t> script_;
    std::uint16_t port_;
};

// The writes to one port, in order, from a recorded trace.
inline std::vector<std::uint8_t> WritesTo(const std::vector<PortAccess>& log, std::uint16_t port) {
    std::vector<std::uint8_t> out;
    for (const PortAccess& a : log)
        if (a.kind == PortAccess::Write && a.port == port) out.push_back(a.value);
    return out;
}

// The level of dataBit at every rising edge of clockBit in a sequence of register values,
// the register starting at `initial`.
inline std::vector<int> BitsAtRisingEdges(const std::vector<std::uint8_t>& values, int clockBit,
                                          int dataBit, std::uint8_t initial = 0) {
    std::vector<int> bits;
    std::uint8_t prev = initial;
    for (std::uint8_t v : values) {
        if (((prev >> clockBit) & 1) == 0 && ((v >> clockBit) & 1) == 1)
            bits.push_back((v >> dataBit) & 1);
        prev = v;
    }
    return bits;
}

inline int BitsToNumber(const std::vector<int>& bits, std::size_t from, std::size_t count) {
    int v = 0;
    for (std::size_t i = from; i < from + count && i < bits.size(); ++i) v = v * 2 + bits[i];
    return v;
}

inline std::vector<int> BitString(const char* text) {
    std::vector<int> bits;
    for (const char* p = text; *p != '\0'; ++p) bits.push_back(*p == '1' ? 1 : 0);
    return bits;
}

// Builds an expected trace.
struct Trace {
    std::vector<PortAccess> items;
    Trace& w(std::uint16_t port, std::uint8_t v) {
        items.push_back({PortAccess::Write, port, v});
        return *this;
    }
    Trace& r(std::uint16_t port, std::uint8_t v) {
        items.push_back({PortAccess::Read, port, v});
        return *this;
    }
    Trace& wd(std::uint8_t v) { return w(PortRig::kData, v); }
    Trace& wc(std::uint8_t v) { return w(PortRig::kControl, v); }
    Trace& rs(std::uint8_t v) { return r(PortRig::kStatus, v); }
};

}  // namespace kova::test
