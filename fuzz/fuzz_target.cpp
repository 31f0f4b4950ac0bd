// The fuzzer of one family of functions, VIALTO_FAMILY.
#include "fuzz/rationed_memory.hpp"
#include "fuzz/requests.hpp"
#include "support/host.hpp"

namespace vialto::fuzz {

namespace {

class FrugalCaller : public Caller {
public:
    std::int32_t call(const Function& function, tEvent* event) override {
        ration = {.holds = true, .allocations = -1};
        const std::int32_t result = function(event);
        ration = {};
        return result;
    }
};

} // namespace

} // namespace vialto::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    using namespace vialto;
    static const test::TemporaryDirectory directory;
    static const std::span<const fuzz::Request> family = fuzz::VIALTO_FAMILY();
    fuzz::FrugalCaller caller;
    fuzz::FuzzedHost host({bytes, count}, caller);
    family[static_cast<std::size_t>(host.choice(static_cast<std::int32_t>(family.size())))].run(
        host);
    return 0;
}
