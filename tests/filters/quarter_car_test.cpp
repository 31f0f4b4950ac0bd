#include "filters/quarter_car.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <complex>
#include <numbers>

#include "filters/filter_run.hpp"
#include "support/quarter_car_model.hpp"
#include "support/roads.hpp"

namespace vialto::test {

namespace {

// The cars at the speeds that a Filter asks for: that of the index is its own.
constexpr QuarterCar rn_car_at_70{19.0, 5120.0, 390.0, 17.0, 0.036, 70.0};
constexpr std::pair<std::int32_t, QuarterCar> cars[] = {{idx_filttyp_IRI, iri_car},
                                                        {idx_filttyp_RN, rn_car_at_70}};

FilterRun filter(const Road& profile, std::int32_t type, float step = 0.025F,
                 std::int32_t if250mmFilter = vialto_yes,
                 std::int32_t out_type = idx_filtouttyp_slope) {
    return {profile, {type, 0, 0.0F, 0.0F, out_type, if250mmFilter, step}};
}

} // namespace

TEST(QuarterCar, SameBitsAsTheRecursionWrittenDownLiterally) {
    // 300 samples may end within the initialization length.
    const std::tuple<std::size_t, float, int, std::int32_t> cases[] = {
        {3000, 0.025F, 10, vialto_yes}, {300, 0.05F, 5, vialto_yes}, {3000, 0.1F, 3, vialto_yes},
        {300, 0.25F, 1, vialto_yes},    {300, 0.6F, 1, vialto_yes},  {3000, 0.1524F, 2, vialto_yes},
        {3000, 0.025F, 1, vialto_no}};
    for (const auto& [count, step, base, if250mmFilter] : cases) {
        const auto profile = random_road(count, static_cast<double>(step), 7);
        for (const auto& [type, car] : cars) {
            const auto [filtered, statistic] =
                literal_filter(car, profile, step, base, type == idx_filttyp_IRI ? 1.0F : 2.0F);
            const FilterRun run = filter(profile, type, step, if250mmFilter);
            EXPECT_EQ(run.y, filtered) << step << " " << type;
            EXPECT_EQ(run.statistic, statistic) << step << " " << type;
            EXPECT_EQ(run.range(), "0 to " + std::to_string(static_cast<int>(count) - base - 1));
        }
    }
}

// Masses, springs and damper in the frequency domain, behind the moving average of 10 samples and
// a slope that holds for one.
TEST(QuarterCar, SinusoidComesOutWithTheAnalyticGain) {
    for (const double wavelength : {2.0, 5.0, 16.0, 40.0}) {
        const auto profile =
            sinusoid(24000, 0.025, wavelength, wavelength / 2.0 / std::numbers::pi);
        const double w = std::numbers::pi / wavelength; // half the phase of a metre
        const double average = std::sin(w * 0.25) / (w * 0.25) * std::sin(w * 0.025) / (w * 0.025);
        for (const auto& [type, car] : cars) {
            const std::complex<double> s(0.0, 2.0 * w * car.speed / 3.6);
            const auto link = car.k2 + car.c * s;
            const auto sprung = link / (s * s + link);
            const auto unsprung = car.k1 / (car.mu * s * s + car.k1 + link * (1.0 - sprung));
            const auto y = filter(profile, type).y;
            const auto amplitude =
                static_cast<double>(*std::max_element(y.begin() + 12000, y.end()));
            EXPECT_NEAR(amplitude / std::abs(unsprung * (1.0 - sprung)) / average, 1.0, 0.003);
        }
    }
}

TEST(QuarterCar, ElevationIsTheIntegralWhoseFirstSlopeEntersWithoutTheStep) {
    const auto profile = random_road(500, 0.025, 9);
    Road expected = filter(profile, idx_filttyp_IRI).y;
    for (std::size_t i = 1; i < expected.size(); ++i) {
        expected[i] = expected[i - 1] + 0.025F * expected[i];
    }
    expected[0] = 0.0F;
    EXPECT_EQ(filter(profile, idx_filttyp_IRI, 0.025F, vialto_yes, idx_filtouttyp_elevation).y,
              expected);
}

TEST(QuarterCar, StatisticOfNoSampleIsNotANumber) {
    EXPECT_TRUE(std::isnan(filter(Road(10, 1.0F), idx_filttyp_IRI).statistic));
    EXPECT_EQ(filter(Road(11, 1.0F), idx_filttyp_IRI).statistic, 0.0F);
}

TEST(QuarterCar, GuardsBehindTheDispatch) {
    const Road profile{1.0F, 2.0F, 3.0F};
    Road y(3);
    float statistic = 0.0F;
    tFiltCon settings{};
    tQcarParams parameters = iri_parameters();
    const auto filter_event = [&] {
        (void)qcar_filter(profile, 0.025F, 0.25F, 1.0F, parameters, y, statistic,
                          settings.iBeginElemIdx, settings.iEndElemIdx);
        EXPECT_EQ(y, profile);
        return summary_of_current_event();
    };
    parameters.xMu = 0.0F; // makes the system matrix infinite
    EXPECT_EQ(filter_event(), "101 3 setstm/setstm/qcar_filter: the combination of cutoff "
                              "wavelengths causes ill-conditioned matrix");
    parameters.xInitLength = 1e-8F;
    EXPECT_EQ(filter_event(),
              "101 2 qcar_filter: initialization length for IRI/PTRN should not be zero");
    (void)qcarfilt_drv(profile, 0.025F, settings, y, statistic);
    EXPECT_EQ(summary_of_current_event(),
              "101 2 qcarfilt_drv: tFiltCon%iMainFilterType is not either IRI nor RN");
}

} // namespace vialto::test
