#include "support/literal_profilograph.hpp"

#include <cmath>

namespace vialto::test {

std::vector<float> literal_trace(float interval, std::span<const float> offsets,
                                 std::span<const float> profile) {
    const int nsamp = static_cast<int>(profile.size());
    const auto y = [&](int i) { return profile[static_cast<std::size_t>(i - 1)]; };
    const auto pairs = static_cast<float>(offsets.size());
    std::vector<float> trace;
    for (int j = 1; j <= nsamp; ++j) {
        float s = 0.0F;
        bool on_stretch = true;
        for (const float offset : offsets) {
            const float q = offset / interval;
            const bool on_sample = std::fabs(q - std::round(q)) <= 1e-5F;
            const int k = static_cast<int>(on_sample ? std::round(q) : std::trunc(q) + 1.0F);
            const float f = q - std::trunc(q);
            const auto wheel = [&](int outer, int inner) {
                return on_sample ? y(outer) : f * y(outer) + (1.0F - f) * y(inner);
            };
            on_stretch = on_stretch && j - k >= 1 && j + k <= nsamp;
            if (on_stretch) {
                s += wheel(j - k, j - k + 1);
                s += wheel(j + k, j + k - 1);
            }
        }
        trace.push_back(on_stretch ? y(j) - s * (1.0F / (pairs + pairs)) : y(j));
    }
    return trace;
}

} // namespace vialto::test
