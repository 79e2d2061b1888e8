#pragma once
// A table of 256 bytes looked up a whole row at a time. A lookup per byte does not vectorise, so the
// table is also kept as sixteen tables of sixteen, each the difference (xor) from the one before, that
// byte shuffles read: the shuffle takes a byte's low four bits as the index and gives zero when the top
// bit is set, so shuffling the sixteen in turn, each with the byte lowered by another sixteen, and
// xoring the results leaves exactly the entry of the byte. The two halves of the table go separately
// (a byte of 128 or more lowered below 128 would count again). Internal to the pixel library.

#include <array>
#include <cstdint>

namespace krl {

class ByteTable {
  public:
    explicit ByteTable(const std::array<std::uint8_t, 256>& table);

    // out[x] = table[in[x]]; out may be in itself.
    void apply(const std::uint8_t* in, std::uint8_t* out, int n) const;

  private:
    std::array<std::uint8_t, 256> table_;
    // steps_[h][j] = table[16 h + j] ^ table[16 (h - 1) + j], except for h 0 and 8, which start a half.
    alignas(16) std::array<std::array<std::uint8_t, 16>, 16> steps_;
};

} // namespace krl
