// Vector instructions that not every processor of a platform has.
#pragma once

#include <cstddef> // which also tells what the C library is

// Ahead of a function's definition, VIALTO_WIDE_VECTORS compiles the function, with all that is
// inlined into it, once more for vectors of 256 bits (AVX2). Which of the two runs is chosen when
// the library is loaded, by the processor that it finds.
//
// It belongs to hot loops whose result does not hang on the width: elementwise work, and sums whose
// partial sums are fixed in the source. Products and sums are not contracted with either width, so
// that both give the same bits. A function so marked is never inlined: it does the work of many
// samples.
//
// Nothing is added where the compiler or the C library cannot choose at load time; under the thread
// sanitizer, whose run-time library is not there yet when the choice is made; and where
// VIALTO_NARROW_VECTORS is defined, by which the two are set side by side.
#if defined(__x86_64__) && defined(__GLIBC__) && defined(__GNUC__) && !defined(__clang__) &&       \
    !defined(__SANITIZE_THREAD__) && !defined(VIALTO_NARROW_VECTORS)
#define VIALTO_WIDE_VECTORS __attribute__((target_clones("avx2", "default")))
#else
#define VIALTO_WIDE_VECTORS
#endif
