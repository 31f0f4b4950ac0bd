// The quarter car's recursion in 32-bit arithmetic written down literally, matrix by matrix.
#pragma once

#include <span>
#include <vector>

namespace vialto::test {

struct QuarterCar {
    float init_length; // m
    float k1;
    float k2;
    float c;
    float mu;
    float speed; // km/h
};

inline constexpr QuarterCar iri_car{11.0F, 653.0F, 63.3F, 6.0F, 0.15F, 80.0F};
inline constexpr QuarterCar rn_car{19.0F, 5120.0F, 390.0F, 17.0F, 0.036F, 80.46F};

// The filtered slope, zero tail included, and the summary statistic with exponent 1 or 2.
struct LiteralResult {
    std::vector<float> filtered;
    float statistic;
};
[[nodiscard]] LiteralResult literal_filter(const QuarterCar& car, std::span<const float> profile,
                                           float interval, int base, float exponent);

} // namespace vialto::test
