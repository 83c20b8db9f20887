#pragma once
// The 12-bit serial analog-to-digital converter of the QRT105 and QRT110, at its pins.
//
// While selected, the converter ignores clock pulses until a pulse carries a 1 on its data
// input (the start bit); that bit and the next seven, sampled on rising clock edges, are
// the command byte: start, select (3 bits), unipolar, single-ended, two power bits. The
// conversion completes with the eighth rising edge; the twelve result bits then appear on
// the data output, most significant first, one at each falling edge of the following
// twelve clock pulses (the falling edge that ends the eighth command pulse shows nothing
// new). Selecting the converter (select rising) starts a fresh command; while it is not
// selected it ignores the clock and its data output reads low.
//
// Channel selects in single-ended mode: 0 -> input 1, 4 -> 2, 1 -> 3, 5 -> 4, 2 -> 5,
// 6 -> 6, 3 -> 7, 7 -> 8. In differential mode select s converts the pair (2p + 1, 2p + 2)
// with p = s & 3, the plus input being the second of the pair when s bit 2 is set; a
// negative difference reads 0. Bipolar commands (unipolar bit clear) are answered as
// unipolar: the modules never send them.
#include <array>
#include <cstdint>
#include <vector>

namespace kova {

class SerialConverter12 {
  public:
    // Counts presented on input n (1..8), clamped to 0..4095.
    void setInput(int n, int counts);
    int input(int n) const;

    // The converter's pins after a register write: select, serial clock, serial data in.
    void update(bool selected, bool clock, bool dataIn);
    bool dataOut() const { return selected_ && dataOut_; }

    // Every command byte received, in order.
    const std::vector<std::uint8_t>& commands() const { return commands_; }

  private:
    enum class Phase { WaitStart, Command, Output };
    int convert(std::uint8_t command) const;

    std::array<int, 8> inputs_{};
    bool selected_ = false;
    bool clock_ = false;
    Phase phase_ = Phase::WaitStart;
    int commandBits_ = 0;
    std::uint8_t command_ = 0;
    int result_ = 0;
    int pulsesAfterCommand_ = 0;
    bool dataOut_ = false;
    std::vector<std::uint8_t> commands_;
};

}  // namespace kova
