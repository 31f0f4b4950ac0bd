#include "fuzz/fuzzed_host.hpp"

#include <algorithm>
#include <bit>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>
#include <string_view>
#include <utility>

#include "support/host.hpp"
#include "support/roads.hpp"

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

template <class Float>
void unite_nans(std::span<std::byte> bytes) {
    for (std::size_t i = 0; i + sizeof(Float) <= bytes.size(); i += sizeof(Float)) {
        Float value = 0;
        std::memcpy(&value, &bytes[i], sizeof value);
        value = value == value ? value : std::numeric_limits<Float>::quiet_NaN();
        std::memcpy(&bytes[i], &value, sizeof value);
    }
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

std::int64_t FuzzedHost::in_range(std::int64_t low, std::int64_t high) {
    const auto range = static_cast<std::uint64_t>(high - low);
    std::uint64_t value = 0;
    for (std::uint64_t rest = range; rest > 0 && !bytes_.empty(); rest >>= 8U) {
        value = value << 8U | bytes_.front();
        bytes_ = bytes_.subspan(1);
    }
    return low + static_cast<std::int64_t>(value % (range + 1));
}

bool FuzzedHost::seldom() {
    return in_range(0, 255) > 251;
}

std::int32_t FuzzedHost::choice(std::int32_t count) {
    return static_cast<std::int32_t>(in_range(0, count - 1));
}

std::int32_t FuzzedHost::integer(std::int32_t low, std::int32_t high) {
    const std::int64_t kind = in_range(0, 255);
    return kind < 224 ? static_cast<std::int32_t>(in_range(low, high)) : odd_integer();
}

std::int32_t FuzzedHost::integer_of(std::initializer_list<std::int32_t> values) {
    const std::int64_t kind = in_range(0, 255);
    return kind < 224 ? one_of(values) : odd_integer();
}

std::int32_t FuzzedHost::odd_integer() {
    using Integers = std::numeric_limits<std::int32_t>;
    if (one_in_two()) {
        return static_cast<std::int32_t>(in_range(Integers::min(), Integers::max()));
    }
    return one_of(
        {-1, 0, Integers::min(), Integers::min() + 1, Integers::max() - 1, Integers::max()});
}

float FuzzedHost::odd_number() {
    if (one_in_two()) {
        return std::bit_cast<float>(static_cast<std::uint32_t>(in_range(0, 0xFFFFFFFF)));
    }
    return one_of({Limits::quiet_NaN(), Limits::infinity(), -Limits::infinity(), 0.0F, -0.0F,
                   Limits::denorm_min(), Limits::min(), Limits::max(), Limits::lowest(), 1e-6F,
                   -1e-6F, 1.0F, -1.0F, 1e6F, 2147483648.0F, -2147483648.0F});
}

float FuzzedHost::number(float usual) {
    const std::int64_t kind = in_range(0, 255);
    if (kind < 128) {
        return usual;
    }
    constexpr float steps = 8192.0F; // to a factor of one
    return kind < 208 ? usual * (static_cast<float>(in_range(0, 0xFFFF)) / steps) : odd_number();
}

float FuzzedHost::sample_interval() {
    return number(one_of({0.025F, 0.0254F, 0.05F, 0.1F, 0.15F, 0.25F, 1.0F}));
}

std::int32_t FuzzedHost::length() {
    const std::int32_t usual = one_of({1000, 0, 1, 2, 3, 10, 11, 12, 40, 41, 256, 257, 2048});
    return one_in_two() ? choice(longest_profile + 1) : usual;
}

std::int32_t FuzzedHost::size_of(std::int32_t count) {
    const std::int64_t kind = in_range(0, 255);
    if (kind < 224) {
        return count;
    }
    return kind < 240 ? choice(count + 1)
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
        profile =
            test::random_road(samples, road_interval, static_cast<std::uint32_t>(choice(256)));
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
    const auto count = static_cast<std::int32_t>(profile.size());
    for (std::int32_t faults = choice(8); faults > 0; --faults) {
        const std::int32_t first = choice(count);
        const std::int32_t last = first + choice(count - first);
        const float height = number(0.01F);
        const std::int32_t kind = choice(3);
        for (std::int32_t i = first; i <= (kind == 0 ? first : last); ++i) {
            float& sample = profile[static_cast<std::size_t>(i)];
            sample = kind == 1 ? sample + height : height;
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

void* FuzzedHost::block(std::span<const std::byte> content, Kind kind) {
    if (seldom()) {
        return nullptr;
    }
    const std::vector<std::byte> copy(content.begin(), content.end());
    blocks_.push_back({copy, copy, {}, kind});
    return blocks_.back().memory.data();
}

std::int32_t FuzzedHost::call(const Function& function) {
    test::EventRecord event;
    const bool with_event = !seldom();
    const std::int32_t result =
        caller_.call(function, with_event ? static_cast<tEvent*>(event) : nullptr);

    promise(result == vialto_success || result == vialto_failure, "the result is 1 or 3");
    const bool reported = with_event && result == vialto_failure;
    promise(reported || event.untouched(), "the event is written on failure only");
    if (reported) {
        check_event(event);
        const std::string summary = event.summary();
        caller_.see(std::as_bytes(std::span(summary)));
    }
    const bool refused = reported && is_refusal(event.description());
    for (const Block& block : blocks_) {
        promise(block.kind != Kind::given || block.memory == block.before, "inputs are only read");
        promise(!refused || block.memory == block.before, "a refused call writes no output");
        show(block);
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
void FuzzedHost::repeat(const Function& function, std::int32_t result) {
    for (Block& block : blocks_) {
        block.after = block.memory;
        std::copy(block.before.begin(), block.before.end(), block.memory.begin());
    }
    promise(caller_.call(function, nullptr) == result, "the same call has the same result");
    for (const Block& block : blocks_) {
        promise(block.memory == block.after, "the same call gives the same outputs");
    }
}

// NaNs differ in sign and payload from processor to processor; all are shown as one.
void FuzzedHost::show(const Block& block) {
    std::vector<std::byte> output = block.memory;
    if (block.kind == Kind::floats) {
        unite_nans<float>(output);
    } else if (block.kind == Kind::doubles) {
        unite_nans<double>(output);
    }
    if (block.kind != Kind::given) {
        caller_.see(output);
    }
}

} // namespace vialto::fuzz
