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
#include <span>
#include <sstream>
#include <string>

#include "library/request_rows.hpp"
#include "support/host.hpp"

namespace vialto::test {

namespace {

constexpr std::uint32_t requests_of_each = 300;

// FNV-1a, 64 bits.
class DigestingCaller : public fuzz::Caller {
public:
    std::int32_t call(const fuzz::Function& function, tEvent* event) override {
        fuzz::ration = {.holds = true, .allocations = -1};
        const std::int32_t result = function(event);
        fuzz::ration = {};
        (result == vialto_success ? served_ : failed_) += 1;
        see(std::as_bytes(std::span(&result, 1)));
        see_diagnostic_files();
        return result;
    }
    void see(std::span<const std::byte> output) override {
        for (const std::byte byte : output) {
            digest_ = (digest_ ^ std::to_integer<std::uint64_t>(byte)) * 0x100000001B3U;
        }
    }
    void print(const char* function) const {
        std::printf("%-24s %016llx %4d served %4d failed\n", function,
                    static_cast<unsigned long long>(digest_), served_, failed_);
    }

private:
    // Without the lines that tell the time.
    void see_diagnostic_files() {
        const std::filesystem::directory_iterator files(directory_.path());
        for (const auto& file : std::set(begin(files), end(files))) {
            std::istringstream text(directory_.text_of(file.path().filename().string()));
            for (std::string line; std::getline(text, line);) {
                if (!line.starts_with("Day - Month") && !line.starts_with("Hour : Minute")) {
                    see(std::as_bytes(std::span(line)));
                }
            }
            std::filesystem::remove(file);
        }
    }

    TemporaryDirectory directory_;
    std::uint64_t digest_ = 0xCBF29CE484222325U;
    int served_ = 0;
    int failed_ = 0;
};

} // namespace

} // namespace vialto::test

int main() {
    using namespace vialto;
    for (const fuzz::Request& request : test::all_requests()) {
        test::DigestingCaller caller;
        for (std::uint32_t number = 0; number < test::requests_of_each; ++number) {
            const auto bytes = test::bytes_of_request(number);
            fuzz::FuzzedHost host(bytes, caller);
            request.run(host);
        }
        caller.print(request.function);
    }
}
