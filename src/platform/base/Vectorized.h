// SPDX-License-Identifier: MIT
#pragma once

/// Marks a leaf function whose plain loops the compiler shall turn into vector instructions, whatever the
/// optimisation level of the build. Where the linker can choose at start-up, a second copy is made for
/// processors with 256-bit vectors. Both copies round alike, so the pixels do not depend on the machine.
#if defined(__x86_64__) && defined(__GLIBC__) && defined(__GNUC__) && !defined(__clang__)                    \
    && !defined(PINTALUX_ONE_COPY)
#define PINTALUX_VECTORIZED __attribute__((optimize("O3"), target_clones("avx2", "default")))
#elif defined(__GNUC__) && !defined(__clang__)
#define PINTALUX_VECTORIZED __attribute__((optimize("O3")))
#else
#define PINTALUX_VECTORIZED
#endif
