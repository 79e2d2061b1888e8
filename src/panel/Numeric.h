#pragma once
// The panel's number conversions. Frame ratios are computed in double precision and rounded half to
// even when they become integers; a value that does not fit the target is an overflow that ends the
// action with an error, and an integer division by zero is reported rather than crashing.

#include <cmath>
#include <cstdint>
#include <stdexcept>

namespace kirrel {

inline double roundHalfEven(double v) { return std::nearbyint(v); } // the default FP mode rounds to even

inline std::int16_t toInt16(double v) {
    const double r = roundHalfEven(v);
    if (!(r >= -32768.0 && r <= 32767.0)) throw std::overflow_error("Overflow");
    return static_cast<std::int16_t>(r);
}

inline std::int32_t toInt32(double v) {
    const double r = roundHalfEven(v);
    if (!(r >= -2147483648.0 && r <= 2147483647.0)) throw std::overflow_error("Overflow");
    return static_cast<std::int32_t>(r);
}

inline std::uint8_t toByte(double v) {
    const double r = roundHalfEven(v);
    if (!(r >= 0.0 && r <= 255.0)) throw std::overflow_error("Overflow");
    return static_cast<std::uint8_t>(r);
}

// Floating division as the panel writes it: a zero divisor is an error, not an infinity.
inline double divide(double a, double b) {
    if (b == 0.0) throw std::domain_error("Division by zero");
    return a / b;
}

inline long long intDivide(long long a, long long b) {
    if (b == 0) throw std::domain_error("Division by zero");
    return a / b;
}

} // namespace kirrel

#include <string>

namespace kirrel {

// A text read as a number the way the panel's language reads it: leading blanks skipped, then as far
// as the digits (with one sign and one decimal point) go; no number at all reads as 0.
inline double leadingNumber(const std::string& text) {
    std::size_t i = 0;
    while (i < text.size() && (text[i] == ' ' || text[i] == '\t')) ++i;
    std::size_t j = i;
    if (j < text.size() && (text[j] == '-' || text[j] == '+')) ++j;
    bool dot = false, digits = false;
    for (; j < text.size(); ++j) {
        if (text[j] >= '0' && text[j] <= '9') digits = true;
        else if (text[j] == '.' && !dot) dot = true;
        else break;
    }
    if (!digits) return 0;
    try {
        return std::stod(text.substr(i, j - i));
    } catch (...) {
        return 0;
    }
}

} // namespace kirrel
