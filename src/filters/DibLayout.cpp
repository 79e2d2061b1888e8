#include "filters/DibLayout.h"

#include <algorithm>
#include <stdexcept>

namespace kirrel::filters {

namespace {

void put16(std::vector<std::uint8_t>& out, std::size_t at, std::uint32_t v) {
    out[at] = static_cast<std::uint8_t>(v & 255);
    out[at + 1] = static_cast<std::uint8_t>((v >> 8) & 255);
}

void put32(std::vector<std::uint8_t>& out, std::size_t at, std::uint32_t v) {
    put16(out, at, v & 0xFFFF);
    put16(out, at + 2, v >> 16);
}

constexpr std::size_t kFileHeader = 14;
constexpr std::size_t kInfoHeader = 40;

} // namespace

int dibRowBytes(int width) {
    return ((24 * width + 31) / 32) * 4;
}

std::vector<std::uint8_t> packDib24(const krl::Plane& r, const krl::Plane& g, const krl::Plane& b, int width,
                                    int height) {
    if (width < 0 || height < 0) throw std::invalid_argument("Invalid picture size");
    const auto tooSmall = [width, height](const krl::Plane& p) {
        return p.cols() < width || p.rows() < height;
    };
    if (width > 0 && height > 0 && (tooSmall(r) || tooSmall(g) || tooSmall(b)))
        throw std::out_of_range("Subscript out of range");
    const int stride = dibRowBytes(width);
    std::vector<std::uint8_t> out(static_cast<std::size_t>(stride) * static_cast<std::size_t>(height), 0);
    for (int y = 0; y < height; ++y) {
        // Stored row y holds the picture's row height - 1 - y: the bottom row comes first.
        const int src = height - 1 - y;
        std::uint8_t* row = out.data() + static_cast<std::size_t>(y) * stride;
        for (int x = 0; x < width; ++x) {
            row[3 * x] = b.at(x, src);
            row[3 * x + 1] = g.at(x, src);
            row[3 * x + 2] = r.at(x, src);
        }
    }
    return out;
}

std::vector<std::uint8_t> bmpFile24(const krl::Plane& r, const krl::Plane& g, const krl::Plane& b, int width,
                                    int height) {
    const std::vector<std::uint8_t> pixels = packDib24(r, g, b, width, height);
    std::vector<std::uint8_t> out(kFileHeader + kInfoHeader + pixels.size(), 0);
    out[0] = 'B';
    out[1] = 'M';
    put32(out, 2, static_cast<std::uint32_t>(out.size()));
    put32(out, 10, static_cast<std::uint32_t>(kFileHeader + kInfoHeader));
    put32(out, 14, static_cast<std::uint32_t>(kInfoHeader));
    put32(out, 18, static_cast<std::uint32_t>(width));
    put32(out, 22, static_cast<std::uint32_t>(height));
    put16(out, 26, 1);  // planes
    put16(out, 28, 24); // bits per pixel
    put32(out, 30, 0);  // no compression
    put32(out, 34, static_cast<std::uint32_t>(pixels.size()));
    std::copy(pixels.begin(), pixels.end(), out.begin() + kFileHeader + kInfoHeader);
    return out;
}

} // namespace kirrel::filters
