#include "transitions/PatternMasks.h"

#include "panel/Numeric.h"

#include <QImage>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <random>
#include <stdexcept>
#include <vector>

namespace kirrel::transitions {

namespace {

// A mirrored write that would fall outside the plane is an error, never a stray write.
void put(krl::Plane& m, int x, int y, int v) {
    if (x < 0 || y < 0 || x > m.width() || y > m.height()) throw std::out_of_range("Subscript out of range");
    m.at(x, y) = static_cast<std::uint8_t>(v);
}

void putFour(krl::Plane& m, int x, int y, int v) {
    put(m, x, y, v);
    put(m, m.width() - x, y, v);
    put(m, x, m.height() - y, v);
    put(m, m.width() - x, m.height() - y, v);
}

int centre(int bound) {
    return toInt32(bound / 2.0);
}

// The next row's or column's first value: the product is taken in single precision before rounding.
int randomStart(const Uniform& random) {
    const float r = random() * 255.0f;
    return toByte(static_cast<double>(r));
}

} // namespace

krl::Plane irisMask(int W, int H) {
    krl::Plane m(W, H);
    const double cx = centre(W);
    const double cy = centre(H);
    for (int y = 0; y <= H; ++y) {
        const double dy = divide(std::abs(y - cy), cy);
        for (int x = 0; x <= W; ++x)
            m.at(x, y) = toByte(std::sqrt(dy * divide(std::abs(x - cx), cx)) * 255.0);
    }
    return m;
}

krl::Plane diamondMask(int W, int H) {
    krl::Plane m(W, H);
    const int cx = centre(W);
    const int cy = centre(H);
    const int yEnd = toInt32(H / 2.0 + 1.0);
    const int xEnd = toInt32(W / 2.0 + 1.0);
    for (int y = 0; y <= yEnd; ++y)
        for (int x = 0; x <= xEnd; ++x) {
            const int a = toByte(divide(std::abs(cx - x), cx) * 127.0);
            const int b = toByte(divide(std::abs(cy - y), cy) * 127.0 + a);
            putFour(m, x, y, b);
        }
    return m;
}

krl::Plane xMask(int W, int H) {
    krl::Plane m(W, H);
    const int cx = centre(W);
    const int cy = centre(H);
    for (int y = 0; y <= H; ++y)
        for (int x = 0; x <= W; ++x) {
            const double t = std::abs(divide(cx - x, W) * 255.0 - divide(cy - y, H) * 255.0) * 2;
            const int v = toInt32(t);
            putFour(m, x, y, v < 256 ? v : 255);
        }
    return m;
}

float processUniform() {
    static std::mt19937 generator; // one sequence for the process, never reseeded
    // 24 random bits scaled below 1: exactly representable, so 1 itself never comes out.
    return static_cast<float>(generator() >> 8) * (1.0f / 16777216.0f);
}

krl::Plane linesMask(LinesDirection direction, int W, int H, const Uniform& random) {
    krl::Plane m(W, H);
    switch (direction) {
    case LinesDirection::ToRight:
    case LinesDirection::ToLeft: {
        const bool right = direction == LinesDirection::ToRight;
        int v = right ? 0 : 255;
        for (int y = 0; y <= H; ++y) {
            for (int x = 0; x <= W; ++x) {
                m.at(x, y) = static_cast<std::uint8_t>(v);
                v = (v + (right ? 1 : 255)) & 255;
            }
            v = randomStart(random);
        }
        break;
    }
    case LinesDirection::Up: {
        int v = 0;
        for (int x = 1; x <= W; ++x) {
            for (int y = H; y >= 0; --y) {
                m.at(x, y) = static_cast<std::uint8_t>(v);
                v = v > 254 ? 0 : v + 1;
            }
            v = randomStart(random);
        }
        break;
    }
    case LinesDirection::Down: {
        int v = 0;
        for (int x = 0; x <= W; ++x) {
            for (int y = 0; y <= H; ++y) {
                m.at(x, y) = static_cast<std::uint8_t>(v);
                v = v == 255 ? 0 : v + 1;
            }
            v = randomStart(random);
        }
        break;
    }
    }
    return m;
}

krl::Plane circleMask(int W, int H, QImage* surface) {
    if (W < 1 || H < 1) throw std::out_of_range("Subscript out of range");
    // The discs, from radius R down to 0 in steps of 1 and each brighter than the one before, are
    // painted by our own loop rather than one by one: a pixel keeps the grey of the smallest disc
    // that reaches its centre (x + 0.5, y + 0.5), which is what painting them all leaves behind. One
    // square root per pixel instead of a filled disc per step, whose total area grows with R cubed.
    const double R = 0.24 * ((W + H) / 2.0 + W + H);
    const double cx = W / 2.0 - 1.0, cy = H / 2.0 - 1.0;
    const auto steps = static_cast<int>(std::floor(R));
    std::vector<std::uint8_t> grey(static_cast<std::size_t>(steps) + 1);
    for (int k = 0; k <= steps; ++k)
        grey[static_cast<std::size_t>(k)] =
            static_cast<std::uint8_t>(255 - toInt16(divide(255.0 * (R - k), R)));
    QImage image(W, H, QImage::Format_RGB888);
    krl::Plane m(W, H);
    for (int y = 0; y < H; ++y) {
        uchar* line = image.scanLine(y);
        const double dy = y + 0.5 - cy;
        for (int x = 0; x < W; ++x) {
            const double dx = x + 0.5 - cx;
            const double d = std::sqrt(dx * dx + dy * dy);
            // The smallest disc reaching the pixel is R - k for the largest whole k with R - k >= d.
            const std::uint8_t g = d > R ? 0 : grey[static_cast<std::size_t>(std::floor(R - d))];
            std::memset(line + static_cast<std::ptrdiff_t>(x) * 3, g, 3);
            if (x >= 1 && y >= 1) m.at(x, y) = g;
        }
    }
    for (int x = 0; x <= W; ++x) {
        m.at(x, 0) = m.at(x, 1);
        m.at(x, H) = m.at(x, H - 1);
    }
    for (int y = 0; y <= H; ++y) {
        m.at(0, y) = m.at(1, y);
        m.at(W, y) = m.at(W - 1, y);
    }
    if (surface) *surface = image;
    return m;
}

} // namespace kirrel::transitions
