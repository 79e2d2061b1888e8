#include "panel/Trace.h"

#include <QWidget>

#include <charconv>
#include <cmath>

namespace Vantry {

namespace {
TraceSink& sink() {
    static TraceSink s;
    return s;
}
} // namespace

void setTraceSink(TraceSink s) {
    sink() = std::move(s);
}
bool tracing() {
    return static_cast<bool>(sink());
}
void emitTrace(const std::string& line) {
    if (sink()) sink()(line);
}

TracePause::TracePause() : held_(std::move(sink())) {
    sink() = {};
}
TracePause::~TracePause() {
    sink() = std::move(held_);
}

namespace trace_detail {

std::string text(std::string_view s) {
    std::string out = "\"";
    for (char c : s) {
        if (c == '\n')
            out += "\\n";
        else if (c == '\r')
            out += "\\r";
        else if (c == '"')
            out += "\\\"";
        else if (c == '\\')
            out += "\\\\";
        else
            out += c;
    }
    return out + "\"";
}

std::string text(const krl::Plane& p) {
    return "plane(" + std::to_string(p.width()) + "," + std::to_string(p.height()) + ")";
}

std::string text(QWidget* form) {
    return form ? form->objectName().toStdString() : std::string("Nothing");
}

std::string number(double v) {
    if (!std::isfinite(v)) return std::isnan(v) ? "NaN" : (v > 0 ? "Infinity" : "-Infinity");
    char buf[64];
    auto [end, ec] = std::to_chars(buf, buf + sizeof buf, v);
    return ec == std::errc() ? std::string(buf, end) : std::string("?");
}

std::string number(long long v) {
    return std::to_string(v);
}

} // namespace trace_detail
} // namespace Vantry
