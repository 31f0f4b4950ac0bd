// Prints a digest of the outputs of every function over a fixed row of requests, good, failing and
// hostile: returned codes, events, arrays, records, diagnostic files. The same input gives the same
// bits on every compiler, optimisation level and word size, and so the same lines.
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

#include "library/digest.hpp"
#include "library/request_rows.hpp"
#include "support/host.hpp"

namespace vialto::test {

namespace {

class CountingCaller : public DigestingCaller {
public:
    std::int32_t call(const fuzz::Function& function, tEvent* event) override {
        const std::int32_t result = DigestingCaller::call(function, event);
        (result == vialto_success ? served_ : failed_) += 1;
        see_diagnostic_files();
        return result;
    }
    void print(const char* function) const {
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

    TemporaryDirectory directory_;
    int served_ = 0;
    int failed_ = 0;
};

} // namespace

} // namespace vialto::test

int main() {
    using namespace vialto;
    for (const fuzz::Request& request : test::all_requests()) {
        test::CountingCaller caller;
        for (std::uint32_t number = 0; number < test::requests_of_each; ++number) {
            const auto bytes = test::bytes_of_request(number);
            fuzz::FuzzedHost host(bytes, caller);
            request.run(host);
        }
        caller.print(request.function);
    }
}
