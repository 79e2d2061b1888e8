#pragma once
// Turning decoded RGBA frames into the host's pictures as they arrive: transparency laid over the
// paper colour, the first frame's alpha kept, and the limits on what a file may ask for checked
// before anything large is allocated.

#include "host/AnimationFiles.h"

#include <QString>

#include <cstdint>
#include <functional>
#include <vector>

namespace kirrel::host {

constexpr int kMaxAnimationSide = 16384;
constexpr int kMaxAnimationFrames = 32767;
constexpr std::int64_t kMaxAnimationBytes = std::int64_t{8} << 30;

// Throws std::runtime_error naming the file when `frames` frames of w x h pixels are not a picture
// size Kirrel takes or would need more memory than it allows.
void checkAnimationSize(const QString& path, int w, int h, std::int64_t frames);

class AnimationBuilder {
  public:
    AnimationBuilder(const QString& path, const ReadOptions& options);
    // The frames' size and, when known, how many frames there will be; checks the limits.
    void start(int w, int h, std::int64_t expectedFrames = 1);
    bool started() const { return w_ > 0; }
    int width() const { return w_; }
    int height() const { return h_; }
    int frameCount() const { return static_cast<int>(a_.frames.size()); }

    // One frame of width() x height() RGBA pixels, rows `stride` bytes apart, shown for delayMs
    // milliseconds (0 when the file gave none).
    void addFrame(const std::uint8_t* rgba, std::ptrdiff_t stride, int delayMs);

    struct Ending {
        bool whole = true;           // false: the file ends early or is damaged further on
        bool timed = true;           // false: the file holds no timing, so no delays are given
        bool stillWhenSingle = true; // one frame makes a still picture
    };
    // The animation read; throws std::runtime_error naming the file when no frame was read.
    Animation finish(const Ending& ending);

  private:
    QString path_;
    ReadOptions options_;
    int w_ = 0;
    int h_ = 0;
    bool transparent_ = false;
    Animation a_;
};

// Cuts a stream of raw RGBA frames of one size into whole frames, holding at most one frame.
class RgbaFrameStream {
  public:
    using FrameFn = std::function<void(const std::uint8_t* rgba)>;
    RgbaFrameStream(std::size_t frameBytes, FrameFn onFrame);
    void feed(const char* data, std::int64_t size);
    // Bytes of a frame that never came whole.
    bool leftover() const { return filled_ > 0; }

  private:
    std::vector<std::uint8_t> frame_;
    std::size_t filled_ = 0;
    FrameFn onFrame_;
};

} // namespace kirrel::host
