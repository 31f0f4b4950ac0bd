#include "comparison/repeatability.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

#include "numeric/units.hpp"

namespace vialto {

namespace {

constexpr std::int32_t fewest_runs = 3;

using ClassLimits = std::array<float, 3>; // m; of the classes 1, 2 and 3, each included

constexpr ClassLimits precision_limits{0.00038F, 0.00076F, 0.0025F};
constexpr ClassLimits bias_limits{0.00125F, 0.0025F, 0.00625F};

// 0 above the last limit, and for a NaN.
std::int32_t class_of(float value, const ClassLimits& limits) {
    const auto* const limit = std::find_if(limits.begin(), limits.end(),
                                           [value](float highest) { return value <= highest; });
    return limit == limits.end() ? 0 : static_cast<std::int32_t>(limit - limits.begin()) + 1;
}

std::vector<float> means_of_points(std::span<const float> data, std::size_t runs,
                                   std::size_t points) {
    std::vector<float> means(points);
    for (std::size_t r = 0; r < runs; ++r) {
        for (std::size_t j = 0; j < points; ++j) {
            means[j] += data[r * points + j];
        }
    }
    for (float& mean : means) {
        mean /= static_cast<float>(runs);
    }
    return means;
}

// The sample standard deviation between the runs at each point.
std::vector<float> deviations_of_points(std::span<const float> data, std::size_t runs,
                                        std::span<const float> means) {
    std::vector<float> deviations(means.size());
    for (std::size_t r = 0; r < runs; ++r) {
        for (std::size_t j = 0; j < means.size(); ++j) {
            const float difference = data[r * means.size() + j] - means[j];
            deviations[j] += difference * difference;
        }
    }
    for (float& deviation : deviations) {
        deviation = std::sqrt(deviation / static_cast<float>(runs - 1));
    }
    return deviations;
}

} // namespace

ReturnCode pcbia(std::int32_t iNumRuns, std::int32_t iSizeDataArray, std::span<const float> data,
                 std::span<const float> reference, Repeatability& result) {
    result = {};
    if (iNumRuns < fewest_runs) {
        return raise_failure("iNumRuns < 3, stats can be calculated", "pcbia");
    }
    const auto runs = static_cast<std::size_t>(iNumRuns);
    const auto points = static_cast<std::size_t>(iSizeDataArray);
    const std::vector<float> means = means_of_points(data, runs, points);

    float precision = 0.0F;
    for (const float deviation : deviations_of_points(data, runs, means)) {
        precision += deviation;
    }
    precision /= static_cast<float>(points);

    float bias = 0.0F;
    for (std::size_t j = 0; j < points; ++j) {
        bias += std::fabs(means[j] - reference[j]);
    }
    bias /= static_cast<float>(points);

    // The classes are those of the values in metres.
    result = {.xPrecision = mm_per_m * precision,
              .xBias = mm_per_m * bias,
              .iPrecisionClass = class_of(precision, precision_limits),
              .iBiasClass = class_of(bias, bias_limits)};
    return success;
}

} // namespace vialto
