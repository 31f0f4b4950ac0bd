#include "support/literal_filters.hpp"

namespace vialto::test {

namespace {

// Element i of an array whose elements count from 1.
template <class Element>
Element& at(std::vector<Element>& array, std::size_t i) {
    return array[i - 1];
}

float literal_line_slope(std::vector<float>& p, std::size_t first, std::size_t count) {
    if (count < 2) {
        return 0.0F;
    }
    double s1 = 0.0;
    double s2 = 0.0;
    double sy = 0.0;
    double siy = 0.0;
    for (std::size_t i = 1; i <= count; ++i) {
        const auto x = static_cast<double>(i);
        const auto y = static_cast<double>(at(p, first + i - 1));
        s1 += x;
        s2 += x * x;
        sy += y;
        siy += x * y;
    }
    const auto n = static_cast<double>(count);
    return static_cast<float>((n * siy - sy * s1) / (n * s2 - s1 * s1));
}

} // namespace

std::vector<float> literal_moving_average(std::span<const float> profile, std::size_t base,
                                          std::size_t half, bool high_pass) {
    const std::size_t n = profile.size();
    std::vector<float> p(n + 2 * half);
    for (std::size_t i = 1; i <= n; ++i) {
        at(p, half + i) = profile[i - 1];
    }
    const float a = literal_line_slope(p, half + 1, half);
    const float b = literal_line_slope(p, n + 1, half);
    for (std::size_t k = 1; k <= half; ++k) {
        at(p, k) = at(p, half + 1) - static_cast<float>(half - k + 1) * a;
        at(p, half + n + k) = at(p, half + n) + static_cast<float>(k) * b;
    }
    const auto length = static_cast<float>(base);
    float mean = 0.0F;
    for (std::size_t i = 1; i <= base; ++i) {
        mean = mean + at(p, i);
    }
    mean = mean / length;
    std::vector<float> filtered(n);
    for (std::size_t i = 1; i <= n; ++i) {
        if (i > 1) {
            mean = mean + (at(p, i - 1 + base) - at(p, i - 1)) / length;
        }
        at(filtered, i) = high_pass ? at(p, half + i) - mean : mean;
    }
    return filtered;
}

std::vector<float> literal_anti_smoothing(std::span<const float> profile, std::size_t length,
                                          std::size_t shift) {
    std::vector<float> p(profile.begin(), profile.end());
    std::vector<float> y(p.size() - length);
    for (std::size_t i = 2; i <= length + 1; ++i) {
        at(y, 1) = at(y, 1) + at(p, i);
    }
    for (std::size_t i = 1; i < y.size(); ++i) {
        at(y, i + 1) = at(y, i) + at(p, i + length + 1) - at(p, i + 1);
    }
    for (std::size_t i = 1; i <= y.size(); ++i) {
        at(y, i) = at(p, i + shift) - at(y, i) / static_cast<float>(length);
    }
    return y;
}

} // namespace vialto::test
