// The filters that have vector kernels, against the plain arithmetic they were first written in,
// worked out cell by cell: whole planes of random pictures at odd sizes, every strength (or a dense
// sample of them), on one core and on several, through every kernel set this processor runs.

#include "filters_support.h"
#include "pixel/FilterSupport.h"
#include "pixel/Filters.h"
#include "pixel/Kernels.h"
#include "pixel/Slices.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

namespace filters_test {
namespace {

using krl::Plane;
using u8 = std::uint8_t;

int clampTo(int v, int lo, int hi) {
    return std::clamp(v, lo, hi);
}

// Cell (x, y) of a plane with the edge repeated outward.
u8 edgeAt(const Plane& p, int x, int y) {
    return p.at(clampTo(x, 0, p.width()), clampTo(y, 0, p.height()));
}

// ---- the plain arithmetic ------------------------------------------------------------------------

Pic toon(const Pic& a, const Pic& b, int edgeFrom, int edgeGain, bool thick) {
    const int w = a.r.width(), h = a.r.height();
    Plane grey(w, h), smooth(w, h), edge(w, h);
    for (int y = 0; y <= h; ++y)
        for (int x = 0; x <= w; ++x)
            grey.at(x, y) = krl::filt::luma(b.r.at(x, y), b.g.at(x, y), b.b.at(x, y));
    const int tap[3] = {1, 2, 1};
    for (int y = 0; y <= h; ++y)
        for (int x = 0; x <= w; ++x) {
            int s = 0;
            for (int dy = -1; dy <= 1; ++dy)
                for (int dx = -1; dx <= 1; ++dx)
                    s += tap[dx + 1] * tap[dy + 1] * edgeAt(grey, x + dx, y + dy);
            smooth.at(x, y) = static_cast<u8>((s + 8) >> 4);
        }
    std::vector<int> darkness(static_cast<std::size_t>(w + 1) * (h + 1));
    auto dark = [&](int x, int y) -> int& {
        return darkness[static_cast<std::size_t>(clampTo(y, 0, h)) * (w + 1) + clampTo(x, 0, w)];
    };
    for (int y = 0; y <= h; ++y)
        for (int x = 0; x <= w; ++x) {
            int gx = 0, gy = 0;
            for (int d = -1; d <= 1; ++d) {
                gx += tap[d + 1] * (edgeAt(smooth, x + 1, y + d) - edgeAt(smooth, x - 1, y + d));
                gy += tap[d + 1] * (edgeAt(smooth, x + d, y + 1) - edgeAt(smooth, x + d, y - 1));
            }
            dark(x, y) = clampTo((std::abs(gx) + std::abs(gy) - edgeFrom) * edgeGain, 0, 256);
        }
    Pic out = a;
    for (int y = 0; y <= h; ++y)
        for (int x = 0; x <= w; ++x) {
            const int line =
                thick ? std::max({dark(x, y - 1), dark(x, y + 1), dark(x - 1, y), dark(x, y), dark(x + 1, y)})
                      : dark(x, y);
            int moved = 0;
            for (int c = 0; c < 3; ++c)
                moved = std::max(moved, std::abs(a[c].at(x, y) - b[c].at(x, y)));
            const int pulled =
                clampTo(static_cast<int>(static_cast<float>((40 - moved) * 512) / 40.0f), 0, 256);
            for (int c = 0; c < 3; ++c) {
                const int p = a[c].at(x, y), q = b[c].at(x, y);
                const int flat = static_cast<u8>(q + (((p - q) * pulled) >> 8));
                const int band = static_cast<int>(static_cast<float>(((flat * 6) >> 8) * 255 + 2) / 5.0f);
                out[c].at(x, y) = static_cast<u8>((band * (256u - line) + 128u) >> 8);
            }
        }
    return out;
}

long lround255(double v) {
    return std::lround(255.0 * v);
}

Pic nightVision(const Pic& a) {
    std::array<u8, 256> gain{}, r{}, g{}, b{};
    for (int v = 0; v < 256; ++v) {
        const double f = v / 255.0;
        const auto i = static_cast<std::size_t>(v);
        gain[i] = static_cast<u8>(lround255(std::pow(f, 0.7)));
        g[i] = static_cast<u8>(std::lround(18.0 + 237.0 * f));
        r[i] = static_cast<u8>(lround255(0.06 * f + 0.5 * f * f * f));
        b[i] = static_cast<u8>(lround255(0.10 * f + 0.35 * f * f * f));
    }
    auto falloff = [](int i, int n) {
        const double half = std::max(1.0, (n - 1) / 2.0);
        const double d = (i - (n - 1) / 2.0) / half;
        return static_cast<int>(std::lround(60 * d * d));
    };
    const int cols = a.r.cols(), rows = a.r.rows();
    std::vector<u8> grain(static_cast<std::size_t>(cols));
    Pic out = a;
    for (int y = 0; y < rows; ++y) {
        krl::filt::grainRow(static_cast<std::uint32_t>(y), 3, grain.data(), cols);
        for (int x = 0; x < cols; ++x) {
            const int lifted = gain[krl::filt::luma(a.r.at(x, y), a.g.at(x, y), a.b.at(x, y))];
            const int keep = 256 - falloff(x, cols) - falloff(y, rows);
            const auto v = static_cast<std::size_t>(
                clampTo(((lifted * keep) >> 8) + (grain[static_cast<std::size_t>(x)] - 128) / 20, 0, 255));
            out.r.at(x, y) = r[v];
            out.g.at(x, y) = g[v];
            out.b.at(x, y) = b[v];
        }
    }
    return out;
}

Pic sketchHard(const Pic& a, const Pic& b, int strength) {
    const double exponent = 1.0 + 3.0 * (clampTo(strength, 128, 255) - 128) / 127.0;
    Pic out = a;
    for (int c = 0; c < 3; ++c)
        for (std::size_t i = 0; i < a[c].size(); ++i) {
            const u8 neg = a[c].data()[i], pic = b[c].data()[i];
            const float full = static_cast<float>((neg + 1) >> 8);
            const float room = 255.0f - static_cast<float>(neg) + full;
            const float q = (static_cast<float>(pic) * 255.0f + full * 65025.0f) / room + 0.5f;
            const int dodged = static_cast<int>(q < 255.0f ? q : 255.0f);
            out[c].data()[i] = strength <= 128
                                   ? static_cast<u8>(dodged)
                                   : static_cast<u8>(lround255(std::pow(dodged / 255.0, exponent)));
        }
    return out;
}

Pic chalk(const Pic& a, int level) {
    const int t = clampTo(level, 0, 100);
    if (t == 0) return a;
    const int lift = t * 64 / 100, soften = t * 80 / 100, skipFrom = 255 - t * 90 / 100;
    Pic out = a;
    for (int y = 0; y <= a.r.height(); ++y)
        for (int x = 0; x <= a.r.width(); ++x) {
            const int stroke = krl::filt::positionGrain(static_cast<std::uint32_t>((x + y) >> 3),
                                                        static_cast<std::uint32_t>(x - y + 4096), 1);
            const int fine =
                krl::filt::positionGrain(static_cast<std::uint32_t>(x), static_cast<std::uint32_t>(y), 2);
            const int tooth = (3 * stroke + fine) >> 2;
            const int whiten = std::min(256, lift + (tooth > skipFrom ? (tooth - skipFrom) * 3 : 0));
            const int grey = krl::filt::luma(a.r.at(x, y), a.g.at(x, y), a.b.at(x, y));
            for (int c = 0; c < 3; ++c) {
                const int soft = (a[c].at(x, y) * (256 - soften) + grey * soften + 128) >> 8;
                out[c].at(x, y) = static_cast<u8>(soft + (((255 - soft) * whiten + 128) >> 8));
            }
        }
    return out;
}

// The noise source as SeedNoise(seed) leaves it: a counter hashed eight bytes at a time, every row
// starting at its own place so that rows may be drawn in any order.
std::uint64_t finalise(std::uint64_t z) {
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
    return z ^ (z >> 31);
}

Pic whiteNoiseAlpha(const Pic& a, const Plane& m, int pct, std::uint64_t seed) {
    constexpr std::uint64_t kGolden = 0x9E3779B97F4A7C15ull;
    const int share = (clampTo(pct, 0, 100) * 256 + 50) / 100;
    if (share == 0) return a;
    const int cols = a.r.cols();
    const std::uint64_t perRow = static_cast<std::uint64_t>(cols + 7) / 8;
    Pic out = a;
    std::vector<u8> noise(static_cast<std::size_t>(perRow) * 8);
    for (int y = 0; y < a.r.rows(); ++y) {
        std::uint64_t counter = finalise(seed) + static_cast<std::uint64_t>(y) * perRow * kGolden;
        for (std::size_t k = 0; k < perRow; ++k) {
            const std::uint64_t z = finalise(counter += kGolden);
            std::memcpy(noise.data() + 8 * k, &z, 8);
        }
        for (int x = 0; x < cols; ++x) {
            const int part = ((m.at(x, y) + (m.at(x, y) >> 7)) * share) >> 8;
            for (int c = 0; c < 3; ++c)
                out[c].at(x, y) = static_cast<u8>(
                    (a[c].at(x, y) * (256 - part) + noise[static_cast<std::size_t>(x)] * part + 128) >> 8);
        }
    }
    return out;
}

Pic posterize(const Pic& a, int level) {
    const int halvings = clampTo(level, 0, 255) / 32;
    const int d = (256 >> halvings) - 1;
    Pic out = a;
    for (int c = 0; c < 3 && halvings > 0; ++c)
        for (std::size_t i = 0; i < a[c].size(); ++i)
            out[c].data()[i] = static_cast<u8>(((a[c].data()[i] >> halvings) * 255 + d / 2) / d);
    return out;
}

Pic boxBlur(const Pic& b) {
    Pic out = b;
    for (int c = 0; c < 3; ++c)
        for (int y = 0; y <= b.r.height(); ++y)
            for (int x = 0; x <= b.r.width(); ++x) {
                int s = 0;
                for (int dy = -2; dy <= 2; ++dy)
                    for (int dx = -2; dx <= 2; ++dx)
                        s += edgeAt(b[c], x + dx, y + dy);
                out[c].at(x, y) = static_cast<u8>((s + 12) / 25);
            }
    return out;
}

// ---- the comparison ------------------------------------------------------------------------------

// One filter with one argument (a strength, a level, a variant): ours runs the library on copies of
// the inputs, plain works out the same picture from them.
struct Filter {
    std::string name;
    std::vector<int> args, argsOnBigPictures;
    std::function<Pic(const Pic&a, const Pic&b, const Plane&m, int arg)> ours, plain;
};

std::vector<int> range(int from, int to) {
    std::vector<int> v;
    for (int i = from; i <= to; ++i)
        v.push_back(i);
    return v;
}

std::vector<Filter> filters() {
    const int seed = 77;
    return {
        {"ToonFilter",
         {0, 1},
         {0, 1}, // 1: B passed as A too
         [](const Pic& a, const Pic& b, const Plane&, int same) {
             Pic x = same ? b : a;
             const Pic& y = same ? x : b;
             krl::ToonFilter(x.r, x.g, x.b, y.r, y.g, y.b, x.r.width(), x.r.height());
             return x;
         },
         [](const Pic& a, const Pic& b, const Plane&, int same) {
             return toon(same ? b : a, b, 112, 3, false);
         }},
        {"ToonFilter2",
         {0, 1},
         {0, 1},
         [](const Pic& a, const Pic& b, const Plane&, int same) {
             Pic x = same ? b : a;
             const Pic& y = same ? x : b;
             krl::ToonFilter2(x.r, x.g, x.b, y.r, y.g, y.b, x.r.width(), x.r.height());
             return x;
         },
         [](const Pic& a, const Pic& b, const Plane&, int same) {
             return toon(same ? b : a, b, 64, 5, true);
         }},
        {"NightVision",
         {0},
         {0},
         [](const Pic& a, const Pic&, const Plane&, int) {
             Pic x = a;
             krl::NightVision(x.r, x.g, x.b, x.r.cols(), x.r.rows());
             return x;
         },
         [](const Pic& a, const Pic&, const Plane&, int) { return nightVision(a); }},
        {"SketchHard",
         range(120, 260),
         {0, 128, 129, 200, 254, 255, 300},
         [](const Pic& a, const Pic& b, const Plane&, int strength) {
             Pic x = a;
             krl::SketchHard(x.r, x.g, x.b, b.r, b.g, b.b, x.r.cols(), x.r.rows(), strength);
             return x;
         },
         [](const Pic& a, const Pic& b, const Plane&, int strength) { return sketchHard(a, b, strength); }},
        {"ChalkFilter",
         range(-1, 101),
         {1, 37, 50, 99, 100},
         [](const Pic& a, const Pic&, const Plane&, int level) {
             Pic x = a;
             krl::ChalkFilter(x.r, x.g, x.b, x.r.cols(), x.r.rows(), level);
             return x;
         },
         [](const Pic& a, const Pic&, const Plane&, int level) { return chalk(a, level); }},
        {"WhiteNoiseAlpha",
         range(-1, 101),
         {1, 50, 99, 100, 1000}, // 1000: the mask is A's red plane
         [seed](const Pic& a, const Pic&, const Plane& m, int pct) {
             Pic x = a;
             krl::SeedNoise(seed);
             krl::WhiteNoiseAlpha(x.r, x.g, x.b, pct == 1000 ? x.r : m, pct % 1000, x.r.width(),
                                  x.r.height());
             return x;
         },
         [seed](const Pic& a, const Pic&, const Plane& m, int pct) {
             return whiteNoiseAlpha(a, pct == 1000 ? a.r : m, pct % 1000, seed);
         }},
        {"Posterize",
         range(-1, 256),
         {31, 32, 128, 200, 255},
         [](const Pic& a, const Pic&, const Plane&, int level) {
             Pic x = a;
             krl::Posterize(x.r, x.g, x.b, level, x.r.cols(), x.r.rows());
             return x;
         },
         [](const Pic& a, const Pic&, const Plane&, int level) { return posterize(a, level); }},
        {"BoxBlur",
         {0, 1},
         {0, 1}, // 1: in place
         [](const Pic& a, const Pic& b, const Plane&, int inPlace) {
             Pic x = inPlace ? b : a;
             const Pic& y = inPlace ? x : b;
             krl::BoxBlur(x.r, x.g, x.b, y.r, y.g, y.b, x.r.width(), x.r.height());
             return x;
         },
         [](const Pic&, const Pic& b, const Plane&, int) { return boxBlur(b); }},
    };
}

struct Size {
    int cols, rows;
};
const Size kSizes[] = {{1, 1}, {2, 3}, {7, 5}, {18, 2}, {33, 17}, {70, 9}, {641, 479}};

std::vector<krl::KernelSet> kernelSets() {
    std::vector<krl::KernelSet> sets;
    for (auto s : {krl::KernelSet::Plain, krl::KernelSet::Ssse3, krl::KernelSet::Avx2})
        if (s <= krl::kernelSet()) sets.push_back(s);
    return sets;
}

class FilterReference : public testing::TestWithParam<std::tuple<int, int>> {};

TEST_P(FilterReference, SameBytesAsThePlainArithmetic) {
    const Filter f = filters()[static_cast<std::size_t>(std::get<0>(GetParam()))];
    const Size size = kSizes[std::get<1>(GetParam())];
    const Pic a = randomPic(size.cols - 1, size.rows - 1, 1), b = randomPic(size.cols - 1, size.rows - 1, 2);
    const Plane m = randomPic(size.cols - 1, size.rows - 1, 3).r;
    const bool big = size.cols * size.rows > 100000;
    for (const int arg : big ? f.argsOnBigPictures : f.args) {
        const Pic want = f.plain(a, b, m, arg);
        for (const krl::KernelSet set : kernelSets())
            for (const int threads : {1, 3}) {
                krl::capKernelSet(set);
                krl::setSliceThreads(threads);
                const Pic got = f.ours(a, b, m, arg);
                krl::setSliceThreads(0);
                krl::capKernelSet(krl::KernelSet::Avx2);
                ASSERT_TRUE(got == want) << f.name << " " << arg << ", kernels " << static_cast<int>(set)
                                         << ", " << threads << " threads";
            }
    }
}

INSTANTIATE_TEST_SUITE_P(Filters, FilterReference,
                         testing::Combine(testing::Range(0, static_cast<int>(filters().size())),
                                          testing::Range(0, static_cast<int>(std::size(kSizes)))),
                         [](const testing::TestParamInfo<FilterReference::ParamType>& info) {
                             const Size s = kSizes[std::get<1>(info.param)];
                             return filters()[static_cast<std::size_t>(std::get<0>(info.param))].name + "_" +
                                    std::to_string(s.cols) + "x" + std::to_string(s.rows);
                         });

} // namespace
} // namespace filters_test
