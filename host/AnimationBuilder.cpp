#include "host/AnimationBuilder.h"

#include <QFileInfo>

#include <algorithm>
#include <cstring>
#include <stdexcept>

namespace kirrel::host {

namespace {

std::runtime_error readError(const QString& path, const QString& what) {
    return std::runtime_error((QFileInfo(path).fileName() + " " + what).toStdString());
}

std::int64_t pictureBytes(int w, int h) {
    return std::int64_t{3} * (w + 1) * (h + 1);
}

std::uint8_t over(int c, int a, int paper) {
    return static_cast<std::uint8_t>((c * a + paper * (255 - a) + 127) / 255);
}

// The ride-along column and row repeat the picture's edge.
void repeatEdge(krl::Plane& p) {
    const int w = p.width();
    const int h = p.height();
    for (int y = 0; y < h; ++y)
        p.row(y)[w] = p.row(y)[w - 1];
    std::memcpy(p.row(h), p.row(h - 1), static_cast<std::size_t>(p.cols()));
}

} // namespace

void checkAnimationSize(const QString& path, int w, int h, std::int64_t frames) {
    if (w <= 0 || h <= 0) throw readError(path, "has no picture size");
    if (w > kMaxAnimationSide || h > kMaxAnimationSide)
        throw readError(path, QString("is %1 x %2 pixels; Kirrel takes at most %3 a side.")
                                  .arg(w)
                                  .arg(h)
                                  .arg(kMaxAnimationSide));
    if (frames > kMaxAnimationFrames)
        throw readError(
            path, QString("holds %1 frames; Kirrel takes at most %2.").arg(frames).arg(kMaxAnimationFrames));
    const std::int64_t bytes = frames * pictureBytes(w, h);
    if (bytes > kMaxAnimationBytes)
        throw readError(path, QString("would need %1 GiB of memory (%2 frames of %3 x %4); Kirrel takes "
                                      "animations of up to %5 GiB.")
                                  .arg(static_cast<double>(bytes) / (1 << 30), 0, 'f', 1)
                                  .arg(frames)
                                  .arg(w)
                                  .arg(h)
                                  .arg(kMaxAnimationBytes >> 30));
}

AnimationBuilder::AnimationBuilder(const QString& path, const ReadOptions& options)
    : path_(path), options_(options) {}

void AnimationBuilder::start(int w, int h, std::int64_t expectedFrames) {
    checkAnimationSize(path_, w, h, std::max<std::int64_t>(expectedFrames, 1));
    w_ = w;
    h_ = h;
    if (expectedFrames > 1) a_.frames.reserve(static_cast<std::size_t>(expectedFrames));
}

void AnimationBuilder::addFrame(const std::uint8_t* rgba, std::ptrdiff_t stride, int delayMs) {
    // A stream may hold more than its header said; the limits hold for every frame all the same.
    checkAnimationSize(path_, w_, h_, frameCount() + 1);
    const bool first = a_.frames.empty();
    Picture p(w_, h_);
    if (first) a_.alpha = krl::Plane(w_, h_);
    const int pr = static_cast<int>(options_.paper & 255);
    const int pg = static_cast<int>((options_.paper >> 8) & 255);
    const int pb = static_cast<int>((options_.paper >> 16) & 255);
    for (int y = 0; y < h_; ++y) {
        const std::uint8_t* src = rgba + y * stride;
        std::uint8_t* r = p.r.row(y);
        std::uint8_t* g = p.g.row(y);
        std::uint8_t* b = p.b.row(y);
        std::uint8_t* alpha = first ? a_.alpha.row(y) : nullptr;
        for (int x = 0; x < w_; ++x, src += 4) {
            const int a = src[3];
            if (alpha) alpha[x] = static_cast<std::uint8_t>(a);
            if (a == 255) {
                r[x] = src[0];
                g[x] = src[1];
                b[x] = src[2];
            } else {
                transparent_ = true;
                r[x] = over(src[0], a, pr);
                g[x] = over(src[1], a, pg);
                b[x] = over(src[2], a, pb);
            }
        }
    }
    for (krl::Plane* plane : {&p.r, &p.g, &p.b})
        repeatEdge(*plane);
    if (first) repeatEdge(a_.alpha);
    a_.frames.push_back(std::move(p));
    a_.delays.push_back(std::max(0, delayMs));
}

Animation AnimationBuilder::finish(const Ending& ending) {
    if (a_.frames.empty())
        throw readError(path_, ending.whole ? "holds no frames." : "is damaged: no frame could be read.");
    if (!transparent_) a_.alpha = krl::Plane();
    if (!ending.timed) a_.delays.clear();
    if (!ending.whole)
        a_.note = (QFileInfo(path_).fileName() + QString(" ends early: %1 frame%2 could be read.")
                                                     .arg(frameCount())
                                                     .arg(frameCount() == 1 ? "" : "s"))
                      .toStdString();
    a_.still = a_.frames.front();
    if (ending.stillWhenSingle && a_.frames.size() == 1) {
        a_.frames.clear();
        a_.delays.clear();
    }
    return std::move(a_);
}

RgbaFrameStream::RgbaFrameStream(std::size_t frameBytes, FrameFn onFrame)
    : frame_(frameBytes), onFrame_(std::move(onFrame)) {}

void RgbaFrameStream::feed(const char* data, std::int64_t size) {
    const auto* in = reinterpret_cast<const std::uint8_t*>(data);
    auto left = static_cast<std::size_t>(size);
    while (left > 0) {
        const std::size_t take = std::min(left, frame_.size() - filled_);
        std::memcpy(frame_.data() + filled_, in, take);
        filled_ += take;
        in += take;
        left -= take;
        if (filled_ == frame_.size()) {
            filled_ = 0;
            onFrame_(frame_.data());
        }
    }
}

} // namespace kirrel::host
