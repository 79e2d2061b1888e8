// Every filter against the plain arithmetic it stands for, worked out cell by cell: whole planes of
// random pictures at odd sizes, every strength (or a dense sample of them), on one core and on
// several, through every kernel set this processor runs, with the inputs left as they were. Then what
// the sizes mean: a count reaches the last column and row, a bound of a count-sense filter leaves
// them, and no size, however wrong, lets a filter touch anything past its planes.

#include "pixel/FilterSupport.h"
#include "pixel/Filters.h"
#include "pixel_support.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>

namespace krl::pixeltest {
namespace {

// Cell (x, y) of a plane with the edge repeated outward.
u8 edgeAt(const Plane& p, int x, int y) {
    return p.at(std::clamp(x, 0, p.width()), std::clamp(y, 0, p.height()));
}

// ---- the plain arithmetic ------------------------------------------------------------------------

// Every byte of A through f.
Pic eachByte(Pic a, const std::function<int(int)>& f) {
    for (int c = 0; c < 3; ++c)
        for (std::size_t i = 0; i < a[c].size(); ++i)
            a[c].data()[i] = static_cast<u8>(f(a[c].data()[i]));
    return a;
}

// Pixels for which `when` holds take their grey in all three planes.
Pic greyWhere(Pic a, const std::function<bool(int r, int g, int b)>& when) {
    for (std::size_t i = 0; i < a.r.size(); ++i) {
        const u8 r = a.r.data()[i], g = a.g.data()[i], b = a.b.data()[i];
        if (when(r, g, b)) a.r.data()[i] = a.g.data()[i] = a.b.data()[i] = filt::luma(r, g, b);
    }
    return a;
}

// Level, channel and tolerance of the desaturation's runs.
const int kGreyOuts[][3] = {{0, 1, 255},  {50, 1, 0},     {50, 1, 40},   {50, 1, -40},
                            {50, 2, 255}, {100, 3, -255}, {50, 4, 255},  {50, 0, 255},
                            {-9, 2, 300}, {37, 3, -3},    {120, 1, -300}};

Pic greyOut(const Pic& a, const int* p) {
    const int centre = (std::clamp(p[0], 0, 100) * 255 + 50) / 100, other = centre + p[2];
    return greyWhere(a, [&](int r, int g, int b) {
        const int key = p[1] == 1 ? r : p[1] == 2 ? g : p[1] == 3 ? b : -1000;
        return key >= std::min(centre, other) && key <= std::max(centre, other);
    });
}

Pic greyThreshold(Pic a, const Pic& b, int level) {
    for (std::size_t i = 0; i < a.r.size(); ++i) {
        const long mean = std::lround((b.r.data()[i] + b.g.data()[i] + b.b.data()[i]) / 3.0);
        for (int c = 0; c < 3; ++c) // halfway to white or black, rounded half to even
            a[c].data()[i] = static_cast<u8>(std::lrint((a[c].data()[i] + (mean >= level ? 255 : 0)) / 2.0));
    }
    return a;
}

// A plane through a `radius` box (1 2 1 weights both ways for the tent) with the edge repeated.
Plane blurred(const Plane& p, bool tent) {
    Plane out = p;
    const int r = tent ? 1 : 2;
    for (int y = 0; y <= p.height(); ++y)
        for (int x = 0; x <= p.width(); ++x) {
            int s = 0;
            for (int dy = -r; dy <= r; ++dy)
                for (int dx = -r; dx <= r; ++dx)
                    s += (tent ? (2 - std::abs(dx)) * (2 - std::abs(dy)) : 1) * edgeAt(p, x + dx, y + dy);
            out.at(x, y) = static_cast<u8>(tent ? (s + 8) >> 4 : (s + 12) / 25);
        }
    return out;
}

Pic blurred(const Pic& p, bool tent) {
    return {blurred(p.r, tent), blurred(p.g, tent), blurred(p.b, tent)};
}

Pic toon(const Pic& a, const Pic& b, int edgeFrom, int edgeGain, bool thick) {
    const int w = a.r.width(), h = a.r.height();
    const Plane smooth = blurred(greyWhere(b, [](int, int, int) { return true; }).r, true);
    std::vector<int> darkness(static_cast<std::size_t>(w + 1) * (h + 1));
    auto dark = [&](int x, int y) -> int& {
        return darkness[static_cast<std::size_t>(std::clamp(y, 0, h)) * (w + 1) + std::clamp(x, 0, w)];
    };
    const int tap[3] = {1, 2, 1};
    for (int y = 0; y <= h; ++y)
        for (int x = 0; x <= w; ++x) {
            int gx = 0, gy = 0;
            for (int d = -1; d <= 1; ++d) {
                gx += tap[d + 1] * (edgeAt(smooth, x + 1, y + d) - edgeAt(smooth, x - 1, y + d));
                gy += tap[d + 1] * (edgeAt(smooth, x + d, y + 1) - edgeAt(smooth, x + d, y - 1));
            }
            dark(x, y) = std::clamp((std::abs(gx) + std::abs(gy) - edgeFrom) * edgeGain, 0, 256);
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
                std::clamp(static_cast<int>(static_cast<float>((40 - moved) * 512) / 40.0f), 0, 256);
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
        filt::grainRow(static_cast<std::uint32_t>(y), 3, grain.data(), cols);
        for (int x = 0; x < cols; ++x) {
            const int lifted = gain[filt::luma(a.r.at(x, y), a.g.at(x, y), a.b.at(x, y))];
            const int keep = 256 - falloff(x, cols) - falloff(y, rows);
            const auto v = static_cast<std::size_t>(
                std::clamp(((lifted * keep) >> 8) + (grain[static_cast<std::size_t>(x)] - 128) / 20, 0, 255));
            out.r.at(x, y) = r[v];
            out.g.at(x, y) = g[v];
            out.b.at(x, y) = b[v];
        }
    }
    return out;
}

Pic sketchHard(const Pic& a, const Pic& b, int strength) {
    const double exponent = 1.0 + 3.0 * (std::clamp(strength, 128, 255) - 128) / 127.0;
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
    const int t = std::clamp(level, 0, 100);
    if (t == 0) return a;
    const int lift = t * 64 / 100, soften = t * 80 / 100, skipFrom = 255 - t * 90 / 100;
    Pic out = a;
    for (int y = 0; y <= a.r.height(); ++y)
        for (int x = 0; x <= a.r.width(); ++x) {
            const int stroke = filt::positionGrain(static_cast<std::uint32_t>((x + y) >> 3),
                                                   static_cast<std::uint32_t>(x - y + 4096), 1);
            const int fine =
                filt::positionGrain(static_cast<std::uint32_t>(x), static_cast<std::uint32_t>(y), 2);
            const int tooth = (3 * stroke + fine) >> 2;
            const int whiten = std::min(256, lift + (tooth > skipFrom ? (tooth - skipFrom) * 3 : 0));
            const int grey = filt::luma(a.r.at(x, y), a.g.at(x, y), a.b.at(x, y));
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

constexpr std::uint64_t kSeed = 77;

Pic whiteNoiseAlpha(const Pic& a, const Plane& m, int pct) {
    constexpr std::uint64_t kGolden = 0x9E3779B97F4A7C15ull;
    const int share = (std::clamp(pct, 0, 100) * 256 + 50) / 100;
    if (share == 0) return a;
    const int cols = a.r.cols();
    const std::uint64_t perRow = static_cast<std::uint64_t>(cols + 7) / 8;
    Pic out = a;
    std::vector<u8> noise(static_cast<std::size_t>(perRow) * 8);
    for (int y = 0; y < a.r.rows(); ++y) {
        std::uint64_t counter = finalise(kSeed) + static_cast<std::uint64_t>(y) * perRow * kGolden;
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
    const int halvings = std::clamp(level, 0, 255) / 32;
    const int d = (256 >> halvings) - 1;
    return halvings == 0 ? a : eachByte(a, [&](int v) { return ((v >> halvings) * 255 + d / 2) / d; });
}

// The key colours of the compositing runs, from A's own pixels so that they occur: the last pixel's
// colour as primary, the first's as secondary; the same colour for both; and a component 256 away
// from a byte value, which matches nothing.
std::array<int, 6> cfxKeys(const Pic& a, int variant) {
    auto last = [](const Plane& p) { return p.empty() ? -1 : int{p.at(p.width(), p.height())}; };
    auto first = [](const Plane& p) { return p.empty() ? -1 : int{p.at(0, 0)}; };
    std::array<int, 6> k = {last(a.r), last(a.g), last(a.b), first(a.r), first(a.g), first(a.b)};
    if (variant == 1) std::copy(k.begin(), k.begin() + 3, k.begin() + 3);
    if (variant == 2) k[0] += 256;
    if (variant == 3) k[4] -= 256;
    return k;
}

// The compositing keeps the work picture A except where it shows a key colour: the primary shows the
// main picture B, the secondary the swap picture (B's planes taken round by one).
Pic cfx(const Pic& a, const Pic& b, int variant) {
    const auto k = cfxKeys(a, variant);
    Pic out = a;
    for (std::size_t i = 0; i < a.r.size(); ++i) {
        auto is = [&](int at) {
            return a.r.data()[i] == k[at] && a.g.data()[i] == k[at + 1] && a.b.data()[i] == k[at + 2];
        };
        for (int c = 0; c < 3 && (is(0) || is(3)); ++c)
            out[c].data()[i] = is(0) ? b[c].data()[i] : b[(c + 1) % 3].data()[i];
    }
    return out;
}

// ---- the table -----------------------------------------------------------------------------------

using Runner = std::function<void(Pic& a, const Pic& b, const Plane& m, int w, int h, int arg)>;
using Plain = std::function<Pic(const Pic& a, const Pic& b, const Plane& m, int arg)>;

enum Traits {
    kCounts = 0,
    kBound = 1,      // takes w, h as upper bounds, else as counts
    kNeighbours = 2, // a 1x1 picture may come out unchanged
    kSecond = 4,     // reads a second picture or a mask besides A
};

// One filter with one argument (a strength, a level, a variant): run calls the library on A in place,
// plain works out the same picture from the inputs.
struct Filter {
    std::string name;
    int traits;
    Runner run;
    Plain plain;
    int typical; // the argument the size tests use
    std::vector<int> args, argsOnBigPictures;
};

std::vector<int> range(int from, int to) {
    std::vector<int> v;
    for (int i = from; i <= to; ++i)
        v.push_back(i);
    return v;
}

// A two-picture filter is run three ways: A and B apart (0), A passed as B too (1), and A a copy
// that shares B's buffers (2).
using TwoPictures = void (*)(Plane&, Plane&, Plane&, const Plane&, const Plane&, const Plane&, int, int);
Runner threeWays(TwoPictures f) {
    return [f](Pic& a, const Pic& b, const Plane&, int w, int h, int way) {
        if (way == 2) a = b;
        const Pic& from = way == 1 ? a : b;
        f(T3(a), T3(from), w, h);
    };
}
Plain threeWays(const std::function<Pic(const Pic&, const Pic&)>& f) {
    return [f](const Pic& a, const Pic& b, const Plane&, int way) {
        return way == 0 ? f(a, b) : way == 1 ? f(a, a) : f(b, b);
    };
}
// A filter of A alone, with its argument; and one that takes every byte on its own.
Plain alone(const std::function<Pic(const Pic&, int)>& f) {
    return [f](const Pic& a, const Pic&, const Plane&, int arg) { return f(a, arg); };
}
Plain bytes(const std::function<int(int v, int arg)>& f) {
    return alone([f](const Pic& a, int arg) { return eachByte(a, [&](int v) { return f(v, arg); }); });
}

#define KRL_RUN(...)                                                                                         \
    [](Pic& a, [[maybe_unused]] const Pic& b, [[maybe_unused]] const Plane& m, int w, int h,                 \
       [[maybe_unused]] int arg) { __VA_ARGS__; }

const std::vector<Filter>& filters() {
    static const std::vector<Filter> all = [] {
        std::vector<Filter> f;
        auto add = [&f](const std::string& name, int traits, Runner run, Plain plain, int typical = 0,
                        std::vector<int> args = {0}, std::vector<int> big = {}) {
            f.push_back(
                {name, traits, std::move(run), std::move(plain), typical, args, big.empty() ? args : big});
        };
        const int two = kBound | kSecond;
        add("BoxBlur", two | kNeighbours, threeWays(&BoxBlur),
            threeWays([](const Pic&, const Pic& b) { return blurred(b, false); }), 0, {0, 1, 2});
        add("TriBlur", kBound | kNeighbours, KRL_RUN(TriBlur(T3(a), w, h)),
            alone([](const Pic& a, int) { return blurred(a, true); }));
        add("ToonFilter", two, threeWays(&ToonFilter),
            threeWays([](const Pic& a, const Pic& b) { return toon(a, b, 112, 3, false); }), 0, {0, 1, 2});
        add("ToonFilter2", two, threeWays(&ToonFilter2),
            threeWays([](const Pic& a, const Pic& b) { return toon(a, b, 64, 5, true); }), 0, {0, 1, 2});
        add("Negative", kCounts, KRL_RUN(Negative(T3(a), w, h)), bytes([](int v, int) { return 255 - v; }));
        add("GreyScale", kCounts, KRL_RUN(GreyScale(T3(a), w, h)),
            alone([](const Pic& a, int) { return greyWhere(a, [](int, int, int) { return true; }); }));
        add("GreyOut", kCounts,
            KRL_RUN(GreyOut(T3(a), kGreyOuts[arg][0], kGreyOuts[arg][1], kGreyOuts[arg][2], w, h)),
            alone([](const Pic& a, int arg) { return greyOut(a, kGreyOuts[arg]); }), 0, range(0, 10));
        add("GreyThreshold", two, KRL_RUN(GreyThreshold(T3(a), T3(b), arg, w, h)),
            [](const Pic& a, const Pic& b, const Plane&, int level) { return greyThreshold(a, b, level); },
            128, {-1, 0, 1, 30, 31, 128, 255, 256, 257}, {0, 85, 171, 256});
        add("Threshold", kCounts, KRL_RUN(for (int c = 0; c < 3; ++c) Threshold(a[c], arg, w, h)),
            bytes([](int v, int level) { return v > level ? 255 : 0; }), 128,
            {-5, -1, 0, 1, 128, 254, 255, 256, 1000}, {-1, 0, 100, 254, 255});
        add("Posterize", kCounts, KRL_RUN(Posterize(T3(a), arg, w, h)), alone(posterize), 255, range(-1, 256),
            {31, 32, 128, 200, 255});
        add("IncreaseBrightness", kCounts, KRL_RUN(IncreaseBrightness(T3(a), arg, w, h)),
            bytes([](int v, int step) { return std::clamp(v + step, 0, 255); }), 40,
            {-1000, -255, -100, -1, 0, 1, 10, 254, 255, 1000}, {-100, 40});
        add("IncreaseDarkness", kCounts, KRL_RUN(IncreaseDarkness(T3(a), arg, w, h)),
            bytes([](int v, int step) { return std::clamp(v - step, 0, 255); }), 40,
            {-1000, -30, 0, 30, 1000}, {-30, 40});
        add("NightVision", kCounts, KRL_RUN(NightVision(T3(a), w, h)),
            alone([](const Pic& a, int) { return nightVision(a); }));
        add("SketchHard", kSecond, KRL_RUN(SketchHard(T3(a), T3(b), w, h, arg)),
            [](const Pic& a, const Pic& b, const Plane&, int strength) { return sketchHard(a, b, strength); },
            200, range(120, 260), {0, 128, 129, 200, 254, 255, 300});
        add("ChalkFilter", kCounts, KRL_RUN(ChalkFilter(T3(a), w, h, arg)), alone(chalk), 100, range(-1, 101),
            {1, 37, 50, 99, 100});
        add("WhiteNoise", kCounts, KRL_RUN(SeedNoise(kSeed); WhiteNoise(T3(a), arg, w, h)),
            alone([](const Pic& a, int pct) {
                return whiteNoiseAlpha(a, flatPlane(a.r.width(), a.r.height(), 255), pct);
            }),
            100, range(-1, 101), {1, 50, 100});
        // 1000: the mask is A's red plane.
        add("WhiteNoiseAlpha", two,
            KRL_RUN(SeedNoise(kSeed); WhiteNoiseAlpha(T3(a), arg == 1000 ? a.r : m, arg % 1000, w, h)),
            [](const Pic& a, const Pic&, const Plane& m, int pct) {
                return whiteNoiseAlpha(a, pct == 1000 ? a.r : m, pct % 1000);
            },
            100, range(-1, 101), {1, 50, 99, 100, 1000});
        // The main picture is only read: a change to it spoils the result, so the comparison sees it.
        add("CFXFilter1", two,
            KRL_RUN(const auto k = cfxKeys(a, arg); Pic main = b; const Pic swap{b.g, b.b, b.r};
                    CFXFilter1(T3(main), T3(swap), T3(a), k[0], k[1], k[2], k[3], k[4], k[5], w, h);
                    if (!(main == b)) a = Pic{}),
            [](const Pic& a, const Pic& b, const Plane&, int variant) { return cfx(a, b, variant); }, 0,
            {0, 1, 2, 3});
        return f;
    }();
    return all;
}

struct Size {
    int cols, rows;
};
const Size kSizes[] = {{1, 1}, {2, 3}, {1, 9}, {7, 5}, {18, 2}, {33, 17}, {70, 9}, {641, 479}};

class FilterReference : public testing::TestWithParam<std::tuple<int, int>> {};

TEST_P(FilterReference, SameBytesAsThePlainArithmetic) {
    const Filter& f = filters()[static_cast<std::size_t>(std::get<0>(GetParam()))];
    const auto [cols, rows] = kSizes[std::get<1>(GetParam())];
    const Pic a = noise(cols - 1, rows - 1, 1), b = noise(cols - 1, rows - 1, 2);
    const Plane m = noisePlane(cols - 1, rows - 1, 3);
    for (const int arg : cols* rows > 100000 ? f.argsOnBigPictures : f.args) {
        const Pic want = f.plain(a, b, m, arg);
        everyKernelSetAndThreads([&](const std::string& how) {
            for (const bool shared : {true, false}) { // A's planes shared with the caller's, or private
                Pic x = shared ? a : deep(a);
                f.run(x, b, m, f.traits & kBound ? cols - 1 : cols, f.traits & kBound ? rows - 1 : rows, arg);
                ASSERT_TRUE(x == want) << f.name << " " << arg << ", " << how << (shared ? ", shared" : "");
            }
        });
        ASSERT_TRUE(a == noise(cols - 1, rows - 1, 1) && b == noise(cols - 1, rows - 1, 2) &&
                    m == noisePlane(cols - 1, rows - 1, 3))
            << f.name << " " << arg << " changed an input";
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

// Whether any pixel of column `at` (or, across, of row `at`) differs between two pictures.
bool lineDiffers(const Pic& a, const Pic& b, int at, bool across = false) {
    for (int c = 0; c < 3; ++c)
        for (int i = 0; i < (across ? a[c].cols() : a[c].rows()); ++i)
            if (across ? a[c].at(i, at) != b[c].at(i, at) : a[c].at(at, i) != b[c].at(at, i)) return true;
    return false;
}

class FilterSizes : public testing::TestWithParam<int> {
  protected:
    const Filter& f = filters()[static_cast<std::size_t>(GetParam())];
    void run(Pic& a, const Pic& b, const Plane& m, int w, int h) const { f.run(a, b, m, w, h, f.typical); }
};

TEST_P(FilterSizes, CountsReachTheLastColumnAndRowBoundsLeaveThemForCountSenseFilters) {
    for (auto [w, h] : {std::pair{0, 0}, {1, 1}, {2, 1}, {5, 4}, {16, 8}}) {
        SCOPED_TRACE(std::to_string(w) + "x" + std::to_string(h));
        const Pic before = noise(w, h, 1, 20, 235), other = noise(w, h, 2, 20, 235);
        const Plane mask = flatPlane(w, h, 255);
        Pic counted = before, bounded = before;
        run(counted, other, mask, w + 1, h + 1);
        if (!(f.traits & kNeighbours) || w > 0) {
            EXPECT_TRUE(lineDiffers(counted, before, w));
            EXPECT_TRUE(lineDiffers(counted, before, h, true));
        }
        run(bounded, other, mask, w, h);
        if (f.traits & kBound) {
            EXPECT_EQ(bounded, counted); // the whole plane either way
        } else {
            EXPECT_FALSE(lineDiffers(bounded, before, w));
            EXPECT_FALSE(lineDiffers(bounded, before, h, true));
            EXPECT_TRUE(w == 0 || h == 0 || lineDiffers(bounded, before, w - 1));
        }
    }
}

// Any size on well-formed or empty planes: the address sanitizer is the judge of what lies past
// them. An empty input shares no pixel with A, which therefore stays as it was.
TEST_P(FilterSizes, HostileSizesAndEmptyPlanesNeverReachPastThePlanes) {
    const int sizes[] = {INT_MIN, -7, -1, 0, 1, 3, 6, 7, 1 << 20, INT_MAX};
    const Pic other = noise(5, 3, 2);
    const Plane mask = flatPlane(5, 3, 200);
    for (int w : sizes)
        for (int h : sizes) {
            Pic a = noise(5, 3, 1), kept = a, empty;
            run(a, other, mask, w, h);
            run(empty, other, Plane(), w, h);
            run(empty, empty, Plane(), w, h);
            ASSERT_TRUE(empty.r.empty() && empty.g.empty() && empty.b.empty()) << w << "x" << h;
            if (f.traits & kSecond) run(kept, Pic{}, Plane(), w, h);
            ASSERT_TRUE(kept == noise(5, 3, 1)) << w << "x" << h;
        }
}

// Planes of different sizes in one call: only the part they all share is worked on.
TEST_P(FilterSizes, MismatchedPlanesWorkOnlyWhereAllOverlap) {
    if (f.name == "Threshold") GTEST_SKIP() << "takes one plane at a time";
    Pic a = noise(9, 7, 1);
    a.g = noisePlane(4, 3, 3); // 5 x 4
    a.b = noisePlane(6, 2, 4); // 7 x 3
    const Plane redBefore = a.r;
    run(a, noise(12, 12, 2), flatPlane(12, 12, 255), INT_MAX, INT_MAX);
    for (int y = 0; y < a.r.rows(); ++y)
        for (int x = 0; x < a.r.cols(); ++x)
            ASSERT_TRUE((x < 5 && y < 3) || a.r.at(x, y) == redBefore.at(x, y)) << x << "," << y;
}

INSTANTIATE_TEST_SUITE_P(AllFilters, FilterSizes, testing::Range(0, static_cast<int>(filters().size())),
                         [](const testing::TestParamInfo<int>& info) {
                             return filters()[static_cast<std::size_t>(info.param)].name;
                         });

// The wipes and dissolves pass one plane as all three: each channel's work is applied to it in turn,
// so it ends up inverted, as grey as it was, and pure noise. The noise is new with every call, and
// seeding repeats it.
TEST(FilterOnePlaneThrice, TakesEachChannelsWorkInTurn) {
    const Plane p0 = noisePlane(6, 4, 1);
    Plane p = p0, q = p0;
    Negative(p, p, p, 7, 5);
    EXPECT_TRUE(p == eachByte({p0, p0, p0}, [](int v) { return 255 - v; }).r);
    GreyScale(q, q, q, 7, 5);
    EXPECT_TRUE(q == p0);
    Pic once = noise(6, 4, 2), again = once;
    SeedNoise(5);
    WhiteNoise(T3(once), 100, 7, 5);
    WhiteNoise(T3(again), 100, 7, 5);
    EXPECT_FALSE(again == once);
    SeedNoise(5);
    WhiteNoise(p, p, p, 100, 7, 5);
    EXPECT_TRUE(p == once.r);
}

} // namespace
} // namespace krl::pixeltest
