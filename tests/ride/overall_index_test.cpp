#include <gtest/gtest.h>

#include "support/host.hpp"
#include "support/roads.hpp"
#include "vialto/vialto.h"

namespace vialto::test {

TEST(OverallIndex, FlatRoadHasNone) {
    const TemporaryDirectory directory;
    const std::vector<float> profile(4000, 1.5F);
    for (const std::int32_t selector : {idx_ridests_IRI, idx_ridests_RN}) {
        EventRecord event;
        float index = -7.0F;
        EXPECT_EQ(ride_dlldrv(2, 1, selector, 4000, profile.data(), nullptr, 0.025F, &index, event),
                  vialto_success);
        EXPECT_EQ(index, 0.0F);
        EXPECT_TRUE(event.untouched());
    }
}

} // namespace vialto::test
