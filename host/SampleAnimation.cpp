#include "host/SampleAnimation.h"

#include <cmath>
#include <numbers>

namespace kirrel::host {

namespace {
void put(Picture& p, int x, int y, int r, int g, int b) {
    p.r.at(x, y) = static_cast<std::uint8_t>(r);
    p.g.at(x, y) = static_cast<std::uint8_t>(g);
    p.b.at(x, y) = static_cast<std::uint8_t>(b);
}
} // namespace

// A dusk sky with hills and a bouncing ball, so every transition has shapes and colours to work on.
std::vector<Picture> sampleAnimation(int frames, int w, int h) {
    std::vector<Picture> out;
    out.reserve(static_cast<std::size_t>(frames));
    for (int f = 0; f < frames; ++f) {
        Picture p(w, h);
        const double t = static_cast<double>(f) / frames;
        const double bx = w * (0.15 + 0.7 * t);
        const double by = h * (0.25 + 0.45 * std::abs(std::sin(t * 2 * std::numbers::pi)));
        const double radius = h * 0.09;
        for (int y = 0; y <= h; ++y) {
            const double v = static_cast<double>(y) / h;
            for (int x = 0; x <= w; ++x) {
                const double u = static_cast<double>(x) / w;
                int r = static_cast<int>(40 + 180 * v);
                int g = static_cast<int>(60 + 80 * v);
                int b = static_cast<int>(150 - 60 * v);
                const double hill = 0.72 + 0.08 * std::sin(u * 7 + 1.3) + 0.04 * std::sin(u * 17);
                if (v > hill) {
                    r = 30 + static_cast<int>(20 * u);
                    g = 110 + static_cast<int>(50 * (v - hill) * 3);
                    b = 50;
                }
                const double dx = x - bx, dy = y - by;
                if (dx * dx + dy * dy < radius * radius) {
                    const double shade = 1.0 - 0.5 * (dx + dy) / (2 * radius);
                    r = std::min(255, static_cast<int>(235 * shade));
                    g = std::min(255, static_cast<int>(190 * shade));
                    b = std::min(255, static_cast<int>(40 * shade));
                }
                put(p, x, y, r, g, b);
            }
        }
        out.push_back(std::move(p));
    }
    return out;
}

// A checkered title card in warm colours.
Picture sampleSwapPicture(int w, int h) {
    Picture p(w, h);
    for (int y = 0; y <= h; ++y)
        for (int x = 0; x <= w; ++x) {
            const bool check = ((x / 20) + (y / 20)) % 2 == 0;
            const double v = static_cast<double>(y) / std::max(1, h);
            put(p, x, y, check ? 200 : 120, static_cast<int>((check ? 60 : 30) + 80 * v), check ? 90 : 160);
        }
    return p;
}

} // namespace kirrel::host
