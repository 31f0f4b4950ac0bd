// The floating-point environment of the thread: rounding direction, trapped exceptions, treatment
// of denormals, raised flags.
#pragma once

#include <cfenv>
#include <cstdint>

namespace vialto {

// The default environment (round to nearest, no traps, denormals kept) for the life of the object;
// at its end that of the host is back, its raised flags included.
class DefaultFloatEnvironment {
public:
    DefaultFloatEnvironment();
    ~DefaultFloatEnvironment();
    DefaultFloatEnvironment(const DefaultFloatEnvironment&) = delete;
    DefaultFloatEnvironment& operator=(const DefaultFloatEnvironment&) = delete;

private:
    // std::fesetenv does the same on x86, but takes four times as long as all of it may.
#if defined(__SSE2__)
    std::uint32_t mxcsr_;
    std::uint16_t x87_control_;
    std::uint16_t x87_status_;
#elif defined(__aarch64__)
    std::uint64_t fpcr_;
    std::uint64_t fpsr_;
#else
    std::fenv_t environment_;
#endif
};

} // namespace vialto
