// The ride analyses as plain loops, one operation at a time, to hold the library's own versions
// against, bit by bit.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace vialto::test {

// The continuous statistic over a base length [m], of the slope that the literal quarter car (with
// the 250 mm moving average) gives: selector idx_ridests_IRI or idx_ridests_RN.
[[nodiscard]] std::vector<float> literal_continuous(std::int32_t selector,
                                                    std::span<const float> profile, float interval,
                                                    float base_length);

// Every ordered pair of samples, with an exponential for each.
[[nodiscard]] std::vector<float> literal_shroud(std::span<const float> x, float dx, float xBackDist,
                                                float xForeDist);

} // namespace vialto::test
