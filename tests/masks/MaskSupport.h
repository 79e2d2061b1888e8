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

// A mask plane of bounds w, h with one value everywhere.
inline std::string flatMaskPlane(int w, int h, int value) {
    return std::string(static_cast<std::size_t>(w + 1) * static_cast<std::size_t>(h + 1),
                       static_cast<char>(value));
}

} // namespace kirrel::test
