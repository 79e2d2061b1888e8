#pragma once
// Pictures and a table of the two-picture operations, shared by the mixing tests.

#include "pixel/Mixing.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <functional>
#include <random>
#include <string>
#include <vector>

namespace krl::mixtest {

struct Pic {
    Plane r, g, b;
    bool operator==(const Pic& o) const { return r == o.r && g == o.g && b == o.b; }
    Plane& operator[](int c) { return c == 0 ? r : c == 1 ? g : b; }
    const Plane& operator[](int c) const { return c == 0 ? r : c == 1 ? g : b; }
};
#define T3(p) p.r, p.g, p.b

inline Plane noisePlane(int w, int h, unsigned seed) {
    Plane p(w, h);
    std::mt19937 rng(seed);
    for (std::size_t i = 0; i < p.size(); ++i)
        p.data()[i] = static_cast<std::uint8_t>(rng());
    return p;
}
inline Plane flatPlane(int w, int h, std::uint8_t v) {
    Plane p(w, h);
    p.fill(v);
    return p;
}
inline Pic noise(int w, int h, unsigned s) {
    return {noisePlane(w, h, s), noisePlane(w, h, s + 1), noisePlane(w, h, s + 2)};
}
inline Pic flat(int w, int h, std::uint8_t v) {
    return {flatPlane(w, h, v), flatPlane(w, h, v), flatPlane(w, h, v)};
}

// Each cell says where it is: red the column, green the row, blue a mix of both.
inline Pic coded(int w, int h) {
    Pic p{Plane(w, h), Plane(w, h), Plane(w, h)};
    for (int y = 0; y <= h; ++y)
        for (int x = 0; x <= w; ++x) {
            p.r.at(x, y) = static_cast<std::uint8_t>(x);
            p.g.at(x, y) = static_cast<std::uint8_t>(y);
            p.b.at(x, y) = static_cast<std::uint8_t>(x * 7 + y * 13);
        }
    return p;
}

inline Pic transposed(const Pic& p) {
    Pic t{Plane(p.r.height(), p.r.width()), Plane(p.r.height(), p.r.width()),
          Plane(p.r.height(), p.r.width())};
    for (int c = 0; c < 3; ++c)
        for (int y = 0; y <= p.r.height(); ++y)
            for (int x = 0; x <= p.r.width(); ++x)
                t[c].at(y, x) = p[c].at(x, y);
    return t;
}

inline long long sum(const Pic& p) {
    long long s = 0;
    for (int c = 0; c < 3; ++c)
        for (std::size_t i = 0; i < p[c].size(); ++i)
            s += p[c].data()[i];
    return s;
}

// a - b without overflow, for hostile arguments.
inline int minus(int a, int b) {
    return static_cast<int>(std::clamp<long long>(1LL * a - b, INT_MIN, INT_MAX));
}

// Ends of a run along an operation's axis of bound `size`.
enum End { kZero, kFull, kHalf, kPast, kPct, kByte, kAll, kNone };
inline int endLevel(End e, int size) {
    const int v[] = {0, size, size / 2, (size + 1) / 2, 100, 255, 256, -1};
    return v[e];
}

// A two-picture operation driven by one integer (pct, level, offset, leaf, reveal, band edge) with
// everything else fixed: levelA(W, H) must leave A and levelB(W, H) must give B.
struct Op {
    std::string name;
    bool vertical;
    End toA, toB;
    std::function<void(Pic& a, Pic& b, int w, int h, int level)> run;
    int levelA(int W, int H) const { return endLevel(toA, vertical ? H : W); }
    int levelB(int W, int H) const { return endLevel(toB, vertical ? H : W); }
};

inline std::vector<Op> twoPictureOps() {
    std::vector<Op> ops;
#define KRL_ADD(name, vertical, toA, toB, ...)                                                               \
    ops.push_back({name, vertical, toA, toB, [=](Pic& a, Pic& b, int w, int h, int l) { __VA_ARGS__; }})
    KRL_ADD("MixBuffers", false, kPct, kZero, MixBuffers(T3(a), T3(b), l, w, h));
    KRL_ADD("AlphaMix", false, kZero, kByte,
            AlphaMix(T3(a), T3(b), flatPlane(a.r.width(), a.r.height(), static_cast<std::uint8_t>(l)), w, h));
    KRL_ADD("AlphaMixThresh", false, kZero, kAll,
            AlphaMixThresh(T3(a), T3(b), noisePlane(a.r.width(), a.r.height(), 9), l, w, h));
    KRL_ADD("BoxMix", false, kNone, kFull, BoxMix(T3(a), T3(b), w, h, 0, 0, l, h));
    for (int m = 1; m <= 2; ++m) { // stripe periods 2 and 7: the stripes of a pair may differ in size
        const std::string s = std::to_string(m);
        const bool v = m == 2;
        KRL_ADD("BlindMix" + s, v, kZero, kByte, BlindMix(T3(a), T3(b), w, h, l, m));
        KRL_ADD("DoorMix" + s, v, kZero, kHalf, DoorMix(T3(a), T3(b), w, h, l, m));
        KRL_ADD("StripeMix" + s, v, kZero, kFull, StripeMix(T3(a), T3(b), w, h, 2, l, m));
        KRL_ADD("SlideStripeMix" + s, v, kFull, kZero, SlideStripeMix(T3(a), T3(b), w, h, 7, l, m));
        KRL_ADD("PushStripeMix" + s, v, kFull, kZero, PushStripeMix(T3(a), T3(b), w, h, 7, l, m));
        KRL_ADD("SqueezeOverlay" + s, v, kFull, kZero, Pic source = b; // b plays the saved copy
                SqueezeOverlay(T3(a), T3(source), T3(b), w, h, v ? w : l, v ? l : h, 0, 0, m));
    }
    for (int m = 1; m <= 4; ++m) {
        const std::string s = std::to_string(m);
        const bool v = m > 2;
        KRL_ADD("SlideOverlay" + s, v, kFull, kZero, SlideOverlay(T3(a), T3(b), w, h, l, m));
        KRL_ADD("ASlideOverlay" + s, v, kFull, kZero, Plane moved(a.r.width(), a.r.height());
                ASlideOverlay(T3(a), T3(b), moved, noisePlane(a.r.width(), a.r.height(), 5), w, h, l, m));
        KRL_ADD("PushOverlay" + s, v, m == 2 ? kZero : kFull, m == 2 ? kFull : kZero,
                PushOverlay(T3(a), T3(b), w, h, l, m));
    }
    // Modes 1-4 take the band edge as `right` or `bottom`; 5 and 6 take the margin on each side.
    const End stretchToA[] = {kZero, kFull, kZero, kFull, kPast, kPast};
    for (int m = 1; m <= 6; ++m) {
        const bool v = m == 3 || m == 4 || m == 6;
        KRL_ADD("StretchOverlay" + std::to_string(m), v, stretchToA[m - 1], m == 1 || m == 3 ? kFull : kZero,
                StretchOverlay(T3(a), T3(b), w, h,
                               m == 5 ? minus(w, l)
                               : v    ? w
                                      : l,
                               m == 6 ? minus(h, l)
                               : v    ? l
                                      : h,
                               m == 5 ? l : 0, m == 6 ? l : 0, m));
    }
#undef KRL_ADD
    return ops;
}

} // namespace krl::mixtest
