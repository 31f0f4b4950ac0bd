// The exponential of a float32 number, taken in 64-bit and rounded once, so that the bits do not
// hang on a platform's own float32 version.
#pragma once

#include <cmath>

namespace vialto {

[[nodiscard]] inline float exponential(float value) {
    return static_cast<float>(std::exp(static_cast<double>(value)));
}

} // namespace vialto
