#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "spectra/frequency_grid.hpp"
#include "spectra/psd_drv.hpp"
#include "support/host.hpp"
#include "support/literal_spectrum.hpp"
#include "support/roads.hpp"
#include "vialto/vialto.h"

namespace vialto::test {

namespace {

constexpr float unwritten = -7.0F;
constexpr float infinite = std::numeric_limits<float>::infinity();
constexpr float not_a_number = std::numeric_limits<float>::quiet_NaN();

struct Call {
    tPSDCon settings;
    float interval;
    std::int32_t begin;
    std::int32_t end;
    std::int32_t size;
};

struct Spectrum {
    Spectrum(const Call& call, const std::vector<float>& profile)
        : frequency(static_cast<std::size_t>(std::max(call.size, 0)), unwritten),
          density(frequency) {
        EventRecord event;
        const auto result = psd_dll(
            call.begin, call.end, call.settings.iPSDType, call.settings.iOctaveBands,
            call.settings.iPointsPerOctave, call.settings.xFreqInterval, call.size, call.interval,
            profile.data(), frequency.data(), density.data(), &first, &last, event);
        EXPECT_EQ(result, event.untouched() ? vialto_success : vialto_failure);
        failure = event.untouched() ? "" : event.summary();
    }
    Spectrum(const tPSDCon& settings, float interval, const std::vector<float>& profile)
        : Spectrum({settings, interval, 0, static_cast<std::int32_t>(profile.size()) - 1,
                    static_cast<std::int32_t>(profile.size())},
                   profile) {}

