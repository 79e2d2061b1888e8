#include "host/ExportFrames.h"

#include <algorithm>
#include <stdexcept>

namespace kirrel::host {

namespace {
// The longest a frame is held: a GIF's delay field holds at most 65535 centiseconds.
constexpr int kLongestDelayMs = 655350;
} // namespace

ExportFrames::ExportFrames(const ExportInput& in, ExportTransparency mode, bool keepsAlpha)
    : in_(in), mode_(keepsAlpha ? mode : ExportTransparency::None) {
    if (in.frames.empty()) throw std::runtime_error("There are no frames to save.");
    w_ = in.frames.front().width();
    h_ = in.frames.front().height();
    if (w_ < 1 || h_ < 1) throw std::runtime_error("The frames have no picture to save.");
    const auto otherSize = [this](const Picture& p) {
        return p.width() != w_ || p.height() != h_ || p.g.width() != w_ || p.b.height() != h_ ||
               p.g.height() != h_ || p.b.width() != w_;
    };
    if (std::any_of(in.frames.begin(), in.frames.end(), otherSize))
        throw std::runtime_error("The frames differ in size, so they cannot be saved as one animation.");
    if (in.delays.size() != in.frames.size())
        throw std::runtime_error(
            "The frames' delays do not match the frames, so the animation cannot be saved.");
    if (mode_ == ExportTransparency::Alpha && !(in.alpha.width() == w_ && in.alpha.height() == h_))
        mode_ = ExportTransparency::None; // no alpha of the frames' size: nothing to apply
    for (int f = 0; f < count() && !transparent_ && mode_ != ExportTransparency::None; ++f)
        for (int y = 0; y < h_ && !transparent_; ++y)
            for (int x = 0; x < w_ && !transparent_; ++x)
                transparent_ = alphaAt(f, x, y) < 255;
}

int ExportFrames::delayMs(int i) const {
    return std::clamp(in_.delays[static_cast<std::size_t>(i)], 1, kLongestDelayMs);
}

std::uint8_t ExportFrames::alphaAt(int f, int x, int y) const {
    switch (mode_) {
    case ExportTransparency::Alpha:
        return in_.alpha.at(x, y);
    case ExportTransparency::Paper: {
        const Picture& p = in_.frames[static_cast<std::size_t>(f)];
        return packColor(p.r.at(x, y), p.g.at(x, y), p.b.at(x, y)) == (in_.paper & 0xFFFFFF) ? 0 : 255;
    }
    case ExportTransparency::None:
        break;
    }
    return 255;
}

void ExportFrames::pixels(int i, std::vector<std::uint8_t>& out,
                          const std::optional<std::array<std::uint8_t, 3>>& clearAs) const {
    const Picture& p = in_.frames[static_cast<std::size_t>(i)];
    const int n = channels();
    out.resize(static_cast<std::size_t>(w_) * h_ * n);
    std::uint8_t* d = out.data();
    for (int y = 0; y < h_; ++y) {
        const std::uint8_t* r = p.r.row(y);
        const std::uint8_t* g = p.g.row(y);
        const std::uint8_t* b = p.b.row(y);
        for (int x = 0; x < w_; ++x, d += n) {
            d[0] = r[x];
            d[1] = g[x];
            d[2] = b[x];
            if (n == 4) {
                d[3] = alphaAt(i, x, y);
                if (clearAs && d[3] < 128) std::copy(clearAs->begin(), clearAs->end(), d);
            }
        }
    }
}

std::array<std::uint8_t, 3> ExportFrames::anOpaqueColour() const {
    for (int f = 0; f < count(); ++f)
        for (int y = 0; y < h_; ++y)
            for (int x = 0; x < w_; ++x)
                if (alphaAt(f, x, y) >= 128) {
                    const Picture& p = in_.frames[static_cast<std::size_t>(f)];
                    return {p.r.at(x, y), p.g.at(x, y), p.b.at(x, y)};
                }
    return {0, 0, 0};
}

} // namespace kirrel::host
