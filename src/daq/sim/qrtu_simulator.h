#pragma once
// A QRTU at its pins. Data bit 1 is the clock of both serial parts; data bit 0 is the
// converter's data in and the input register's shift/load line.
//
// Converter (10 bits, eight inputs), selected while control bit 3 is 1. Selecting it
// starts an I/O cycle of ten clock pulses: the first four rising edges sample the channel
// address from data bit 0, most significant first (the other six bits are ignored), and
// each falling edge moves the data output (status pin 4) to the next bit of the last
// result, most significant first. The tenth falling edge starts a conversion of the
// addressed input: end of conversion (status pin 6) goes low, the clock is ignored, and
// after `conversionReads` reads of the status register the conversion is done at the next
// read: end of conversion goes high, the data output shows the new result's most
// significant bit and a new I/O cycle begins. Addresses 8 to 15 (no input wired) convert
// to 0. Deselecting leaves a running conversion to finish; selecting again finishes it at
// once (far more time has passed than a conversion takes) and starts a new cycle. While
// not selected the data output reads low. A negative `conversionReads` never finishes.
//
// Note: SelectPort writes 0x0A to the control register, which has bit 3 set and so selects
// the converter until the first analog read ends; clock pulses of a digital-input read in
// between feed its I/O cycle, and the first analog reading after SelectPort can then come
// out wrong. The simulator keeps that consequence of the wiring rather than hide it.
//
// Input register: two 8-bit shift stages in cascade. A rising clock edge with data bit 0
// low loads them; with data bit 0 high it shifts one place towards the output (status
// pin 5). Out first come DI-8 down to DI-1, then a spare input (tied high), then DI-15
// down to DI-9.
//
// Output latches: a rising edge of control bit 0 latches the data register into DO-1..
// DO-8, a rising edge of control bit 1 into the analog output AO-1.
#include <array>
#include <cstdint>
#include <vector>

#include "daq/sim/module_simulator.h"
#include "tags/daq_profile.h"

namespace kova {

class QrtuSimulator final : public ModuleSimulator {
  public:
    int typeCode() const override { return kDaqQrtu; }
    // Counts presented on input n (1..8), clamped to 0..1023.
    void setAnalogInput(int n, int counts);
    // DI-1..DI-15 pin levels in bits 0..14.
    void setDigitalInputs(std::uint16_t word) {
        inputs_ = static_cast<std::uint16_t>(word & 0x7FFF);
    }
    void setConversionReads(int reads) { conversionReads_ = reads; }

    std::uint16_t latchedDigitalOutputs() const override { return digitalOutputs_; }
    int latchedAnalogOutput(int n) const override { return n == 1 ? analogOutput_ : 0; }

    // The four-bit channel address of every conversion started.
    const std::vector<int>& conversionAddresses() const { return addresses_; }
    bool converting() const { return converting_; }

  protected:
    void dataChanged(std::uint8_t before, std::uint8_t after) override;
    void controlChanged(std::uint8_t before, std::uint8_t after) override;
    void statusRead() override;
    std::uint8_t statusPins() const override;

  private:
    bool selected() const { return isSet(controlRegister(), 3); }
    void startCycle();
    void finishConversion();

    std::array<int, 8> analog_{};
    std::uint16_t inputs_ = 0;
    int conversionReads_ = 0;

    // converter
    bool converting_ = false;
    bool endOfConversion_ = true;
    int busyLeft_ = 0;
    int cycleEdges_ = 0;
    int address_ = 0;
    int addressBits_ = 0;
    int pendingAddress_ = 0;
    int result_ = 0;
    int outShift_ = 0;
    std::vector<int> addresses_;

    // input register and latches
    std::uint16_t chain_ = 0;
    std::uint8_t digitalOutputs_ = 0;
    int analogOutput_ = 0;
};

}  // namespace kova
