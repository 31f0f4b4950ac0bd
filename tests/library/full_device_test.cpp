// A diagnostic file that cannot be written to the end changes no result.
#include <gtest/gtest.h>

#include <filesystem>

#include "support/cases.hpp"
#include "support/host.hpp"
#include "support/roads.hpp"
#include "vialto/vialto.h"

namespace vialto::test {
namespace {

TEST(FullDevice, LosesTheDiagnosticTextAndNothingElse) {
    if (!std::filesystem::exists("/dev/full")) {
        GTEST_SKIP() << "no full device here";
    }
    const TemporaryDirectory directory;
    std::filesystem::create_symlink("/dev/full", directory.path() / "antismth_dlldrv.txt");
    const auto profile = random_road(4000, 0.025, 1);
    auto lost = profile;
    auto kept = profile;
    std::int32_t first = 0;
    std::int32_t last = 0;
    EventRecord event;
    EXPECT_EQ(
        event.outcome(antismth_dlldrv(0.025F, 0.25F, 4000, lost.data(), &first, &last, event)), "");
    std::filesystem::remove(directory.path() / "antismth_dlldrv.txt");
    (void)antismth_dlldrv(0.025F, 0.25F, 4000, kept.data(), &first, &last, event);
    EXPECT_TRUE(same(lost, kept));
}

} // namespace
} // namespace vialto::test
