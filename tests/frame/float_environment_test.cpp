#include <gtest/gtest.h>

#include <limits>
#include <new>
#include <string_view>

#include "frame/analysis_frame.hpp"
#include "support/host_environment.hpp"

namespace vialto {
namespace {

// Raises all flags, and fails if anything but the default environment stands.
ReturnCode look_around() {
    volatile float one = 1.0F;
    volatile float zero = 0.0F;
    volatile float tiny = std::numeric_limits<float>::denorm_min();
    const bool to_nearest = one + 1e-10F == 1.0F && -one - 1e-10F == -1.0F && one - 1e-10F == 1.0F;
    const bool denormals_kept = tiny > 0.0F && tiny * 2.0F > tiny;
    const bool not_trapped = one / zero > one && zero / zero != one;
    volatile long double wide = 3.0L; // in the x87, where there is one
    wide = 1.0L / wide;
    wide = wide - wide + 1.0L;
    wide = wide + std::numeric_limits<long double>::epsilon();
    const bool full_precision = wide > 1.0L;
    return to_nearest && denormals_kept && not_trapped && full_precision ? success : failure;
}

TEST(FloatEnvironment, IsTheDefaultInACallAndTheHostsBehindEveryWayOut) {
    const auto refuse = [](ArgumentCheck& check) { check.refuse("x", " is bad"); };
    const auto fail = [](DiagnosticText&) {
        return look_around() == success ? raise_failure("it broke", "inner") : success;
    };
    const auto run_out_of_memory = [](DiagnosticText&) -> ReturnCode { throw std::bad_alloc(); };
    const auto succeed = [](DiagnosticText&) { return look_around(); };
    const auto stands_behind = [](const char* way_out, ReturnCode expected,
                                  const ExportSteps& steps) {
        for (const std::string_view name : test::host_environments) {
            ReturnCode code = success;
            bool stands = false;
            {
                const test::HostEnvironment host(name);
                code = run_export({"analysis", DiagnosticFile::none}, nullptr, steps);
                stands = host.still_stands();
            }
            EXPECT_EQ(code, expected) << way_out << ", " << name;
            EXPECT_TRUE(stands) << way_out << ", " << name;
        }
    };
    stands_behind("success", success, {.drive = succeed});
    stands_behind("refusal", failure, {.check_arguments = refuse, .drive = succeed});
    stands_behind("failure", failure, {.drive = fail});
    stands_behind("exception", failure, {.drive = run_out_of_memory});
}

} // namespace
} // namespace vialto
