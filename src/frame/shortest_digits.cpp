// The shortest decimal of a float is found as in Raffaello Giulietti, "The Schubfach way to render
// doubles" (2020). A float is c * 2^q, and every number up to half way to its neighbours reads back
// as it: its interval, to which its ends belong where c is even. Let 10^k be the largest power of
// ten that is not wider than the interval. Of the multiples of 10^(k + 1) at most one lies in it:
// if one does, that has the shortest digits, else the multiple of 10^k that is nearest to the
// float.
//
// The float is taken in units of 10^k, as a fixed-point number: c times the factor 2^q * 10^-k,
// which is tabulated for every exponent. 36 binary places are enough: an end of an interval that
// lies within the error of a multiple of ten is that multiple. script/exhaustive shows it of all
// floats.
#include "frame/shortest_digits.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace vialto {

namespace {

constexpr std::int32_t fraction_bits = 23; // of a float, behind the leading bit
constexpr std::int32_t least_exponent = -149;
constexpr std::uint32_t leading_bit = 1U << fraction_bits;
constexpr std::uint32_t special = 255; // biased exponent of infinities and NaN

constexpr std::int32_t factor_places = 60; // binary places of a factor, which is 1 to 10
constexpr std::int32_t places = 36;        // binary places of a float in units of 10^k
constexpr std::uint64_t one = std::uint64_t{1} << places;

// An unsigned number of 192 bits, the least significant first.
using Wide = std::array<std::uint32_t, 6>;

constexpr void multiply(Wide& number, std::uint32_t by) {
    std::uint64_t carry = 0;
    for (std::uint32_t& limb : number) {
        carry += std::uint64_t{limb} * by;
        limb = static_cast<std::uint32_t>(carry);
        carry >>= 32;
    }
}

// Rounds down; returns whether anything was cut off.
constexpr bool divide(Wide& number, std::uint32_t by) {
    std::uint64_t rest = 0;
    for (std::size_t i = number.size(); i-- > 0;) {
        rest = rest << 32 | number[i];
        number[i] = static_cast<std::uint32_t>(rest / by);
        rest %= by;
    }
    return rest != 0;
}

struct Scale {
    std::uint32_t factor_high = 0; // 2^q * 10^-k with factor_places, rounded up
    std::uint32_t factor_low = 0;
    std::uint64_t half_width = 0; // half the factor with `places`
    std::ptrdiff_t decimals = 0;  // -k
};

constexpr Scale scale_with(std::uint64_t factor, std::ptrdiff_t decimals) {
    return {static_cast<std::uint32_t>(factor >> 32), static_cast<std::uint32_t>(factor),
            factor >> (factor_places - places + 1), decimals};
}

constexpr std::uint64_t factor_of(const Scale& scale) {
    return std::uint64_t{scale.factor_high} << 32 | scale.factor_low;
}

constexpr Scale scale_of(std::int32_t biased_exponent) {
    constexpr std::int32_t step = 16; // powers of two are taken in so many bits at once
    const std::int32_t q = std::max(biased_exponent, 1) - 1 + least_exponent;
    const std::int32_t k = q * 315653 >> 20; // log10(2) in 20 binary places, exact for all q
    Wide number{1};
    bool inexact = false;
    for (std::int32_t i = k; i < 0; ++i) {
        multiply(number, 10);
    }
    for (std::int32_t i = q + factor_places; i > 0; i -= step) {
        multiply(number, 1U << std::min(i, step));
    }
    for (std::int32_t i = k; i > 0; --i) {
        inexact |= divide(number, 10);
    }
    for (std::int32_t i = q + factor_places; i < 0; i += step) {
        inexact |= divide(number, 1U << std::min(-i, step));
    }
    const std::uint64_t factor = std::uint64_t{number[1]} << 32 | number[0];
    return scale_with(factor + (inexact ? 1 : 0), -k);
}

constexpr auto scales = [] {
    std::array<Scale, special> table{};
    for (std::size_t i = 0; i < table.size(); ++i) {
        table[i] = scale_of(static_cast<std::int32_t>(i));
    }
    return table;
}();

static_assert(std::all_of(scales.begin(), scales.end(), [](const Scale& scale) {
    const std::uint64_t whole = factor_of(scale) >> factor_places;
    return whole >= 1 && whole < 10;
}));

// (10 * tens + last) / 10^decimals, with up to eight digits in the tens.
struct Decimal {
    std::uint32_t tens;
    std::uint32_t last;
    std::ptrdiff_t decimals;
};

// Takes no branch that depends on the digits, which no processor predicts. The interval of a power
// of two is lopsided: below it the floats stand twice as dense.
inline Decimal shortest_decimal(std::uint32_t c, const Scale& scale, bool lopsided) {
    const std::uint64_t value =
        (std::uint64_t{scale.factor_high} * c << (places - factor_places + 32)) +
        (std::uint64_t{scale.factor_low} * c >> (factor_places - places));
    // The ends may be one unit off: one that belongs to the interval moves outward by a unit, one
    // that does not moves inward.
    const std::uint64_t outward = 1 - 2 * std::uint64_t{c & 1};
    const std::uint64_t lower = value - ((scale.half_width >> (lopsided ? 1 : 0)) + outward);
    const std::uint64_t upper = value + (scale.half_width + outward);
    const std::uint32_t tens = static_cast<std::uint32_t>(upper >> places) / 10;
    auto nearest =
        static_cast<std::uint32_t>((value + (one / 2 - 1) + (value >> places & 1)) >> places);
    if (lopsided && (std::uint64_t{nearest} << places) < lower) {
        ++nearest;
    }
    // Where no multiple of ten lies in the interval, all of it has the same tens.
    const bool tens_outside = (std::uint64_t{10 * tens} << places) < lower;
    const std::uint32_t last =
        (nearest - 10 * tens) & (0U - static_cast<std::uint32_t>(tens_outside));
    return {tens, last, scale.decimals};
}

// The same for any float but zero, infinity and NaN.
Decimal shortest_decimal_of_any(std::uint32_t bits) {
    const std::uint32_t biased_exponent = bits >> fraction_bits;
    const std::uint32_t fraction = bits & (leading_bit - 1);
    Scale scale = scales[biased_exponent];
    if (biased_exponent == 0) {
        Decimal decimal = shortest_decimal(fraction, scale, false);
        while (decimal.tens < 1000000) {
            decimal = {10 * decimal.tens + decimal.last, 0, decimal.decimals + 1};
        }
        return decimal;
    }
    // 10^k may be wider than an interval of three quarters of the width.
    const bool lopsided = fraction == 0 && biased_exponent > 1;
    if (lopsided && factor_of(scale) < (std::uint64_t{4} << factor_places) / 3) {
        scale = scale_with(factor_of(scale) * 10, scale.decimals + 1);
    }
    return shortest_decimal(leading_bit | fraction, scale, lopsided);
}

// Eight decimal digits, a byte each, the first in the highest byte: the number is split into
// halves, then both halves at once, then all quarters.
inline std::uint64_t digits_of(std::uint64_t number) {
    const std::uint64_t high = number * 109951163 >> 40; // number / 10000
    const std::uint64_t halves = number + high * ((std::uint64_t{1} << 32) - 10000);
    const std::uint64_t hundreds = halves * 10486 >> 20 & 0x0000007F0000007F; // halves / 100
    const std::uint64_t quarters = halves + hundreds * ((1 << 16) - 100);
    const std::uint64_t tens = quarters * 103 >> 10 & 0x000F000F000F000F; // quarters / 10
    return quarters + tens * ((1 << 8) - 10);
}

// Writes eight characters, the first of which is in the highest byte.
inline void put_eight(char* text, std::uint64_t characters) {
    const auto bytes = std::bit_cast<std::array<char, 8>>(characters);
    if constexpr (std::endian::native == std::endian::little) {
        std::reverse_copy(bytes.begin(), bytes.end(), text);
    } else {
        std::copy(bytes.begin(), bytes.end(), text);
    }
}

constexpr std::uint64_t eight_zeros = 0x3030303030303030; // "00000000"

// Nine digits, of which `decimals` stand behind the point.
struct Digits {
    std::uint64_t first_eight; // as characters
    char ninth;
    std::uint32_t tens; // the first eight as a number, of seven digits or more
    std::ptrdiff_t decimals;
    std::ptrdiff_t trailing; // zeros
};

inline Digits digits_of(const Decimal& decimal) {
    const std::uint64_t eight = digits_of(decimal.tens);
    const std::uint64_t nine = eight << 4 | decimal.last; // one half of each byte is free
    return {.first_eight = eight | eight_zeros,
            .ninth = static_cast<char>('0' + decimal.last),
            .tens = decimal.tens,
            .decimals = decimal.decimals,
            .trailing = (std::countr_zero(nine) + 4) / 8};
}

// Without a branch: a difference below zero has its highest bit set.
inline std::ptrdiff_t leading_zeros(const Digits& digits) {
    return ((digits.tens - 10000000) >> 31) + ((digits.tens - 1000000) >> 31);
}

// Numbers from 0.0001 on and below 1, which have eight decimals or more ahead of their trailing
// zeros.
inline char* write_fraction(char* text, const Digits& digits) {
    std::copy_n("0.000000", 8, text);
    put_eight(text + digits.decimals - 7, digits.first_eight);
    text[1] = '.'; // a leading zero may have taken its place
    text[digits.decimals + 1] = digits.ninth;
    return text + digits.decimals + 2 - digits.trailing;
}

// The digits behind the leading zeros, with a point behind the first `before` of them, one to
// seven.
inline char* write_with_point(char* text, const Digits& digits, std::ptrdiff_t leading,
                              std::ptrdiff_t before) {
    const std::uint64_t characters = digits.first_eight << (8 * leading);
    put_eight(text, characters);
    text[before] = '.';
    put_eight(text + before + 1, characters << (8 * before));
    text[9 - leading] = digits.ninth;
    const std::ptrdiff_t significant = 9 - leading - digits.trailing;
    return text + (significant > before ? significant + 1 : before);
}

char* write_scientific(char* text, const Digits& digits, std::ptrdiff_t leading,
                       std::ptrdiff_t exponent) {
    const auto magnitude = static_cast<std::uint32_t>(std::abs(exponent));
    char* end = write_with_point(text, digits, leading, 1);
    *end++ = 'e';
    *end++ = exponent < 0 ? '-' : '+';
    *end++ = static_cast<char>('0' + magnitude / 10);
    *end++ = static_cast<char>('0' + magnitude % 10);
    return end;
}

constexpr std::uint32_t bits_of(float number) {
    return std::bit_cast<std::uint32_t>(number);
}

inline char* write_sign(char* text, float number) {
    *text = '-';
    return text + (bits_of(number) >> 31);
}

// Any float but zero, infinity and NaN, in the shorter notation.
char* write_magnitude(char* text, float magnitude) {
    constexpr float first_without_decimals = 8388608.0F;
    const Digits digits = digits_of(shortest_decimal_of_any(bits_of(magnitude)));
    const std::ptrdiff_t leading = leading_zeros(digits);
    const std::ptrdiff_t before = 9 - leading - digits.decimals;
    const std::ptrdiff_t significant = 9 - leading - digits.trailing;
    // The zeros ahead of a fraction, or behind a whole number, against a point and "e+05"; where
    // there is one digit there is no point.
    const std::ptrdiff_t point = significant == 1 ? 0 : 1;
    if (before < -2 - point || before > significant + 4 + point) {
        return write_scientific(text, digits, leading, before - 1);
    }
    if (before < 1) {
        return write_fraction(text, digits);
    }
    if (magnitude >= first_without_decimals) {
        return std::to_chars(text, text + shortest_room, static_cast<std::uint64_t>(magnitude)).ptr;
    }
    return write_with_point(text, digits, leading, before);
}

// Out of line: else registers would be saved for every number.
[[gnu::noinline]] char* write_any(char* text, float number) {
    const auto write_word = [&](std::string_view word) {
        return std::copy(word.begin(), word.end(), text);
    };
    if (std::isnan(number)) {
        return write_word("nan"); // without the sign that processors give it at random
    }
    text = write_sign(text, number);
    if (std::isinf(number)) {
        return write_word("inf");
    }
    return number == 0.0F ? write_word("0") : write_magnitude(text, std::fabs(number));
}

} // namespace

char* write_shortest(char* text, float number) {
    constexpr std::uint32_t first_usual = bits_of(0.0001F);
    constexpr std::uint32_t end_of_usual = bits_of(100000.0F);
    const std::uint32_t bits = bits_of(number) & 0x7FFFFFFFU;
    const std::uint32_t fraction = bits & (leading_bit - 1);
    if (bits - first_usual >= end_of_usual - first_usual || fraction == 0) {
        return write_any(text, number);
    }
    const Digits digits =
        digits_of(shortest_decimal(leading_bit | fraction, scales[bits >> fraction_bits], false));
    if (bits >= bits_of(1.0F)) {
        const std::ptrdiff_t leading = leading_zeros(digits);
        return write_with_point(write_sign(text, number), digits, leading,
                                9 - leading - digits.decimals);
    }
    // One digit that is the fourth decimal: scientific notation may be shorter.
    if (digits.trailing == digits.decimals - 4 && bits < bits_of(0.001F)) {
        return write_any(text, number);
    }
    return write_fraction(write_sign(text, number), digits);
}

} // namespace vialto
