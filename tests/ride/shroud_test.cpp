#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <random>
#include <span>
#include <utility>
#include <vector>

#include "ride/shroud.hpp"
#include "support/literal_ride.hpp"

namespace vialto::test {
namespace {

constexpr float interval = 0.025F; // m

TEST(Shroud, HasTheBitsOfVisitingEveryPair) {
    // A road whose samples fall to 1/e over a number of samples, but for the last digits.
    const auto fading = [](double samples, double first, int end) {
        return [=](int i, double r) {
            return i < end ? first * (1.0 + 3e-7 * r) * std::exp(-i / samples) : 0.0;
        };
    };
    const std::pair<float, std::function<double(int i, double random)>> roads[] = {
        {interval, [](int, double r) { return 0.01 * r; }},
        {interval, [](int i, double r) { return i % 397 == 5 ? r : 1e-3 * r; }},
        // Every pair a near-tie, then slightly slower and faster than the shadow dies.
        {interval, fading(609.6, 1.0, 1100)},
        {interval, fading(612.0, 1.0, 1100)},
        {interval, fading(607.0, 1.0, 1100)},
        {interval, fading(609.6, 1.0, 400)},
        {interval, fading(-60.96, 1.0, 1100)},
        {interval, fading(609.6, 1e-38, 1100)},
        {2.0F, [](int, double r) { return std::exp(190.0 * r - 102.0); }},
        {1.0F, [](int i, double) { return i % 700 == 0 ? 3e38 : 0.0; }},
        {1e-45F, [](int i, double r) { return r - 1e-4 * i; }},
        {1.0F, [](int i, double) { return i < 400 ? HUGE_VAL : 0.0; }},
        {interval, [](int i, double r) { return i % 5 == 0 ? std::nan("") : r; }},
    };
    for (const auto& [dx, value] : roads) {
        for (const int count : {0, 1, 2, 64, 65, 1100}) {
            std::mt19937 generator(5);
            std::vector<float> x;
            for (int i = 0; i < count; ++i) {
                const double random = static_cast<double>(generator()) / 4294967296.0;
                x.push_back(std::fabs(static_cast<float>(value(i, random))));
            }
            std::vector<float> y(x.size());
            shroud(x, dx, y, 15.24F, 1.524F);
            const std::vector<float> expected = literal_shroud(x, dx, 15.24F, 1.524F);
            EXPECT_TRUE(std::ranges::equal(std::as_bytes(std::span(y)),
                                           std::as_bytes(std::span(expected))));
        }
    }
}

} // namespace
} // namespace vialto::test
