#pragma once
// The domain's number rules in one place: 16-bit counters and codes fault on overflow,
// conversion to 16-bit rounds halves to even, analog values are single precision, and
// number-to-text follows one helper.
#include <cstdint>
#include <string>

namespace kova {

// 16-bit arithmetic that faults (kova::Fault, Overflow) instead of wrapping.
std::int16_t add16(std::int16_t a, std::int16_t b);
std::int16_t sub16(std::int16_t a, std::int16_t b);
std::int16_t mul16(std::int16_t a, std::int16_t b);
std::int16_t narrow16(long long v);  // faults outside -32768..32767
std::int32_t narrow32(long long v);  // faults outside the 32-bit range

// Round to the nearest whole number, halves to even (2.5 -> 2, 3.5 -> 4, -2.5 -> -2).
double roundHalfEven(double v);
// Rounds halves to even and narrows to 16 bits; faults when the result does not fit
// or the value is not a number.
std::int16_t toInt16(double v);
std::int32_t toInt32(double v);

// Store a double as the single-precision value a tag holds; faults (Overflow) when the
// value is not finite or exceeds the single-precision range.
float toSingle(double v);

// Every conversion here ignores the process locale: "." is the decimal point.
//
// Number-to-text of the system: up to seven significant digits, shortest form, a leading
// blank when not negative (" 12.5", "-3", " 0.02442002", " 1.234568E+07").
std::string numberText(double v);
// The same without the leading blank (listings, labels).
std::string plainNumberText(double v);
// Room that numberText needs, blank and sign included.
inline constexpr int kNumberTextRoom = 32;
// plainNumberText written into [first, last) (at least kNumberTextRoom bytes) without
// touching the heap; returns the end of the text.
char* writeNumberText(char* first, char* last, double v);
// The value with a fixed number of decimals, "." as the decimal point ("1.500").
std::string fixedText(double v, int decimals);
char* writeFixedText(char* first, char* last, double v, int decimals);

// Ordinary text-to-number conversion as the forms use it: leading blanks skipped, the
// longest numeric prefix read, 0 when there is none.
double leadingNumber(const std::string& text);
// True when the whole text (blanks around allowed) is a number.
bool isNumeric(const std::string& text);
// Text-to-16-bit-integer conversion of a text box: leading numeric prefix, rounded half
// to even; faults (Overflow) when outside 16 bits.
std::int16_t textToInt16(const std::string& text);
// A text box read as a whole number where the text must be a number: faults (Invalid,
// "Type mismatch") when it is not, (Overflow) when it does not fit 16 bits.
std::int16_t strictTextToInt16(const std::string& text);

}  // namespace kova
