// Memory that cannot be had, at every place where any function asks for some: an event, no leak, no
// crash, and the next call is served.
#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "fuzz/rationed_memory.hpp"
#include "library/request_rows.hpp"
#include "support/host.hpp"

namespace vialto::test {
namespace {

// Grants each call of the library so many allocations and no more, and takes note of the results:
// "1" and "3" of calls that were served, "m" of those that ended for want of memory.
class ScarceCaller : public fuzz::Caller {
public:
    explicit ScarceCaller(long allocations) : allocations_(allocations) {}

    std::int32_t call(const fuzz::Function& function, tEvent* event) override {
        fuzz::ration = {.holds = true, .allocations = allocations_};
        const std::int32_t result = function(event);
        const bool refused = fuzz::ration.refused;
        fuzz::ration = {};
        starved_ = starved_ || refused;
        const bool for_memory = result == vialto_failure && event != nullptr &&
                                std::string_view(event->description, sizeof event->description)
                                    .starts_with("not enough memory for the analysis ");
        EXPECT_TRUE(!for_memory || event->error_code == 100);
        EXPECT_EQ(for_memory, refused && event != nullptr);
        results_ += for_memory ? "m" : std::to_string(result);
        return result;
    }
    [[nodiscard]] bool starved() const { return starved_; }
    [[nodiscard]] const std::string& results() const { return results_; }

private:
    long allocations_;
    bool starved_ = false;
    std::string results_;
};

ScarceCaller run(const fuzz::Request& request, std::uint32_t number, long allocations) {
    ScarceCaller caller(allocations);
    const auto bytes = bytes_of_request(number);
    fuzz::FuzzedHost host(bytes, caller);
    request.run(host);
    return caller;
}

TEST(ScarceMemory, IsAnEventAtEveryAllocationAndTheNextCallIsServed) {
    constexpr long plenty = -1;
    const TemporaryDirectory directory;
    for (const fuzz::Request& request : fuzz::all_requests()) {
        SCOPED_TRACE(request.function);
        for (std::uint32_t number = 0; number < 12; number += 2) {
            const ScarceCaller rich = run(request, number, plenty);
            bool starved = !rich.starved(); // by a block too large for any ration
            for (long allocations = 0; starved; ++allocations) {
                ASSERT_LT(allocations, 10000);
                const ScarceCaller scarce = run(request, number, allocations);
                for (std::size_t call = 0; call < scarce.results().size(); ++call) {
                    const char result = scarce.results()[call];
                    EXPECT_TRUE(result == 'm' || result == rich.results()[call])
                        << "call " << call << " with " << allocations << " allocations";
                }
                starved = scarce.starved();
            }
            EXPECT_EQ(run(request, number, plenty).results(), rich.results());
        }
    }
}

} // namespace
} // namespace vialto::test
