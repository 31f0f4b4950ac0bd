// The Fourier transform of real samples, for lengths that are powers of 2.
//
// A stretch of 2h samples is transformed as h complex numbers, whose spectrum is then split into
// that of the samples. The complex transform lays its h numbers out as a matrix and transforms
// first the columns, then the rows, sixteen side by side: every loop runs over sixteen contiguous
// numbers, the working set of a pass stays in the cache for stretches of any length, and the
// numbers cross the memory only twice.
//
// Reference: D. H. Bailey, "FFTs in External or Hierarchical Memory", Journal of Supercomputing 4,
// 1990.
#pragma once

#include <cstddef>
#include <span>

namespace vialto {

// Given: 2h samples x, h a power of 2 from 1 to 2^23, and behind them room for two more.
// Returned in their place: the real parts of h + 1 bins, then their imaginary parts, bin j being
// the sum over i of x[i] exp(-2 pi i j / 2h), scaled by 1/h: a sinusoid that fits the transform has
// its amplitude as the magnitude of its bin. Bins 0 and h (the mean and the Nyquist frequency) come
// out real, at twice their amplitude.
//
// room: fourier_room(h) more, whatever they hold, to work with.
//
// The factors of rotation are taken in 64-bit and rounded once.
void fourier_transform(std::span<float> samples, std::span<float> room);

[[nodiscard]] std::size_t fourier_room(std::size_t h);

} // namespace vialto
