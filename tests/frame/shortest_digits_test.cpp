#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>

#include "frame/shortest_digits_check.hpp"

namespace vialto {
namespace {

// The lowest 31 bits: the exponent, and the digits behind the leading one.
std::uint32_t bits_of(std::uint32_t exponent, std::uint32_t fraction) {
    return exponent << 23 | fraction;
}

constexpr std::uint32_t sign = 0x80000000;
constexpr std::uint32_t most = 0x7FFFFF; // fraction

TEST(ShortestDigits, AreThoseOfTheStandardLibraryAtEveryExponent) {
    std::mt19937 generator(1);
    for (std::uint32_t exponent = 0; exponent < 256; ++exponent) {
        for (const std::uint32_t fraction : {0U, 1U, 2U, most / 2, most / 2 + 1, most - 1, most}) {
            EXPECT_EQ(test::wrong_text(bits_of(exponent, fraction)), "");
            EXPECT_EQ(test::wrong_text(sign | bits_of(exponent, fraction)), "");
        }
        for (int i = 0; i < 4000; ++i) {
            const std::uint32_t bits = bits_of(exponent, generator() & most);
            ASSERT_EQ(test::wrong_text(bits), "") << std::hex << bits;
        }
    }
}

// The decimals that hosts have, with the floats beside them.
TEST(ShortestDigits, AreThoseOfTheStandardLibraryAboutShortDecimals) {
    for (int exponent = -45; exponent <= 38; ++exponent) {
        for (int digits = 1; digits < 1000; ++digits) {
            const std::string decimal = std::to_string(digits) + "e" + std::to_string(exponent);
            const auto bits = std::bit_cast<std::uint32_t>(std::strtof(decimal.c_str(), nullptr));
            for (const std::uint32_t near : {bits - 1, bits, bits + 1}) {
                ASSERT_EQ(test::wrong_text(near), "") << decimal;
            }
        }
    }
}

} // namespace
} // namespace vialto
