#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "support/cases.hpp"
#include "support/host.hpp"

namespace vialto::test {
namespace {

using Floats = std::vector<float>;

void rolls(const Claim& claim, const Floats& profile, float length, std::int32_t first,
           std::int32_t last, float summary, const Floats& deflections,
           const std::string& failure = "") {
    const testing::ScopedTrace trace(claim.file, claim.line, claim.text);
    const TemporaryDirectory directory;
    EventRecord event;
    Floats d(profile.size(), -7.0F);
    float rms = -7.0F;
    std::int32_t begin = -7;
    std::int32_t end = -7;
    const auto n = size_of(profile);
    EXPECT_EQ(event.outcome(rse_dlldrv(n, 0.25F, length, profile.data(), d.data(), &rms, &begin,
                                       &end, event)),
              failure);
    EXPECT_EQ(begin, first);
    EXPECT_EQ(end, last);
    EXPECT_TRUE(same<float>({rms}, {summary}, 1e-5F)) << "vertical acceleration";
    EXPECT_TRUE(same(d, deflections, 1e-6F));
}

TEST(RollingStraightedge, TellsHeightsAtTheMiddleAgainstItsEnds) {
    const Floats bump{0, 0, 0, 0, 1, 0, 0, 0, 0};
    const Floats of_bump{0, 0, -0.5F, 0, 1, 0, -0.5F, 0, 0};
    rolls("a bump", bump, 1.0F, 2, 6, 4.38178F, of_bump);
    rolls("its share at ends between samples goes by the distance",
          {0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0}, 1.4F, 3, 9, 1.78582F,
          {0, 0, 0, -0.4F, -0.1F, 0, 1, 0, -0.1F, -0.4F, 0, 0, 0});
    rolls("a trifle beyond samples, so on them", bump, 1.000003F, 2, 6, 4.38175F, of_bump);
    rolls("a trifle short of samples, so on them", bump, 0.999997F, 2, 6, 4.38181F, of_bump);
    rolls("just beyond samples", bump, 1.000006F, 3, 5, 4.61875F, {0, 0, 0, 0, 1, 0, 0, 0, 0});
    rolls("elevation 16 x^2, acceleration -32", {0, 1, 4, 9, 16, 25}, 1.0F, 2, 3, 32,
          {0, 0, -4, -4, 0, 0});
}

TEST(RollingStraightedge, HasNoValidSampleOnARoadShorterThanItself) {
    rolls("by one interval", Floats(12), 3.0F, 6, 5, NAN, Floats(12));
    rolls("by two intervals", Floats(11), 3.0F, 6, 4, 0, Floats(11));
    rolls("of no length", {}, 0.0F, 0, -1, NAN, {});
    rolls("infinite", {}, HUGE_VALF, INT32_MAX, INT32_MIN, 0, {});
    const std::string refused = "100 2 rse_dlldrv: xStrLeng is negative or not a number";
    rolls("negative", {0}, -0.1F, -7, -7, -7, {-7}, refused);
    rolls("not a number", {0}, NAN, -7, -7, -7, {-7}, refused);
}

} // namespace
} // namespace vialto::test
