#pragma once
// The call trace of the automation interface: one line per call, `Name(arg, arg, ...)`, numbers as
// they are, strings quoted with \n for a line feed, planes as plane(W,H) with their upper bounds.

#include "pixel/Plane.h"

#include <functional>
#include <string>
#include <string_view>
#include <type_traits>

class QWidget;

namespace Vantry {

using TraceSink = std::function<void(const std::string& line)>;
void setTraceSink(TraceSink sink); // an empty sink switches tracing off
bool tracing();
void emitTrace(const std::string& line);

// Holds the sink back while it lives: calls made meanwhile are no calls of the session (work done on
// a scratch host) and are not traced.
class TracePause {
  public:
    TracePause();
    ~TracePause();
    TracePause(const TracePause&) = delete;
    TracePause& operator=(const TracePause&) = delete;

  private:
    TraceSink held_;
};

namespace trace_detail {
std::string text(std::string_view s);
std::string text(const krl::Plane& p);
std::string text(QWidget* form);
std::string number(double v);
std::string number(long long v);

template <class T> std::string arg(const T& v) {
    if constexpr (std::is_same_v<T, bool>)
        return v ? "True" : "False";
    else if constexpr (std::is_floating_point_v<T>)
        return number(static_cast<double>(v));
    else if constexpr (std::is_integral_v<T>)
        return number(static_cast<long long>(v));
    else
        return text(v);
}
} // namespace trace_detail

template <class... A> void traceCall(std::string_view name, const A&... args) {
    if (!tracing()) return;
    std::string line(name);
    line += '(';
    std::string_view separator;
    ((line.append(separator).append(trace_detail::arg(args)), separator = ", "), ...);
    line += ')';
    emitTrace(line);
}

} // namespace Vantry
