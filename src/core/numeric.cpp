#include "core/numeric.h"

#include <cctype>
#include <cfloat>
#include <charconv>
#include <cmath>
#include <limits>
#include <string_view>

#include "core/fault.h"

namespace kova {

void throwOverflow(const char* what) {
    throw Fault(FaultKind::Overflow, std::string("Overflow: ") + what);
}

void throwBounds(const char* table, long index, long low, long high) {
    throw Fault(FaultKind::Bounds, std::string("Subscript out of range: ") + table + " index " +
                                       std::to_string(index) + " not in " + std::to_string(low) +
                                       ".." + std::to_string(high));
}

std::int16_t narrow16(long long v) {
    if (v < std::numeric_limits<std::int16_t>::min() ||
        v > std::numeric_limits<std::int16_t>::max())
        throwOverflow("16-bit integer");
    return static_cast<std::int16_t>(v);
}

std::int32_t narrow32(long long v) {
    if (v < std::numeric_limits<std::int32_t>::min() ||
        v > std::numeric_limits<std::int32_t>::max())
        throwOverflow("32-bit integer");
    return static_cast<std::int32_t>(v);
}

std::int16_t add16(std::int16_t a, std::int16_t b) {
    return narrow16(static_cast<long long>(a) + b);
}
std::int16_t sub16(std::int16_t a, std::int16_t b) {
    return narrow16(static_cast<long long>(a) - b);
}
std::int16_t mul16(std::int16_t a, std::int16_t b) {
    return narrow16(static_cast<long long>(a) * b);
}

double roundHalfEven(double v) {
    return std::nearbyint(v);
}  // default FE_TONEAREST: ties to even

std::int16_t toInt16(double v) {
    if (!std::isfinite(v)) throwOverflow("16-bit integer");
    const double r = roundHalfEven(v);
    if (r < -32768.0 || r > 32767.0) throwOverflow("16-bit integer");
    return static_cast<std::int16_t>(r);
}

std::int32_t toInt32(double v) {
    if (!std::isfinite(v)) throwOverflow("32-bit integer");
    const double r = roundHalfEven(v);
    if (r < -2147483648.0 || r > 2147483647.0) throwOverflow("32-bit integer");
    return static_cast<std::int32_t>(r);
}

float toSingle(double v) {
    if (!std::isfinite(v) || std::fabs(v) > static_cast<double>(FLT_MAX)) throwOverflow("single");
    return static_cast<float>(v);
}

// Number-to-text never goes through the C library's locale: a program whose user reads
// "2,5" still writes "2.5" into its files and messages.
char* writeNumberText(char* first, char* last, double v) {
    if (v == 0.0 || std::isnan(v)) {
        *first = '0';
        return first + 1;
    }
    if (std::isinf(v)) {
        const char* word = v < 0 ? "-INF" : "INF";
        while (*word != '\0' && first != last) *first++ = *word++;
        return first;
    }
    const auto r = std::to_chars(first, last, v, std::chars_format::general, 7);
    for (char* p = first; p != r.ptr; ++p)
        if (*p == 'e') *p = 'E';
    return r.ptr;
}

char* writeFixedText(char* first, char* last, double v, int decimals) {
    return std::to_chars(first, last, v, std::chars_format::fixed, decimals).ptr;
}

std::string fixedText(double v, int decimals) {
    char buf[kNumberTextRoom + 340];  // a fixed double may need more than 300 digits
    return std::string(buf, writeFixedText(buf, buf + sizeof buf, v, decimals));
}

std::string plainNumberText(double v) {
    char buf[kNumberTextRoom];
    return std::string(buf, writeNumberText(buf, buf + sizeof buf, v));
}

std::string numberText(double v) {
    char buf[kNumberTextRoom];
    buf[0] = ' ';
    char* end = writeNumberText(buf + 1, buf + sizeof buf, v);
    if (buf[1] == '-') return std::string(buf + 1, end);
    return std::string(buf, end);
}

namespace {
// Length of the longest prefix of s (from pos) that forms a decimal number.
std::size_t numericPrefix(const std::string& s, std::size_t pos) {
    std::size_t i = pos;
    if (i < s.size() && (s[i] == '+' || s[i] == '-')) ++i;
    std::size_t digits = 0;
    while (i < s.size() && std::isdigit(static_cast<unsigned char>(s[i]))) ++i, ++digits;
    if (i < s.size() && s[i] == '.') {
        ++i;
        while (i < s.size() && std::isdigit(static_cast<unsigned char>(s[i]))) ++i, ++digits;
    }
    if (digits == 0) return 0;
    if (i < s.size() && (s[i] == 'E' || s[i] == 'e')) {
        std::size_t j = i + 1;
        if (j < s.size() && (s[j] == '+' || s[j] == '-')) ++j;
        std::size_t expDigits = 0;
        while (j < s.size() && std::isdigit(static_cast<unsigned char>(s[j]))) ++j, ++expDigits;
        if (expDigits > 0) i = j;
    }
    return i - pos;
}

std::size_t skipBlanks(const std::string& s, std::size_t pos) {
    while (pos < s.size() && (s[pos] == ' ' || s[pos] == '\t')) ++pos;
    return pos;
}
}  // namespace

double leadingNumber(const std::string& text) {
    std::size_t start = skipBlanks(text, 0);
    const std::size_t len = numericPrefix(text, start);
    if (len == 0) return 0.0;
    const char* first = text.data() + start;
    const char* last = first + len;
    bool negative = false;
    if (*first == '+' || *first == '-') negative = *first++ == '-';
    // Read with "." as the decimal point whatever the process locale says.
    double v = 0.0;
    const auto r = std::from_chars(first, last, v, std::chars_format::general);
    if (r.ec == std::errc::result_out_of_range) {
        // Too large becomes infinity (which no conversion accepts), too small becomes 0.
        const std::string_view digits(first, static_cast<std::size_t>(last - first));
        const auto e = digits.find_first_of("eE");
        const bool tiny =
            e != std::string_view::npos && e + 1 < digits.size() && digits[e + 1] == '-';
        v = tiny ? 0.0 : std::numeric_limits<double>::infinity();
    }
    return negative ? -v : v;
}

bool isNumeric(const std::string& text) {
    const std::size_t start = skipBlanks(text, 0);
    const std::size_t len = numericPrefix(text, start);
    if (len == 0) return false;
    return skipBlanks(text, start + len) == text.size();
}

std::int16_t textToInt16(const std::string& text) {
    return toInt16(leadingNumber(text));
}

std::int16_t strictTextToInt16(const std::string& text) {
    if (!isNumeric(text))
        throw Fault(FaultKind::Invalid, "Type mismatch: \"" + text + "\" is not a number");
    return toInt16(leadingNumber(text));
}

}  // namespace kova
