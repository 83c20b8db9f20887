#pragma once
// Helpers for driver tests: a port (registers at 0x378, delay count 7) over a simulated bus
// with every access and every bit-time wait recorded, a steady clock that moves 1 ms at
// each reading (a bounded wait ends after a known number of reads), a status register that
// answers from a script, and decoders of serial lines in a register trace.
#include <cstdint>
#include <deque>
#include <vector>

#include "daq/port_layer.h"
#include "platform/recording_port_io.h"
#include "platform/simulated_bus.h"
#include "platform/steady_clock.h"

namespace kova::test {

// The delay count of the rig: small, so waits cost nothing, and not 0, so a trace shows
// that each wait is one bit time.
inline constexpr std::int32_t kRigDelay = 7;

inline PortState RigRegisters() {
    PortState regs;  // data 0x378, status 0x379, control 0x37A, ControlShadow 0x0A
    regs.DelayCount = kRigDelay;
    return regs;
}

struct PortRig {
    SimulatedBus bus;
    RecordingPortIo rec{bus};
    PortState regs = RigRegisters();
    SteppingSteadyClock clock{std::chrono::milliseconds(1)};
    PortBus port{regs, rec, clock};

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

// The trace without its waits: the register accesses alone.
inline std::vector<PortAccess> Accesses(const std::vector<PortAccess>& log) {
    std::vector<PortAccess> out;
    for (const PortAccess& a : log)
        if (a.kind != PortAccess::Wait) out.push_back(a);
    return out;
}

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
    // One busy-wait of one bit time (the rig's delay count unless told).
    Trace& d(std::int32_t count = kRigDelay) {
        items.push_back({PortAccess::Wait, 0, 0, count});
        return *this;
    }
    Trace& wd(std::uint8_t v) { return w(PortRig::kData, v); }
    Trace& wc(std::uint8_t v) { return w(PortRig::kControl, v); }
    Trace& rs(std::uint8_t v) { return r(PortRig::kStatus, v); }
};

}  // namespace kova::test
