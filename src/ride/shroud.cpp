// How the pairs that cannot win are known. The weight of a pair hangs on the distance alone, so one
// table holds all weights, and a pair costs a product and a comparison. The table does not rise:
// rounding keeps the order of the exponents, and where two neighbouring exponents are not the same
// float their exponentials lie further apart than the error of the exponential function wherever
// the rounding to float32 can tell them apart. A rounded product of factors that are not negative
// never exceeds the product of upper bounds of its factors. So the largest x of a block times the
// weight of the block's nearest sample bounds every pair between the block and what lies beyond,
// without any tolerance.
//
// The bounds are held against values close to the final ones, which a first pass finds: of the
// samples behind it, one casts the darkest shadow on a sample, and it stays the darkest until a
// sample outshines its shadow. What remains are near-ties, a few pairs for each sample of a road.
// Even where all pairs are near-ties, as in an exponential decay, they are a vectorised product and
// comparison each.
#include "ride/shroud.hpp"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <vector>

#include "numeric/exponential.hpp"

namespace vialto {

namespace {

constexpr std::size_t block_length = 64; // samples

// The weights of the distances 0, 1, ..., as far as they are not 0.0 and a pair of n samples needs
// them. Behind them stand as many zeros as a block has samples, so that a block's last pairs need
// no test: a weight of 0.0 wins no comparison.
struct Weights {
    std::vector<float> of_distance;
    std::size_t reach; // the first distance without a weight

    Weights(std::size_t n, float dx, float decay_length) : of_distance(n + block_length), reach(0) {
        for (; reach < n; ++reach) {
            const float weight = exponential(-static_cast<float>(reach) * dx / decay_length);
            if (weight == 0.0F) {
                break;
            }
            of_distance[reach] = weight;
        }
    }
};

float largest(std::span<const float> values, float start) {
    for (const float value : values) {
        start = value > start ? value : start;
    }
    return start;
}

float smallest(std::span<const float> values) {
    float lowest = std::numeric_limits<float>::infinity();
    for (const float value : values) {
        lowest = value < lowest ? value : lowest;
    }
    return lowest;
}

// First pass: raises y to the shadow that would be the darkest in exact arithmetic.
void cast_darkest_shadows(std::span<const float> x, const Weights& weights, std::span<float> y) {
    std::size_t darkest = 0;
    for (std::size_t i = 1; i < x.size(); ++i) {
        const std::size_t distance = i - darkest;
        const float shadow =
            distance < weights.reach ? weights.of_distance[distance] * x[darkest] : 0.0F;
        if (shadow > x[i]) {
            y[i] = shadow > y[i] ? shadow : y[i];
        } else {
            darkest = i;
        }
    }
}

// Raises y to the shadow of a sample of the value x that lies at the distance of weight[0] before
// y[0].
void cast_shadow(float x, const float* weight, std::span<float> y) {
    for (std::size_t i = 0; i < y.size(); ++i) {
        const float shadow = weight[i] * x;
        y[i] = shadow > y[i] ? shadow : y[i];
    }
}

// Second pass: the shadows of all samples before it on each block.
class ShadowPass {
public:
    ShadowPass(std::span<const float> x, const Weights& weights) : x_(x), weights_(weights) {
        for (std::size_t first = 0; first < x.size(); first += block_length) {
            const float of_block = largest(block(x, first), 0.0F);
            block_largest_.push_back(of_block);
            largest_until_.push_back(first == 0 ? of_block
                                                : std::max(of_block, largest_until_.back()));
        }
    }

    void run(std::span<float> y) const {
        for (std::size_t first = 0; first < y.size(); first += block_length) {
            shade_block(first, block(y, first));
        }
    }

private:
    template <class Element>
    static std::span<Element> block(std::span<Element> values, std::size_t first) {
        return values.subspan(first, std::min(block_length, values.size() - first));
    }

    // No shadow up to `lowest` raises a sample of y, which stands at first.
    void shade_block(std::size_t first, std::span<float> y) const {
        const std::vector<float>& weight = weights_.of_distance;
        const float lowest = smallest(y);
        for (std::size_t k = 0; k + 1 < y.size(); ++k) {
            if (weight[1] * x_[first + k] > lowest) {
                cast_shadow(x_[first + k], &weight[1], y.subspan(k + 1));
            }
        }
        for (std::size_t index = first / block_length; index > 0; --index) {
            const std::size_t end = index * block_length;
            const std::size_t nearest = first - (end - 1);
            if (nearest >= weights_.reach ||
                weight[nearest] * largest_until_[index - 1] <= lowest) {
                break;
            }
            if (weight[nearest] * block_largest_[index - 1] > lowest) {
                shade_from_block(end, first, lowest, y);
            }
        }
    }

    // From the whole block that ends ahead of the sample `end`.
    void shade_from_block(std::size_t end, std::size_t first, float lowest,
                          std::span<float> y) const {
        for (std::size_t j = end - block_length; j < end; ++j) {
            const std::size_t distance = first - j;
            if (distance < weights_.reach && weights_.of_distance[distance] * x_[j] > lowest) {
                cast_shadow(x_[j], &weights_.of_distance[distance], y);
            }
        }
    }

    std::span<const float> x_;
    const Weights& weights_;
    std::vector<float> block_largest_; // largest x of each block
    std::vector<float> largest_until_; // and of all blocks up to it
};

// Raises y to the shadows of the samples that come before.
void shade(std::span<const float> x, float dx, float decay_length, std::span<float> y) {
    const Weights weights(x.size(), dx, decay_length);
    cast_darkest_shadows(x, weights, y);
    ShadowPass(x, weights).run(y);
}

} // namespace

void shroud(std::span<const float> x, float dx, std::span<float> y, float xBackDist,
            float xForeDist) {
    std::copy(x.begin(), x.end(), y.begin());
    shade(x, dx, xBackDist, y);
    // Seen from the other end, the samples that come after come before.
    const std::vector<float> reversed(x.rbegin(), x.rend());
    std::reverse(y.begin(), y.end());
    shade(reversed, dx, xForeDist, y);
    std::reverse(y.begin(), y.end());
}

} // namespace vialto
