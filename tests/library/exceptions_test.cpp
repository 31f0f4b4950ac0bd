// The header for C++: a failure becomes an exception, and nothing else happens to a call.
#include <gtest/gtest.h>

#include "support/host.hpp"
#include "vialto/vialto.hpp"

namespace vialto::test {
namespace {

TEST(Exceptions, CarryTheEventWithItsTextsTrimmed) {
    const TemporaryDirectory directory;
    const float profile[40]{};
    float index = 7.0F;
    vialto::call(ride_dlldrv, vialto_no, vialto_yes, idx_ridests_IRI, 40, profile, nullptr, 0.1F,
                 &index);
    EXPECT_EQ(index, 0.0F);
    try {
        vialto::call(ride_dlldrv, vialto_no, vialto_yes, idx_ridests_TwoRN, 40, profile, nullptr,
                     0.1F, &index);
        FAIL() << "no exception";
    } catch (const vialto::error& error) {
        EXPECT_EQ(error.description, "two RN is no longer supported");
        EXPECT_EQ(error.routine, "ride_dlldrv");
        EXPECT_EQ(error.error_code, vialto_code_analysis);
        EXPECT_EQ(error.error_type, vialto_type_some_failure);
        EXPECT_STREQ(error.what(), "two RN is no longer supported (ride_dlldrv, code 101)");
    }
}

} // namespace
} // namespace vialto::test
