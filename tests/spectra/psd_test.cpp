#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstddef>
#include <limits>
#include <numbers>
#include <optional>
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
    Floats frequency;
    Floats density;
    std::int32_t first = -7;
    std::int32_t last = -7;
    std::string file;
};

float octaves(std::size_t n) {
    return static_cast<float>(std::log(static_cast<double>(n))) / 0.6931472F;
}

// From element 1 on.
Floats literal_grid(const tPSDCon& settings, float dx, std::size_t N) {
    const std::size_t below = std::size_t{1} << static_cast<int>(octaves(N));
    const float df0 = 1.0F / (dx * static_cast<float>((below >= N ? below : 2 * below) - 1));
    const float fmax = 0.5F / dx;
    Floats f{0.0F};
    if (settings.iOctaveBands == 2) {
        const float df = std::max(settings.xFreqInterval, df0);
        for (int M = std::min(static_cast<int>(fmax / df + 2.0F), 100000); M > 0; --M) {
            f.push_back(f.back() + df);
        }
        return f;
    }
    const int points = settings.iPointsPerOctave < 1 ? 6 : settings.iPointsPerOctave;
    const auto r =
        static_cast<float>(std::exp2(static_cast<double>(1.0F / static_cast<float>(points))));
    f.push_back(df0);
    do {
        f.push_back(std::max(f.back() * r, f.back() + df0));
    } while (f.back() <= fmax);
    return f;
}

// The sum over i of x[i] exp(-2 pi i j / n) for every j; n is a power of 2.
Bins literal_fourier(const Bins& x) {
    if (x.size() == 1) {
        return x;
    }
    Bins parts[2];
    for (std::size_t i = 0; i < x.size(); ++i) {
        parts[i % 2].push_back(x[i]);
    }
    const auto even = literal_fourier(parts[0]);
    const auto odd = literal_fourier(parts[1]);
    Bins bins(x.size());
    for (std::size_t j = 0; j < even.size(); ++j) {
        const double turn = static_cast<double>(j) / static_cast<double>(x.size());
        const auto turned = std::polar(1.0, -2.0 * std::numbers::pi * turn) * odd[j];
        bins[j] = even[j] + turned;
        bins[j + even.size()] = even[j] - turned;
    }
    return bins;
}

