#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <complex>
#include <cstddef>
#include <numbers>
#include <optional>
#include <tuple>
#include <utility>
#include <vector>

#include "spectra/frequency_grid.hpp"
#include "spectra/psd_drv.hpp"
#include "support/host.hpp"
#include "support/roads.hpp"

namespace vialto::test {

namespace {

using Floats = std::vector<float>;
using Bins = std::vector<std::complex<double>>;

constexpr float unwritten = -7.0F;

struct Spectrum {
    std::string failure;
    Floats frequency, density;
    std::int32_t first = -7;
    std::int32_t last = -7;
    std::string file;
};

// The sum over i of x[i] exp(-2 pi i j / n) for every j; n is a power of 2.
Bins literal_fourier(const Bins& x) {
    const std::size_t half = x.size() / 2;
    if (half == 0) {
        return x;
    }
    Bins parts[2];
    for (std::size_t i = 0; i < x.size(); ++i) {
        parts[i % 2].push_back(x[i]);
    }
    const Bins even = literal_fourier(parts[0]);
    const Bins odd = literal_fourier(parts[1]);
    Bins bins;
    for (std::size_t j = 0; j < x.size(); ++j) {
        const double angle = -std::numbers::pi * static_cast<double>(j) / static_cast<double>(half);
        bins.push_back(even[j % half] + std::polar(1.0, angle) * odd[j % half]);
    }
    return bins;
}

// One step after the other, with a Fourier transform in 64-bit.
Spectrum literal_spectrum(const tPSDCon& settings, float dx, const Floats& profile) {
    const std::size_t n = profile.size() - 1;
    const std::size_t nfft = std::bit_ceil(n);
    const float mean = (profile[n] - profile[0]) / static_cast<float>(n);
    Bins y(nfft);
    for (std::size_t i = 0; i < n; ++i) {
        y[i] = static_cast<double>(profile[i + 1] - profile[i] - mean);
    }
    y = literal_fourier(y);
    const double scale = 4.0 / (static_cast<double>(nfft) * static_cast<double>(n));
    const float dfft = 1.0F / (dx * static_cast<float>(nfft));

    const bool linear = settings.iOctaveBands == 2;
    const Floats f = GETFREQ(linear ? GridMode::linear : GridMode::octave, settings.xFreqInterval,
                             static_cast<float>(settings.iPointsPerOctave), dx,
                             static_cast<std::int32_t>(profile.size()));
    const Floats unset(profile.size(), unwritten);
    Spectrum out{"", unset, unset, 0, -1, ""};
    float B = 0.0F;
    std::size_t k = 1;
    for (std::size_t i = 0; i + 2 < f.size(); ++i) {
        const float fc = linear ? (f[i] + f[i + 1]) * 0.5F : std::sqrt(f[i] * f[i + 1]);
        out.first += fc < dfft ? 1 : 0;
        if (fc > dfft * (static_cast<float>(nfft / 2) - 1.0F)) {
            break;
        }
        out.last = static_cast<std::int32_t>(i);
        if (fc < dfft) {
            continue;
        }
        const auto kHi = static_cast<std::size_t>(fc / dfft + 1.0F);
        double squares = 0.0;
        for (std::size_t j = k; j < kHi; ++j) {
            squares += scale * std::norm(y[j]);
        }
        B = kHi > k ? static_cast<float>(squares) / (static_cast<float>(kHi - k) * 2 * dfft) : B;
        k = std::max(k, kHi);
        const float sine = std::sin(3.14159265F * dx * f[i]);
        out.frequency[i] = f[i];
        out.density[i] = B * (settings.iPSDType == 2 ? 1.0F / (dx * dx) : 0.25F / (sine * sine));
    }
    return out;
}

// Of the profile from `begin` on, as many points as it has unless `size` says otherwise.
Spectrum spectrum(const tPSDCon& settings, float interval, const Floats& profile,
                  std::int32_t begin = 0, std::optional<std::int32_t> size = {}) {
    const TemporaryDirectory directory;
    EventRecord event;
    const auto end = static_cast<std::int32_t>(profile.size()) - 1;
    const std::int32_t n = size.value_or(end - begin + 1);
    Spectrum out;
    out.frequency = out.density = Floats(static_cast<std::size_t>(std::max(n, 0)), unwritten);
    const auto& [type, octaves, points, spacing] = settings;
    const std::int32_t code =
        psd_dll(begin, end, type, octaves, points, spacing, n, interval, profile.data(),
                out.frequency.data(), out.density.data(), &out.first, &out.last, event);
    EXPECT_EQ(code, event.untouched() ? 1 : 3);
    out.failure = code == 1 ? "" : event.summary();
    out.file = directory.text_of("psd_dll.txt");
    return out;
}

} // namespace

TEST(PowerSpectralDensity, AgreesWithItsDefinition) {
    // Transforms of all lengths to 2^15, then N about a power of 2. The interval has a rounded
    // inverse.
    constexpr float interval = 0.0254F;
    for (const std::size_t count :
         std::vector<std::size_t>{2,   3,    4,    5,    9,    17,   33,   65,   129,   257,  500,
                                  513, 1023, 1024, 1025, 1026, 2049, 4097, 8193, 16385, 32769}) {
        const Floats road = random_road(count, 0.25, 5);
        for (const tPSDCon& settings :
             {tPSDCon{1, 1, 0, 0.0F}, tPSDCon{1, 1, 12, 0.0F}, tPSDCon{2, 1, 1, 0.0F},
              tPSDCon{1, 2, 0, 0.0F}, tPSDCon{2, 2, 0, 0.37F}}) {
            const Spectrum expected = literal_spectrum(settings, interval, road);
            const Spectrum out = spectrum(settings, interval, road);
            ASSERT_EQ(std::pair(out.first, out.last), std::pair(expected.first, expected.last));
            ASSERT_EQ(out.frequency, expected.frequency);
            const float most = *std::max_element(expected.density.begin(), expected.density.end());
            for (std::size_t i = 0; i < count; ++i) {
                const float value = expected.density[i];
                ASSERT_NEAR(out.density[i], value, 1e-4F * std::fabs(value) + 1e-7F * most);
            }
        }
    }
}

TEST(PowerSpectralDensity, GridStartsAtItsLowestFrequencyAndEndsWithTheArrays) {
    // The lowest frequency is a third at 4 points, where the next power of 2 is 4, and a seventh
    // at 5; there are six points per octave unless more than the lowest frequency lies between.
    constexpr float third = 1.0F / 3.0F;
    constexpr float seventh = 1.0F / 7.0F;
    EXPECT_EQ(GETFREQ(GridMode::linear, 0, 0, 1, 4), (Floats{third, 2 * third, 3 * third}));
    EXPECT_EQ(GETFREQ(GridMode::linear, 0.25F, 0, 1, 5), (Floats{0.25F, 0.5F, 0.75F, 1.0F}));
    EXPECT_EQ(GETFREQ(GridMode::octave, 0, 1, 1, 5), (Floats{seventh, 2 * seventh, 4 * seventh}));
    const Floats six = GETFREQ(GridMode::octave, 0, 0, 1, 64);
    EXPECT_FLOAT_EQ(six[8], seventh);
    EXPECT_FLOAT_EQ(six[9], 1.122462F * seventh);
    EXPECT_EQ(GETFREQ(GridMode::linear, NAN, 0.0F, 0.001F, 10000000).size(), 100000U);
    EXPECT_EQ(GETFREQ(GridMode::octave, 0.0F, 1e9F, 0.001F, 10000000).size(), 100000U);
    // The rounding errors of 65,000 additions are worth 28 points, for which there is no room.
    const Floats road = random_road(65537, 0.15, 9);
    EXPECT_EQ(spectrum({1, 1, 1000000000, 0.0F}, 0.15F, road).last, 65536);
}

TEST(PowerSpectralDensity, OfAStepIsTheSameAtAllFrequencies) {
    // Ten points ahead of the stretch, ten in it, the others behind the last element: zeros. The
    // transform does not see that 2^18 differences are one too many: its first bin is the second
    // point of the grid. Ten million points are served.
    Floats step(20, 1.0F);
    std::fill_n(step.begin(), 10, 5.0F);
    for (const auto& [N, first, last] : {std::tuple(262146, 1, 16), std::tuple(10000000, 0, 21)}) {
        const Spectrum flat = spectrum({2, 1, 1, 0.0F}, 0.25F, step, 10, N);
        EXPECT_EQ(std::pair(flat.first, flat.last), std::pair(first, last));
        EXPECT_NEAR(flat.density[12] * static_cast<float>(N - 1), 8.0F, 1e-4F);
    }
}

TEST(PowerSpectralDensity, OfAPointOrLessIsEmpty) {
    for (const std::int32_t size : {INT32_MIN, 0, 1}) {
        const Spectrum point = spectrum({1, 1, 12, 0.0F}, 0.25F, {1.0F}, 0, size);
        EXPECT_EQ(std::pair(point.first, point.last), std::pair(0, -1));
    }
}

TEST(PowerSpectralDensity, WhatCannotBeServedIsToldAndLeavesTheOutputs) {
    const std::string driver = "101 2 psd_drv/psd_dll: ";
    const Floats road(10);
    const std::pair<Spectrum, std::string> cases[] = {
        {spectrum({3, 3, 0, 0}, 0.25F, road), driver + "iPSDType is not well-defined"},
        {spectrum({1, 0, 0, 0}, 0.25F, {}), driver + "iOctaveBands is not well-defined"},
        {spectrum({0, 0, 0, 0}, 0.25F, road, 0, 10000001),
         driver + "profile data exceeds maximum allowed - may change later"},
        {spectrum({1, 1, 0, 0}, 0.25F, road, -1), "100 2 psd_dll: iBeginElemIdx is negative"},
        {spectrum({1, 1, 0, 0}, 0.0F, road),
         "100 2 psd_dll: xStepSize is not a positive finite number"},
    };
    for (const auto& [out, failure] : cases) {
        const Floats unset(out.density.size(), unwritten);
        EXPECT_EQ(std::tie(out.failure, out.frequency, out.density),
                  std::tie(failure, unset, unset));
        EXPECT_EQ(std::pair(out.first, out.last), std::pair(-7, -7));
    }
}

TEST(PowerSpectralDensity, DiagnosticFileHoldsTheCallAndTheTable) {
    EXPECT_EQ(spectrum({2, 2, 6, 0.5F}, 0.25F, Floats(9)).file,
              " PSD Type              : 2\n iOctaveBands          : 2\n"
              " Sample interval(m)    : 0.25\n Num Profile Points    : 9\n"
              " PSD Points            : 2\n BeginElemIdx          : 0\n"
              " EndElemIdx            : 8\n Freq   PSD\n  0.5 0\n  1 0\n");
}

} // namespace vialto::test
