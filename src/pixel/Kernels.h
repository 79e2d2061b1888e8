#pragma once
// Hand-written vector kernels, one per instruction set, chosen at run time. Loops the compiler
// vectorises on its own are built twice instead (CellLoop.h); these are the loops it cannot turn
// into vectors, byte shuffles above all. Each has a plain loop beside it, the reference that gives
// the same bytes, which also takes whatever a kernel leaves over at the end of a row.
// Internal to the pixel library.

namespace krl {

enum class KernelSet { Plain, Ssse3, Avx2 };

// The widest set this processor runs, within the cap below.
KernelSet kernelSet();
// Runs no kernel above `most` from here on (the tests use it to check every path on one machine);
// Avx2 lifts the cap.
void capKernelSet(KernelSet most);

} // namespace krl
