#pragma once
// Helpers for the CFX tests: a CFX file's bytes written by hand, and recipe frames drawn in the two
// key colours.

#include "stored/StoredSupport.h"

#include <string>
#include <vector>

namespace kirrel::test {

// A Type 1 file: type, title, frame count, bounds, the two keys, then the frames.
inline std::string cfxBytes(const std::string& title30, const std::vector<host::Picture>& frames,
                            std::initializer_list<int> keys) {
    std::string out =
        le16(1) + title30 +
        int16le({static_cast<int>(frames.size()), frames.front().width(), frames.front().height()});
    for (int k : keys)
        out += static_cast<char>(k);
    for (const auto& p : frames)
        out += bytesOf(p);
    return out;
}

// A recipe frame: the left part in the primary key, the right part in the secondary key, and one
// column of a colour of its own at x = split.
inline host::Picture recipe(int w, int h, int split, std::uint32_t primary, std::uint32_t secondary,
                            std::uint32_t other) {
    host::Picture p(w, h);
    for (int y = 0; y <= h; ++y)
        for (int x = 0; x <= w; ++x) {
            const std::uint32_t c = x < split ? primary : x == split ? other : secondary;
            p.r.at(x, y) = static_cast<std::uint8_t>(c & 255);
            p.g.at(x, y) = static_cast<std::uint8_t>((c >> 8) & 255);
            p.b.at(x, y) = static_cast<std::uint8_t>((c >> 16) & 255);
        }
    return p;
}

inline std::uint32_t pixel(const host::Picture& p, int x, int y) {
    return host::packColor(p.r.at(x, y), p.g.at(x, y), p.b.at(x, y));
}

} // namespace kirrel::test
