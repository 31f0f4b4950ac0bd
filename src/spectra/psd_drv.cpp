#include "spectra/psd_drv.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

#include "numeric/rounding.hpp"
#include "spectra/fourier_transform.hpp"
#include "spectra/frequency_grid.hpp"

namespace vialto {

namespace {

constexpr float ln_2 = 0.6931472F;
constexpr float pi = 3.14159265F;

// The n differences between the n + 1 points of the stretch, of which `profile` holds the first
// ones, the others counting as 0.0; and zeros in the rest of y. Returns the sum of the differences,
// in 64-bit and in ascending order.
double psd_difference(std::span<const float> profile, std::size_t n, std::span<float> y) {
    const std::size_t held = std::min(profile.size(), n + 1);
    double sum = 0.0;
    std::size_t i = 0;
    for (; i < std::min(held, n); ++i) {
        y[i] = (i + 1 < held ? profile[i + 1] : 0.0F) - profile[i];
        sum += static_cast<double>(y[i]);
    }
    std::fill(y.begin() + static_cast<std::ptrdiff_t>(i), y.end(), 0.0F);
    return sum;
}

// The length of the transform of n differences, n being at least 1: the power of 2 at or above n,
// by a formula that deliberately lets n pass 2^k by 7 parts in a million before it takes 2^(k+1).
std::int32_t transform_length(std::int32_t n) {
    const auto logarithm = static_cast<float>(std::log(static_cast<double>(n)));
    constexpr std::int32_t largest = 30;
    return std::int32_t{1} << std::clamp(truncate(logarithm / ln_2 + 0.99999F), 0, largest);
}

// Squared amplitudes of the bins 0 to nHalf - 1, of which bin j has the frequency j dfft.
struct Periodogram {
    std::span<const float> power;
    float dfft; // cycles/m

