// The profilograph as plain loops over samples counted from 1, the two sides of the blanking band
// written out one by one, to hold the library's own version against, bit by bit.
#pragma once

#include <span>
#include <vector>

#include "profilograph/scallops.hpp"

namespace vialto::test {

// The trace, `elsewhere` where not all wheels stand on the profile.
[[nodiscard]] std::vector<float> literal_trace(float interval, std::span<const float> offsets,
                                               std::span<const float> profile,
                                               float elsewhere = 0.0F);

// The scallops of a detrended lot of at least two samples, without a limit.
[[nodiscard]] LotScallops literal_scallops(std::span<const float> lot, float interval, float x0,
                                           const ScallopRules& rules);

} // namespace vialto::test
