#pragma once
// A plane is one colour channel (or the alpha) of one picture: bytes indexed [x][y] with
// inclusive bounds 0..W and 0..H, x fastest, rows W+1 bytes apart. The picture proper is W by H;
// the last column and row ride along in every plane, call and file.
//
// Planes are exchanged by value everywhere (the host hands out private copies), so the buffer is
// shared copy-on-write: copying a plane is O(1) and the first write through a copy detaches it.
// Rule for operations: take the writable pointers of the result planes *before* the read-only
// pointers of the inputs, so that a plane passed both as result and as input (the same object)
// resolves to one buffer, and an input that merely shares a buffer keeps its old content.

#include <cstddef>
#include <cstdint>
#include <memory>

namespace krl {

class Plane {
  public:
    Plane() = default;
    // Fresh plane with upper bounds w and h, all zero. Negative bounds give an empty plane.
    Plane(int w, int h);

    int width() const { return w_; }  // upper x bound W
    int height() const { return h_; } // upper y bound H
    int cols() const { return w_ + 1; }
    int rows() const { return h_ + 1; }
    std::size_t size() const { return static_cast<std::size_t>(cols()) * static_cast<std::size_t>(rows()); }
    bool empty() const { return size() == 0; }
    bool sameBounds(const Plane& o) const { return w_ == o.w_ && h_ == o.h_; }

    const std::uint8_t* data() const { return buf_.get(); }
    std::uint8_t* data(); // detaches a shared buffer first
    const std::uint8_t* row(int y) const { return data() + static_cast<std::size_t>(y) * cols(); }
    std::uint8_t* row(int y) { return data() + static_cast<std::size_t>(y) * cols(); }

    std::uint8_t at(int x, int y) const { return row(y)[x]; }
    std::uint8_t& at(int x, int y) { return row(y)[x]; }

    // For an operation that writes every cell of the rectangle [x0, x1) x [y0, y1) itself: the
    // writable bytes (`to`) and the bytes as they were before it (`from`). An unshared buffer is
    // written in place (to == from). A shared one is left to its other holders rather than copied
    // in full: the fresh buffer receives only the cells outside the rectangle, and the operation
    // reads the old cells through `from`, which `kept` holds alive. The rectangle is clamped.
    struct Rewrite {
        std::uint8_t* to = nullptr;
        const std::uint8_t* from = nullptr;
        std::shared_ptr<std::uint8_t[]> kept;
        bool inPlace() const { return to == from; }
    };
    Rewrite rewrite(int x0, int y0, int x1, int y1);

    void fill(std::uint8_t v);
    bool sharesBufferWith(const Plane& o) const { return buf_ && buf_ == o.buf_; }
    bool operator==(const Plane& o) const;

  private:
    int w_ = -1;
    int h_ = -1;
    std::shared_ptr<std::uint8_t[]> buf_;
};

} // namespace krl
