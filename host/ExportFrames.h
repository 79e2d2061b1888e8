#pragma once
// The host's frames as an export writes them: W x H pixels each, RGB, or RGBA when some pixel comes
// out transparent, and a delay each; checked once, made one frame at a time so that a long animation
// is never copied whole.

#include "host/AnimationExport.h"

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace kirrel::host {

class ExportFrames {
  public:
    // Throws std::runtime_error when there is nothing to write or the frames, delays and sizes do
    // not agree. `keepsAlpha`: whether the format can hold transparency at all.
    ExportFrames(const ExportInput& in, ExportTransparency mode, bool keepsAlpha);

    int count() const { return static_cast<int>(in_.frames.size()); }
    int width() const { return w_; }
    int height() const { return h_; }
    bool transparent() const { return transparent_; }
    int channels() const { return transparent_ ? 4 : 3; }
    // Milliseconds, at least 1.
    int delayMs(int i) const;

    // Frame i's pixels, rows packed, channels() bytes each. `clearAs`, when given, is the colour
    // written under every pixel of alpha below 128.
    void pixels(int i, std::vector<std::uint8_t>& out,
                const std::optional<std::array<std::uint8_t, 3>>& clearAs = std::nullopt) const;
    // The colour of some opaque pixel of the animation (black when there is none).
    std::array<std::uint8_t, 3> anOpaqueColour() const;

  private:
    std::uint8_t alphaAt(int f, int x, int y) const;

    const ExportInput& in_;
    ExportTransparency mode_;
    int w_ = 0;
    int h_ = 0;
    bool transparent_ = false;
};

} // namespace kirrel::host
