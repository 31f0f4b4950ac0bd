#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <complex>
#include <numbers>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "spectra/frequency_grid.hpp"
#include "spectra/psd_drv.hpp"
#include "support/cases.hpp"
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
    std::pair<std::int32_t, std::int32_t> range{-7, -7}; // the first and the last
};

// The sums over i of x[i] exp(-2 pi i j / n) of the n numbers that stand `stride` apart.
Bins literal_fourier(const Bins& x, std::size_t first = 0, std::size_t stride = 1) {
    if (stride == x.size()) {
        return {x[first]};
    }
    const Bins even = literal_fourier(x, first, 2 * stride);
    const Bins odd = literal_fourier(x, first + stride, 2 * stride);
    Bins bins;
    for (std::size_t j = 0; j < 2 * odd.size(); ++j) {
        const double turn = static_cast<double>(j) / static_cast<double>(odd.size());
        bins.push_back(even[j % odd.size()] +
                       std::polar(1.0, -std::numbers::pi * turn) * odd[j % odd.size()]);
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
                             static_cast<float>(settings.iPointsPerOctave), dx, size_of(profile));
    const Floats unset(profile.size(), unwritten);
    Spectrum out{"", unset, unset, {0, -1}};
    float B = 0.0F;
    std::size_t k = 1;
    for (std::size_t i = 0; i + 2 < f.size(); ++i) {
        const float fc = linear ? (f[i] + f[i + 1]) * 0.5F : std::sqrt(f[i] * f[i + 1]);
        out.range.first += fc < dfft ? 1 : 0;
        if (fc > dfft * (static_cast<float>(nfft / 2) - 1.0F)) {
            break;
        }
        out.range.second = static_cast<std::int32_t>(i);
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

// Of the profile from `begin` on.
Spectrum spectrum(const tPSDCon& settings, float interval, const Floats& profile,
                  std::int32_t begin = 0, std::optional<std::int32_t> size = {}) {
    const TemporaryDirectory directory;
    EventRecord event;
    const auto points = size_of(profile);
    const std::int32_t n = size.value_or(points);
    Spectrum out;
    out.frequency = out.density = Floats(static_cast<std::size_t>(std::max(n, 0)), unwritten);
    const auto& [type, bands, octave, spacing] = settings;
    out.failure = event.outcome(psd_dll(
        begin, points - 1, type, bands, octave, spacing, n, interval, profile.data(),
        out.frequency.data(), out.density.data(), &out.range.first, &out.range.second, event));
    return out;
}

} // namespace

TEST(PowerSpectralDensity, AgreesWithItsDefinition) {
    constexpr float interval = 0.0254F; // has a rounded inverse
    for (const std::size_t count :
         {2U,   3U,   4U,    5U,    9U,    17U,   33U,   65U,   129U,   257U,
          500U, 513U, 1024U, 1025U, 1026U, 2049U, 4097U, 8193U, 16385U, 32769U}) {
        const Floats road = random_road(count, 0.25, 5);
        for (const tPSDCon& settings :
             {tPSDCon{1, 1, 0, 0.0F}, tPSDCon{1, 1, 12, 0.0F}, tPSDCon{2, 1, 1, 0.0F},
              tPSDCon{1, 2, 0, 0.0F}, tPSDCon{2, 2, 0, 0.37F}}) {
            const Spectrum expected = literal_spectrum(settings, interval, road);
            const Spectrum out = spectrum(settings, interval, road);
            SCOPED_TRACE(testing::Message()
                         << count << " points, type " << settings.iPSDType << ", octave bands "
                         << settings.iOctaveBands << ", " << settings.iPointsPerOctave
                         << " points per octave, spacing " << settings.xFreqInterval);
            ASSERT_EQ(out.failure, "");
            ASSERT_EQ(out.range, expected.range);
            ASSERT_TRUE(same(out.frequency, expected.frequency));
            const float most = *std::max_element(expected.density.begin(), expected.density.end());
            for (std::size_t i = 0; i < count; ++i) {
                const float value = expected.density[i];
                ASSERT_NEAR(out.density[i], value, 1e-4F * std::fabs(value) + 1e-7F * most) << i;
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
    EXPECT_EQ(spectrum({1, 1, 1000000000, 0.0F}, 0.15F, road).range.second, 65536);
}

TEST(PowerSpectralDensity, OfAStepIsTheSameAtAllFrequencies) {
    // Ten points ahead of the stretch, ten in it, the others behind the last element: zeros. The
    // transform does not see that 2^18 differences are one too many: its first bin is the second
    // point of the grid. Ten million points are served.
    Floats step(20, 1.0F);
    std::fill_n(step.begin(), 10, 5.0F);
    for (const auto& [N, range] :
         {std::pair(262146, std::pair(1, 16)), std::pair(10000000, std::pair(0, 21))}) {
        const Spectrum flat = spectrum({2, 1, 1, 0.0F}, 0.25F, step, 10, N);
        EXPECT_EQ(flat.range, range);
        EXPECT_NEAR(flat.density[12] * static_cast<float>(N - 1), 8.0F, 1e-4F);
    }
}

TEST(PowerSpectralDensity, OfAPointOrLessIsEmptyAndWhatCannotBeServedLeavesTheOutputs) {
    const auto leaves = [](const Spectrum& out, const std::string& failure) {
        EXPECT_EQ(out.failure, failure);
        EXPECT_TRUE(same(out.frequency, Floats(out.frequency.size(), unwritten))) << failure;
        EXPECT_TRUE(same(out.density, Floats(out.density.size(), unwritten))) << failure;
        EXPECT_EQ(out.range, failure.empty() ? std::pair(0, -1) : std::pair(-7, -7));
    };
    const std::string driver = "101 2 psd_drv/psd_dll: ";
    const Floats road(10);
    leaves(spectrum({1, 1, 0, 0}, 0.25F, {}, 0, INT32_MIN), "");
    leaves(spectrum({1, 1, 12, 0}, 0.25F, {1}), "");
    leaves(spectrum({3, 3, 0, 0}, 0.25F, road), driver + "iPSDType is not well-defined");
    leaves(spectrum({1, 0, 0, 0}, 0.25F, {}), driver + "iOctaveBands is not well-defined");
    leaves(spectrum({0, 0, 0, 0}, 0.25F, road, 0, 10000001),
           driver + "profile data exceeds maximum allowed - may change later");
    leaves(spectrum({1, 1, 0, 0}, 0.25F, road, -1), "100 2 psd_dll: iBeginElemIdx is negative");
}

} // namespace vialto::test