    [[nodiscard]] std::int32_t nHalf() const { return static_cast<std::int32_t>(power.size()); }
};

// y: the n differences, with their sum, and behind them zeros; it gives its place to the result.
// Where the length of the transform is below n, as many take part, less the mean of all n.
Periodogram psd_transform(std::span<float> y, std::span<float> room, double sum, std::int32_t n,
                          std::int32_t nfft, float dx) {
    const auto mean = static_cast<float>(sum / static_cast<double>(n));
    for (float& difference : y.first(static_cast<std::size_t>(n))) {
        difference -= mean;
    }
    const auto nHalf = static_cast<std::size_t>(nfft / 2);
    if (nHalf > 0) {
        fourier_transform(y.first(2 * nHalf + 2), room);
    }
    // The zeros behind the differences took their share of the scale.
    const float padding = std::sqrt(static_cast<float>(nfft) / static_cast<float>(n));
    for (std::size_t j = 0; j < nHalf; ++j) {
        const float real = y[j] * padding;
        const float imaginary = y[nHalf + 1 + j] * padding;
        y[j] = real * real + imaginary * imaginary;
    }
    // The last bin belongs to no band.
    return {y.first(nHalf), 1.0F / (dx * static_cast<float>(nfft))};
}

// The boundaries between the grid points, and so between the bands.
std::vector<float> band_ends(std::span<const float> f, GridMode mode) {
    std::vector<float> ends(f.empty() ? 0 : f.size() - 1);
    for (std::size_t i = 0; i < ends.size(); ++i) {
        ends[i] = mode == GridMode::linear ? (f[i] + f[i + 1]) * 0.5F : std::sqrt(f[i] * f[i + 1]);
    }
    return ends;
}

// 0-based, both inclusive; empty where last is below first.
struct BandRange {
    std::int32_t first;
    std::int32_t last;
};

// The bands that reach a bin above the mean and end below the Nyquist frequency, at most `room`.
BandRange valid_bands(std::span<const float> ends, std::size_t room,
                      const Periodogram& periodogram) {
    const float highest = periodogram.dfft * static_cast<float>(periodogram.nHalf() - 1);
    // Of the grid points, one more than the ends, the last two never have a band.
    const std::size_t bands = ends.empty() ? 0 : ends.size() - 1;
    const auto count = static_cast<std::int32_t>(std::min(bands, room));
    BandRange range{0, count - 1};
    for (std::int32_t i = 0; i < count; ++i) {
        const float end = ends[static_cast<std::size_t>(i)];
        if (end < periodogram.dfft) {
            range.first = i + 1;
        }
        if (end > highest) {
            range.last = i - 1;
            break;
        }
    }
    return range;
}

// The density of each band, in ascending order of bins. A band that holds no bin of its own shares
// the value of the one before it.
void psd_bands(std::span<const float> ends, BandRange range, const Periodogram& periodogram,
               std::span<float> B) {
    std::int32_t bin = 1; // bin 0, the mean, is never used
    float density = 0.0F;
    for (std::int32_t i = range.first; i <= range.last; ++i) {
        const float end = ends[static_cast<std::size_t>(i)];
        // Bounded for frequencies that are not finite.
        const std::int32_t behind =
            std::min(truncate(end / periodogram.dfft + 1.0F), periodogram.nHalf());
        if (behind > bin) {
            const auto count = static_cast<float>(behind - bin);
            float sum = 0.0F;
            for (; bin < behind; ++bin) {
                sum += periodogram.power[static_cast<std::size_t>(bin)];
            }
            density = sum / (count * 2.0F * periodogram.dfft);
        }
        B[static_cast<std::size_t>(i)] = density;
    }
}

// Undoes the response of the differencing to each frequency, and brings the density to the unit of
// its type.
void correct_for_difference(std::int32_t iPSDType, float dx, std::span<const float> f,
                            std::span<float> B) {
    const float s = 1.0F / dx;
    const float s_squared = s * s;
    const float gain = (s_squared * dx * dx) * 0.25F;
    for (std::size_t i = 0; i < B.size(); ++i) {
        if (iPSDType == idx_psdtyp_slope) {
            B[i] = B[i] * s_squared;
            continue;
        }
        const auto sine = static_cast<float>(std::sin(static_cast<double>(pi * dx * f[i])));
        B[i] = B[i] * gain / (sine * sine);
    }
}

} // namespace

ReturnCode psd_drv(const tPSDCon& settings, std::int32_t N, float xStepSize,
                   std::span<const float> xProfile, std::span<float> xFreq, std::span<float> xPSD,
                   std::int32_t& iFreqBegin, std::int32_t& iFreqEnd) {
    constexpr std::string_view name = "psd_drv";
    if (N > vialto_mxProfile) {
        return raise_failure("profile data exceeds maximum allowed - may change later", name);
    }
    if (settings.iPSDType != idx_psdtyp_elevation && settings.iPSDType != idx_psdtyp_slope) {
        return raise_failure("iPSDType is not well-defined", name);
    }
    if (settings.iOctaveBands != idx_psdband_octave && settings.iOctaveBands != idx_psdband_even) {
        return raise_failure("iOctaveBands is not well-defined", name);
    }
    if (N < 2) {
        iFreqBegin = 0;
        iFreqEnd = -1;
        return success;
    }
    const GridMode mode =
        settings.iOctaveBands == idx_psdband_octave ? GridMode::octave : GridMode::linear;
    const std::vector<float> f = GETFREQ(
        mode, settings.xFreqInterval, static_cast<float>(settings.iPointsPerOctave), xStepSize, N);

    const std::int32_t n = N - 1;
    const std::int32_t nfft = transform_length(n);
    // In one block, whose pages an allocator is more likely to keep from call to call.
    const auto samples = static_cast<std::size_t>(std::max(n, nfft + 2));
    const std::size_t room = fourier_room(static_cast<std::size_t>(nfft / 2));
    const auto memory = std::make_unique_for_overwrite<float[]>(samples + room);
    const std::span<float> y(memory.get(), samples);
    const double sum = psd_difference(xProfile, static_cast<std::size_t>(n), y);
    const Periodogram periodogram =
        psd_transform(y, {memory.get() + samples, room}, sum, n, nfft, xStepSize);

    const std::vector<float> ends = band_ends(f, mode);
    const BandRange range = valid_bands(ends, xPSD.size(), periodogram);
    iFreqBegin = range.first;
    iFreqEnd = range.last;
    if (range.last < range.first) {
        return success;
    }
    psd_bands(ends, range, periodogram, xPSD);
    const auto first = static_cast<std::size_t>(range.first);
    const auto count = static_cast<std::size_t>(range.last - range.first) + 1;
    const auto grid = std::span(f).subspan(first, count);
    correct_for_difference(settings.iPSDType, xStepSize, grid, xPSD.subspan(first, count));
    std::copy(grid.begin(), grid.end(), xFreq.begin() + range.first);
    return success;
}

} // namespace vialto
