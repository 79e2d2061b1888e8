#pragma once
// Nearest-sample resampling of rows: out[i] = src[map[i]] for a map that never decreases. The map is
// planned once and then applied to every row of every plane of a picture.
//
// A byte-by-byte gather does not vectorise, so the plan cuts the output into blocks of 16 cells and
// each block into the 16-byte windows of the source it reads; a block is then a few byte shuffles
// instead of 16 loads. A squeeze reads every source byte once and writes every output byte once,
// whatever its ratio. Internal to the pixel library.

#include <cstdint>
#include <vector>

namespace krl::mix {

class RowGather {
  public:
    // map[0..k) are source cells in [0, srcLen), never decreasing.
    void plan(const int* map, int k, int srcLen);
    void plan(const std::vector<int>& map, int srcLen) {
        plan(map.data(), static_cast<int>(map.size()), srcLen);
    }

    int outputs() const { return k_; }

    // Writes outputs() cells to dst from src, which holds srcLen readable cells. dst may be src itself
    // when map[i] >= i throughout (a squeeze towards the start): each block's reads lie at or after
    // the cells it writes. Otherwise they must not overlap.
    void apply(std::uint8_t* dst, const std::uint8_t* src) const;

  private:
    int k_ = 0;
    int blocks_ = 0; // whole 16-cell blocks done by shuffles; the rest is gathered cell by cell
    std::vector<int> map_;
    int perBlock_ = 0; // windows per block: the most any block needs, the others padded with empty ones
    // The 16-byte windows of the source: where each starts (start + 16 <= srcLen), and for each of
    // its block's outputs the cell to take (source cell - start), or 0x80 for outputs it does not serve.
    std::vector<int> windowStart_;
    std::vector<std::uint8_t> windowPick_;
};

} // namespace krl::mix