// One step after the other, with a Fourier transform in 64-bit.
Spectrum literal_spectrum(const tPSDCon& settings, float dx, const Floats& profile) {
    const Floats f = literal_grid(settings, dx, profile.size());
    const std::size_t n = profile.size() - 1;
    const std::size_t nfft = std::size_t{1} << static_cast<int>(octaves(n) + 0.99999F);
    const float mean = (profile[n] - profile[0]) / static_cast<float>(n);
    Bins y(nfft);
    for (std::size_t i = 0; i < std::min(n, nfft); ++i) {
        y[i] = static_cast<double>(profile[i + 1] - profile[i] - mean);
    }
    y = literal_fourier(y);
    const double squared_scale = 4.0 / (static_cast<double>(nfft) * static_cast<double>(n));

    const float dfft = 1.0F / (dx * static_cast<float>(nfft));
    const auto fc = [&](std::size_t i) {
        return settings.iOctaveBands == 2 ? (f[i] + f[i + 1]) * 0.5F : std::sqrt(f[i] * f[i + 1]);
    };
    std::size_t iFirst = 1;
    std::size_t iLast = f.size() - 3;
    for (std::size_t i = 1; i <= iLast; ++i) {
        if (fc(i) < dfft) {
            iFirst = i + 1;
        }
        if (fc(i) > dfft * static_cast<float>(static_cast<int>(nfft / 2) - 1)) {
            iLast = i - 1;
        }
    }
    Spectrum out;
    out.frequency = out.density = Floats(profile.size(), unwritten);
    out.first = static_cast<int>(iFirst) - 1;
    out.last = static_cast<int>(iLast) - 1;
    const float s = 1.0F / dx;
    float B = 0.0F;
    std::size_t k = 1;
    for (std::size_t i = iFirst; i <= iLast; ++i) {
        const auto kHi = static_cast<std::size_t>(fc(i) / dfft + 1.0F);
        if (kHi >= k + 1) {
            double squares = 0.0;
            for (std::size_t j = k + 1; j <= kHi; ++j) {
                squares += squared_scale * std::norm(y[j - 1]);
            }
            B = static_cast<float>(squares) / (static_cast<float>((kHi - k) * 2) * dfft);
            k = kHi;
        }
        const float sine = std::sin(3.14159265F * dx * f[i]);
        out.frequency[i - 1] = f[i];
        out.density[i - 1] = B * (settings.iPSDType == 2 ? s * s : 0.25F / (sine * sine));
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
    // Transforms of all lengths to 2^15, then N about a power of 2, and one difference more than a
    // power of 2, which the transform's length does not see. The interval has a rounded inverse.
    constexpr float interval = 0.0254F;
    std::vector<std::size_t> counts{3, 4, 500, 1023, 1024, 1026, 262146};
    for (std::size_t nfft = 1; nfft <= 32768; nfft *= 2) {
        counts.push_back(nfft + 1);
    }
    for (const std::size_t count : counts) {
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

TEST(PowerSpectralDensity, GridHasAHundredThousandPointsAtMostAndEndsWithTheArrays) {
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(GETFREQ(GridMode::linear, nan, 0.0F, 0.001F, 10000000).size(), 100000U);
    EXPECT_EQ(GETFREQ(GridMode::octave, 0.0F, 1e9F, 0.001F, 10000000).size(), 100000U);
    // The rounding errors of 65,000 additions are worth 28 points.
    EXPECT_EQ(GETFREQ(GridMode::octave, 0.0F, 1e9F, 0.15F, 65537).size(), 65565U);
    const Floats road = random_road(65537, 0.15, 9);
    EXPECT_EQ(spectrum({1, 1, 1000000000, 0.0F}, 0.15F, road).last, 65536);
}

TEST(PowerSpectralDensity, PointsBehindTheLastElementCountAsZeroAndAreNotRead) {
    const Floats road = random_road(50, 0.25, 9);
    Floats padded(road.begin() + 10, road.end());
    padded.resize(64, 0.0F);
    const tPSDCon settings{1, 1, 12, 0.0F};
    EXPECT_EQ(spectrum(settings, 0.25F, road, 10, 64).density,
              spectrum(settings, 0.25F, padded).density);
    for (const std::int32_t size : {std::numeric_limits<std::int32_t>::min(), 0, 1}) {
        const Spectrum point = spectrum(settings, 0.25F, {1.0F}, 0, size);
        EXPECT_EQ(point.failure, "");
        EXPECT_EQ(std::pair(point.first, point.last), std::pair(0, -1));
    }
    // Ten million points are served: a single step of 1 m is an impulse of slope, the same density
    // at all frequencies.
    const Spectrum step = spectrum({2, 1, 1, 0.0F}, 0.25F, Floats(10, 1.0F), 0, 10000000);
    EXPECT_EQ(step.last, 21);
    EXPECT_NEAR(step.density[16], 2.0 / (0.25 * 9999999.0), 1e-9);
}

TEST(PowerSpectralDensity, WhatCannotBeServedIsToldAndLeavesTheOutputs) {
    const auto expect = [](const Spectrum& out, const std::string& failure) {
        EXPECT_EQ(out.failure, failure);
        EXPECT_EQ(std::pair(out.first, out.last), std::pair(-7, -7));
        EXPECT_EQ(out.density, Floats(out.density.size(), unwritten));
        EXPECT_EQ(out.frequency, out.density);
    };
    const std::string driver = "101 2 psd_drv/psd_dll: ";
    const Floats road(10);
    expect(spectrum({3, 3, 0, 0}, 0.25F, road), driver + "iPSDType is not well-defined");
    expect(spectrum({1, 0, 0, 0}, 0.25F, {}), driver + "iOctaveBands is not well-defined");
    expect(spectrum({0, 0, 0, 0}, 0.25F, road, 0, 10000001),
           driver + "profile data exceeds maximum allowed - may change later");
    expect(spectrum({1, 1, 0, 0}, 0.25F, road, -1), "100 2 psd_dll: iBeginElemIdx is negative");
    expect(spectrum({1, 1, 0, 0}, 0.0F, road),
           "100 2 psd_dll: xStepSize is not a positive finite number");
}

TEST(PowerSpectralDensity, DiagnosticFileHoldsTheCallAndTheTable) {
    EXPECT_EQ(spectrum({2, 2, 6, 0.5F}, 0.25F, Floats(9)).file,
              " PSD Type              : 2\n iOctaveBands          : 2\n"
              " Sample interval(m)    : 0.25\n Num Profile Points    : 9\n"
              " PSD Points            : 2\n BeginElemIdx          : 0\n"
              " EndElemIdx            : 8\n Freq   PSD\n  0.5 0\n  1 0\n");
}

} // namespace vialto::test
