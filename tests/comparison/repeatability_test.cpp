#include <gtest/gtest.h>

#include <cmath>
#include <tuple>
#include <vector>

#include "comparison/repeatability.hpp"
#include "support/current_event.hpp"
#include "support/host.hpp"

namespace vialto::test {

namespace {

using Road = std::vector<float>;

Repeatability rated(std::int32_t runs, const Road& data, const Road& reference) {
    reset_event();
    Repeatability rating{-1.0F, -1.0F, -1, -1};
    (void)pcbia(runs, static_cast<std::int32_t>(reference.size()), data, reference, rating);
    return rating;
}

} // namespace

TEST(Repeatability, ClassLimitsAreIncludedAndNaNHasNoClass) {
    const auto above = [](float limit) { return std::nextafter(limit, 1.0F); };
    const std::tuple<float, std::int32_t, std::int32_t> cases[] = {
        {0.00038F, 1, 1}, {above(0.00038F), 2, 1}, {0.00076F, 2, 1}, {above(0.00076F), 3, 1},
        {0.00125F, 3, 1}, {above(0.00125F), 3, 2}, {0.0025F, 3, 2},  {above(0.0025F), 0, 3},
        {0.00625F, 0, 3}, {above(0.00625F), 0, 0}, {NAN, 0, 0}};
    for (const auto& [size, precision, bias] : cases) {
        // Of runs that deviate by the size from their mean, which lies as much off.
        const Repeatability rating = rated(3, {size, 0.0F, -size}, {-size});
        EXPECT_EQ(rating.iPrecisionClass, precision) << size;
        EXPECT_EQ(rating.iBiasClass, bias) << size;
    }
}

TEST(Repeatability, PointsAreAveragedAndTwoRunsAreTooFew) {
    // Deviations between the runs 1 and 3, means 2 and -4, references 4 and 4.
    const Repeatability three = rated(3, {1.0F, -1.0F, 2.0F, -4.0F, 3.0F, -7.0F}, {4.0F, 4.0F});
    EXPECT_EQ(three.xPrecision, 2000.0F);
    EXPECT_EQ(three.xBias, 5000.0F);
    const auto [precision, bias, precision_class, bias_class] = rated(2, Road(6), Road(3));
    EXPECT_EQ(summary_of_current_event(), "101 2 pcbia: iNumRuns < 3, stats can be calculated");
    EXPECT_EQ(precision, 0.0F);
    EXPECT_EQ(bias, 0.0F);
    EXPECT_EQ(precision_class, 0);
    EXPECT_EQ(bias_class, 0);
}

TEST(Repeatability, LastPointOfTenRunsIsRated) {
    const TemporaryDirectory directory;
    Road runs(10570), reference(1057);
    runs.back() = 1.057F * std::sqrt(10.0F); // the deviation is 1.057 m there, 0 elsewhere
    reference.back() = 0.1F * runs.back() - 2.114F;
    float precision = 0.0F, bias = 0.0F;
    std::int32_t classes[2] = {-1, -1};
    pcbia_dlldrv(&runs[0], &reference[0], &precision, &bias, &classes[0], &classes[1], nullptr);
    EXPECT_FLOAT_EQ(precision, 1.0F);
    EXPECT_FLOAT_EQ(bias, 2.0F);
    EXPECT_EQ(classes[0], 3);
    EXPECT_EQ(classes[1], 2);
    EXPECT_TRUE(directory.text_of("pcbia_dlldrv.txt").ends_with("iBiasClass      : 2\n"));
}

} // namespace vialto::test
