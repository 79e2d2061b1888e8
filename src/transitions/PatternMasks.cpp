#include "transitions/PatternMasks.h"

#include "panel/Numeric.h"

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QPen>

#include <cmath>
#include <cstdint>
#include <random>
#include <stdexcept>

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
    QImage image(W, H, QImage::Format_RGB888);
    image.fill(Qt::black);
    const double R = 0.24 * ((W + H) / 2.0 + W + H);
    {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing, false);
        const QPointF c(W / 2.0 - 1.0, H / 2.0 - 1.0);
        // Largest disc first: each smaller, brighter one is painted over the ones before it.
        for (int k = 0; R - k >= 0; ++k) {
            const double r = R - k;
            const int g = 255 - toInt16(divide(255.0 * r, R));
            const QColor grey(g, g, g);
            painter.setPen(QPen(grey, 0));
            painter.setBrush(grey);
            painter.drawEllipse(c, r, r);
        }
    }
    krl::Plane m(W, H);
    for (int y = 1; y <= H - 1; ++y) {
        const uchar* line = image.constScanLine(y);
        for (int x = 1; x <= W - 1; ++x)
            m.at(x, y) = line[static_cast<std::size_t>(x) * 3];
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
