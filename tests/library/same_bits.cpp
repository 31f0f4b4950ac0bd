// Prints a digest of the outputs of every function over a fixed row of requests, good, failing and
// hostile: returned codes, events, arrays, records, diagnostic files. The same input gives the same
// bits on every compiler, optimisation level and word size, and so the same lines. So it does in every
// floating-point environment of the host's, of which one may be named as argument.
//
// A digest says that results differ, not which of them is right: the tests of each room say that.
// It is the wrong tool across mathematical libraries: tan, sin, cos, exp and log are theirs, and
// their last bit in 64-bit may, now and then, turn a rounding to 32-bit. Where that happens, the
// functions that use them differ: wimindex_dlldrv, psd_dll, ccfunc with the Butterworth filters,
// and the Ride Numbers.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <set>
#include <string_view>

#include "library/digest.hpp"
#include "library/request_rows.hpp"
#include "support/host.hpp"
#include "support/host_environment.hpp"

namespace vialto::test {

namespace {

class CountingCaller : public DigestingCaller {
public:
    explicit CountingCaller(std::string_view environment) : environment_(environment) {}

    std::int32_t call(const fuzz::Function& function, tEvent* event) override {
        const auto call_in_environment = [&](tEvent* record) {
            const HostEnvironment host(environment_);
            const std::int32_t result = function(record);
            lost_environments_ += host.still_stands() ? 0 : 1;
            return result;
        };
        const std::int32_t result = DigestingCaller::call(call_in_environment, event);
        (result == vialto_success ? served_ : failed_) += 1;
        see_diagnostic_files();
        return result;
    }
    void print(const char* function) const {
        if (lost_environments_ > 0) {
            std::printf("%-24s changes the environment\n", function);
        }
        std::printf("%-24s %016llx %4d served %4d failed\n", function,
                    static_cast<unsigned long long>(digest.value()), served_, failed_);
    }

private:
    void see_diagnostic_files() {
        const std::filesystem::directory_iterator files(directory_.path());
        for (const auto& file : std::set(begin(files), end(files))) {
            digest.add_file(directory_.text_of(file.path().filename().string()));
            std::filesystem::remove(file);
        }
    }

    std::string_view environment_;
    TemporaryDirectory directory_;
    int served_ = 0;
    int failed_ = 0;
    int lost_environments_ = 0;
};

} // namespace

} // namespace vialto::test

int main(int count, char** arguments) {
    using namespace vialto;
    const std::string_view environment = count > 1 ? arguments[1] : "default";
    for (const fuzz::Request& request : fuzz::all_requests()) {
        test::CountingCaller caller(environment);
        for (std::uint32_t number = 0; number < test::requests_of_each; ++number) {
            const auto bytes = test::bytes_of_request(number);
            fuzz::FuzzedHost host(bytes, caller);
            request.run(host);
        }
        caller.print(request.function);
    }
}
