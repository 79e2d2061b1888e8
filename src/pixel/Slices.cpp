#include "pixel/Slices.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
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

// Helper threads that wait for slices. One job at a time. Its slices are claimed one by one by
// whoever is free, the caller included, so a helper that is slow to wake (the machine busy with
// something else) only means the caller does more of the slices itself; it waits only for slices
// that a helper has actually begun.
class Helpers {
  public:
    // Runs the job, or returns false at once when another caller has the helpers.
    bool run(int rows, int parts, detail::SliceFn fn, void* context) {
        std::unique_lock<std::mutex> busy(busy_, std::try_to_lock);
        if (!busy.owns_lock()) return false;
        const Job job{fn, context, rows, parts};
        std::uint32_t generation = 0;
        {
            std::lock_guard<std::mutex> lock(m_);
            while (static_cast<int>(threads_.size()) < parts - 1)
                threads_.emplace_back([this] { serve(); });
            job_ = job;
            error_ = nullptr;
            generation = ++generation_;
            finished_.store(0, std::memory_order_relaxed);
            claim_.store(claimWord(generation, 0), std::memory_order_release);
        }
        wake_.notify_all();
        insideSlice = true; // a slice that asks for slices runs them itself
        work(job, generation);
        insideSlice = false;
        auto allDone = [this, parts] { return finished_.load(std::memory_order_acquire) == parts; };
        if (!spinUntil(allDone)) {
            std::unique_lock<std::mutex> lock(m_);
            done_.wait(lock, allDone);
        }
        if (error_) std::rethrow_exception(error_);
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

    // The job's number and its next unclaimed slice in one word, so that a helper still holding an
    // earlier job can never claim a slice of a later one.
    static std::uint64_t claimWord(std::uint32_t generation, std::uint32_t next) {
        return (std::uint64_t{generation} << 32) | next;
    }

    // Claims and runs slices of the given job until none is left.
    void work(const Job& job, std::uint32_t generation) {
        for (;;) {
            std::uint64_t word = claim_.load(std::memory_order_acquire);
            do {
                if (word >> 32 != generation ||
                    static_cast<std::uint32_t>(word) >= static_cast<std::uint32_t>(job.parts))
                    return;
            } while (!claim_.compare_exchange_weak(word, word + 1, std::memory_order_acq_rel,
                                                   std::memory_order_acquire));
            std::exception_ptr failed;
            try {
                job.slice(static_cast<int>(static_cast<std::uint32_t>(word)));
            } catch (...) {
                failed = std::current_exception();
            }
            if (failed) {
                std::lock_guard<std::mutex> lock(m_);
                if (!error_) error_ = failed;
            }
            if (finished_.fetch_add(1, std::memory_order_acq_rel) + 1 == job.parts) {
                std::lock_guard<std::mutex> lock(m_);
                done_.notify_one();
            }
        }
    }

    void serve() {
        insideSlice = true;
        std::uint32_t seen = 0;
        auto fresh = [&] { return claim_.load(std::memory_order_acquire) >> 32 != seen; };
        for (;;) {
            if (!spinUntil(fresh)) {
                std::unique_lock<std::mutex> lock(m_);
                wake_.wait(lock, fresh);
            }
            Job job;
            {
                std::lock_guard<std::mutex> lock(m_);
                seen = generation_;
                job = job_;
            }
            work(job, seen);
        }
    }

    std::mutex busy_;
    std::mutex m_;
    std::condition_variable wake_, done_;
    std::vector<std::thread> threads_;
    std::uint32_t generation_ = 0; // under m_
    Job job_;                      // under m_
    std::exception_ptr error_;     // under m_; read by the caller once every slice has finished
    std::atomic<std::uint64_t> claim_{0};
    std::atomic<int> finished_{0};
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
