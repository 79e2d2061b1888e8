#pragma once
// Helpers for the mask tests: .msk bytes written out independently of the panel's writer.

#include "host/HostState.h"
#include "stored/StoredSupport.h"

#include <cstdint>
#include <string>
#include <vector>

namespace kirrel::test {

inline std::string le32(std::int32_t v) {
    const auto u = static_cast<std::uint32_t>(v);
    return {static_cast<char>(u & 255), static_cast<char>((u >> 8) & 255), static_cast<char>((u >> 16) & 255),
            static_cast<char>((u >> 24) & 255)};
}

inline std::string mskHeader(int width, int height, int frames) {
    return le32(width) + le32(height) + le32(frames);
}

// The .msk file of the frames: each pixel's mean rounded to the nearest byte (a sum of three never
// ends in a half).
inline std::string expectedMsk(const std::vector<host::Picture>& frames) {
    std::string out = mskHeader(frames[0].width(), frames[0].height(), static_cast<int>(frames.size()));
    for (const auto& f : frames)
        for (int y = 0; y <= f.height(); ++y)
            for (int x = 0; x <= f.width(); ++x)
                out += static_cast<char>((f.r.at(x, y) + f.g.at(x, y) + f.b.at(x, y) + 1) / 3);
    return out;
}

// A mask plane of bounds w, h with one value everywhere.
inline std::string flatMaskPlane(int w, int h, int value) {
    return std::string(static_cast<std::size_t>(w + 1) * static_cast<std::size_t>(h + 1),
                       static_cast<char>(value));
}

} // namespace kirrel::test
