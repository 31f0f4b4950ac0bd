// The diagnostic file of a refused call shows the numbers that the host passed, whatever function it
// called.
#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>
#include <string_view>

#include "frame/fixed_text.hpp"
#include "library/request_rows.hpp"
#include "support/host.hpp"

namespace vialto::test {
namespace {

class RefusedCaller : public fuzz::Caller {
public:
    std::int32_t call(const fuzz::Function& function, tEvent* event) override {
        const std::int32_t result = function(event);
        const bool refused = result == vialto_failure && event != nullptr &&
                             trim_trailing_blanks({event->description, sizeof event->description})
                                 .ends_with(" is not a positive finite number");
        for (const auto& file : std::filesystem::directory_iterator(directory_.path())) {
            const std::string name = file.path().filename().string();
            if (refused) {
                EXPECT_FALSE(directory_.text_of(name).starts_with(" ***** Error Message")) << name;
                files_.insert(name);
            }
            std::filesystem::remove(file);
        }
        return result;
    }
    [[nodiscard]] std::size_t files() const { return files_.size(); }

private:
    TemporaryDirectory directory_;
    std::set<std::string> files_;
};

TEST(RefusedCall, LeavesAFileThatBeginsWithItsInputs) {
    RefusedCaller caller;
    for (const fuzz::Request& request : all_requests()) {
        for (std::uint32_t number = 1; number < 100; number += 2) {
            const auto bytes = bytes_of_request(number);
            fuzz::FuzzedHost host(bytes, caller);
            request.run(host);
        }
    }
    EXPECT_EQ(caller.files(), 16U); // of all functions with a sample interval and a file of inputs
}

} // namespace
} // namespace vialto::test
