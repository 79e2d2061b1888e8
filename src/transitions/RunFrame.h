#pragma once
// What a transition member's per-frame pixel call sees: the frame M, the source A, the frame number
// and the range, and the ratio arithmetic every transition shares (double precision, the division
// first, rounded half to even where it becomes an integer).

#include "panel/Numeric.h"
#include "panel/Vantry.h"
#include "pixel/Plane.h"
#include "pixel/Triple.h"

#include <string>

namespace kirrel::transitions {

struct RunFrame {
    RunFrame(Vantry::Vantry_Class& v, const std::string& src) : van(v), source(src) {}

    // The buffer's bounds and the range; Span is computed once, here.
    void setRange(int w, int h, int first, int last) {
        W = w;
        H = h;
        start = first;
        end = last;
        span = last - first;
    }

    Vantry::Vantry_Class& van;
    const std::string& source;
    int W = 0, H = 0;                 // the buffer's upper bounds
    int start = 0, end = 0;           // the range, inclusive
    int span = 0;                     // end - start, computed once
    int total = 0;                    // frames in the animation when the run began
    int i = 0;                        // the frame being made
    krl::Triple M;                    // the frame, fetched from the host
    krl::Triple A;                    // the source picture
    krl::Plane alpha;                 // for the alpha families: what the member needs of the alpha
    krl::Plane noise;                 // for the dissolves: the threshold plane, made once per run
    int red = 0, green = 0, blue = 0; // the primary colour, for members that mix it in directly

    // (i - Start) / Span and (End - i) / Span, in double precision.
    double done() const { return divide(static_cast<double>(i - start), static_cast<double>(span)); }
    double remaining() const { return divide(static_cast<double>(end - i), static_cast<double>(span)); }
    // round(share * size) and round(size - share * size), half to even, as 16-bit.
    static int part(double share, int size) { return toInt16(share * static_cast<double>(size)); }
    static int rest(double share, int size) {
        return toInt16(static_cast<double>(size) - share * static_cast<double>(size));
    }
};

// A member's pixel call for one frame.
using FrameStep = void (*)(RunFrame&);

} // namespace kirrel::transitions
