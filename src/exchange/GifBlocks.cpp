#include "exchange/GifBlocks.h"

#include <cstring>

namespace kirrel::exchange {

namespace {

class Cursor {
  public:
    Cursor(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}
    std::size_t at() const { return at_; }
    bool atEnd() const { return at_ >= size_; }
    bool skip(std::size_t n) {
        if (n > size_ - at_) return false;
        at_ += n;
        return true;
    }
    bool byte(int& out) {
        if (atEnd()) return false;
        out = data_[at_++];
        return true;
    }
    bool word(int& out) {
        int lo = 0;
        int hi = 0;
        if (!byte(lo) || !byte(hi)) return false;
        out = lo | (hi << 8);
        return true;
    }
    // A run of sub-blocks, each led by its length, ended by a zero length.
    bool subBlocks() {
        for (int n = 1; n != 0;)
            if (!byte(n) || !skip(static_cast<std::size_t>(n))) return false;
        return true;
    }
    bool colourTable(int packed) { return !(packed & 0x80) || skip(std::size_t{3} << ((packed & 7) + 1)); }

  private:
    const std::uint8_t* data_;
    std::size_t size_;
    std::size_t at_ = 0;
};

} // namespace

GifLayout scanGif(const std::uint8_t* data, std::size_t size) {
    GifLayout g;
    if (size < 6 || (std::memcmp(data, "GIF87a", 6) != 0 && std::memcmp(data, "GIF89a", 6) != 0)) return g;
    Cursor c(data, size);
    c.skip(6);
    int packed = 0;
    int ignored = 0;
    if (!c.word(g.width) || !c.word(g.height) || !c.byte(packed) || !c.skip(2) || !c.colourTable(packed)) {
        g.damaged = true;
        return g;
    }
    g.isGif = true;
    g.wholeUpTo = c.at();
    for (int introducer = 0; c.byte(introducer);) {
        bool ok = false;
        if (introducer == 0x3B) {
            g.trailer = true;
            return g;
        }
        if (introducer == 0x21) {
            ok = c.byte(ignored) && c.subBlocks();
        } else if (introducer == 0x2C) {
            ok = c.skip(8) && c.byte(packed) && c.colourTable(packed) && c.byte(ignored) && c.subBlocks();
            if (ok) {
                ++g.frames;
                g.wholeUpTo = c.at();
            }
        }
        if (!ok) {
            g.damaged = true;
            return g;
        }
    }
    return g;
}

} // namespace kirrel::exchange