    TemporaryDirectory directory;
    std::vector<float> frequency;
    std::vector<float> density;
    std::int32_t first = -7;
    std::int32_t last = -7;
    std::string failure;
};

} // namespace

TEST(PowerSpectralDensity, SinusoidThatFitsFillsItsBandAlone) {
    // 1024 differences, bins 1/256 cycles/m apart and bands of four bins. Bin 20 lies in the middle
    // of band 5, which holds the bins 19 to 22.
    const std::vector<float> road = sinusoid(1025, 0.25, 256.0 / 20.0, 0.01);
    const double elevation = 0.01 * 0.01 / 2.0 * 64.0;
    const double chord = 2.0 * std::sin(std::acos(-1.0) * 20.0 / 1024.0) / 0.25;
    for (const auto& [type, expected] :
         {std::pair{1, elevation}, std::pair{2, elevation * chord * chord}}) {
        Spectrum out({type, 2, 0, 4.0F / 256.0F}, 0.25F, road);
        EXPECT_EQ(out.failure, "");
        EXPECT_EQ(out.frequency[4], 20.0F / 256.0F);
        EXPECT_NEAR(out.density[4], expected, expected * 1e-5);
        out.density[4] = 0.0F;
        EXPECT_LT(*std::max_element(out.density.begin(), out.density.end()), 1e-6 * expected);
    }
}

TEST(PowerSpectralDensity, AgreesWithItsDefinition) {
    // 1024 and 1025 are powers of 2 as N and as N - 1. 262146 points have one difference more than
    // a power of 2, which the transform's length does not see. The interval has a rounded inverse.
    constexpr float interval = 0.0254F;
    for (const std::size_t count : {2U, 3U, 4U, 5U, 500U, 1023U, 1024U, 1025U, 1026U, 262146U}) {
        const std::vector<float> road = random_road(count, 0.25, 5);
        for (const tPSDCon& settings :
             {tPSDCon{1, 1, 0, 0.0F}, tPSDCon{1, 1, 12, 0.0F}, tPSDCon{2, 1, 1, 0.0F},
              tPSDCon{1, 2, 0, 0.0F}, tPSDCon{2, 2, 0, 0.37F}}) {
            const LiteralSpectrum expected = literal_spectrum(settings, interval, road);
            const Spectrum out(settings, interval, road);
            ASSERT_EQ(out.first, expected.iFirst - 1) << count;
            ASSERT_EQ(out.last, expected.iLast - 1) << count;
            const float most = *std::max_element(expected.density.begin(), expected.density.end());
            for (std::int32_t i = 0; i < static_cast<std::int32_t>(count); ++i) {
                const auto at = static_cast<std::size_t>(i);
                const bool valid = out.first <= i && i <= out.last;
                const float value = valid ? expected.density[at + 1] : unwritten;
                ASSERT_EQ(out.frequency[at], valid ? expected.frequency[at + 1] : unwritten);
                ASSERT_NEAR(out.density[at], value, valid ? 1e-4F * value + 1e-7F * most : 0.0F);
            }
        }
    }
}

TEST(PowerSpectralDensity, GridHasAHundredThousandPointsAtMostAndEndsWithTheArrays) {
    EXPECT_EQ(GETFREQ(GridMode::linear, not_a_number, 0.0F, 0.001F, 10000000).size(), 100000U);
    EXPECT_EQ(GETFREQ(GridMode::octave, 0.0F, 1e9F, 0.001F, 10000000).size(), 100000U);
    // The rounding errors of 65,000 additions are worth 28 points.
    EXPECT_EQ(GETFREQ(GridMode::octave, 0.0F, 1e9F, 0.15F, 65537).size(), 65565U);
    EXPECT_EQ(Spectrum({1, 1, 1000000000, 0.0F}, 0.15F, random_road(65537, 0.15, 9)).last, 65536);
}

TEST(PowerSpectralDensity, PointsBehindTheLastElementCountAsZeroAndAreNotRead) {
    constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();
    const std::vector<float> road = random_road(50, 0.25, 9);
    std::vector<float> padded(road.begin() + 10, road.end());
    padded.resize(64, 0.0F);
    const tPSDCon settings{1, 1, 12, 0.0F};
    const Spectrum expected(settings, 0.25F, padded);
    const Spectrum out({settings, 0.25F, 10, 49, 64}, road);
    EXPECT_EQ(out.density, expected.density);
    EXPECT_EQ(out.last, expected.last);
    const Spectrum none({settings, 0.25F, most, -most - 1, 64}, {});
    EXPECT_EQ(none.last, expected.last);
    EXPECT_EQ(none.density[static_cast<std::size_t>(none.last)], 0.0F);
    for (const std::int32_t size : {-most - 1, -1, 0, 1}) {
        const Spectrum point({settings, 0.25F, 0, 0, size}, {1.0F});
        EXPECT_EQ(point.failure, "");
        EXPECT_EQ(point.first, 0);
        EXPECT_EQ(point.last, -1);
    }
}

TEST(PowerSpectralDensity, ExtremeIntervalsStayInsideTheArrays) {
    const std::vector<float> road = random_road(100, 0.25, 9);
    for (const float interval : {1e-45F, 3e-39F, 1e-20F, 1e22F, 3e38F}) {
        for (const float spacing : {0.0F, -1.0F, 1e-45F, 1e30F, infinite, not_a_number}) {
            for (const std::int32_t size : {2, 3, 100}) {
                for (const std::int32_t mode : {1, 2}) {
                    const Spectrum out({{1, mode, 1 << 30, spacing}, interval, 0, 99, size}, road);
                    EXPECT_EQ(out.failure, "");
                    EXPECT_LT(out.last, size);
                }
            }
        }
    }
}

TEST(PowerSpectralDensity, WhatCannotBeServedIsToldAndLeavesTheOutputs) {
    const std::string driver = "101 2 psd_drv/psd_dll: ";
    const std::vector<std::pair<Call, std::string>> cases{
        {{{3, 3, 0, 0.0F}, 0.25F, 0, 9, 10}, driver + "iPSDType is not well-defined"},
        {{{1, 0, 0, 0.0F}, 0.25F, 0, -1, 0}, driver + "iOctaveBands is not well-defined"},
        {{{0, 0, 0, 0.0F}, 0.25F, 0, 9, 10000001},
         driver + "profile data exceeds maximum allowed - may change later"},
        {{{1, 1, 0, 0.0F}, 0.25F, -1, 9, 10}, "100 2 psd_dll: iBeginElemIdx is negative"},
        {{{1, 1, 0, 0.0F}, 0.0F, 0, 9, 10},
         "100 2 psd_dll: xStepSize is not a positive finite number"}};
    for (const auto& [call, failure] : cases) {
        const Spectrum out(call, std::vector<float>(10));
        EXPECT_EQ(out.failure, failure);
        EXPECT_EQ(out.first + out.last, -14);
        EXPECT_EQ(std::count(out.density.begin(), out.density.end(), unwritten), call.size);
        EXPECT_EQ(out.frequency, out.density);
    }
}

TEST(PowerSpectralDensity, TenMillionPointsAreServed) {
    // A single step of 1 m is an impulse of slope: the same density at all frequencies.
    const Spectrum out({{2, 1, 1, 0.0F}, 0.25F, 0, 9, 10000000}, std::vector<float>(10, 1.0F));
    EXPECT_EQ(out.last, 21);
    EXPECT_NEAR(out.density[16], 2.0 / (0.25 * 9999999.0), 1e-9);
}

TEST(PowerSpectralDensity, DiagnosticFileHoldsTheCallAndTheTable) {
    const Spectrum out({2, 2, 6, 0.5F}, 0.25F, std::vector<float>(9));
    EXPECT_EQ(out.directory.text_of("psd_dll.txt"),
              " PSD Type              : 2\n iOctaveBands          : 2\n"
              " Sample interval(m)    : 0.25\n Num Profile Points    : 9\n"
              " PSD Points            : 2\n BeginElemIdx          : 0\n"
              " EndElemIdx            : 8\n Freq   PSD\n  0.5 0\n  1 0\n");
}

} // namespace vialto::test
