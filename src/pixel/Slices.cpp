#include "pixel/Slices.h"

#include <algorithm>
#include <atomic>
#include <chrono>
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

// How long a thread that has just finished its part keeps looking for the next one before it sleeps.
// Runs hand out slices a few times per frame; waking a sleeping thread costs some tens of
// microseconds, which would eat what the slices save on a small picture.
constexpr std::chrono::microseconds kSpinFor{200};

void relax() {
#if defined(__x86_64__) || defined(__i386__)
    __builtin_ia32_pause();
#endif
}

// Calls done() until it returns true or the spin time is up; says whether it came true.
template <class Done> bool spinUntil(Done done) {
    const auto until = std::chrono::steady_clock::now() + kSpinFor;
    for (int i = 0;; ++i) {
        if (done()) return true;
        relax();
        if ((i & 63) == 63 && std::chrono::steady_clock::now() > until) return false;
    }
}

// Helper threads that wait for slices. One job at a time; its slices are numbered, the caller takes
// slice 0 and helper i slice i.
class Helpers {
  public:
    // Runs the job, or returns false at once when another caller has the helpers.
    bool run(int rows, int parts, detail::SliceFn fn, void* context) {
        std::unique_lock<std::mutex> busy(busy_, std::try_to_lock);
        if (!busy.owns_lock()) return false;
        const Job job{fn, context, rows, parts};
        {
            std::lock_guard<std::mutex> lock(m_);
            while (static_cast<int>(threads_.size()) < parts - 1) {
                const int index = static_cast<int>(threads_.size()) + 1;
                threads_.emplace_back([this, index] { serve(index); });
            }
            job_ = job;
            error_ = nullptr;
            pending_.store(parts - 1, std::memory_order_relaxed);
            generation_.store(generation_.load(std::memory_order_relaxed) + 1, std::memory_order_release);
        }
        wake_.notify_all();
        std::exception_ptr own;
        insideSlice = true; // a slice that asks for slices runs them itself
        try {
            job.slice(0);
        } catch (...) {
            own = std::current_exception();
        }
        insideSlice = false;
        auto finished = [this] { return pending_.load(std::memory_order_acquire) == 0; };
        if (!spinUntil(finished)) {
            std::unique_lock<std::mutex> lock(m_);
            done_.wait(lock, finished);
        }
        if (!own) own = error_;
        if (own) std::rethrow_exception(own);
        return true;
    }

  private:
    struct Job {
        detail::SliceFn fn = nullptr;
        void* context = nullptr;
        int rows = 0, parts = 1;
        void slice(int i) const {
            const int y0 = sliceStart(rows, i, parts);
            const int y1 = sliceStart(rows, i + 1, parts);
            if (y1 > y0) fn(context, y0, y1);
        }
    };

    void serve(int index) {
        insideSlice = true;
        unsigned long long seen = 0;
        auto fresh = [&] { return generation_.load(std::memory_order_acquire) != seen; };
        for (;;) {
            if (!spinUntil(fresh)) {
                std::unique_lock<std::mutex> lock(m_);
                wake_.wait(lock, fresh);
            }
            // The job and its number are read together under the lock: a helper that a job did not
            // need may come late, when the next job is already set.
            Job job;
            {
                std::lock_guard<std::mutex> lock(m_);
                seen = generation_.load(std::memory_order_relaxed);
                job = job_;
            }
            if (index >= job.parts) continue;
            std::exception_ptr failed;
            try {
                job.slice(index);
            } catch (...) {
                failed = std::current_exception();
            }
            std::lock_guard<std::mutex> lock(m_);
            if (failed && !error_) error_ = failed;
            if (pending_.fetch_sub(1, std::memory_order_acq_rel) == 1) done_.notify_one();
        }
    }

    std::mutex busy_;
    std::mutex m_;
    std::condition_variable wake_, done_;
    std::vector<std::thread> threads_;
    std::atomic<unsigned long long> generation_{0};
    std::atomic<int> pending_{0};
    Job job_;
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
