#include "pixel/Slices.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <cstdlib>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

namespace krl {

namespace {

// Below this many cells a picture is done on the calling thread: a helper's wake-up and the wait
// for it cost some tens of microseconds, about what one core needs for this much light work.
constexpr long long kMinCells = 1LL << 18;
constexpr int kMostThreads = 8;

int defaultThreads() {
    static const int n = [] {
        if (const char* env = std::getenv("KIRREL_THREADS")) {
            const int v = std::atoi(env);
            if (v >= 1) return std::min(v, kMostThreads);
        }
        const unsigned cores = std::thread::hardware_concurrency();
        return std::clamp(static_cast<int>(cores), 1, kMostThreads);
    }();
    return n;
}

std::atomic<int> chosenThreads{0}; // 0: the default
thread_local bool insideSlice = false;

// Helper threads that wait for slices. One job at a time; its slices are numbered, the caller takes
// slice 0 and helper i slice i.
class Helpers {
  public:
    // Runs the job, or returns false at once when another caller has the helpers.
    bool run(int rows, int parts, detail::SliceFn fn, void* context) {
        std::unique_lock<std::mutex> job(busy_, std::try_to_lock);
        if (!job.owns_lock()) return false;
        {
            std::lock_guard<std::mutex> lock(m_);
            while (static_cast<int>(threads_.size()) < parts - 1) {
                const int index = static_cast<int>(threads_.size()) + 1;
                threads_.emplace_back([this, index] { serve(index); });
            }
            fn_ = fn;
            context_ = context;
            rows_ = rows;
            parts_ = parts;
            pending_ = parts - 1;
            error_ = nullptr;
            ++generation_;
        }
        wake_.notify_all();
        std::exception_ptr own;
        insideSlice = true; // a slice that asks for slices runs them itself
        try {
            slice(0);
        } catch (...) {
            own = std::current_exception();
        }
        insideSlice = false;
        std::unique_lock<std::mutex> lock(m_);
        done_.wait(lock, [this] { return pending_ == 0; });
        if (!own) own = error_;
        if (own) std::rethrow_exception(own);
        return true;
    }

  private:
    void slice(int i) const {
        const int y0 = sliceStart(rows_, i, parts_);
        const int y1 = sliceStart(rows_, i + 1, parts_);
        if (y1 > y0) fn_(context_, y0, y1);
    }

    void serve(int index) {
        insideSlice = true;
        unsigned long long seen = 0;
        std::unique_lock<std::mutex> lock(m_);
        for (;;) {
            wake_.wait(lock, [&] { return generation_ != seen; });
            seen = generation_;
            if (index >= parts_) continue;
            lock.unlock();
            std::exception_ptr failed;
            try {
                slice(index);
            } catch (...) {
                failed = std::current_exception();
            }
            lock.lock();
            if (failed && !error_) error_ = failed;
            if (--pending_ == 0) done_.notify_one();
        }
    }

    std::mutex busy_;
    std::mutex m_;
    std::condition_variable wake_, done_;
    std::vector<std::thread> threads_;
    unsigned long long generation_ = 0;
    detail::SliceFn fn_ = nullptr;
    void* context_ = nullptr;
    int rows_ = 0, parts_ = 1, pending_ = 0;
    std::exception_ptr error_;
};

// The helpers live as long as the process: they wait on a condition and are never joined, so no
// exit path has to stop them first.
Helpers& helpers() {
    static Helpers* h = new Helpers;
    return *h;
}

} // namespace

int sliceThreads() {
    const int n = chosenThreads.load(std::memory_order_relaxed);
    return n > 0 ? n : defaultThreads();
}

void setSliceThreads(int n) {
    chosenThreads.store(std::clamp(n, 0, kMostThreads), std::memory_order_relaxed);
}

int sliceCount(int rows, long long cellsPerRow) {
    if (insideSlice || rows < 2 || static_cast<long long>(rows) * cellsPerRow < kMinCells) return 1;
    return std::min(sliceThreads(), rows);
}

namespace detail {

void runSlices(int rows, int parts, SliceFn fn, void* context) {
    if (!helpers().run(rows, parts, fn, context)) fn(context, 0, rows);
}

} // namespace detail

} // namespace krl
