#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/host.hpp"
#include "vialto/vialto.h"

namespace vialto::test {

namespace {

using Road = std::vector<float>;

// Calls the export with the pointer of that name null. A failure leaves no trace in the outputs.
struct Call {
    Road profile{1.0F, 2.0F, 3.0F, 4.0F};
    float base_length = 0.25F;
    float interval = 0.25F;
    std::string null_pointer{};
    std::int32_t begin = -9;
    std::int32_t end = -9;

    // The event; empty after a success.
    std::string event() {
        const Road road = profile;
        EventRecord event;
        const std::int32_t code =
            antismth_dlldrv(interval, base_length, static_cast<std::int32_t>(profile.size()),
                            null_pointer == "xProfile" ? nullptr : profile.data(),
                            null_pointer == "iBeginElemIdx" ? nullptr : &begin,
                            null_pointer == "iEndElemIdx" ? nullptr : &end, event);
        EXPECT_EQ(code == vialto_success, event.untouched());
        EXPECT_TRUE(event.untouched() || (profile == road && begin == -9 && end == -9));
        return event.untouched() ? "" : event.summary();
    }
};

} // namespace

TEST(AntiSmoothingExport, GivesTheDistanceFromTheMeanAndListsTheSignedOne) {
    const TemporaryDirectory directory;
    Call call{.profile = {0, 0, 0, 0, 3, 0, 0, 0}, .base_length = 0.5F}; // window of 3, middle 2
    EXPECT_EQ(call.event(), "");
    EXPECT_EQ(call.begin, 2);
    EXPECT_EQ(call.end, 4);
    EXPECT_EQ(call.profile, (Road{0, 0, 2, 1, 0, 0, 0, 0}));
    EXPECT_EQ(directory.text_of("antismth_dlldrv.txt"), "  0.5 0 2\n  0.75 0 -1\n  1 3 0\n");
}

TEST(AntiSmoothingExport, FailureLeavesOutputsAndNoFile) {
    const TemporaryDirectory directory;
    for (const std::string name : {"xProfile", "iBeginElemIdx", "iEndElemIdx"}) {
        EXPECT_EQ(Call{.null_pointer = name}.event(),
                  "100 2 antismth_dlldrv: " + name + " is a null pointer");
    }
    EXPECT_EQ(Call{.interval = 0.0F}.event(),
              "100 2 antismth_dlldrv: xStepSize is not a positive finite number");
    EXPECT_EQ(Call{.base_length = 0.0F}.event(),
              "101 2 antismooth/filtcon_drv/antismth_dlldrv: the baselength is only 1 sampling "
              "interval- check your input");
    EXPECT_FALSE(directory.holds("antismth_dlldrv.txt"));
    set_tmp((directory.path() / "missing").string());
    EXPECT_EQ(Call{}.event().find("102 2 io_tmp_file/antismth_dlldrv: "), 0U);
}

} // namespace vialto::test
