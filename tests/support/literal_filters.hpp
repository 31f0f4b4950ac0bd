// The filters as plain loops, one operation at a time and one sample after the other, to hold the
// library's own versions against, bit by bit.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace vialto::test {

// The moving mean of a box of `base` samples over the profile extended by `half` samples at either
// end, as low-pass, or the profile minus that mean, as high-pass.
[[nodiscard]] std::vector<float> literal_moving_average(std::span<const float> profile,
                                                        std::size_t base, std::size_t half,
                                                        bool high_pass);

} // namespace vialto::test
