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
#include <array>
#include <cstddef>
#include <functional>
#include <limits>
#include <vector>

#include "numeric/exponential.hpp"

namespace vialto {

namespace {

constexpr std::size_t block_length = 64; // samples

// The weights of the distances 0, 1, ..., computed as far as they are asked for.
class Weights {
public:
    Weights(float dx, float decay_length) : dx_(dx), decay_length_(decay_length) {}

    // The weight of a distance, and behind it those of the next ones, as many as a block has
    // samples.
    const float* from(std::size_t distance) {
        while (of_distance_.size() < distance + block_length) {
            const auto next = static_cast<float>(of_distance_.size());
            of_distance_.push_back(faded_ ? 0.0F : exponential(-next * dx_ / decay_length_));
            faded_ = of_distance_.back() == 0.0F;
        }
        return &of_distance_[distance];
    }

private:
    float dx_;
    float decay_length_;
    std::vector<float> of_distance_;
    bool faded_ = false; // to 0.0, as all weights beyond
};

// The extreme value among `values` and `start`, found in several places at once; a NaN is none.
template <class IsBeyond>
float extreme(std::span<const float> values, float start, const IsBeyond& is_beyond) {
    constexpr std::size_t places = 8;
    std::array<float, places> best;
    best.fill(start);
    const auto look_at = [&](float& place, float value) {
        place = is_beyond(value, place) ? value : place;
    };
    const std::size_t whole = values.size() / places * places;
    for (std::size_t i = 0; i < whole; i += places) {
        for (std::size_t place = 0; place < places; ++place) {
            look_at(best[place], values[i + place]);
        }
    }
    for (std::size_t i = whole; i < values.size(); ++i) {
        look_at(best[0], values[i]);
    }
    for (const float value : best) {
        look_at(best[0], value);
    }
    return best[0];
}

float largest(std::span<const float> values, float start) {
    return extreme(values, start, std::greater<>());
}

float smallest(std::span<const float> values) {
    return extreme(values, std::numeric_limits<float>::infinity(), std::less<>());
}

// Raises y to the shadow of the sample `darkest`, as far as it is darker than the samples that it
// falls on. Returns the first one behind where it is not.
std::size_t cast_until_outshone(std::span<const float> x, std::size_t darkest, Weights& weights,
                                std::span<float> y) {
    for (std::size_t first = darkest + 1; first < x.size(); first += block_length) {
        const float* const weight = weights.from(first - darkest);
        const std::size_t count = std::min(block_length, x.size() - first);
        for (std::size_t k = 0; k < count; ++k) {
            const float shadow = weight[k] * x[darkest];
            if (!(shadow > x[first + k])) {
                return first + k;
            }
            y[first + k] = shadow > y[first + k] ? shadow : y[first + k];
        }
    }
    return x.size();
}

// First pass: raises y to the shadow that would be the darkest in exact arithmetic.
void cast_darkest_shadows(std::span<const float> x, Weights& weights, std::span<float> y) {
    for (std::size_t darkest = 0; darkest < x.size();) {
        darkest = cast_until_outshone(x, darkest, weights, y);
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
    ShadowPass(std::span<const float> x, Weights& weights) : x_(x), weights_(weights) {
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
        const float lowest = smallest(y);
        const float* const within = weights_.from(1);
        for (std::size_t k = 0; k + 1 < y.size(); ++k) {
            if (*within * x_[first + k] > lowest) {
                cast_shadow(x_[first + k], within, y.subspan(k + 1));
            }
        }
        for (std::size_t index = first / block_length; index > 0; --index) {
            const std::size_t end = index * block_length;
            const float nearest = *weights_.from(first - (end - 1));
            if (!(nearest * largest_until_[index - 1] > lowest)) {
                break;
            }
            if (nearest * block_largest_[index - 1] > lowest) {
                shade_from_block(end, first, lowest, y);
            }
        }
    }

    // From the whole block that ends ahead of the sample `end`.
    void shade_from_block(std::size_t end, std::size_t first, float lowest,
                          std::span<float> y) const {
        const std::size_t farthest = end - block_length;
        const float* weight = weights_.from(first - farthest);
        for (std::size_t j = farthest; j < end; ++j, --weight) {
            if (*weight * x_[j] > lowest) {
                cast_shadow(x_[j], weight, y);
            }
        }
    }

    std::span<const float> x_;
    Weights& weights_;
    std::vector<float> block_largest_; // largest x of each block
    std::vector<float> largest_until_; // and of all blocks up to it
};

// Raises y to the shadows of the samples that come before.
void shade(std::span<const float> x, float dx, float decay_length, std::span<float> y) {
    Weights weights(dx, decay_length);
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
