// What the cases of a table share: claims, and lists of numbers held against each other.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <type_traits>
#include <vector>

namespace vialto::test {

// What a case claims, and where it stands.
struct Claim {
    Claim(const char* words, const char* path = __builtin_FILE(), int place = __builtin_LINE())
        : text(words), file(path), line(place) {}

    const char* text;
    const char* file;
    int line;
};

// Tells of the first number, counted from 0, that differs by more than the tolerance. A NaN stands
// where a NaN is expected.
template <class Number>
[[nodiscard]] testing::AssertionResult
same(const std::vector<Number>& values, const std::type_identity_t<std::vector<Number>>& expected,
     std::type_identity_t<Number> tolerance = {}) {
    const auto agree = [=](Number a, Number b) {
        return a == b || (a < b ? b - a : a - b) <= tolerance || (a != a && b != b);
    };
    const auto [value, wanted] =
        std::mismatch(values.begin(), values.end(), expected.begin(), expected.end(), agree);
    if (value == values.end() && wanted == expected.end()) {
        return testing::AssertionSuccess();
    }
    const auto told = [](auto number, auto end) {
        return number == end ? "missing" : testing::PrintToString(*number);
    };
    return testing::AssertionFailure()
           << "number " << value - values.begin() << " of " << values.size() << " is "
           << told(value, values.end()) << ", not " << told(wanted, expected.end());
}

} // namespace vialto::test
