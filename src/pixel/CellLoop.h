#pragma once
// The cell loops are built twice on x86-64, for the baseline and for AVX2, and the processor picks
// at load time: the same integer arithmetic, so the same bytes, more cells per instruction.
// Internal to the pixel library. The thread sanitizer cannot run the load-time choice, which comes
// before it has started, so its builds take the baseline loops only.
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__) && !defined(__SANITIZE_THREAD__)
#define KRL_CELL_LOOP __attribute__((target_clones("avx2", "default")))
#else
#define KRL_CELL_LOOP
#endif
