// The spectrum of a road written as it is defined, one step after the other over arrays that count
// from 1, and a Fourier transform in 64-bit.
#pragma once

#include <complex>
#include <cstdint>
#include <vector>

#include "spectra/psd_drv.hpp"

namespace vialto::test {

// The sum over i of x[i] exp(-2 pi i j / n) for every j; n is a power of 2.
[[nodiscard]] std::vector<std::complex<double>>
literal_fourier(const std::vector<std::complex<double>>& x);

struct LiteralSpectrum {
    std::vector<float> frequency; // from element 1
    std::vector<float> density;   // from element 1
    std::int32_t iFirst;          // from 1
    std::int32_t iLast;
};

[[nodiscard]] LiteralSpectrum literal_spectrum(const tPSDCon& settings, float dx,
                                               const std::vector<float>& profile);

} // namespace vialto::test
