// The sweep of a profile comparison, offset by offset and sum by sum as it is defined.
#pragma once

#include <vector>

namespace vialto::test {

struct LiteralSweep {
    std::vector<float> final_cc, roughness, shape;
    std::size_t best = 0; // position of the optimum, from 0
};

// Every overlap has at least one sample.
[[nodiscard]] LiteralSweep literal_sweep(const std::vector<float>& reference,
                                         const std::vector<float>& test, std::size_t positions);

} // namespace vialto::test
