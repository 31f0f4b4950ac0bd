#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "frame/event.hpp"
#include "support/host.hpp"

namespace vialto {
namespace {

TEST(CurrentEvent, LastRaiseWinsAndResetClearsAllButTheOutcome) {
    raise_event("first", "a", 100, fatal);
    raise_event("second  ", "b  ", 101, recoverable_with_failure);
    CurrentEvent& event = current_event();
    EXPECT_EQ(event.description.trimmed(), "second");
    EXPECT_EQ(event.routine.trimmed(), "b");
    EXPECT_EQ(event.error_code, 101);
    event.outcome = outcome_failure;
    reset_event();
    EXPECT_EQ(event.description.trimmed(), "");
    EXPECT_EQ(event.error_code, 0);
    EXPECT_FALSE(event_is_fatal());
    EXPECT_EQ(event.outcome, outcome_failure);
}

TEST(CurrentEvent, CountsAsFailureFromSeverityTwo) {
    for (std::int32_t severity = 0; severity <= 4; ++severity) {
        raise_event("x", "y", 100, severity);
        EXPECT_EQ(event_is_fatal(), severity == 2 || severity == 3) << severity;
    }
    reset_event();
}

TEST(CurrentEvent, PathGrowsOutwardAndIsCutAt256Characters) {
    ASSERT_EQ(raise_failure("x", "compute_iri"), failure);
    ASSERT_EQ(pass_failure("ride_stats"), failure);
    ASSERT_EQ(pass_failure("ride_drv"), failure);
    EXPECT_EQ(current_event().routine.trimmed(), "compute_iri/ride_stats/ride_drv");
    const std::string long_name(300, 'n');
    raise_event(long_name, long_name, 100, 2);
    extend_routine("more");
    EXPECT_EQ(current_event().routine.trimmed(), long_name.substr(0, 256));
    EXPECT_EQ(current_event().description.trimmed(), long_name.substr(0, 256));
    reset_event();
}

TEST(HostEvent, ReceivesTheSeverityTurnedRoundAsTheOutcomeSelects) {
    struct Case {
        std::int32_t outcome;
        std::int32_t internal;
        std::int32_t for_host; // -1: nothing is copied at all
    };
    const Case cases[] = {{3, 1, 3}, {3, 2, 2}, {3, 3, 1},  {1, 3, 0},  {2, 3, 0},
                          {5, 3, 2}, {5, 1, 2}, {0, 2, -1}, {4, 2, -1}, {6, 2, -1}};
    for (const Case& c : cases) {
        raise_event("words", "place", 102, c.internal);
        current_event().outcome = c.outcome;
        tEvent host;
        std::memset(&host, 'z', sizeof host);
        EXPECT_EQ(set_event(current_event(), host), 1);
        if (c.for_host < 0) {
            EXPECT_EQ(host.description[0], 'z');
            EXPECT_EQ(host.routine[255], 'z');
            continue;
        }
        EXPECT_EQ(host.error_type, c.for_host) << c.outcome << " " << c.internal;
        EXPECT_EQ(host.error_code, 102);
        EXPECT_EQ(std::string(host.description, 256), "words" + std::string(251, ' '));
        EXPECT_EQ(std::string(host.routine, 256), "place" + std::string(251, ' '));
    }
    reset_event();
}

} // namespace
} // namespace vialto
