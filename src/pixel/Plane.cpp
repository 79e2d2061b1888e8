#include "pixel/Plane.h"

#include <algorithm>
#include <cstring>
#include <mutex>
#include <stdexcept>
#include <unordered_map>
#include <vector>

namespace krl {

namespace {
// Larger than any picture the host can describe (its sizes are 16-bit), small enough to allocate.
constexpr std::size_t kMaxPlaneBytes = std::size_t{32768} * 32768;

// Dropped plane buffers are kept for reuse. A run of frames makes a fresh buffer for every plane it
// writes while earlier pictures are let go, all of one size; handing each buffer back to the system
// and faulting fresh pages in for the next one costs several times the pixel work itself. The pool
// keeps buffers up to a bound (a minute of full-HD frames' planes) and frees anything beyond it.
class BufferPool {
  public:
    static constexpr std::size_t kMaxHeldBytes = std::size_t{512} << 20;

    std::uint8_t* take(std::size_t n) {
        {
            const std::lock_guard<std::mutex> lock(mutex_);
            auto it = free_.find(n);
            if (it != free_.end() && !it->second.empty()) {
                std::uint8_t* p = it->second.back();
                it->second.pop_back();
                held_ -= n;
                return p;
            }
        }
        return new std::uint8_t[n];
    }

    void give(std::uint8_t* p, std::size_t n) noexcept {
        try {
            const std::lock_guard<std::mutex> lock(mutex_);
            if (held_ + n <= kMaxHeldBytes) {
                free_[n].push_back(p);
                held_ += n;
                return;
            }
        } catch (...) { // no room to remember it: it goes back to the system
        }
        delete[] p;
    }

  private:
    std::mutex mutex_;
    std::unordered_map<std::size_t, std::vector<std::uint8_t*>> free_;
    std::size_t held_ = 0;
};

// Never destroyed: planes held by static objects may be dropped during the program's exit.
BufferPool& pool() {
    static BufferPool* p = new BufferPool;
    return *p;
}

// A buffer of n bytes, zeroed on request; it returns to the pool when its last holder lets go.
std::shared_ptr<std::uint8_t[]> buffer(std::size_t n, bool zero) {
    std::uint8_t* p = pool().take(n);
    if (zero) std::memset(p, 0, n);
    try {
        return std::shared_ptr<std::uint8_t[]>(p, [n](std::uint8_t* q) { pool().give(q, n); });
    } catch (...) {
        delete[] p;
        throw;
    }
}

std::shared_ptr<std::uint8_t[]> allocate(std::size_t n) {
    if (n == 0) return nullptr;
    if (n > kMaxPlaneBytes) throw std::length_error("picture too large");
    return buffer(n, true);
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
        auto fresh = buffer(size(), false);
        std::memcpy(fresh.get(), buf_.get(), size());
        buf_ = std::move(fresh);
    }
    return buf_.get();
}

Plane::Rewrite Plane::rewrite(int x0, int y0, int x1, int y1) {
    if (!buf_ || buf_.use_count() == 1) return {buf_.get(), buf_.get(), nullptr};
    x0 = std::clamp(x0, 0, cols());
    x1 = std::clamp(x1, x0, cols());
    y0 = std::clamp(y0, 0, rows());
    y1 = std::clamp(y1, y0, rows());
    Rewrite r;
    r.kept = std::move(buf_);
    buf_ = buffer(size(), false);
    r.to = buf_.get();
    r.from = r.kept.get();
    const auto stride = static_cast<std::size_t>(cols());
    auto copy = [&](std::size_t at, std::size_t n) {
        if (n > 0) std::memcpy(r.to + at, r.from + at, n);
    };
    // Whole rows above and below, then the parts of the rectangle's rows left and right of it.
    copy(0, static_cast<std::size_t>(y0) * stride);
    copy(static_cast<std::size_t>(y1) * stride, static_cast<std::size_t>(rows() - y1) * stride);
    for (int y = y0; y < y1; ++y) {
        const std::size_t rowStart = static_cast<std::size_t>(y) * stride;
        copy(rowStart, static_cast<std::size_t>(x0));
        copy(rowStart + static_cast<std::size_t>(x1), stride - static_cast<std::size_t>(x1));
    }
    return r;
}

void Plane::fill(std::uint8_t v) {
    if (empty()) return;
    if (buf_.use_count() > 1) buf_ = buffer(size(), false); // every byte is set below
    std::memset(buf_.get(), v, size());
}

bool Plane::operator==(const Plane& o) const {
    if (!sameBounds(o)) return false;
    if (buf_ == o.buf_) return true;
    return empty() || std::memcmp(buf_.get(), o.buf_.get(), size()) == 0;
}

} // namespace krl
