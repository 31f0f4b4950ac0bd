#include <gtest/gtest.h>

#include <array>
#include <string>

#include "frame/event.hpp"
#include "support/host.hpp"

namespace vialto {
namespace {

std::string told_to_host(std::int32_t outcome = outcome_failure) {
    test::EventRecord host;
    tEvent* record = host;
    current_event().outcome = outcome;
    EXPECT_EQ(set_event(current_event(), *record), 1);
    return host.untouched() ? "nothing" : host.summary();
}

TEST(CurrentEvent, LastRaiseWinsAndResetClearsAllButTheOutcome) {
    raise_event("first", "a", 100, fatal);
    raise_event("second  ", "b  ", 101, recoverable_with_failure);
    EXPECT_EQ(told_to_host(), "101 2 b: second");
    reset_event();
    EXPECT_EQ(current_event().outcome, outcome_failure);
    EXPECT_EQ(told_to_host(), "0 0 : ");
}

TEST(CurrentEvent, PathGrowsOutwardAndIsCutAt256Characters) {
    EXPECT_EQ(raise_failure("x", "compute_iri"), failure);
    EXPECT_EQ(pass_failure("ride_stats"), failure);
    EXPECT_EQ(told_to_host(), "101 2 compute_iri/ride_stats: x");
    const std::string longest(256, 'n');
    raise_event(longest + "more", longest.substr(1), 100, fatal);
    extend_routine("more");
    EXPECT_EQ(told_to_host(), "100 1 " + longest.substr(1) + "/: " + longest);
}

TEST(HostEvent, ReceivesTheSeverityTurnedRoundAsTheOutcomeSelects) {
    const std::array<std::int32_t, 3> cases[] = {{3, 0, 0}, {3, 1, 3}, {3, 2, 2}, {3, 3, 1},
                                                 {3, 4, 0}, {1, 3, 0}, {2, 3, 0}, {5, 1, 2}};
    for (const auto& [outcome, internal, for_host] : cases) {
        raise_event("words", "place", 102, internal);
        EXPECT_EQ(told_to_host(outcome), "102 " + std::to_string(for_host) + " place: words");
    }
    for (const std::int32_t unknown : {0, 4, 6}) {
        EXPECT_EQ(told_to_host(unknown), "nothing");
    }
}

} // namespace
} // namespace vialto
