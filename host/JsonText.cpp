#include "host/JsonText.h"

#include <charconv>
#include <cmath>
#include <cstdio>

namespace kirrel::host {

std::string jsonQuote(const std::string& s) {
    std::string out = "\"";
    for (unsigned char c : s) {
        switch (c) {
        case '"': out += "\\\""; break;
        case '\\': out += "\\\\"; break;
        case '\n': out += "\\n"; break;
        case '\r': out += "\\r"; break;
        case '\t': out += "\\t"; break;
        default:
            if (c < 0x20) {
                char buf[8];
                std::snprintf(buf, sizeof buf, "\\u%04x", c);
                out += buf;
            } else {
                out += static_cast<char>(c);
            }
        }
    }
    return out + "\"";
}

std::string jsonNumber(double v) {
    if (!std::isfinite(v)) return "null";
    char buf[64];
    auto [end, ec] = std::to_chars(buf, buf + sizeof buf, v);
    if (ec != std::errc()) return "null";
    return std::string(buf, end);
}

} // namespace kirrel::host
