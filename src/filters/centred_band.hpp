// The band-pass about a centre frequency: a third-order Butterworth of complex first-order
// sections, run forwards and backwards, without a phase shift. Its result is the analytic signal of
// the band.
#pragma once

#include <complex>
#include <cstdint>
#include <span>

#include "frame/event.hpp"

namespace vialto {

// idx_filttyp_bwfilt with idx_subfilttyp_centredband.
//
// Given: interval [m], the shortest and the longest wavelength of the band [m] and a profile of N
// elevations.
// Returned: the elevation of the band, N values, whatever the output type asked for; the first and
// the last filtered sample, from 1.
//
// A longest wavelength below the shortest is not refused, nor is a negative shortest one: the filter
// runs on a band of negative width. Deliberate.
//
// Fails with the failures of DRBWfilt; xFiltered is then untouched.
[[nodiscard]] ReturnCode DRBWfilt_drv_prof(float xStepSize, float xShortWavelength,
                                           float xLongWavelength, std::span<const float> xProfile,
                                           std::span<float> xFiltered, std::int32_t& iBegin,
                                           std::int32_t& iEnd);

// The filter behind it.
//
// Given: interval dt [m], centre f0 and half width fc of the band [cycles/m], the profile.
// Returned: the analytic signal of the band, one value for each sample of the profile less its
// mean. Twice its real part is the profile of the band, twice its magnitude the envelope of that
// profile.
//
// Fails where f0 - fc is at most 0, or f0 + fc not below the Nyquist frequency; a frequency that is
// not a number fails as the latter. `signal` is then untouched.
//
// Reference: A. V. Oppenheim and R. W. Schafer, "Discrete-Time Signal Processing" (Butterworth
// design by the bilinear transform, analytic signals).
[[nodiscard]] ReturnCode DRBWfilt(float dt, double f0, double fc, std::span<const float> xProfile,
                                  std::span<std::complex<double>> signal);

} // namespace vialto
