#include "support/literal_profilograph.hpp"

#include <cmath>

namespace vialto::test {

std::vector<float> literal_trace(float interval, std::span<const float> offsets,
                                 std::span<const float> profile) {
    const float* y = profile.data();
    const int nsamp = static_cast<int>(profile.size());
    const auto pairs = static_cast<float>(offsets.size());
    std::vector<float> trace;
    for (int j = 0; j < nsamp; ++j) {
        float s = 0.0F;
        bool on_stretch = true;
        for (const float offset : offsets) {
            const float q = offset / interval;
            const bool on_sample = std::fabs(q - std::round(q)) <= 1e-5F;
            const int k = static_cast<int>(on_sample ? std::round(q) : std::trunc(q) + 1.0F);
            const float f = on_sample ? 1.0F : q - std::trunc(q);
            const int inner = on_sample ? k : k - 1;
            on_stretch = on_stretch && j >= k && j + k < nsamp;
            if (on_stretch) {
                s += f * y[j - k] + (1.0F - f) * y[j - inner];
                s += f * y[j + k] + (1.0F - f) * y[j + inner];
            }
        }
        trace.push_back(on_stretch ? y[j] - s * (1.0F / (pairs + pairs)) : y[j]);
    }
    return trace;
}

} // namespace vialto::test
