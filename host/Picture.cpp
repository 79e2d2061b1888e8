#include "host/Picture.h"

#include <algorithm>
#include <cstring>

namespace kirrel::host {

krl::Plane fitPlane(const krl::Plane& p, int w, int h) {
    if (p.width() == w && p.height() == h) return p;
    krl::Plane out(w, h);
    const int cols = std::min(p.cols(), out.cols());
    const int rows = std::min(p.rows(), out.rows());
    for (int y = 0; y < rows; ++y) std::memcpy(out.row(y), p.row(y), static_cast<std::size_t>(cols));
    return out;
}

krl::Plane scalePlane(const krl::Plane& p, int w, int h) {
    if (p.width() == w && p.height() == h) return p;
    krl::Plane out(w, h);
    if (p.empty() || out.empty()) return out;
    for (int y = 0; y < out.rows(); ++y) {
        const int sy = static_cast<int>(static_cast<long long>(y) * p.rows() / out.rows());
        const std::uint8_t* src = p.row(sy);
        std::uint8_t* dst = out.row(y);
        for (int x = 0; x < out.cols(); ++x) dst[x] = src[static_cast<long long>(x) * p.cols() / out.cols()];
    }
    return out;
}

Picture scalePicture(const Picture& p, int w, int h) {
    Picture out;
    out.r = scalePlane(p.r, w, h);
    out.g = scalePlane(p.g, w, h);
    out.b = scalePlane(p.b, w, h);
    return out;
}

} // namespace kirrel::host
