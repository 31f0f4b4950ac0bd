// Memory that cannot be had, at every place where any function asks for some: an event, no leak, no
// crash, and the next call is served.
#include <gtest/gtest.h>

#include <cstddef>
#include <string>

#include "library/corpus.hpp"
#include "library/rationed_memory.hpp"
#include "support/host.hpp"

namespace vialto::test {
namespace {

// Grants each call of the library so many allocations and no more, and takes note of the results:
// "1" and "3" of calls that were served, "m" of those that ended for want of memory.
class ScarceHost : public Host {
public:
    explicit ScarceHost(long allocations) : allocations_(allocations) {}

    void call(const std::function<std::int32_t(tEvent*)>& function) override {
        EventRecord event;
        refused = false;
        granted = allocations_;
        const std::int32_t result = function(event);
        granted = -1;
        starved_ = starved_ || refused;
        const bool for_memory =
            result == vialto_failure && event.description() == "not enough memory for the analysis";
        EXPECT_TRUE(!for_memory || (refused && event.error_code() == 100));
        results_ += for_memory ? "m" : std::to_string(result);
    }
    void see(std::span<const unsigned char>) override {}
    [[nodiscard]] bool starved() const { return starved_; }
    [[nodiscard]] const std::string& results() const { return results_; }

private:
    long allocations_;
    bool starved_ = false;
    std::string results_;
};

std::string results_with(long allocations, const Request& request) {
    ScarceHost host(allocations);
    request.run(host);
    return host.results();
}

// A refused allocation ends the analysis, but for that of the path of a diagnostic file that cannot
// be cut to its new length, which nobody looks at.
bool as_served_or_for_memory(const std::string& results, const std::string& served) {
    for (std::size_t call = 0; call < results.size(); ++call) {
        if (results[call] != 'm' && results[call] != served[call]) {
            return false;
        }
    }
    return true;
}

TEST(ScarceMemory, IsAnEventAtEveryAllocationAndTheNextCallIsServed) {
    constexpr long plenty = -1;
    const TemporaryDirectory directory;
    for (const Request& request : corpus()) {
        SCOPED_TRACE(request.function);
        const std::string served = results_with(plenty, request);
        for (long allocations = 0;; ++allocations) {
            ASSERT_LT(allocations, 10000);
            ScarceHost scarce(allocations);
            request.run(scarce);
            EXPECT_TRUE(as_served_or_for_memory(scarce.results(), served)) << allocations;
            if (!scarce.starved()) {
                break;
            }
        }
        EXPECT_EQ(results_with(plenty, request), served);
    }
}

} // namespace
} // namespace vialto::test
