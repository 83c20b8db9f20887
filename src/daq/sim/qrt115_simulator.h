#pragma once
// A QRT115 at its pins. DO-1..DO-8 are the data register's lines themselves (no latch).
// The inputs sit on an 8-bit port chip at seven-bit address 0x38 on a two-wire bus:
//   clock line SCL  high while control bit 0 is 0 (the strobe line, inverted by the port,
//                   drives the clock as it is);
//   data line SDA   released (high) while control bit 1 is 1 and pulled low while it is 0
//                   (the port inverts the auto-feed line and the module's open-collector
//                   driver inverts it back), and pulled low by the port chip when it
//                   acknowledges or sends a 0; status bit 6 reads the line.
// The chip follows the usual framing: SDA falling while SCL is high is a start, rising a
// stop; bits are sampled on SCL rising; after the eighth bit of a byte meant for it the
// chip pulls SDA low for one clock (acknowledge). After an address with the read bit it
// sends the port's pins, most significant bit first, changing SDA after each SCL fall,
// then releases SDA for the controller's acknowledge: an acknowledge asks for another
// byte, none ends the transfer. Bytes written to it are acknowledged and kept, but do not
// change the inputs.
#include <cstdint>
#include <vector>

#include "daq/sim/module_simulator.h"
#include "tags/daq_profile.h"

namespace kova {

class Qrt115Simulator final : public ModuleSimulator {
  public:
    static constexpr std::uint8_t kPortAddress = 0x38;

    int typeCode() const override { return kDaqQrt115; }
    // DI-1..DI-8 pin levels in bits 0..7.
    void setDigitalInputs(std::uint16_t word) { inputs_ = static_cast<std::uint8_t>(word); }
    std::uint16_t latchedDigitalOutputs() const override { return dataRegister(); }

    // Every address byte seen after a start, whoever it was meant for.
    const std::vector<std::uint8_t>& addresses() const { return addresses_; }
    const std::vector<std::uint8_t>& bytesWritten() const { return written_; }
    int bytesSent() const { return bytesSent_; }
    int starts() const { return starts_; }
    int stops() const { return stops_; }
    bool sdaLine() const { return masterSda() && slaveSda_; }

  protected:
    void controlChanged(std::uint8_t before, std::uint8_t after) override;
    std::uint8_t statusPins() const override { return sdaLine() ? 0x40 : 0x00; }

  private:
    enum class State { Idle, Address, AckAddress, Send, MasterAck, Receive, AckReceive };
    bool masterSda() const { return isSet(controlRegister(), 1); }
    void onStart();
    void onStop();
    void onClockRise(bool sda);
    void onClockFall();

    std::uint8_t inputs_ = 0;
    State state_ = State::Idle;
    bool slaveSda_ = true;  // released
    int bits_ = 0;
    std::uint8_t shift_ = 0;
    std::uint8_t sending_ = 0;
    bool masterAcked_ = false;
    std::vector<std::uint8_t> addresses_;
    std::vector<std::uint8_t> written_;
    int bytesSent_ = 0;
    int starts_ = 0;
    int stops_ = 0;
};

}  // namespace kova
