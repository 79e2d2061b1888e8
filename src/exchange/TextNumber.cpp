#include "exchange/TextNumber.h"

#include "panel/Numeric.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <stdexcept>

namespace kirrel::exchange {

std::optional<double> numericValue(const std::string& text) {
    const auto first = text.find_first_not_of(" \t");
    if (first == std::string::npos) return std::nullopt;
    const auto last = text.find_last_not_of(" \t");
    const std::string t = text.substr(first, last - first + 1);
    // Only plain decimal numbers: no hexadecimal, no infinity, no not-a-number.
    const auto foreign = [](char c) {
        return !((c >= '0' && c <= '9') || c == '.' || c == '-' || c == '+' || c == 'e' || c == 'E');
    };
    if (std::any_of(t.begin(), t.end(), foreign)) return std::nullopt;
    char* end = nullptr;
    const double v = std::strtod(t.c_str(), &end);
    if (end != t.c_str() + t.size() || !std::isfinite(v)) return std::nullopt;
    return v;
}

std::int16_t textToInt16(const std::string& text) {
    const auto v = numericValue(text);
    if (!v) throw std::invalid_argument("Type mismatch");
    return toInt16(*v);
}

std::optional<int> textInRange(const std::string& text, int lo, int hi) {
    const auto v = numericValue(text);
    if (!v) throw std::invalid_argument("Type mismatch");
    const double r = std::nearbyint(*v);
    if (r < lo || r > hi) return std::nullopt;
    return static_cast<int>(r);
}

std::string rangeRefusal(const std::string& what, int lo, int hi) {
    return what + " must be a whole number from " + std::to_string(lo) + " to " + std::to_string(hi) + ".";
}

} // namespace kirrel::exchange
