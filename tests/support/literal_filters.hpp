// The filters as plain loops, one operation at a time and one sample after the other, to hold the
// library's own versions against, bit by bit.
#pragma once

#include <complex>
#include <cstddef>
#include <span>
#include <vector>

namespace vialto::test {

// The moving mean of a box of `base` samples over the profile extended by `half` samples at either
// end, as low-pass, or the profile minus that mean, as high-pass.
[[nodiscard]] std::vector<float> literal_moving_average(std::span<const float> profile,
                                                        std::size_t base, std::size_t half,
                                                        bool high_pass);

// The third-order Butterworth filters, each pass of each section on its own; cutoffs in metres.
[[nodiscard]] std::vector<double> literal_butterworth_high_pass(std::vector<double> profile,
                                                                float interval, float wavelength);
[[nodiscard]] std::vector<double> literal_butterworth_low_pass(std::vector<double> profile,
                                                               float interval, float wavelength);

// The level of one window of the bridge filter, which must have one.
[[nodiscard]] float literal_bridge_level(std::span<const float> window, float tolerance);

// The band-pass about a centre frequency; wavelengths in metres.
[[nodiscard]] std::vector<std::complex<double>>
literal_band_pass_signal(std::span<const float> profile, float interval, float shortest,
                         float longest);

} // namespace vialto::test
