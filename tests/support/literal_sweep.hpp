// The sweep of a profile comparison, each overlap normalised and correlated anew.
#pragma once

#include <algorithm>
#include <vector>

#include "comparison/norm_cal.hpp"
#include "comparison/overlap.hpp"

namespace vialto::test {

struct LiteralSweep {
    std::vector<float> final_cc, roughness, shape;
    std::size_t best = 0; // position of the optimum, from 0
};

// Every overlap has at least one sample, and the first has a coefficient.
inline LiteralSweep literal_sweep(const std::vector<float>& reference,
                                  const std::vector<float>& test, std::size_t positions) {
    LiteralSweep sweep;
    for (std::size_t k = 0, half = positions / 2; k < positions; ++k) {
        std::vector<float> x(&reference[std::max(k, half) - half], &reference.back() + 1);
        std::vector<float> y(&test[half - std::min(k, half)], &test.back() + 1);
        x.resize(std::min(x.size(), y.size()));
        y.resize(x.size());
        float rms_x = 0.0F, rms_y = 0.0F, coefficient = 0.0F;
        (void)norm_cal(0, x, rms_x);
        (void)norm_cal(0, y, rms_y);
        (void)sngl_croxcorr(x, y, coefficient);
        sweep.roughness.push_back(coefficient);
        sweep.shape.push_back(std::min(rms_x, rms_y) / std::max(rms_x, rms_y));
        sweep.final_cc.push_back(coefficient * sweep.shape[k]);
        sweep.best = sweep.final_cc[k] > sweep.final_cc[sweep.best] ? k : sweep.best;
    }
    return sweep;
}

} // namespace vialto::test
