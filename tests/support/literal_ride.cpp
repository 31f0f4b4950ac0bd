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
    const int window = static_cast<int>(0.25F / interval + 0.5F);
    std::vector<float> mean =
        literal_filter(is_iri ? iri_car : rn_car, profile, interval, window, 1.0F).filtered;
    for (float& value : mean) {
        value = is_iri ? std::fabs(value) : value * value;
    }
    const float samples = base_length / interval;
    if (static_cast<int>(samples) > 1) {
        mean = literal_moving_average(mean, static_cast<std::size_t>(samples + 0.5F),
                                      static_cast<std::size_t>(samples * 0.5F + 0.5F), false);
    }
    for (float& value : mean) {
        value = is_iri ? value : std::sqrt(value > 0.0F ? value : 0.0F);
    }
    return mean;
}

std::vector<float> literal_shroud(std::span<const float> x, float dx, float xBackDist,
                                  float xForeDist) {
    std::vector<float> y(x.begin(), x.end());
    for (std::size_t i = 0; i < x.size(); ++i) {
        for (std::size_t j = 0; j < x.size(); ++j) {
            const auto distance = static_cast<float>(j < i ? i - j : j - i);
            const float exponent = -distance * dx / (j < i ? xBackDist : xForeDist);
            const float c = static_cast<float>(std::exp(static_cast<double>(exponent))) * x[j];
            y[i] = j != i && c > y[i] ? c : y[i];
        }
    }
    return y;
}

} // namespace vialto::test
