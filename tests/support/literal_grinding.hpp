// The grinder, which looks at every wheel at each sample, and the must-grind analysis, which has the
// whole road ground and the whole ride statistic computed for each candidate.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "grinding/mustgrind.hpp"

namespace vialto::test {

// Grinds the profile in place and returns the flags. No direction is undefined.
std::vector<std::int32_t> literal_grindsimu(float interval, const std::vector<tGrindSpot>& spots,
                                            const tGrinderSetup& setup,
                                            std::vector<float>& profile);

struct LiteralMustGrind {
    std::vector<std::int32_t> flags;
    std::size_t candidates; // that the last step has tried
    std::size_t helpful;
};

// None of the steps that are asked for fails.
[[nodiscard]] LiteralMustGrind literal_mustgrind(const MustGrindRequest& request);

} // namespace vialto::test
