#pragma once
// A setup-file value whose type travels with it. The type code is kept so that a file
// read and written again gives the same bytes.
#include <cstdint>
#include <string>

namespace kova {

enum VariantType : std::int16_t {
    kVarEmpty = 0,
    kVarNull = 1,
    kVarInteger = 2,  // 16-bit
    kVarLong = 3,     // 32-bit
    kVarSingle = 4,
    kVarDouble = 5,
    kVarDate = 7,  // days since 30 December 1899, as a double
    kVarString = 8,
    kVarBoolean = 11,  // 16-bit, true = -1
};

struct Variant {
    std::int16_t type = kVarInteger;
    double number = 0;  // the value of every numeric type (booleans: -1 or 0)
    std::string text;   // the value of a string

    static Variant integer(std::int16_t v) { return {kVarInteger, static_cast<double>(v), {}}; }
    static Variant longInt(std::int32_t v) { return {kVarLong, static_cast<double>(v), {}}; }
    static Variant single(float v) { return {kVarSingle, static_cast<double>(v), {}}; }
    static Variant real(double v) { return {kVarDouble, v, {}}; }
    static Variant boolean(bool v) { return {kVarBoolean, v ? -1.0 : 0.0, {}}; }
    static Variant string(std::string s) { return {kVarString, 0, std::move(s)}; }

    // The value as a number (a string that reads as a number gives that number, else 0).
    double asNumber() const;
    // True when the value is non-zero (the way the switches read it).
    bool isOn() const { return asNumber() != 0; }
    bool operator==(const Variant&) const = default;
};

}  // namespace kova
