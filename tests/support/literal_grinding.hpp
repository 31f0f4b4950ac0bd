// The must-grind analysis with its last step as it is defined: a grinder run and a continuous ride
// statistic over the whole road for each candidate.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "grinding/mustgrind.hpp"

namespace vialto::test {

struct LiteralMustGrind {
    std::vector<std::int32_t> flags;
    std::size_t candidates; // that the last step has tried
    std::size_t helpful;
};

// All three options of the analysis are taken, and none of its steps fails.
[[nodiscard]] LiteralMustGrind literal_mustgrind(const MustGrindRequest& request);

} // namespace vialto::test
