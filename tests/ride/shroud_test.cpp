#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstddef>
#include <functional>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "ride/shroud.hpp"
#include "support/literal_ride.hpp"

namespace vialto::test {
namespace {

constexpr float back = 15.24F; // m
constexpr float fore = 1.524F; // m
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

std::vector<std::uint32_t> bits(const std::vector<float>& values) {
    std::vector<std::uint32_t> words;
    for (const float value : values) {
        words.push_back(std::bit_cast<std::uint32_t>(value));
    }
    return words;
}

// A road whose samples fall to 1/e over a number of samples.
auto fading(double samples, double first = 1.0) {
    return [=](int i, double) { return first * std::exp(-i / samples); };
}

TEST(Shroud, HasTheBitsOfVisitingEveryPair) {
    struct Case {
        std::string road;
        float dx;
        std::function<double(int i, double random)> value;
    };
    const Case cases[] = {
        {"noise", 0.025F, [](int, double r) { return 0.01 * r; }},
        {"rare peaks", 0.025F, [](int i, double r) { return i % 397 == 5 ? r : 1e-3 * r; }},
        {"one peak", 0.025F, [](int i, double) { return i == 600 ? 0.5 : 0.0; }},
        {"plateaus", 0.025F, [](int i, double) { return 0.01 * (i / 100 % 7); }},
        {"zeros", 0.025F, [](int, double) { return 0.0; }},
        // Every pair a near-tie, then slightly slower and faster than the shadow dies.
        {"as the shadow", 0.025F, fading(609.6)},
        {"slower", 0.025F, fading(612.0)},
        {"faster", 0.025F, fading(607.0)},
        {"as the shadow behind", 0.025F, fading(-60.96)},
        {"as the shadow, subnormal", 0.025F, fading(609.6, 1e-38)},
        {"subnormal", 0.025F, [](int, double r) { return 1e-43 * r; }},
        {"all magnitudes", 2.0F, [](int, double r) { return std::exp(190.0 * r - 102.0); }},
        {"peaks beyond reach", 1.0F, [](int i, double) { return i % 700 == 0 ? 3e38 : 0.0; }},
        {"tiny step", 1e-45F, [](int i, double r) { return r - 1e-4 * i; }},
        {"huge step", 1e38F, [](int, double r) { return r; }},
        {"infinities", 1.0F, [](int i, double r) { return i % 301 == 7 ? infinity : r; }},
        {"infinite half", 1.0F, [](int i, double) { return i < 400 ? infinity : 0.0; }},
        {"not a number", 0.025F, [](int i, double r) { return i % 5 == 0 ? nan : r; }},
    };
    for (const Case& c : cases) {
        for (const std::size_t count : {0U, 1U, 2U, 64U, 65U, 1100U}) {
            std::mt19937 generator(5);
            std::vector<float> x(count);
            for (std::size_t i = 0; i < count; ++i) {
                const double random = static_cast<double>(generator()) / 4294967296.0;
                x[i] = std::fabs(static_cast<float>(c.value(static_cast<int>(i), random)));
            }
            std::vector<float> y(count);
            shroud(x, c.dx, y, back, fore);
            EXPECT_EQ(bits(y), bits(literal_shroud(x, c.dx, back, fore)))
                << c.road << ", " << count << " samples";
        }
    }
}

} // namespace
} // namespace vialto::test
