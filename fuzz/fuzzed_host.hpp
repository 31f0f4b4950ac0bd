// A host made out of bytes: absurd but truthful. Its numbers may be anything, its arrays are never
// shorter than the sizes it names, and each stands in a block of memory of exactly its length, so
// that the sanitizers see any access beside it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <span>
#include <type_traits>
#include <vector>

#include "vialto/vialto.h"

namespace vialto::fuzz {

using Function = std::function<std::int32_t(tEvent*)>;

// Stands between a host and the library.
class Caller {
public:
    virtual ~Caller() = default;

    virtual std::int32_t call(const Function& function, tEvent* event) { return function(event); }

    // What the library has written, or left, after a call.
    virtual void see(std::span<const std::byte> output) { (void)output; }
};

// When the bytes are used up each of these gives its usual value, so that no byte at all is a plain
// call.
class FuzzedHost {
public:
    FuzzedHost(std::span<const std::uint8_t> bytes, Caller& caller)
        : bytes_(bytes), caller_(caller) {}

    // From 0 up to count - 1, each as likely as the others.
    [[nodiscard]] std::int32_t choice(std::int32_t count);
    // Mostly within the range, which `low` begins; else any int32.
    [[nodiscard]] std::int32_t integer(std::int32_t low, std::int32_t high);
    // Mostly one of the values; else any int32.
    [[nodiscard]] std::int32_t integer_of(std::initializer_list<std::int32_t> values);
    // Mostly the usual value or one like it; else any float, and often one of the ends of its range.
    [[nodiscard]] float number(float usual);
    // Mostly one at which roads are sampled, m.
    [[nodiscard]] float sample_interval();
    // Number of samples of a profile, up to some thousand.
    [[nodiscard]] std::int32_t length();
    // What to name as the size of an array of so many elements: mostly the truth, never more, at
    // times nothing or a negative number.
    [[nodiscard]] std::int32_t size_of(std::int32_t count);
    // A road with faults in it. The unit of its heights has `per_metre` to the metre.
    [[nodiscard]] std::vector<float> profile(std::int32_t count, float per_metre = 1.0F);
    [[nodiscard]] std::vector<std::int32_t> integers(std::int32_t count, std::int32_t low,
                                                     std::int32_t high);

    // The address of a copy of the values that the library may only read; at times null.
    template <class Value>
    [[nodiscard]] const Value* given(const std::vector<Value>& values) {
        return static_cast<const Value*>(block(std::as_bytes(std::span(values)), Kind::given));
    }
    template <class Record>
    [[nodiscard]] const Record* given(const Record& record) {
        return given(std::vector<Record>{record});
    }

    // The same for what the library writes.
    template <class Value>
    [[nodiscard]] Value* returned(const std::vector<Value>& values) {
        static_assert(std::is_trivially_copyable_v<Value>);
        const Kind kind = std::is_integral_v<Value>       ? Kind::integers
                          : std::is_same_v<Value, double> ? Kind::doubles
                                                          : Kind::floats;
        return static_cast<Value*>(block(std::as_bytes(std::span(values)), kind));
    }
    template <class Value>
    [[nodiscard]] Value* returned(std::int32_t count) {
        return returned(std::vector<Value>(static_cast<std::size_t>(count)));
    }
    template <class Record>
    [[nodiscard]] Record* record(const Record& record) {
        return returned(std::vector<Record>{record});
    }

    // Makes a call and holds the library to what it promises about every call. Gives its result.
    std::int32_t call(const Function& function);

private:
    enum class Kind { given, integers, floats, doubles }; // records count as floats
    struct Block {
        std::vector<std::byte> memory;
        std::vector<std::byte> before; // what the host put into it
        std::vector<std::byte> after;  // what a call that is then repeated left in it
        Kind kind;
    };

    // From low to high, out of as many bytes as that takes; low when they are used up.
    [[nodiscard]] std::int64_t in_range(std::int64_t low, std::int64_t high);
    [[nodiscard]] bool one_in_two() { return in_range(0, 1) == 1; }
    template <class Value>
    [[nodiscard]] Value one_of(std::initializer_list<Value> values) {
        return values.begin()[choice(static_cast<std::int32_t>(values.size()))];
    }
    [[nodiscard]] bool seldom(); // about one time in 64
    [[nodiscard]] std::int32_t odd_integer();
    [[nodiscard]] float odd_number();
    [[nodiscard]] void* block(std::span<const std::byte> content, Kind kind);
    void damage(std::vector<float>& profile);
    void repeat(const Function& function, std::int32_t result);
    void show(const Block& block);

    std::span<const std::uint8_t> bytes_; // those still unused
    Caller& caller_;
    std::vector<Block> blocks_;
};

} // namespace vialto::fuzz
