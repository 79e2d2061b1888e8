#include "pixel/Plane.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

namespace krl {

namespace {
// Larger than any picture the host can describe (its sizes are 16-bit), small enough to allocate.
constexpr std::size_t kMaxPlaneBytes = std::size_t{32768} * 32768;

std::shared_ptr<std::uint8_t[]> allocate(std::size_t n) {
    if (n == 0) return nullptr;
    if (n > kMaxPlaneBytes) throw std::length_error("picture too large");
    return std::shared_ptr<std::uint8_t[]>(new std::uint8_t[n]());
}
} // namespace

Plane::Plane(int w, int h) {
    if (w < 0 || h < 0) return;
    w_ = w;
    h_ = h;
    buf_ = allocate(size());
}

std::uint8_t* Plane::data() {
    if (buf_ && buf_.use_count() > 1) {
        auto fresh = std::shared_ptr<std::uint8_t[]>(new std::uint8_t[size()]);
        std::memcpy(fresh.get(), buf_.get(), size());
        buf_ = std::move(fresh);
    }
    return buf_.get();
}

void Plane::fill(std::uint8_t v) {
    if (empty()) return;
    if (buf_.use_count() > 1) buf_ = allocate(size());
    std::memset(buf_.get(), v, size());
}

bool Plane::operator==(const Plane& o) const {
    if (!sameBounds(o)) return false;
    if (buf_ == o.buf_) return true;
    return empty() || std::memcmp(buf_.get(), o.buf_.get(), size()) == 0;
}

} // namespace krl
