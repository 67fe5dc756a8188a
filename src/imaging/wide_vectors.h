#pragma once

/// PICTOR_WIDE_VECTORS before a function: the compiler makes a second version of it for processors
/// with wide vectors, chosen when the program starts. Sanitizers do not get on with a choice that
/// early. Results are the same: the wide version has no fused multiplication.
#if defined(__x86_64__) && defined(__linux__) && defined(__GNUC__) && !defined(__clang__) &&       \
    defined(__OPTIMIZE__) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
#define PICTOR_WIDE_VECTORS __attribute__((target_clones("avx2", "default")))
#else
#define PICTOR_WIDE_VECTORS
#endif
