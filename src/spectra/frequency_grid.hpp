// The grid of frequencies on which a spectrum is reported.
#pragma once

#include <cstdint>
#include <vector>

namespace vialto {

enum class GridMode { octave, linear };

// The smallest power of 2 that is not below n; n is at least 1.
[[nodiscard]] std::int32_t nextpow2(std::int32_t n);

// The grid up to the Nyquist frequency 0.5/dx and beyond it, by one point in octave mode and two in
// linear mode. In octave mode it begins at the lowest frequency that a stretch of N points allows,
// N being at least 1, in linear mode at its spacing.
//
// Given: df [cycles/m], the spacing in linear mode, raised to the lowest frequency where it is
// below it or no number; nOct, the points per octave in octave mode, 6 standing for a value below
// 1; dx, the sample interval [m].
// Returned: the frequencies [cycles/m], never descending, 100,000 of them at most.
[[nodiscard]] std::vector<float> GETFREQ(GridMode mode, float df, float nOct, float dx,
                                         std::int32_t N);

} // namespace vialto
