#include "host/ScaledCopies.h"

#include <algorithm>
#include <cmath>
#include <unordered_set>
#include <vector>

namespace kirrel::host {

Bounds fittedBounds(int w, int h, int boxWidth, int boxHeight) {
    if (w < 1 || h < 1 || boxWidth < 1 || boxHeight < 1 || (w <= boxWidth && h <= boxHeight)) return {w, h};
    const double s = std::min(static_cast<double>(boxWidth) / w, static_cast<double>(boxHeight) / h);
    return {std::clamp(static_cast<int>(std::lround(w * s)), 1, boxWidth),
            std::clamp(static_cast<int>(std::lround(h * s)), 1, boxHeight)};
}

krl::Plane shrinkPlane(const krl::Plane& p, int w, int h) {
    krl::Plane out(w, h);
    if (p.empty() || out.empty()) return out;
    // Column offsets once per plane: the rows then only gather.
    std::vector<int> xs(static_cast<std::size_t>(out.cols()));
    for (int x = 0; x < out.cols(); ++x)
        xs[static_cast<std::size_t>(x)] = static_cast<int>((2LL * x + 1) * p.cols() / (2LL * out.cols()));
    for (int y = 0; y < out.rows(); ++y) {
        const std::uint8_t* src = p.row(static_cast<int>((2LL * y + 1) * p.rows() / (2LL * out.rows())));
        std::uint8_t* dst = out.row(y);
        for (int x = 0; x < out.cols(); ++x)
            dst[x] = src[xs[static_cast<std::size_t>(x)]];
    }
    return out;
}

krl::Plane ScaledCopies::scaled(const krl::Plane& p, Bounds to) {
    if ((p.width() == to.w && p.height() == to.h) || p.empty()) return p;
    auto it = cache_.find(p.data());
    if (it != cache_.end() && it->second.source.sharesBufferWith(p) && it->second.scaled.width() == to.w &&
        it->second.scaled.height() == to.h)
        return it->second.scaled;
    krl::Plane small = shrinkPlane(p, to.w, to.h);
    cache_[p.data()] = Entry{p, small};
    return small;
}

Picture ScaledCopies::scaled(const Picture& p, Bounds to) {
    Picture out;
    out.r = scaled(p.r, to);
    out.g = scaled(p.g, to);
    out.b = scaled(p.b, to);
    return out;
}

void ScaledCopies::copyInto(HostState& scratch, const HostState& real, int first, int last,
                            const std::string& tempDir) {
    const Bounds to = fittedBounds(real.bufferWidth(), real.bufferHeight(), boxWidth_, boxHeight_);
    scratch.setTempDir(tempDir);
    scratch.setAppDir(real.appDir());
    scratch.setWallpaper(real.wallpaper());
    scratch.setPrimaryPacked(real.primaryColor());
    scratch.setSecondaryPacked(real.secondaryColor());
    scratch.setLayerOpacity(real.layerOpacity());
    const int total = real.totalFrames();
    if (total == 0) {
        scratch.loadStill(scaled(real.mainPicture(), to));
    } else {
        const Picture standIn(to.w, to.h);
        std::vector<Picture> frames(static_cast<std::size_t>(total), standIn);
        for (int f = std::max(first, 0); f <= std::min(last, total - 1); ++f)
            frames[static_cast<std::size_t>(f)] = scaled(real.framePicture(f), to);
        scratch.loadAnimation(std::move(frames), real.currentFrame(), real.frameDelays());
    }
    scratch.setAlpha(scaled(real.alphaPlane(), to));
    scratch.loadSwap(scaled(real.swapPicture(), to));
    dropUnused(real);
}

void ScaledCopies::dropUnused(const HostState& real) {
    std::unordered_set<const std::uint8_t*> held;
    auto hold = [&held](const Picture& p) {
        held.insert(p.r.data());
        held.insert(p.g.data());
        held.insert(p.b.data());
    };
    for (int f = 0; f < real.totalFrames(); ++f)
        hold(real.framePicture(f));
    hold(real.mainPicture());
    hold(real.swapPicture());
    held.insert(real.alphaPlane().data());
    std::erase_if(cache_, [&held](const auto& entry) { return held.count(entry.first) == 0; });
}

} // namespace kirrel::host
