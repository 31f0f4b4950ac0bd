// The same input gives the same bits on every compiler, optimisation level and word size. Every
// output of the corpus goes into one digest per function, and the digests stand here.
//
// A digest says that results differ, not which of them is right: the tests of each room say that.
// It is the wrong tool across mathematical libraries: tan, sin, cos, exp and log are theirs, and
// their last bit in 64-bit may, now and then, turn a rounding to 32-bit. Where that happens, the
// functions that use them differ: wimindex_dlldrv, psd_dll, ccfunc with the Butterworth filters,
// and the Ride Numbers.
#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <string>

#include "library/corpus.hpp"
#include "support/host.hpp"

namespace vialto::test {
namespace {

// FNV-1a, 64 bits.
class DigestingHost : public Host {
public:
    void call(const std::function<std::int32_t(tEvent*)>& function) override {
        EventRecord event;
        output(function(event));
        const std::string summary = event.untouched() ? "untouched" : event.summary();
        for (const char character : summary) {
            output(character);
        }
    }
    void see(std::span<const unsigned char> bytes) override {
        for (const unsigned char byte : bytes) {
            digest_ = (digest_ ^ byte) * 0x100000001B3U;
        }
    }
    [[nodiscard]] std::uint64_t digest() const { return digest_; }

private:
    std::uint64_t digest_ = 0xCBF29CE484222325U;
};

const std::map<std::string, std::uint64_t> expected{
    {"antismth_dlldrv", 0xf72b2195f6931bbe},
    {"ccfunc", 0xe4633f7c0e7e61e9},
    {"grindsimu_2chan_dlldrv", 0x610ed6b9e17e922d},
    {"grindsimu_dlldrv", 0x2eec514664fbe4a6},
    {"histgrm_dlldrv", 0x79a4530ba4280a8a},
    {"joint_fault_dlldrv", 0x1c5b7251e0b3898},
    {"joint_id_dlldrv", 0x7521898954da06c2},
    {"mustgrind_2chan_dlldrv", 0x944489cfb84c4344},
    {"mustgrind_dlldrv", 0x75e06a8a2a2487dd},
    {"pcbia_dlldrv", 0xcb0f7dc08f999985},
    {"pgfilt_dll", 0x28d15623f2b80d36},
    {"pgindex_dll", 0x7ff0fb0b124c2f0b},
    {"psd_dll", 0x1df97d9f43e89599},
    {"ride2chan_dlldrv", 0xb8798f8f2a2b24be},
    {"ride_dlldrv", 0x4234985ea5f29c20},
    {"ridecon2chan_dlldrv", 0xb79976a9bed81e08},
    {"ridecon_dlldrv", 0x769d135dd34b49dc},
    {"rideseg2chan_dlldrv", 0x3b33e012625cf11d},
    {"rideseg_dlldrv", 0xf4b316f926153971},
    {"rse_dlldrv", 0xa79ff1caed65a201},
    {"wimindex_dlldrv", 0xdc1fe9c51e7672d},
};

TEST(SameBits, EveryOutputOfEveryFunction) {
    const TemporaryDirectory directory;
    std::map<std::string, DigestingHost> hosts;
    for (const Request& request : corpus()) {
        request.run(hosts[request.function]);
    }
    for (const auto& [function, host] : hosts) {
        const auto found = expected.find(function);
        EXPECT_TRUE(found != expected.end() && host.digest() == found->second)
            << "{\"" << function << "\", 0x" << std::hex << host.digest() << "},";
    }
}

} // namespace
} // namespace vialto::test
