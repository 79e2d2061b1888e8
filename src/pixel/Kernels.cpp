#include "pixel/Kernels.h"

#include <algorithm>
#include <atomic>

namespace krl {

namespace {

KernelSet supported() {
#if defined(__x86_64__) || defined(__i386__)
    if (__builtin_cpu_supports("avx2")) return KernelSet::Avx2;
    if (__builtin_cpu_supports("ssse3")) return KernelSet::Ssse3;
#endif
    return KernelSet::Plain;
}

std::atomic<int> cap{static_cast<int>(KernelSet::Avx2)};

} // namespace

KernelSet kernelSet() {
    static const KernelSet best = supported();
    return static_cast<KernelSet>(std::min(static_cast<int>(best), cap.load(std::memory_order_relaxed)));
}

void capKernelSet(KernelSet most) {
    cap.store(static_cast<int>(most), std::memory_order_relaxed);
}

} // namespace krl
