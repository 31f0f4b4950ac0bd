#include "statistics/histgrm_drv.hpp"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "numeric/frequency_table.hpp"
#include "numeric/units.hpp"

namespace vialto {

namespace {

float percentage(std::int32_t count, std::size_t total) {
    return static_cast<float>(count) / static_cast<float>(total) * percent;
}

// The K - 1 boundaries between K classes. Each inner one is the sum of the one before it and the
// step; the last is xHigh, also where it is the only one, and even below the one before it.
std::vector<float> class_boundaries(const HistogramClasses& classes) {
    std::vector<float> boundaries(static_cast<std::size_t>(std::max(classes.iNumClasses, 1)) - 1);
    if (boundaries.empty()) {
        return boundaries;
    }
    boundaries.front() = classes.xLow;
    for (std::size_t i = 1; i + 1 < boundaries.size(); ++i) {
        boundaries[i] = boundaries[i - 1] + classes.xStep;
    }
    boundaries.back() = classes.xHigh;
    return boundaries;
}

ReturnCode imsl_owfrq(std::span<const float> values, std::span<const float> boundaries,
                      std::span<float> xHistogram) {
    std::vector<std::int32_t> counts(xHistogram.size());
    const std::int32_t code = frequency_table(values, boundaries, counts);
    for (std::size_t k = 0; k < counts.size(); ++k) {
        xHistogram[k] = percentage(counts[k], values.size());
    }
    if (code != table_made) {
        // The words name another routine than the one that failed: deliberate.
        return raise_failure("error calling imsl drcurv", "imsl_owfrq");
    }
    return success;
}

} // namespace

ReturnCode histgrm_drv(const HistogramClasses& classes, float xThreshold,
                       std::span<const float> values, std::span<float> xHistogram,
                       float& xAboveThreshold) {
    if (imsl_owfrq(values, class_boundaries(classes), xHistogram) != success) {
        return pass_failure("histgrm_drv");
    }
    xAboveThreshold = percentage(count_above(values, xThreshold), values.size());
    return success;
}

} // namespace vialto
