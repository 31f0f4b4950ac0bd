// The quarter car's recursion in 32-bit arithmetic written down literally, matrix by matrix.
#pragma once

#include <span>
#include <vector>

namespace vialto::test {

struct QuarterCar {
    double init_length; // m
    double k1;
    double k2;
    double c;
    double mu;
    double speed; // km/h
};

inline constexpr QuarterCar iri_car{11.0, 653.0, 63.3, 6.0, 0.15, 80.0};
inline constexpr QuarterCar rn_car{19.0, 5120.0, 390.0, 17.0, 0.036, 80.46};

// The filtered slope in float32, zero tail included, and the summary statistic, with exponent 1
// or 2.
struct LiteralResult {
    std::vector<float> filtered;
    float statistic;
};
[[nodiscard]] LiteralResult literal_filter(const QuarterCar& car, std::span<const float> profile,
                                           float interval, int base, float exponent);

} // namespace vialto::test
