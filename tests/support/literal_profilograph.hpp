// The profilograph's trace as plain loops, to hold the library's own against, bit by bit.
#pragma once

#include <span>
#include <vector>

namespace vialto::test {

// The profile itself where not all wheels stand on it.
[[nodiscard]] std::vector<float> literal_trace(float interval, std::span<const float> offsets,
                                               std::span<const float> profile);

} // namespace vialto::test
