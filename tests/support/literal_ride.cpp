#include "support/literal_ride.hpp"

#include <cmath>
#include <cstddef>

#include "support/literal_filters.hpp"
#include "support/quarter_car_model.hpp"
#include "vialto/vialto.h"

namespace vialto::test {

std::vector<float> literal_continuous(std::int32_t selector, std::span<const float> profile,
                                      float interval, float base_length) {
    const bool is_iri = selector == idx_ridests_IRI;
    const int base = static_cast<int>(0.25F / interval + 0.5F);
    std::vector<float> statistic =
        literal_filter(is_iri ? iri_car : rn_car, profile, interval, base, is_iri ? 1.0F : 2.0F)
            .filtered;
    for (float& value : statistic) {
        value = is_iri ? std::fabs(value) : value * value;
    }
    const float samples = base_length / interval;
    if (static_cast<int>(samples) > 1) {
        statistic = literal_moving_average(statistic, static_cast<std::size_t>(samples + 0.5F),
                                           static_cast<std::size_t>(samples * 0.5F + 0.5F),
                                           /*high_pass=*/false);
    }
    for (float& value : statistic) {
        if (!is_iri) {
            value = value > 0.0F ? std::sqrt(value) : 0.0F;
        }
    }
    return statistic;
}

std::vector<float> literal_shroud(std::span<const float> x, float dx, float xBackDist,
                                  float xForeDist) {
    const auto n = static_cast<std::int32_t>(x.size());
    const auto sample = [&](std::int32_t i) { return x[static_cast<std::size_t>(i)]; };
    std::vector<float> y(x.begin(), x.end());
    for (std::int32_t i = 0; i < n; ++i) {
        float& largest = y[static_cast<std::size_t>(i)];
        for (std::int32_t j = 0; j < n; ++j) {
            const float exponent = j < i ? static_cast<float>(j - i) * dx / xBackDist
                                         : static_cast<float>(i - j) * dx / xForeDist;
            const float c = static_cast<float>(std::exp(static_cast<double>(exponent))) * sample(j);
            if (j != i && c > largest) {
                largest = c;
            }
        }
    }
    return y;
}

} // namespace vialto::test
