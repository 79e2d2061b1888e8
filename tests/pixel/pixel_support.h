#pragma once
// Pictures, measures and runs shared by the pixel library's tests, and a table of the two-picture
// operations.

#include "pixel/Kernels.h"
#include "pixel/Mixing.h"
#include "pixel/Slices.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <vector>

namespace krl::pixeltest {

using u8 = std::uint8_t;

struct Pic {
    Plane r, g, b;
    Plane& operator[](int c) { return c == 0 ? r : c == 1 ? g : b; }
    const Plane& operator[](int c) const { return c == 0 ? r : c == 1 ? g : b; }
    bool operator==(const Pic& o) const { return r == o.r && g == o.g && b == o.b; }
};
#define T3(p) p.r, p.g, p.b

// Bytes uniform in lo..hi; w, h are upper bounds. The planes of a picture are independent, and
// apart from the single planes of small seeds.
inline Plane noisePlane(int w, int h, unsigned seed, int lo = 0, int hi = 255) {
    Plane p(w, h);
    std::mt19937 rng(seed);
    std::uniform_int_distribution<int> d(lo, hi);
    for (std::size_t i = 0; i < p.size(); ++i)
        p.data()[i] = static_cast<u8>(d(rng));
    return p;
}
inline Pic noise(int w, int h, unsigned seed, int lo = 0, int hi = 255) {
    return {noisePlane(w, h, 1000 + 3 * seed, lo, hi), noisePlane(w, h, 1001 + 3 * seed, lo, hi),
            noisePlane(w, h, 1002 + 3 * seed, lo, hi)};
}
inline Plane flatPlane(int w, int h, int v) {
    Plane p(w, h);
    p.fill(static_cast<u8>(v));
    return p;
}
inline Pic flat(int w, int h, int v) {
    return {flatPlane(w, h, v), flatPlane(w, h, v), flatPlane(w, h, v)};
}

// A copy that shares no buffer with the original.
inline Plane deep(const Plane& p) {
    Plane q(p.width(), p.height());
    if (!p.empty()) std::memcpy(q.data(), p.data(), p.size());
    return q;
}
inline Pic deep(const Pic& p) {
    return {deep(p.r), deep(p.g), deep(p.b)};
}

// Each cell says where it is: red the column, green the row, blue a mix of both.
inline Pic coded(int w, int h) {
    Pic p{Plane(w, h), Plane(w, h), Plane(w, h)};
    for (int y = 0; y <= h; ++y)
        for (int x = 0; x <= w; ++x) {
            p.r.at(x, y) = static_cast<u8>(x);
            p.g.at(x, y) = static_cast<u8>(y);
            p.b.at(x, y) = static_cast<u8>(x * 7 + y * 13);
        }
    return p;
}

inline Pic transposed(const Pic& p) {
    Pic t = flat(p.r.height(), p.r.width(), 0);
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

// Runs `run` under every kernel set this processor has, each on one thread and on three; `how` names
// the run for a failure message. The library is left on its defaults afterwards.
inline void everyKernelSetAndThreads(const std::function<void(const std::string& how)>& run) {
    for (auto set : {KernelSet::Plain, KernelSet::Ssse3, KernelSet::Avx2})
        for (const int threads : {1, 3}) {
            if (set > kernelSet()) continue;
            capKernelSet(set);
            setSliceThreads(threads);
            run("kernels " + std::to_string(static_cast<int>(set)) + ", " + std::to_string(threads) +
                " threads");
            setSliceThreads(0);
            capKernelSet(KernelSet::Avx2);
        }
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
            AlphaMix(T3(a), T3(b), flatPlane(a.r.width(), a.r.height(), l), w, h));
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
        const bool margin = m >= 5;
        KRL_ADD("StretchOverlay" + std::to_string(m), v, stretchToA[m - 1], m == 1 || m == 3 ? kFull : kZero,
                const int edge = margin ? minus(v ? h : w, l) : l;
                StretchOverlay(T3(a), T3(b), w, h, v ? w : edge, v ? edge : h, margin && !v ? l : 0,
                               margin && v ? l : 0, m));
    }
#undef KRL_ADD
    return ops;
}

// The table of two-picture operations, and one of them by name.
inline const std::vector<Op>& allOps() {
    static const std::vector<Op> ops = twoPictureOps();
    return ops;
}
inline const Op& opNamed(const std::string& name) {
    return *std::find_if(allOps().begin(), allOps().end(), [&](const Op& o) { return o.name == name; });
}

} // namespace krl::pixeltest
