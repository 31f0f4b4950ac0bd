// The allocation functions of a program, which can refuse.
#pragma once

#include <cstddef>

namespace vialto::fuzz {

// What the library may have for a call of the thread's. A request of an analysis for absurdly much memory, such as a
// profile resampled from kilometres to millimetres, is refused at once instead of being filled for
// minutes.
struct Ration {
    bool holds = false;   // else memory is not limited
    long allocations = 0; // still granted; below zero there is no limit
    bool refused = false;
};
extern thread_local Ration ration;

constexpr std::size_t largest_block = std::size_t{1} << 20U;

} // namespace vialto::fuzz
