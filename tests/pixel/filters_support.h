#pragma once
// Pictures and measures shared by the filter tests.

#include "pixel/Plane.h"

#include <cstdint>
#include <random>

namespace filters_test {

struct Pic {
    krl::Plane r, g, b;
    krl::Plane& operator[](int c) { return c == 0 ? r : (c == 1 ? g : b); }
    const krl::Plane& operator[](int c) const { return c == 0 ? r : (c == 1 ? g : b); }
    bool operator==(const Pic& o) const { return r == o.r && g == o.g && b == o.b; }
};

// Upper bounds w, h; bytes uniform in lo..hi, independent per plane.
inline Pic randomPic(int w, int h, unsigned seed, int lo = 0, int hi = 255) {
    Pic p{krl::Plane(w, h), krl::Plane(w, h), krl::Plane(w, h)};
    std::mt19937 gen(seed);
    std::uniform_int_distribution<int> d(lo, hi);
    for (int c = 0; c < 3; ++c)
        for (std::size_t i = 0; i < p[c].size(); ++i)
            p[c].data()[i] = static_cast<std::uint8_t>(d(gen));
    return p;
}

inline Pic flatPic(int w, int h, int r, int g, int b) {
    Pic p{krl::Plane(w, h), krl::Plane(w, h), krl::Plane(w, h)};
    p.r.fill(static_cast<std::uint8_t>(r));
    p.g.fill(static_cast<std::uint8_t>(g));
    p.b.fill(static_cast<std::uint8_t>(b));
    return p;
}

// Mean and variance of one plane.
inline double mean(const krl::Plane& p) {
    double s = 0;
    for (std::size_t i = 0; i < p.size(); ++i)
        s += p.data()[i];
    return s / static_cast<double>(p.size());
}

inline double variance(const krl::Plane& p) {
    const double m = mean(p);
    double s = 0;
    for (std::size_t i = 0; i < p.size(); ++i)
        s += (p.data()[i] - m) * (p.data()[i] - m);
    return s / static_cast<double>(p.size());
}

// Whether any pixel of column x (or row y) differs between two pictures.
inline bool columnDiffers(const Pic& a, const Pic& b, int x) {
    for (int c = 0; c < 3; ++c)
        for (int y = 0; y < a[c].rows(); ++y)
            if (a[c].at(x, y) != b[c].at(x, y)) return true;
    return false;
}

inline bool rowDiffers(const Pic& a, const Pic& b, int y) {
    for (int c = 0; c < 3; ++c)
        for (int x = 0; x < a[c].cols(); ++x)
            if (a[c].at(x, y) != b[c].at(x, y)) return true;
    return false;
}

} // namespace filters_test
