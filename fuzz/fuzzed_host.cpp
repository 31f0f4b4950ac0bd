#include "fuzzed_host.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <new>
#include <string>
#include <string_view>
#include <utility>

#include "support/host.hpp"
#include "support/roads.hpp"

namespace {

// A request of an analysis for absurdly much memory, such as a profile resampled from kilometres to
// millimetres, is refused at once instead of being filled for minutes.
constexpr std::size_t largest_block = std::size_t{1} << 20;
bool within_call = false;

} // namespace

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return within_call && size > largest_block ? nullptr : std::malloc(size);
}

void* operator new(std::size_t size) {
    if (void* memory = operator new(size, std::nothrow); memory != nullptr) {
        return memory;
    }
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace vialto::fuzz {

namespace {

using Limits = std::numeric_limits<float>;

constexpr double road_interval = 0.025; // m; roads are drawn for it, whatever the host then says
constexpr std::int32_t longest_profile = 3000;

void promise(bool kept, const char* what) {
    if (!kept) {
        std::fprintf(stderr, "broken promise: %s\n", what);
        std::abort();
    }
}

// The library's own part of a call.
std::int32_t run(const std::function<std::int32_t(tEvent*)>& function, tEvent* event) {
    within_call = true;
    const std::int32_t result = function(event);
    within_call = false;
    return result;
}

bool is_text(std::string_view text) {
    return !text.empty() && text.find('\0') == std::string_view::npos;
}

// A call that was refused for its arguments has written nothing.
bool is_refusal(std::string_view description) {
    return description.ends_with(" is a null pointer") ||
           description.ends_with(" is not a positive finite number");
}

// The diagnostic file can always be opened here, so that code 102 and the want of a file unit stand
// for units that an earlier call has not closed.
void check_event(const test::EventRecord& event) {
    const std::string summary = event.summary();
    promise(is_text(event.description()) && is_text(event.routine()), summary.c_str());
    promise(event.error_code() == 100 || event.error_code() == 101, summary.c_str());
    promise(event.error_type() == 1 || event.error_type() == 2, summary.c_str());
    promise(!event.description().starts_with("error in finding a free file unit"), summary.c_str());
}

std::vector<float> scaled(std::vector<float> profile, float factor) {
    for (float& height : profile) {
        height *= factor;
    }
    return profile;
}

// Slabs of 4 m that sink by 6 mm towards the next joint.
std::vector<float> slabs(std::size_t count) {
    constexpr std::size_t slab = 160;
    std::vector<float> profile = test::random_road(count, road_interval, 1);
    for (std::size_t i = 0; i < count; ++i) {
        profile[i] -= 0.006F * static_cast<float>(i % slab) / static_cast<float>(slab);
    }
    return profile;
}

} // namespace

bool FuzzedHost::seldom() {
    return bytes_.ConsumeIntegral<std::uint8_t>() > 251;
}

std::int32_t FuzzedHost::choice(std::int32_t count) {
    return bytes_.ConsumeIntegralInRange<std::int32_t>(0, count - 1);
}

std::int32_t FuzzedHost::integer(std::int32_t low, std::int32_t high) {
    using Integers = std::numeric_limits<std::int32_t>;
    switch (bytes_.ConsumeIntegral<std::uint8_t>() / 16) {
    case 14:
        return bytes_.PickValueInArray(
            {-1, 0, Integers::min(), Integers::min() + 1, Integers::max() - 1, Integers::max()});
    case 15:
        return bytes_.ConsumeIntegral<std::int32_t>();
    default:
        return bytes_.ConsumeIntegralInRange(low, high);
    }
}

float FuzzedHost::odd_number() {
    constexpr std::array odd{Limits::quiet_NaN(),
                             Limits::infinity(),
                             -Limits::infinity(),
                             0.0F,
                             -0.0F,
                             Limits::denorm_min(),
                             Limits::min(),
                             Limits::max(),
                             Limits::lowest(),
                             1e-6F,
                             -1e-6F,
                             1.0F,
                             -1.0F,
                             1e6F,
                             2147483648.0F,
                             -2147483648.0F};
    return bytes_.ConsumeBool() ? std::bit_cast<float>(bytes_.ConsumeIntegral<std::uint32_t>())
                                : bytes_.PickValueInArray(odd);
}

float FuzzedHost::number(float usual) {
    const auto kind = bytes_.ConsumeIntegral<std::uint8_t>();
    if (kind < 128) {
        return usual;
    }
    return kind < 208 ? usual * bytes_.ConsumeFloatingPointInRange(0.0F, 8.0F) : odd_number();
}

float FuzzedHost::sample_interval() {
    return number(bytes_.PickValueInArray({0.025F, 0.0254F, 0.05F, 0.1F, 0.15F, 0.25F, 1.0F}));
}

std::int32_t FuzzedHost::length() {
    const std::int32_t usual =
        bytes_.PickValueInArray({1000, 0, 1, 2, 3, 10, 11, 12, 40, 41, 256, 257, 2048});
    return bytes_.ConsumeBool() ? bytes_.ConsumeIntegralInRange(0, longest_profile) : usual;
}

std::int32_t FuzzedHost::size_of(std::int32_t count) {
    const auto kind = bytes_.ConsumeIntegral<std::uint8_t>();
    if (kind < 224) {
        return count;
    }
    return kind < 240 ? bytes_.ConsumeIntegralInRange(0, count)
                      : std::min(count, integer(std::numeric_limits<std::int32_t>::min(), 0));
}

std::vector<float> FuzzedHost::profile(std::int32_t count, float per_metre) {
    const auto samples = static_cast<std::size_t>(count);
    std::vector<float> profile;
    switch (choice(6)) {
    case 1:
        profile.assign(samples, number(0.0F));
        break;
    case 2:
        profile = test::straight_line(samples, road_interval, static_cast<double>(number(0.02F)));
        break;
    case 3:
        profile = test::sinusoid(samples, road_interval, 3.0, static_cast<double>(number(0.01F)));
        break;
    case 4:
        profile = slabs(samples);
        break;
    default:
        profile = test::random_road(samples, road_interval, bytes_.ConsumeIntegral<std::uint8_t>());
        break;
    }
    profile = scaled(std::move(profile), number(per_metre));
    if (count > 0) {
        damage(profile);
    }
    return profile;
}

// Single samples, steps, and stretches that are flat.
void FuzzedHost::damage(std::vector<float>& profile) {
    for (std::int32_t faults = choice(8); faults > 0; --faults) {
        const auto first = bytes_.ConsumeIntegralInRange<std::size_t>(0, profile.size() - 1);
        const auto last = bytes_.ConsumeIntegralInRange<std::size_t>(first, profile.size() - 1);
        const float height = number(0.01F);
        switch (choice(3)) {
        case 0:
            profile[first] = height;
            break;
        case 1:
            for (std::size_t i = first; i <= last; ++i) {
                profile[i] += height;
            }
            break;
        default:
            for (std::size_t i = first; i <= last; ++i) {
                profile[i] = height;
            }
            break;
        }
    }
}

std::vector<std::int32_t> FuzzedHost::integers(std::int32_t count, std::int32_t low,
                                               std::int32_t high) {
    std::vector<std::int32_t> values(static_cast<std::size_t>(count), low);
    // A few of many elements are the fuzzer's own: bytes are dear.
    for (std::int32_t changes = choice(8); changes > 0 && count > 0; --changes) {
        values[static_cast<std::size_t>(choice(count))] = integer(low, high);
    }
    return values;
}

void* FuzzedHost::block(std::span<const std::byte> content, bool given) {
    if (seldom()) {
        return nullptr;
    }
    const std::vector<std::byte> copy(content.begin(), content.end());
    blocks_.push_back({copy, copy, {}, given});
    return blocks_.back().memory.data();
}

std::int32_t FuzzedHost::call(const std::function<std::int32_t(tEvent*)>& function) {
    test::EventRecord event;
    const bool with_event = !seldom();
    const std::int32_t result = run(function, with_event ? static_cast<tEvent*>(event) : nullptr);

    promise(result == vialto_success || result == vialto_failure, "the result is 1 or 3");
    const bool reported = with_event && result == vialto_failure;
    promise(reported || event.untouched(), "the event is written on failure only");
    if (reported) {
        check_event(event);
    }
    const bool refused = reported && is_refusal(event.description());
    for (const Block& block : blocks_) {
        promise(!block.given || block.memory == block.before, "inputs are only read");
        promise(!refused || block.memory == block.before, "a refused call writes no output");
    }
    if (seldom()) {
        repeat(function, result);
    }
    for (Block& block : blocks_) {
        block.before = block.memory; // for the next call of a row
    }
    return result;
}

// Nothing is kept from one call to the next: the same call gives the same bytes again.
void FuzzedHost::repeat(const std::function<std::int32_t(tEvent*)>& function, std::int32_t result) {
    for (Block& block : blocks_) {
        block.after = block.memory;
        std::copy(block.before.begin(), block.before.end(), block.memory.begin());
    }
    promise(run(function, nullptr) == result, "the same call has the same result");
    for (const Block& block : blocks_) {
        promise(block.memory == block.after, "the same call gives the same outputs");
    }
}

} // namespace vialto::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count) {
    static const vialto::test::TemporaryDirectory directory;
    vialto::fuzz::FuzzedHost host(bytes, count);
    vialto::fuzz::run_family(host);
    return 0;
}
