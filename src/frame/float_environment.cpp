#include "frame/float_environment.hpp"

#include <cfloat>

#if defined(__SSE2__)
#include <xmmintrin.h>
#endif

#if defined(__FAST_MATH__) || __FINITE_MATH_ONLY__ || FLT_EVAL_METHOD != 0
#error "Other bits: compile without -ffast-math or its parts, and for SSE2 instead of the x87."
#endif

namespace vialto {

#if defined(__SSE2__)

// The arithmetic of the library is that of SSE, but mathematical libraries use the x87 as well: all
// do on 32-bit x86, and MinGW's in 64 bits too.
namespace {

constexpr std::uint32_t default_mxcsr = 0x1F80;
constexpr std::uint16_t default_x87_control = 0x037F; // with all 64 bits of precision
constexpr std::uint16_t x87_exceptions = 0x003F;      // bits of the control and of the status
constexpr std::uint16_t x87_flags = 0x007F;           // those of the status, and stack fault

// What the processor stores, of which control and status count here.
struct X87Environment {
    std::uint16_t control;
    std::uint16_t unused1;
    std::uint16_t status;
    std::uint16_t unused2[11];
};

std::uint16_t x87_control() {
    std::uint16_t control = 0;
    asm volatile("fnstcw %0" : "=m"(control) : : "memory");
    return control;
}

std::uint16_t x87_status() {
    std::uint16_t status = 0;
    asm volatile("fnstsw %0" : "=a"(status) : : "memory");
    return status;
}

void set_x87_control(std::uint16_t control) {
    asm volatile("fldcw %0" : : "m"(control) : "memory");
}

void clear_x87_flags() {
    asm volatile("fnclex" : : : "memory");
}

void restore_x87(std::uint16_t control, std::uint16_t status) {
    X87Environment environment;
    asm volatile("fnstenv %0" : "=m"(environment) : : "memory");
    environment.control = control;
    environment.status =
        static_cast<std::uint16_t>((environment.status & ~x87_flags) | (status & x87_flags));
    asm volatile("fldenv %0" : : "m"(environment) : "memory");
}

} // namespace

DefaultFloatEnvironment::DefaultFloatEnvironment()
    : mxcsr_(_mm_getcsr()), x87_control_(x87_control()), x87_status_(x87_status()) {
    _mm_setcsr(default_mxcsr);
    if (x87_control_ != default_x87_control) {
        if ((x87_status_ & ~x87_control_ & x87_exceptions) != 0) {
            clear_x87_flags(); // the next instruction of the x87 would trap them
        }
        set_x87_control(default_x87_control);
    }
}

// Flags of the x87 can be put back with its whole environment alone, which takes longer than all
// the rest: only if they have changed.
DefaultFloatEnvironment::~DefaultFloatEnvironment() {
    if (((x87_status() ^ x87_status_) & x87_flags) != 0) {
        restore_x87(x87_control_, x87_status_);
    } else if (x87_control_ != default_x87_control) {
        set_x87_control(x87_control_);
    }
    _mm_setcsr(mxcsr_);
}

#elif defined(__aarch64__)

namespace {

std::uint64_t fpcr() {
    std::uint64_t value = 0;
    asm volatile("mrs %0, fpcr" : "=r"(value) : : "memory");
    return value;
}

std::uint64_t fpsr() {
    std::uint64_t value = 0;
    asm volatile("mrs %0, fpsr" : "=r"(value) : : "memory");
    return value;
}

void set_fpcr(std::uint64_t value) {
    asm volatile("msr fpcr, %0" : : "r"(value) : "memory");
}

void set_fpsr(std::uint64_t value) {
    asm volatile("msr fpsr, %0" : : "r"(value) : "memory");
}

} // namespace

DefaultFloatEnvironment::DefaultFloatEnvironment() : fpcr_(fpcr()), fpsr_(fpsr()) {
    set_fpcr(0);
}

DefaultFloatEnvironment::~DefaultFloatEnvironment() {
    set_fpsr(fpsr_);
    set_fpcr(fpcr_);
}

#else

DefaultFloatEnvironment::DefaultFloatEnvironment() {
    std::fegetenv(&environment_);
    std::fesetenv(FE_DFL_ENV);
}

DefaultFloatEnvironment::~DefaultFloatEnvironment() {
    std::fesetenv(&environment_);
}

#endif

} // namespace vialto
