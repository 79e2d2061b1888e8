#pragma once
// Row slices: an operation whose rows are independent hands them out in contiguous slices, one per
// processor core, and every slice computes exactly the bytes the whole loop would, so the result
// never depends on how many cores took part.
//
// The cores are used only where it pays: a picture below about a quarter of a million cells is done
// on the calling thread, as waking a helper costs more than it saves. A slice that itself asks for
// slices, and a second caller while the helpers are busy, simply run on their own thread.
//
// Row work run in slices keeps its scratch inside the slice (a thread_local declared in the slice's
// body). A thread_local of the caller named inside the body would be the running thread's own,
// empty one: the caller hands such data over through a plain reference.

#include <cstddef>
#include <type_traits>

namespace krl {

// Threads that share row work, the calling one included. The default is the machine's core count (at
// most 8); the environment variable KIRREL_THREADS, read once, overrides it.
int sliceThreads();
// Sets the count from here on; 1 keeps all work on the calling thread, 0 restores the default.
void setSliceThreads(int n);

// How many slices forRowSlices will cut this picture into: 1 where slicing does not pay.
int sliceCount(int rows, long long cellsPerRow);
// The first row of slice i of n; slice i covers [sliceStart(i), sliceStart(i + 1)).
inline int sliceStart(int rows, int i, int n) {
    return static_cast<int>(static_cast<long long>(rows) * i / n);
}

namespace detail {
using SliceFn = void (*)(void* context, int y0, int y1);
void runSlices(int rows, int parts, SliceFn fn, void* context);
} // namespace detail

// Calls work(y0, y1) over the sliceCount() slices covering rows [0, rows), on several threads where
// worth it. Should the helpers be busy with another caller's work, it is one call over all rows.
template <class Work> void forRowSlices(int rows, long long cellsPerRow, Work&& work) {
    const int parts = sliceCount(rows, cellsPerRow);
    if (parts <= 1) {
        if (rows > 0) work(0, rows);
        return;
    }
    using W = std::remove_reference_t<Work>;
    detail::runSlices(
        rows, parts, [](void* c, int y0, int y1) { (*static_cast<W*>(c))(y0, y1); },
        const_cast<void*>(static_cast<const void*>(&work)));
}

} // namespace krl
