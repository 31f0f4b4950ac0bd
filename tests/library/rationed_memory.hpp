// The allocation functions of the test program, which can refuse.
#pragma once

namespace vialto::test {

extern long granted; // allocations still granted; below zero there is no limit
extern bool refused; // set when an allocation was refused

} // namespace vialto::test
