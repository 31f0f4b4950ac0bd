// What a host may have done to the floating-point environment of its thread.
#pragma once

#include <array>
#include <cfenv>
#include <cstdint>
#include <string_view>
#if defined(__SSE2__)
#include <xmmintrin.h>
#endif

namespace vialto::test {

inline constexpr std::array<std::string_view, 7> host_environments{
    "default", "upward", "downward", "toward_zero", "flushed", "narrow_x87", "trapping"};

// One of them, with a raised flag where that does not trap, for the life of the object; then the
// default again.
class HostEnvironment {
public:
    explicit HostEnvironment(std::string_view name) {
        std::feraiseexcept(FE_OVERFLOW);
        std::fesetround(name == "upward"        ? FE_UPWARD
                        : name == "downward"    ? FE_DOWNWARD
                        : name == "toward_zero" ? FE_TOWARDZERO
                                                : FE_TONEAREST);
        if (name == "flushed") {
            flush_denormals();
        } else if (name == "narrow_x87") {
            narrow_x87();
        } else if (name == "trapping") {
            std::feclearexcept(FE_ALL_EXCEPT);
            trap_all();
        }
        set_ = state();
    }
    ~HostEnvironment() {
        std::fesetenv(FE_DFL_ENV);
#if defined(__SSE2__)
        _mm_setcsr(masks); // MXCSR, which MinGW's fesetenv leaves as it is
#endif
    }
    HostEnvironment(const HostEnvironment&) = delete;
    HostEnvironment& operator=(const HostEnvironment&) = delete;

    [[nodiscard]] bool still_stands() const {
        return state() == set_;
    }

private:
#if defined(__SSE2__)
    static constexpr std::uint32_t flushing = 0x8040;
    static constexpr std::uint32_t masks = 0x1F80;

    static std::uint64_t control() {
        std::uint16_t x87 = 0;
        asm volatile("fnstcw %0" : "=m"(x87));
        return std::uint64_t{_mm_getcsr()} << 16 | x87;
    }
    static void flush_denormals() {
        _mm_setcsr(_mm_getcsr() | flushing);
    }
    static void set_x87_control(std::uint16_t control) {
        asm volatile("fldcw %0" : : "m"(control));
    }
    static void narrow_x87() {
        set_x87_control(0x027F); // 53 bits of precision
    }
    static void trap_all() {
        set_x87_control(0x0340);
        _mm_setcsr(_mm_getcsr() & ~masks);
    }
#elif defined(__aarch64__)
    static std::uint64_t control() {
        std::uint64_t fpcr = 0;
        asm volatile("mrs %0, fpcr" : "=r"(fpcr));
        return fpcr;
    }
    static void set_control(std::uint64_t fpcr) {
        asm volatile("msr fpcr, %0" : : "r"(fpcr));
    }
    static void flush_denormals() {
        set_control(control() | 1U << 24U);
    }
    static void narrow_x87() {}
    static void trap_all() {
        set_control(control() | 0x9F00U); // where the processor can
    }
#else
    static std::uint64_t control() {
        return 0;
    }
    static void flush_denormals() {}
    static void narrow_x87() {}
    static void trap_all() {}
#endif

    static std::array<std::uint64_t, 3> state() {
        return {control(), static_cast<std::uint64_t>(std::fegetround()),
                static_cast<std::uint64_t>(std::fetestexcept(FE_ALL_EXCEPT))};
    }

    std::array<std::uint64_t, 3> set_;
};

} // namespace vialto::test
