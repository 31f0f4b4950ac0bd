// The must-grind analysis step by step as it is defined, with samples that count from 1: a grinder
// run and a continuous ride statistic over the whole road for each candidate.
#pragma once

#include <cstdint>
#include <vector>

#include "grinding/mustgrind.hpp"

namespace vialto::test {

struct LiteralMustGrind {
    std::vector<std::int32_t> flags;
    std::int32_t candidates; // that the last step has tried
    std::int32_t helpful;
    std::int32_t stretches; // out of specification
};

// The analysis is one that does not fail.
[[nodiscard]] LiteralMustGrind literal_mustgrind(const MustGrindRequest& request);

} // namespace vialto::test
