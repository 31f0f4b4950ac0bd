#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <random>
#include <utility>
#include <vector>

#include "ride/shroud.hpp"
#include "support/cases.hpp"

namespace vialto::test {
namespace {

using Floats = std::vector<float>;

// Every ordered pair of samples, with an exponential for each.
Floats literal_shroud(const Floats& x, float dx, float xBackDist, float xForeDist) {
    Floats y = x;
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

TEST(Shroud, HasTheBitsOfVisitingEveryPair) {
    // A road whose samples fall to 1/e over a number of samples, but for the last digits.
    const auto fading = [](double samples, double first) {
        return [=](int i, double r) { return first * (1.0 + 3e-7 * r) * std::exp(-i / samples); };
    };
    const std::pair<float, std::function<double(int i, double random)>> roads[] = {
        {0.025F, [](int, double r) { return 0.01 * r; }},
        // Every pair a near-tie, then slightly slower than the shadow dies.
        {0.025F, fading(609.6, 1.0)},
        {0.025F, fading(612.0, 1.0)},
        {0.025F, fading(-60.96, 1.0)},
        {0.025F, fading(609.6, 1e-38)},
        {2.0F, [](int, double r) { return std::exp(190.0 * r - 102.0); }},
        {1e-45F, [](int i, double r) { return r - 1e-4 * i; }},
        {1.0F, [](int i, double) { return i < 400 ? HUGE_VAL : 0.0; }},
    };
    for (const auto& [dx, value] : roads) {
        for (const int count : {0, 1, 64, 65, 1100}) {
            std::mt19937 generator(5);
            Floats x;
            for (int i = 0; i < count; ++i) {
                const double random = static_cast<double>(generator()) / 4294967296.0;
                x.push_back(std::fabs(static_cast<float>(value(i, random))));
            }
            Floats y(x.size());
            shroud(x, dx, y, 15.24F, 1.524F);
            EXPECT_TRUE(same(y, literal_shroud(x, dx, 15.24F, 1.524F)))
                << count << " samples, " << dx << " m apart, from " << value(0, 1.0);
        }
    }
}

} // namespace
} // namespace vialto::test
